// Recorded machines: the files of `tests/host/qelcore/data/machines`, laid out in a temporary directory.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/linux/components/Surroundings.h"
#include "platform/qelcore/Components.h"
#include "tests/host/qelcore/components/ComponentLines.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

/// A machine laid out as files. The form of its text stands at the top of each recorded machine.
class MachineTree {
 public:
  /// What becomes of an entry that cannot be laid out, say because a file is where its directory should be.
  enum class Broken { kFailsTheTest, kIsLeftOut };

  /// Lays out a machine from its text.
  explicit MachineTree(std::string_view text, Broken broken = Broken::kFailsTheTest);

  /// Lays out `<name>.tree`.
  [[nodiscard]] static MachineTree Recorded(const std::string& name) { return MachineTree(TextOf(name)); }
  [[nodiscard]] static std::string TextOf(const std::string& name);

  /// The names of all recorded machines, sorted.
  [[nodiscard]] static std::vector<std::string> Names();

  [[nodiscard]] const std::filesystem::path& Root() const { return mDirectory.Path(); }
  [[nodiscard]] const qelcore::host::components::Surroundings& Surroundings() const { return mSurroundings; }

  /// The machine's components, with properties when they are supported; none are kept.
  [[nodiscard]] qelcore::utility::OSComponentRegistry::Components Read() const;

 private:
  void AddEntry(std::string_view line);
  void AddValue(std::string_view line);
  void AddFile(std::string_view path, std::string_view content);
  void AddLink(std::string_view path, const std::string& target);
  void AddDirectory(std::string_view path);
  void ExpectDone(bool isDone, std::string_view path) const;
  /// Makes the directories that lead to an entry and returns its place. Nothing when one cannot be made or is
  /// a link, which might lead out of the machine.
  [[nodiscard]] std::optional<std::filesystem::path> Prepare(std::string_view path) const;

  Broken mBroken;
  TemporaryDirectory mDirectory;
  qelcore::host::components::Surroundings mSurroundings;
};

/// The name of a test that runs on a recorded machine.
[[nodiscard]] std::string TestName(const ::testing::TestParamInfo<std::string>& machine);

}  // namespace testsupport
