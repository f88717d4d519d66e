#include "app/InputFile.h"

#include <system_error>

#include "app/Output.h"
#include "authoring/json/TextPlaces.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"

namespace app {

std::string ReadInputFile(const std::string& path) {
  const std::u16string widePath = qelcore::string::UTF8to16(path);
  if (qelcore::filesupport::Dir(widePath).Exists()) throw UserError(path + ": is a directory, not a file");
  const qelcore::filesupport::File file(widePath);
  if (!file.Exists()) throw UserError(path + ": there is no such file");
  try {
    return qelcore::filesupport::IPlatformByteStream(file).ReadAll();
  } catch (const std::system_error& error) {
    throw UserError(error.what());
  }
}

std::any ParseInputFile(const std::string& path, const std::string& content) {
  qelcore::json::ParseError error;
  std::any value = qelcore::json::Parse(content, &error);
  if (!value.has_value()) {
    std::string message = path;
    if (error.mLine != 0) {
      const authoring::TextPlaces places(content);
      const authoring::Place place = places.At(places.OffsetOf(error.mLine, error.mColumn).value_or(0));
      message += ", line " + std::to_string(place.mLine) + ", column " + std::to_string(place.mColumn);
    }
    throw UserError(message + ": not JSON: " + error.mMessage);
  }
  return value;
}

}  // namespace app
