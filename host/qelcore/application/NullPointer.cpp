#include <string>

#include "platform/qelcore/Config.h"

namespace qelcore::config {

NullPointerException::NullPointerException(std::string_view interfaceName)
    : std::runtime_error("a reference to \"" + std::string(interfaceName) + "\" is empty") {}

NullPointerException::~NullPointerException() = default;
NullPointerException::NullPointerException(const NullPointerException&) = default;
NullPointerException& NullPointerException::operator=(const NullPointerException&) = default;

void DoThrowNullPtrException(std::string_view interfaceName) {
  throw NullPointerException(interfaceName);
}

}  // namespace qelcore::config
