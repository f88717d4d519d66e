#include "platform/qelui/Controls.h"

namespace qelui {

Control::~Control() = default;
StaticText::~StaticText() = default;
Icon::~Icon() = default;
Button::~Button() = default;
ProgressIndicator::~ProgressIndicator() = default;
Tree::~Tree() = default;
View::~View() = default;
ScrollView::~ScrollView() = default;

}  // namespace qelui
