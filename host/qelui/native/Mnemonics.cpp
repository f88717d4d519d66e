#include "host/qelui/native/Mnemonics.h"

#include <wx/crt.h>

#include <map>
#include <set>

namespace qelui::native {

namespace {

using Letters = std::set<wxChar>;

/// Only letters that every keyboard has.
bool IsLetter(wxUniChar character) {
  return character.IsAscii() && wxIsalpha(character) != 0;
}

wxChar Lower(wxUniChar character) {
  return static_cast<wxChar>(wxTolower(character));
}

std::optional<std::size_t> Find(const wxString& caption, const Letters& taken, bool firstOfWordOnly) {
  for (std::size_t index = 0; index < caption.length(); ++index) {
    const wxUniChar character = caption[index];
    const bool isFirstOfWord = index == 0 || caption[index - 1] == ' ';
    if (firstOfWordOnly && !isFirstOfWord) continue;
    if (IsLetter(character) && taken.count(Lower(character)) == 0) return index;
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::optional<std::size_t>> ChooseMnemonics(const std::vector<wxString>& captions) {
  std::vector<std::optional<std::size_t>> mnemonics(captions.size());
  std::map<wxString, int> counts;
  for (const wxString& caption : captions) ++counts[caption];
  Letters taken;
  for (const bool firstOfWordOnly : {true, false}) {
    for (std::size_t index = 0; index < captions.size(); ++index) {
      const wxString& caption = captions[index];
      if (mnemonics[index] || counts[caption] > 1) continue;
      mnemonics[index] = Find(caption, taken, firstOfWordOnly);
      if (mnemonics[index]) taken.insert(Lower(caption[*mnemonics[index]]));
    }
  }
  return mnemonics;
}

}  // namespace qelui::native
