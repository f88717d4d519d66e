#include "host/qelui/native/Mnemonics.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace qelui::native {

namespace {

struct Row {
  std::vector<std::string> mCaptions;
  std::string mLetters;  ///< one for each caption, "-" for none
};

std::ostream& operator<<(std::ostream& stream, const Row& row) {
  for (const std::string& caption : row.mCaptions) stream << '"' << caption << "\" ";
  return stream << "-> " << row.mLetters;
}

class MnemonicsTest : public testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Rows, MnemonicsTest,
                         testing::Values(Row{{}, ""}, Row{{"OK"}, "O"},
                                         Row{{"Export Report...", "Continue", "OK"}, "ECO"},
                                         // The first letters of words come first, for all captions.
                                         Row{{"Save", "Save As"}, "SA"}, Row{{"Stop", "Start"}, "St"},
                                         // The same caption twice has none, so that no letter is ambiguous.
                                         Row{{"Fix...", "Fix...", "Close"}, "--C"},
                                         // Upper and lower case are one key.
                                         Row{{"close", "Cancel"}, "ca"},
                                         // Only letters that every keyboard has.
                                         Row{{"1 & 2", "..."}, "--"},
                                         Row{{"\xC3\x9C"
                                              "bernehmen"},
                                             "b"},
                                         Row{{"\xE4\xBF\x9D"}, "-"}, Row{{"a", "a b", "b"}, "ab-"}));

TEST_P(MnemonicsTest, ChoosesLetters) {
  std::vector<wxString> captions;
  for (const std::string& caption : GetParam().mCaptions) captions.push_back(wxString::FromUTF8(caption));
  std::string letters;
  const auto mnemonics = ChooseMnemonics(captions);
  ASSERT_EQ(mnemonics.size(), captions.size());
  for (std::size_t index = 0; index < captions.size(); ++index)
    letters += mnemonics[index] ? static_cast<char>(captions[index][*mnemonics[index]].GetValue()) : '-';
  EXPECT_EQ(letters, GetParam().mLetters);
}

}  // namespace

}  // namespace qelui::native
