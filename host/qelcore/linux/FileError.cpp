#include "host/qelcore/linux/FileError.h"

#include <cerrno>
#include <system_error>

namespace qelcore::host {

void ThrowFileError(int number, const std::string& path) {
  throw std::system_error(std::error_code(number, std::generic_category()), path);
}

void ThrowNotRegular(const std::string& path) {
  ThrowFileError(ENOTSUP, path + ": not a regular file");
}

void CheckPath(const std::string& path) {
  if (path.find('\0') != std::string::npos) {
    ThrowFileError(EINVAL, path.substr(0, path.find('\0')));
  }
}

}  // namespace qelcore::host
