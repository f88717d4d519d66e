#include "qelsystemcompatibilityreport/SeparateMatching.h"

#include <locale>
#include <utility>

#include "qelsystemcompatibilityreport/rules/SeparateState.h"

namespace qelsystemcompatibilityreport {

namespace {

thread_local SeparateState* tState = nullptr;

/// The standard library's tables of characters, which all regular expressions share, may be filled as they
/// are used, and without a lock. So all of them are used once, before threads do.
bool UseAllCharacters() {
  const auto& characters = std::use_facet<std::ctype<char>>(std::locale::classic());
  bool areKnown = true;
  for (int code = 1; code <= 255; ++code) {
    const char character = static_cast<char>(code);
    areKnown &= characters.narrow(characters.widen(character), '\0') == character;
  }
  return areKnown;
}

}  // namespace

std::atomic<int> SeparateState::sCount{0};

SeparateState* SeparateState::OfThisThread() {
  return tState;
}

SeparateState* SeparateState::Replace(SeparateState* state) {
  SeparateState* const before = std::exchange(tState, state);
  sCount.fetch_add((state != nullptr ? 1 : 0) - (before != nullptr ? 1 : 0), std::memory_order_relaxed);
  return before;
}

SeparateMatching::SeparateMatching()
    : mState(std::make_unique<SeparateState>()), mBefore(SeparateState::Replace(mState.get())) {
  static const bool areCharactersUsed = UseAllCharacters();
  static_cast<void>(areCharactersUsed);
}

SeparateMatching::~SeparateMatching() {
  SeparateState::Replace(mBefore);
}

}  // namespace qelsystemcompatibilityreport
