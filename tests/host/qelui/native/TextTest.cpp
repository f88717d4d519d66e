#include "host/qelui/native/Text.h"

#include <gtest/gtest.h>

namespace qelui::native {

namespace {

TEST(TextTest, KeepsEveryText) {
  for (const std::u16string& text :
       {std::u16string(), std::u16string(u"Plain & <b>text</b> with %s\n\ttab"),
        std::u16string(u"\u4FDD\u5B58"), std::u16string(u"\U0001F600 outside of the first plane"),
        std::u16string(u"\u05D0\u200F\u0301")}) {
    EXPECT_EQ(FromWx(ToWx(text)), text);
  }
}

TEST(TextTest, ReplacesWhatIsNoText) {
  const std::u16string half{u'a', char16_t{0xD800}, u'b'};
  EXPECT_EQ(FromWx(ToWx(half)), u"a\uFFFDb");
  const std::u16string null{u'a', u'\0', u'b'};
  EXPECT_EQ(FromWx(ToWx(null)), u"a\uFFFDb");
}

}  // namespace

}  // namespace qelui::native
