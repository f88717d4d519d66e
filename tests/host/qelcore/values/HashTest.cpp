#include "platform/qelcore/Hash.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qelcore::GetHashResult;
using qelcore::Guid;
using qelcore::HashValueMixerState;
using qelcore::MixHashGuidT;
using qelcore::UpdateHashState;

using State = MixHashGuidT<HashValueMixerState>;

std::string ResultOf(const State& state) {
  Guid result;
  GetHashResult(state, result);
  return result.AsUTF8String();
}

std::string HashOf(const std::string& text) {
  State state;
  UpdateHashState(state, text.data(), text.size());
  return ResultOf(state);
}

/// A text of any length without a pattern that repeats.
std::string MakeText(std::size_t length) {
  std::string text;
  std::uint32_t number = 12345;
  while (text.size() < length) {
    number = number * 1664525U + 1013904223U;
    text += static_cast<char>(number >> 24);
  }
  return text;
}

TEST(Hash, KnownResults) {
  // The published results of the 128-bit hash, most significant byte first.
  EXPECT_EQ(HashOf(""), "99aa06d3-0147-98d8-6001-c324468d497f");
  EXPECT_EQ(HashOf("abc"), "06b05ab6-733a-6185-78af-5f94892f3950");
}

TEST(Hash, DoesNotDependOnHowTheBytesWereSplit) {
  for (const std::size_t length :
       {1U, 16U, 17U, 128U, 240U, 241U, 255U, 256U, 257U, 575U, 576U, 577U, 1024U, 5000U}) {
    const std::string text = MakeText(length);
    const std::string whole = HashOf(text);
    for (const std::size_t step : {1U, 7U, 63U, 64U, 255U, 256U, 257U}) {
      State state;
      for (std::size_t begin = 0; begin < length; begin += step) {
        UpdateHashState(state, text.data() + begin, std::min<std::size_t>(step, length - begin));
      }
      EXPECT_EQ(ResultOf(state), whole) << length << " in steps of " << step;
    }
  }
}

TEST(Hash, MixingNothingChangesNothing) {
  State state;
  UpdateHashState(state, nullptr, 0);
  EXPECT_EQ(ResultOf(state), HashOf(""));
}

TEST(Hash, AResultDoesNotEndTheMixing) {
  State state;
  UpdateHashState(state, "ab", 2);
  EXPECT_EQ(ResultOf(state), HashOf("ab"));
  UpdateHashState(state, "c", 1);
  EXPECT_EQ(ResultOf(state), HashOf("abc"));
}

TEST(Hash, CopiesAreIndependent) {
  // Copied both before and after so much was mixed in that it is no longer kept as it is.
  for (const std::size_t length : {300U, 570U, 1000U}) {
    const std::string beginning = MakeText(length);
    const std::string more = MakeText(20);
    State original;
    UpdateHashState(original, beginning.data(), beginning.size());
    State copy = original;
    UpdateHashState(copy, more.data(), more.size());
    UpdateHashState(original, "y", 1);
    EXPECT_EQ(ResultOf(copy), HashOf(beginning + more)) << length;
    EXPECT_EQ(ResultOf(original), HashOf(beginning + "y")) << length;
    original = copy;
    EXPECT_EQ(ResultOf(original), HashOf(beginning + more)) << length;
  }
}

TEST(Hash, EveryByteCounts) {
  const std::string text = MakeText(300);
  const std::string hash = HashOf(text);
  for (std::size_t index = 0; index < text.size(); ++index) {
    std::string changed = text;
    changed[index] = static_cast<char>(changed[index] ^ 1);
    EXPECT_NE(HashOf(changed), hash) << index;
  }
}

}  // namespace
