// Why a rule that was changed has the identifier that it had.
#pragma once

#include "authoring/diff/ComparedList.h"

namespace authoring {

/// All that was changed in a rule whose identifier is the same. One of them holds at least.
struct KeptIdentifier {
  bool mHasUnknownChange = false;      ///< something that no identifier knows: mask, modulus, operands
  bool mHasDefaultTextChange = false;  ///< the default text was written out in the rule, or left out of it
  bool mHasRunTogether = false;        ///< ranges or texts that give the same without what separates them
};

/// Compares what the two rules, with the default texts of their lists, say.
[[nodiscard]] KeptIdentifier CompareKept(const ComparedRule& oldRule, const ListFields& oldTexts,
                                         const ComparedRule& newRule, const ListFields& newTexts);

}  // namespace authoring
