// The remembered state: the input is the file. Loading, saving over it, loading again.
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"
#include "tests/fuzz/support/JsonMutator.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"

namespace {

namespace json = qelcore::json;
using fuzz::Require;
using qelsystemcompatibilityreport::SCRPriorState;

const std::any* Member(const json::Dictionary& object, const char* key) {
  const auto found = object.find(key);
  return found == object.end() ? nullptr : found->second.get();
}

/// An integer's lower 64 bits; nothing for every other type.
std::optional<std::uint64_t> IntegerIn(const std::any& value) {
  if (const auto* const number = std::any_cast<std::int64_t>(&value))
    return static_cast<std::uint64_t>(*number);
  if (const auto* const number = std::any_cast<std::uint64_t>(&value)) return *number;
  return std::nullopt;
}

/// What the switch says; nothing for what it cannot say.
std::optional<bool> SwitchIn(const std::any& value) {
  if (const auto* const boolean = std::any_cast<bool>(&value)) return *boolean;
  if (const auto* const text = std::any_cast<std::string>(&value)) {
    if (*text != "true" && *text != "false") return std::nullopt;
    return *text == "true";
  }
  const auto number = IntegerIn(value);
  return number ? std::optional(*number != 0) : std::nullopt;
}

bool ReadTexts(const std::any& value, std::vector<std::string>& texts) {
  const auto* const array = std::any_cast<json::Array>(&value);
  if (array == nullptr) return false;
  for (const std::any& element : *array) {
    const auto* const text = std::any_cast<std::string>(&element);
    if (text == nullptr) return false;
    texts.push_back(*text);
  }
  return true;
}

/// The state that the document holds; nothing for one that must be refused.
std::optional<SCRPriorState> Understand(const std::any& root) {
  const auto* const object = std::any_cast<json::Dictionary>(&root);
  if (object == nullptr) return std::nullopt;
  SCRPriorState state;
  if (const std::any* const job = Member(*object, "last_match_job")) {
    const auto* const text = std::any_cast<std::string>(job);
    if (text == nullptr) return std::nullopt;
    state.mLastMatchJob = qelcore::Guid::FromUTF8String(text->substr(0, 36));
  }
  const std::array lists{
      std::pair{"info_matches", &state.mInfoMatches}, std::pair{"warn_matches", &state.mWarnMatches},
      std::pair{"error_matches", &state.mErrorMatches}, std::pair{"fatal_matches", &state.mFatalMatches}};
  for (const auto& [key, texts] : lists) {
    const std::any* const list = Member(*object, key);
    if (list != nullptr && !ReadTexts(*list, *texts)) return std::nullopt;
  }
  if (const std::any* const shows = Member(*object, "show_issues_at_startup")) {
    const auto value = SwitchIn(*shows);
    if (!value) return std::nullopt;
    state.mShowIssuesAtStartup = *value;
  }
  if (const std::any* const reason = Member(*object, "dialog_disable_reason")) {
    const auto number = IntegerIn(*reason);
    if (!number) return std::nullopt;
    state.mDialogDisableReason = static_cast<std::uint32_t>(*number);
  }
  return state;
}

}  // namespace

std::span<const std::string_view> fuzz::JsonVocabulary() {
  static constexpr std::string_view kWords[] = {"last_match_job",
                                                "info_matches",
                                                "warn_matches",
                                                "error_matches",
                                                "fatal_matches",
                                                "show_issues_at_startup",
                                                "dialog_disable_reason",
                                                "true",
                                                "false",
                                                "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0",
                                                "00000000-0000-0000-0000-000000000000",
                                                "HASH:0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0",
                                                ""};
  return kWords;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QuietHost& host = fuzz::QuietHost::Instance();
  static_cast<void>(host.TakeExceptions());
  const std::filesystem::path file = host.Preferences() / "SCRPriorState.json";
  const std::string text(data, data + size);
  fuzz::WriteFile(file, text);

  SCRPriorState state;
  state.mShowIssuesAtStartup = false;
  state.mFatalMatches = {"from before"};
  const bool isLoaded = LoadPriorStateFromPrefsDir(state);
  const std::optional<SCRPriorState> expected = Understand(json::Parse(text));
  Require(isLoaded == expected.has_value(), "a state is loaded when it is whole");
  Require(state == expected.value_or(SCRPriorState()), "what is loaded is the file's, or the defaults");
  Require(fuzz::ReadFile(file) == text, "loading leaves the file alone");
  const std::vector<std::string> exceptions = host.TakeExceptions();
  Require(exceptions.size() <= 1 && (exceptions.empty() || !isLoaded), "a refusal is logged at most once");

  Require(SavePriorStateToPrefsDir(state), "a state can be saved over any file");
  SCRPriorState again;
  Require(LoadPriorStateFromPrefsDir(again) && again == state, "a saved state loads back");
  Require(host.TakeExceptions().empty(), "nothing goes wrong on the way");
  return 0;
}
