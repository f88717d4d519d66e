// A hand-made Windows program for tests: nothing but the headers that lead to a version resource.
#pragma once

#include <cstdint>
#include <string>

namespace testsupport {

struct ProgramImage {
  std::string mBytes;
  std::size_t mVersionEnd = 0;  ///< where the last byte of the file version stands, plus one
};

/// What to write into the image; the defaults make a sound one.
struct ProgramImageOptions {
  bool mIs64Bit = true;
  std::uint16_t mParts[4] = {24, 21, 14, 1195};
  int mOtherResources = 2;  ///< kinds of resources before the version
  bool mHasVersion = true;
};

[[nodiscard]] ProgramImage MakeProgramImage(const ProgramImageOptions& options = {});

}  // namespace testsupport
