// Lengths that were measured at a few widths.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

namespace qelui::native {

/// A layout asks for heights at some widths again and again: with and without a scroll bar, at the least
/// width and at the present one.
class WidthCache {
 public:
  void Forget() { *this = {}; }

  template <class Measure>
  int Get(int width, const Measure& measure) {
    for (const auto& [knownWidth, length] : mKnown) {
      if (knownWidth == width) return length;
    }
    const int length = measure();
    mKnown[mNext] = {width, length};
    mNext = (mNext + 1) % mKnown.size();
    return length;
  }

 private:
  static constexpr std::pair<int, int> kNothing{-1, 0};

  std::array<std::pair<int, int>, 4> mKnown{kNothing, kNothing, kNothing, kNothing};
  std::size_t mNext = 0;
};

}  // namespace qelui::native
