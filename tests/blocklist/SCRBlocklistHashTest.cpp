// What a blocklist's hash is made of.
#include <gtest/gtest.h>

#include <string>

#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Hash.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

namespace {

using qelcore::Guid;
using qelcore::HashValueMixerState;
using qelcore::MixHashGuidT;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRRule;

Guid Hash(const SCRBlocklist& blocklist) {
  Guid result;
  qelcore::GetHashResult(blocklist.Hash(), result);
  return result;
}

/// Defaults for all six kinds: "OS message", "OS link" and so on.
std::string AllDefaults() {
  std::string json = R"("default_info":{)";
  for (const std::string kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
    json += (kind == "OS" ? "\"" : ",\"") + kind + R"(":{"info_message":")" + kind +
            R"( message","info_url":")" + kind + R"( link"})";
  }
  return json + "}";
}

const char* const kTwoRules = R"("blocklist":[{"type":"OS","name":"Windows","info_message":"one"},
                                              {"type":"OS","name":"Windows","info_message":"two"}])";

TEST(SCRBlocklistHashTest, WhatTheHashDependsOn) {
  const std::string base = std::string("{\"blocklist_version\":1,") + kTwoRules + "," + AllDefaults() +
                           R"(,"second_warning":"Save your work."})";
  const Guid hash = Hash(SCRBlocklist(base));
  const struct {
    const char* mFrom;
    const char* mTo;
    bool mIsSame;
  } rows[] = {
      {R"("blocklist_version":1)", R"("blocklist_version":2)", true},
      {R"("blocklist_version":1)", R"("comment":"why","blocklist_version":1)", true},
      {R"({"type":"OS","name":"Windows","info_message":"one"})",
       R"({"info_message":"one","comment":"why","type":"OS","name":"Windows","version_mask":"1"})", true},
      {"OS message", "OS massage", false},
      {"Property link", "Property lint", false},
      {"File message", "", false},
      {"\"one\"", "\"three\"", false},
      {R"({"type":"OS","name":"Windows","info_message":"one"},)", "", false},
      {"Save your work.", "Save your work!", false},
      {"Save your work.", "", false},
  };
  for (const auto& row : rows) {
    std::string changed = base;
    const std::size_t place = changed.find(row.mFrom);
    ASSERT_NE(place, std::string::npos) << row.mFrom;
    changed.replace(place, std::string(row.mFrom).size(), row.mTo);
    EXPECT_EQ(Hash(SCRBlocklist(changed)) == hash, row.mIsSame) << row.mFrom << " -> " << row.mTo;
  }

  const std::string one = R"({"type":"OS","name":"Windows"})";
  const std::string two = R"({"type":"OS","name":"Linux"})";
  const std::string start = R"({"blocklist_version":1,"blocklist":[)";
  EXPECT_NE(Hash(SCRBlocklist(start + one + "," + two + "]}")),
            Hash(SCRBlocklist(start + two + "," + one + "]}")));
}

TEST(SCRBlocklistHashTest, TheHashIsMixedInTheFixedOrder) {
  const std::string rules[] = {R"({"type":"OS","name":"Windows","error_level":"FATAL"})",
                               R"({"type":"Video","name":"x"})"};
  const SCRBlocklist blocklist(R"({"blocklist_version":1,"second_warning":"warning",)" + AllDefaults() +
                               R"(,"blocklist":[)" + rules[0] + "," + rules[1] + "]}");
  MixHashGuidT<HashValueMixerState> expected;
  const auto mix = [&](const std::string& text) {
    qelcore::UpdateHashState(expected, text.data(), text.size());
  };
  for (const char* const kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
    mix(std::string(kind) + " message");
    mix(std::string(kind) + " link");
  }
  for (const std::string& rule : rules) {
    Guid hash;
    qelcore::GetHashResult(SCRRule(rule).Hash(), hash);
    qelcore::UpdateHashState(expected, hash.Bytes().data(), 16);
  }
  mix("warning");
  Guid result;
  qelcore::GetHashResult(expected, result);
  EXPECT_EQ(Hash(blocklist), result);
}

}  // namespace
