// Two blocklists and their differences, for the tests of diff.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "authoring/diff/ListDiff.h"
#include "authoring/diff/MachineDiff.h"
#include "platform/qelcore/Json.h"
#include "tests/authoring/Lists.h"

namespace testsupport {

/// A list's text, read in both ways.
struct ReadList {
  explicit ReadList(const std::string& text)
      : mBlocklist(text), mList(qelcore::json::Parse(text), mBlocklist) {}

  qelsystemcompatibilityreport::SCRBlocklist mBlocklist;
  authoring::ComparedList mList;
};

struct DiffedLists {
  /// The documents' texts.
  DiffedLists(const std::string& oldText, const std::string& newText)
      : mOld(oldText), mNew(newText), mDiff(mOld.mList, mNew.mList) {}

  ReadList mOld;
  ReadList mNew;
  authoring::ListDiff mDiff;
};

/// Lists of these rules, which have the same default texts.
inline DiffedLists DiffRules(const std::string& oldRules, const std::string& newRules) {
  return {ListOfRules(oldRules), ListOfRules(newRules)};
}

}  // namespace testsupport
