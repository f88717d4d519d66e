#include "qelsystemcompatibilityreport/rules/FileComponents.h"

#include "platform/qelcore/FileUtils.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/rules/SeparateState.h"

namespace qelsystemcompatibilityreport {

namespace {

namespace FileUtils = qelcore::utility::FileUtils;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;

FileAnswers& KnownAnswers() {
  static FileAnswers answers;
  SeparateState* const separate = SeparateState::Current();
  return separate == nullptr ? answers : separate->mFileAnswers;
}

FileAnswer LookUpOnDisk(std::string path) {
  if (path.empty()) return {};
  if (FileUtils::ConvertEnvPath(path) != 0) return {FileStep::Outcome::kUnknownPlaceholder, path, nullptr};
  const std::u16string widePath = qelcore::string::UTF8to16(path);
  // A directory satisfies a file rule too. It has no version, so only ranges that hold the empty one let it
  // pass.
  const bool isFile = qelcore::filesupport::File(widePath).Exists();
  if (!isFile && !qelcore::filesupport::Dir(widePath).Exists()) {
    return {FileStep::Outcome::kNothingThere, path, nullptr};
  }
  const OSComponentVersion version(FileUtils::GetFileVersion(path));
  return {isFile ? FileStep::Outcome::kFile : FileStep::Outcome::kDirectory, path,
          std::make_shared<OSComponent>(OSComponentType::kFile, path, version)};
}

}  // namespace

const FileAnswer& FindFile(const std::string& path) {
  const auto known = KnownAnswers().find(path);
  if (known != KnownAnswers().end()) return known->second;
  return KnownAnswers().emplace(path, LookUpOnDisk(path)).first->second;
}

void ForgetFileComponents() {
  KnownAnswers().clear();
}

}  // namespace qelsystemcompatibilityreport
