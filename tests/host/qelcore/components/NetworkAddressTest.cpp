#include "host/qelcore/components/NetworkAddress.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qelcore::host::AddressLengthAt;

/// The text with every address replaced by "#".
std::string Marked(const std::string& text) {
  std::string result;
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t length = AddressLengthAt(text, place);
    result += length != 0 ? '#' : text[place];
    place += length != 0 ? length : 1;
  }
  return result;
}

struct Row {
  const char* mText;
  const char* mMarked;
};

TEST(NetworkAddress, FindsAddresses) {
  const Row rows[] = {
      {"00:1A:2b:3C:4d:5E", "#"},
      {"00-1A-2B-3C-4D-5E", "#"},
      {"Adapter 00:1A:2B:3C:4D:5E.", "Adapter #."},
      {"(00:1A:2B:3C:4D:5E)", "(#)"},
      {"00:1A:2B:3C:4D:5E: up", "#: up"},
      {"00:1a:2b:3c:4d:5e:6f:70", "#"},
      {"192.168.0.1", "#"},
      {"0.0.0.0 255.255.255.255", "# #"},
      {"at 10.0.0.1, port", "at #, port"},
      {"10.0.0.1:8080", "#:8080"},
      {"10.0.0.1/24", "#/24"},
      {"10.0.0.1.", "#."},
      {"fe80::1", "#"},
      {"::1", "#"},
      {"2001:db8:0:0:0:0:2:1", "#"},
      {"2001:db8::", "#"},
      {"[2001:db8::2:1]:443", "[#]:443"},
      {"::ffff:192.168.0.1", "#"},
      {"::ffff:1.2.3.4 x", "# x"},
      {"fe80::1%eth0 up", "# up"},
      {"anna.bell@example.org", "#"},
      {"a+b@mail.example.co.uk,", "#,"},
      {"<anna@example.org>", "<#>"},
      {"mail anna@example.org.", "mail #."},
      {"\xC3\xA9lodie@example.org", "#"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Marked(row.mText), row.mMarked) << row.mText;
  }
}

TEST(NetworkAddress, LeavesEverythingElse) {
  const char* const rows[] = {
      "",
      "00:1A:2B:3C:4D",
      "00:1A:2B:3C:4D:5",
      "00:1A-2B:3C-4D:5E",
      "00:1A:2B:3C:4D:5G",
      "x00:1A:2B:3C:4D:5E",
      "00:1A:2B:3C:4D:5Ex",
      "001A2B3C4D5E",
      "0000:01:00.0",
      "12:34:56",
      "1.2.3",
      "1.2.3.4.5",
      "v1.2.3.4",
      "1.2.3.4a",
      "1.2.3.4_5",
      "5.10.0.1-generic",
      "lib-1.2.3.4",
      "256.1.1.1",
      "1.2.3.1000",
      "1..2.3",
      "24.21.14.1195",
      "10.0.17763.1",
      "std::string",
      "Foo :: Bar",
      "::",
      "a:b",
      "10de:2484",
      "1:2:3:4:5:6:7",
      "1:2:3:4:5:6:7:8:9",
      "1::2::3",
      "12345::1",
      "fe80:::1",
      "i7 @ 3.40GHz",
      "i7@3.40GHz",
      "i7@3",
      "@example.org",
      "anna@",
      "anna@localhost",
      "anna@1.2.3.4.5",
      "a@b",
  };
  for (const char* const row : rows) {
    EXPECT_EQ(Marked(row), row);
  }
}

TEST(NetworkAddress, LongTextsTakeLinearTime) {
  // Each of these would take hours if every place looked ahead to the end.
  for (const char* const part :
       {"a", "1", ":", "a:", "::", "1.", "1.2.3.4.", "00:", "00-", "a@", "a.", "-", "@", "a@b."}) {
    std::string text;
    while (text.size() < 300000) {
      text += part;
    }
    EXPECT_LE(Marked(text).size(), text.size()) << part;
  }
}

}  // namespace
