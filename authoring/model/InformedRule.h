// Rules as issues carry them.
#pragma once

#include <any>
#include <array>
#include <string>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

/// The default texts of a kind.
struct DefaultTexts {
  std::string mMessage;
  std::string mURL;
};

/// Those of all kinds, by the kinds' numbers.
using DefaultTextsOfKinds = std::array<DefaultTexts, qelcore::utility::kOSComponentTypeCount>;

/// Reads "default_info" of a readable document.
[[nodiscard]] DefaultTextsOfKinds ReadDefaultTexts(const qelcore::json::Dictionary& document);

/// The rule of a readable element of "blocklist" with the default texts of its kind: those of the message,
/// and with it of the link, only where it has no message of its own.
[[nodiscard]] qelsystemcompatibilityreport::SCRRule InformedRule(const std::any& element,
                                                                 const DefaultTexts& defaults);

}  // namespace authoring
