// Lengths that follow the system's font, so that large text has large room around it.
#pragma once

class wxWindow;

namespace qelui::native {

/// A title is that much larger than plain text.
inline constexpr double kTitleScale = 1.25;

/// What stands between controls that belong together, in pixels. Other gaps are multiples of it.
[[nodiscard]] int UsualBorder(const wxWindow& window);

/// The width in which long texts are easy to read, for windows that can choose.
[[nodiscard]] int ReadingWidth(const wxWindow& window);

}  // namespace qelui::native
