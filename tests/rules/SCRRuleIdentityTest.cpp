// What makes two rules equal, and what makes them share an identifier.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Hash.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/Rules.h"

namespace {

using qelcore::Guid;
using qelcore::HashValueMixerState;
using qelcore::MixHashGuidT;
using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::ReadRule;

Guid Finished(const MixHashGuidT<HashValueMixerState>& state) {
  Guid result;
  qelcore::GetHashResult(state, result);
  return result;
}

void Mix(MixHashGuidT<HashValueMixerState>& state, const std::string& text) {
  qelcore::UpdateHashState(state, text.data(), text.size());
}

const char* const kRule = R"({"type":"Video","name":"A device","versions":["1-2","5"],"version_mask":"0.+",
    "version_mod":"10.+","info_message":"A message","info_url":"https://example.com/a","error_level":"WARN",
    "dependencies":[{"type":"OS","name":"Windows"},{"type":"Audio","name":"Speakers"}]})";

const char* const kPropertyRule = R"({"type":"Property","name":"memory.mb","eq":"1","ilt":"2"})";

/// The text with the first occurrence of `from` replaced.
std::string Changed(std::string text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  EXPECT_NE(place, std::string::npos) << from;
  return text.replace(place, from.size(), to);
}

TEST(SCRRuleIdentityTest, EveryFieldCountsForEqualityAndAllButThreeForTheIdentifier) {
  const struct {
    const char* mRule;
    const char* mFrom;
    const char* mTo;
    bool mSharesIdentifier;
  } rows[] = {
      // The base component.
      {kRule, R"("type":"Video")", R"("type":"Network")", false},
      {kRule, "A device", "A Device", false},
      {kRule, R"("name":"A device")", R"("version":"1","name":"A device")", false},
      {kPropertyRule, R"("eq")", R"("value":"7","eq")", false},
      // Ranges, their number and their order.
      {kRule, R"("1-2","5")", R"("1-3","5")", false},
      {kRule, R"("1-2","5")", R"("0-2","5")", false},
      {kRule, R"("1-2","5")", R"("1-2")", false},
      {kRule, R"("1-2","5")", R"("1-2","5","5")", false},
      {kRule, R"("1-2","5")", R"("5","1-2")", false},
      {kRule, R"("1-2","5")", "", false},
      // Texts.
      {kRule, "A message", "Another message", false},
      {kRule, R"("info_message":"A message",)", "", false},
      {kRule, "example.com/a", "example.com/b", false},
      // Dependencies, their number and their order, down to the leaves.
      {kRule, R"(,{"type":"Audio","name":"Speakers"})", "", false},
      {kRule, R"({"type":"OS","name":"Windows"},{"type":"Audio","name":"Speakers"})",
       R"({"type":"Audio","name":"Speakers"},{"type":"OS","name":"Windows"})", false},
      {kRule, R"("name":"Windows")", R"("name":"Windows","error_level":"WARN")", false},
      {kRule, R"("name":"Windows")", R"("name":"Windows","dependencies":[{"type":"OS","name":"x"}])", false},
      // The level.
      {kRule, R"("WARN")", R"("ERROR")", false},
      {kRule, R"("WARN")", R"("INFO")", false},
      // The mask, the modulus and the comparisons are left out of the identifier. That is intended.
      {kRule, R"("version_mask":"0.+")", R"("version_mask":"0.0.+")", true},
      {kRule, R"("version_mask":"0.+",)", "", true},
      {kRule, R"("version_mod":"10.+")", R"("version_mod":"11.+")", true},
      {kRule, R"("version_mod":"10.+",)", "", true},
      {kRule, R"("name":"Windows")", R"("name":"Windows","version_mask":"1")", true},
      {kPropertyRule, R"("eq":"1")", R"("eq":"2")", true},
      {kPropertyRule, R"("eq":"1")", R"("ne":"1")", true},
      {kPropertyRule, R"("eq":"1",)", "", true},
      {kPropertyRule, R"("ilt":"2")", R"("ilt":"3")", true},
      {kPropertyRule, R"("ilt":"2")", R"("ilte":"2")", true},
      {kPropertyRule, R"("ilt":"2")", R"("ilt":"2","igt":"0")", true},
  };
  for (const auto& row : rows) {
    const SCRRule rule = ReadRule(row.mRule);
    const SCRRule changed = ReadRule(Changed(row.mRule, row.mFrom, row.mTo));
    EXPECT_FALSE(rule == changed) << row.mFrom << " -> " << row.mTo;
    EXPECT_FALSE(changed == rule) << row.mFrom << " -> " << row.mTo;
    EXPECT_TRUE(rule != changed) << row.mFrom << " -> " << row.mTo;
    EXPECT_EQ(rule.GetID() == changed.GetID(), row.mSharesIdentifier) << row.mFrom << " -> " << row.mTo;
    EXPECT_EQ(Finished(rule.Hash()) == Finished(changed.Hash()), row.mSharesIdentifier)
        << row.mFrom << " -> " << row.mTo;
  }
}

TEST(SCRRuleIdentityTest, RulesReadFromTheSameTextAreEqual) {
  for (const char* const text : {kRule, kPropertyRule}) {
    const SCRRule left = ReadRule(text);
    const SCRRule right = ReadRule(text);
    EXPECT_TRUE(left == right) << text;
    EXPECT_FALSE(left != right) << text;
    EXPECT_EQ(left.GetID(), right.GetID()) << text;
  }
  EXPECT_TRUE(SCRRule() == SCRRule());
}

TEST(SCRRuleIdentityTest, WhatWasNotReadDoesNotCount) {
  const SCRRule plain = ReadRule(R"({"type":"Video","name":"A device"})");
  for (const char* const text :
       {R"({"name":"A device","type":"Video"})", R"({"type":"Video","name":"A device","comment":"why"})",
        R"({"type":"Video","name":"A device","osblc_version":1,"osc_version":1})",
        R"({"type":"Video","name":"A device","osblc_version":7,"error_level":"INFO","versions":[]})",
        R"({"type":"Video","name":"A device","eq":"1","dependencies":[],"version_mask":"","info_url":""})"}) {
    EXPECT_EQ(ReadRule(text), plain) << text;
    EXPECT_EQ(ReadRule(text).GetID(), plain.GetID()) << text;
  }
}

TEST(SCRRuleIdentityTest, TheIdentifierIsThePrefixAndTheTextOfTheHash) {
  for (const char* const text : {kRule, kPropertyRule, R"({"type":"OS","name":""})"}) {
    const SCRRule rule = ReadRule(text);
    EXPECT_EQ(rule.GetID(), "HASH:" + Finished(rule.Hash()).AsUTF8String()) << text;
    ASSERT_EQ(rule.GetID().size(), 41u) << text;
    for (std::size_t place = 0; place < 36; ++place) {
      const char character = rule.GetID()[5 + place];
      const bool isHyphenPlace = place == 8 || place == 13 || place == 18 || place == 23;
      EXPECT_EQ(character == '-', isHyphenPlace) << rule.GetID();
      EXPECT_TRUE(isHyphenPlace || std::string("0123456789abcdef").find(character) != std::string::npos)
          << rule.GetID();
    }
  }
  EXPECT_EQ(SCRRule().GetID().substr(0, 5), "HASH:");
}

TEST(SCRRuleIdentityTest, NoKeyGivesARuleAnIdentifierOfItsOwn) {
  const SCRRule rule = ReadRule(R"({"type":"OS","name":"Windows"})");
  for (const char* const key : {"id", "ID", "identifier", "guid", "osc_id", "uuid"}) {
    const std::string text =
        std::string(R"({"type":"OS","name":"Windows",")") + key + R"(":"mine","osc_version":1})";
    EXPECT_EQ(ReadRule(text).GetID(), rule.GetID()) << key;
  }
}

TEST(SCRRuleIdentityTest, TheHashIsMixedInTheFixedOrderWithoutSeparators) {
  const SCRRule rule = ReadRule(kRule);
  MixHashGuidT<HashValueMixerState> expected =
      OSComponent(OSComponentType::kVideo, "A device", OSComponentVersion()).Hash();
  Mix(expected, "1.0.0.0-2.0.0.0");
  Mix(expected, "5.0.0.0");
  Mix(expected, "A message");
  Mix(expected, "https://example.com/a");
  for (const SCRRule& dependency : rule.GetDependencies()) {
    const Guid hash = Finished(dependency.Hash());
    qelcore::UpdateHashState(expected, hash.Bytes().data(), 16);
  }
  const std::uint8_t level[] = {1, 0, 0, 0};
  qelcore::UpdateHashState(expected, level, sizeof level);
  EXPECT_EQ(Finished(rule.Hash()), Finished(expected));

  // So what stands at the end of one text may as well stand at the beginning of the next.
  EXPECT_EQ(ReadRule(R"({"type":"OS","name":"x","info_message":"ab","info_url":"c"})").GetID(),
            ReadRule(R"({"type":"OS","name":"x","info_message":"a","info_url":"bc"})").GetID());
}

TEST(SCRRuleIdentityTest, TheBaseVersionIsPartOfTheHash) {
  // A rule with "version" keeps it beside its range; one with "versions" has the range alone.
  const SCRRule withVersion = ReadRule(R"({"type":"OS","name":"Windows","version":"5"})");
  MixHashGuidT<HashValueMixerState> expected =
      OSComponent(OSComponentType::kOS, "Windows", OSComponentVersion("5")).Hash();
  Mix(expected, "5.0.0.0");
  const std::uint8_t level[] = {0, 0, 0, 0};
  qelcore::UpdateHashState(expected, level, sizeof level);
  EXPECT_EQ(Finished(withVersion.Hash()), Finished(expected));
}

TEST(SCRRuleIdentityTest, CopiesShareTheIdentifier) {
  const SCRRule rule = ReadRule(kRule);
  const SCRRule copy(rule);
  EXPECT_EQ(copy.GetID(), rule.GetID());
  const OSComponent& asComponent = rule;
  EXPECT_EQ(asComponent.GetID(), rule.GetID());
}

}  // namespace
