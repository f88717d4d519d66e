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

FileComponents& FileCache() {
  static FileComponents cache;
  SeparateState* const separate = SeparateState::Current();
  return separate == nullptr ? cache : separate->mFileComponents;
}

std::shared_ptr<OSComponent> LookUpOnDisk(std::string path) {
  if (path.empty() || FileUtils::ConvertEnvPath(path) != 0) return nullptr;
  const std::u16string widePath = qelcore::string::UTF8to16(path);
  // A directory satisfies a file rule too. It has no version, so only ranges that hold the empty one let it
  // pass.
  if (!qelcore::filesupport::File(widePath).Exists() && !qelcore::filesupport::Dir(widePath).Exists()) {
    return nullptr;
  }
  const OSComponentVersion version(FileUtils::GetFileVersion(path));
  return std::make_shared<OSComponent>(OSComponentType::kFile, std::move(path), version);
}

}  // namespace

std::shared_ptr<OSComponent> FindFileComponent(const std::string& path) {
  const auto known = FileCache().find(path);
  if (known != FileCache().end()) return known->second;
  return FileCache().emplace(path, LookUpOnDisk(path)).first->second;
}

void ForgetFileComponents() {
  FileCache().clear();
}

}  // namespace qelsystemcompatibilityreport
