#include "tests/host/qelcore/linux/components/MachineTree.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <optional>
#include <system_error>

#include "host/qelcore/linux/components/ReadMachine.h"

namespace testsupport {
namespace {

constexpr std::string_view kIndentation = "    ";

std::string Unescape(std::string_view text) {
  std::string bytes;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] != '\\' || index + 1 == text.size()) {
      bytes += text[index];
      continue;
    }
    switch (const char escaped = text[++index]) {
      case 'n':
        bytes += '\n';
        break;
      case 't':
        bytes += '\t';
        break;
      case '0':
        bytes += '\0';
        break;
      case 'x': {
        std::uint8_t byte = 0;
        const std::string_view digits = text.substr(index + 1, 2);
        std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        bytes += static_cast<char>(byte);
        index += digits.size();
        break;
      }
      default:
        bytes += escaped;
    }
  }
  return bytes;
}

/// The version line of what "ethtool -i" prints.
std::string VersionInEthtoolText(const std::filesystem::path& path) {
  std::ifstream stream(path);
  constexpr std::string_view kStart = "version: ";
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with(kStart)) return line.substr(kStart.size());
  }
  return {};
}

std::filesystem::path MachinesDirectory() {
  return std::filesystem::path(QELSCR_SOURCE_DIR) / "tests/host/qelcore/data/machines";
}

}  // namespace

MachineTree::MachineTree(std::string_view text, Broken broken) : mBroken(broken) {
  mSurroundings.mAskNetworkDriver = [root = Root()](const std::string& interface) {
    return VersionInEthtoolText(root / "ethtool" / interface);
  };
  std::optional<std::string> blockPath;
  std::string block;
  std::string emptyLines;
  const auto endBlock = [&] {
    if (blockPath) AddFile(*blockPath, block);
    blockPath.reset();
    block.clear();
    emptyLines.clear();
  };
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (blockPath && line.empty()) {
      emptyLines += '\n';  // belongs to the block when another line of it follows
    } else if (blockPath && line.starts_with(kIndentation)) {
      block += emptyLines + std::string(line.substr(kIndentation.size())) + '\n';
      emptyLines.clear();
    } else {
      endBlock();
      if (line.ends_with(':')) {
        blockPath = line.substr(0, line.size() - 1);
      } else if (!line.empty() && !line.starts_with('#')) {
        AddEntry(line);
      }
    }
  }
  endBlock();
}

std::string MachineTree::TextOf(const std::string& name) {
  return ReadWholeFile(MachinesDirectory() / (name + ".tree"));
}

std::vector<std::string> MachineTree::Names() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(MachinesDirectory())) {
    if (entry.path().extension() == ".tree") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

qelcore::utility::OSComponentRegistry::Components MachineTree::Read() const {
  return qelcore::host::components::ReadMachine(Root(), mSurroundings, std::nullopt);
}

void MachineTree::AddEntry(std::string_view line) {
  if (line.starts_with('@')) return AddValue(line.substr(1));
  if (line.ends_with('/')) {
    AddDirectory(line.substr(0, line.size() - 1));
    return;
  }
  const std::size_t blank = line.find(' ');
  ASSERT_NE(blank, std::string_view::npos) << line;
  std::string_view path = line.substr(0, blank);
  std::string_view rest = line.substr(blank + 1);
  if (path.ends_with(':')) {
    AddFile(path.substr(0, path.size() - 1), std::string(rest) + '\n');
  } else if (rest.starts_with("-> ")) {
    AddLink(path, Unescape(rest.substr(3)));
  } else {
    ASSERT_TRUE(rest.starts_with('=')) << line;
    AddFile(path, Unescape(rest.substr(std::min<std::size_t>(2, rest.size()))));
  }
}

void MachineTree::AddValue(std::string_view line) {
  const std::size_t blank = line.find(' ');
  ASSERT_NE(blank, std::string_view::npos) << line;
  const std::string_view name = line.substr(0, blank);
  const std::string value = Unescape(line.substr(blank + 1));
  if (name == "architecture") {
    mSurroundings.mArchitecture = value;
  } else if (name == "free_bytes") {
    mSurroundings.mFreeBytes = std::stoull(value);
  } else {
    ASSERT_EQ(name, "environment");
    const std::size_t equals = value.find('=');
    ASSERT_NE(equals, std::string::npos) << line;
    mSurroundings.mEnvironment[value.substr(0, equals)] = value.substr(equals + 1);
  }
}

void MachineTree::AddFile(std::string_view path, std::string_view content) {
  const auto place = Prepare(path);
  if (!place || std::filesystem::is_symlink(*place)) return ExpectDone(false, path);
  std::ofstream stream(*place, std::ios::binary);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  ExpectDone(stream.good(), path);
}

void MachineTree::AddLink(std::string_view path, const std::string& target) {
  std::error_code error = std::make_error_code(std::errc::no_such_file_or_directory);
  if (const auto place = Prepare(path)) std::filesystem::create_symlink(target, *place, error);
  ExpectDone(!error, path);
}

void MachineTree::AddDirectory(std::string_view path) {
  std::error_code error = std::make_error_code(std::errc::no_such_file_or_directory);
  if (const auto place = Prepare(path)) std::filesystem::create_directories(*place, error);
  ExpectDone(!error, path);
}

void MachineTree::ExpectDone(bool isDone, std::string_view path) const {
  EXPECT_TRUE(isDone || mBroken == Broken::kIsLeftOut) << path;
}

std::optional<std::filesystem::path> MachineTree::Prepare(std::string_view path) const {
  const std::filesystem::path relative(path);
  std::filesystem::path place = Root();
  for (const std::filesystem::path& name : relative.parent_path()) {
    place /= name;
    if (std::filesystem::is_symlink(place) || name == "..") return std::nullopt;
  }
  std::error_code error;
  std::filesystem::create_directories(place, error);
  if (error) return std::nullopt;
  return Root() / relative;
}

std::string TestName(const ::testing::TestParamInfo<std::string>& machine) {
  std::string name = machine.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

}  // namespace testsupport
