// The forms in which differences are told. docs/formats/diff-json.md describes those for programs.
#pragma once

#include <cstddef>
#include <string>

#include "authoring/diff/ListDiff.h"
#include "authoring/diff/MachineDiff.h"

namespace authoring {

/// The lists as the user named them.
struct ListNames {
  std::string mOld;
  std::string mNew;
};

/// Sums over all machines.
struct MachineCounts {
  std::size_t mMachines = 0;
  std::size_t mChanged = 0;  ///< machines on which a user would notice something
  std::size_t mUnreadable = 0;
  std::size_t mNew = 0;
  std::size_t mOngoing = 0;
  std::size_t mResolved = 0;
  std::size_t mToldAgain = 0;  ///< new issues that are known under another identifier
  std::size_t mUnseen = 0;     ///< changed machines that are not matched at launch

  void Add(const MachineDiff& diff);
  MachineCounts& operator+=(const MachineCounts& other);
};

/// What a machine is called, and the line that it came from; 0 when it came from a file.
struct MachineName {
  std::string mName;
  std::size_t mLine = 0;
};

/// Lines for people. Texts of the blocklists stand in them as they are.
[[nodiscard]] std::string DescribeAsText(const ListDiff& diff, const ListNames& names);

/// The same about one machine; empty when nothing changes on it.
[[nodiscard]] std::string DescribeAsText(const MachineDiff& diff, const std::string& machine);

/// The same about all machines, on one line.
[[nodiscard]] std::string DescribeAsText(const MachineCounts& counts);

// One JSON object each, on a line of its own.

[[nodiscard]] std::string WriteJson(const ListDiff& diff, const ListNames& names);
[[nodiscard]] std::string WriteJson(const MachineDiff& diff, const MachineName& machine);
[[nodiscard]] std::string WriteJson(const MachineCounts& counts);

/// What is told in the place of a machine that cannot be read.
[[nodiscard]] std::string WriteErrorJson(const MachineName& machine, const std::string& error);

}  // namespace authoring
