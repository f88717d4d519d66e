#include "platform/qelcore/Guid.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using qelcore::Guid;

TEST(Guid, DefaultIsNull) {
  EXPECT_EQ(Guid().AsUTF8String(), "00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(Guid(), Guid::FromUTF8String("00000000-0000-0000-0000-000000000000"));
}

TEST(Guid, BytesStandInTextOrder) {
  const Guid guid(
      {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE});
  EXPECT_EQ(guid.AsUTF8String(), "01234567-89ab-cdef-1032-547698badcfe");
  EXPECT_EQ(Guid::FromUTF8String("01234567-89AB-cdef-1032-547698BADCFE"), guid);
  EXPECT_EQ(Guid::FromUTF8String("01234567-89ab-cdef-1032-547698badcfe").Bytes(), guid.Bytes());
}

TEST(Guid, EveryOtherTextGivesTheNullIdentifier) {
  const std::string rows[] = {
      "",
      "1",
      "01234567-89ab-cdef-1032-547698badcf",    // one short
      "01234567-89ab-cdef-1032-547698badcfe0",  // one long
      "01234567-89ab-cdef-1032-547698badcfe ",
      " 1234567-89ab-cdef-1032-547698badcfe",
      "{1234567-89ab-cdef-1032-547698badcf}",
      "0123456789abcdef1032547698badcfe",
      "0123456789abcdef1032547698badcfe0000",
      "01234567089ab-cdef-1032-547698badcfe",
      "01234567-89ab-cdef-1032-547698badcfg",
      "01234567-89ab-cdef-1032-547698badc\xC3\xA9",
      "-1234567-89ab-cdef-1032-547698badcfe",
      "0x234567-89ab-cdef-1032-547698badcfe",
      std::string("01234567-89ab-cdef-1032-547698badcf\0", 36),
  };
  for (const std::string& row : rows) {
    EXPECT_EQ(Guid::FromUTF8String(row), Guid()) << row;
  }
}

TEST(Guid, EveryDigitCounts) {
  const std::string text = "01234567-89ab-cdef-1032-547698badcfe";
  const Guid guid = Guid::FromUTF8String(text);
  for (std::size_t index = 0; index < text.size(); ++index) {
    std::string changed = text;
    changed[index] = text[index] == '0' ? '1' : '0';
    EXPECT_NE(Guid::FromUTF8String(changed), guid) << changed;
    // A digit in a hyphen's place makes it no identifier at all.
    EXPECT_EQ(Guid::FromUTF8String(changed) == Guid(), text[index] == '-') << changed;
  }
}

TEST(Guid, UniqueOnesDifferAndReadBack) {
  std::set<std::string> seen;
  for (int count = 0; count < 2000; ++count) {
    const Guid guid = Guid::CreateUnique();
    const std::string text = guid.AsUTF8String();
    EXPECT_NE(guid, Guid());
    EXPECT_EQ(text.size(), 36U);
    EXPECT_EQ(text[14], '4') << text;
    EXPECT_NE(std::string("89ab").find(text[19]), std::string::npos) << text;
    EXPECT_EQ(Guid::FromUTF8String(text), guid) << text;
    EXPECT_TRUE(seen.insert(text).second) << text;
  }
}

}  // namespace
