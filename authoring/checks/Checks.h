// The checks of `scr lint`, a file for each. Each adds its findings to the document; those that come later
// rely on what earlier ones have put there.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "authoring/model/Document.h"

namespace authoring {

/// Keys, types and default texts of the document.
void CheckDocumentForm(Document& document);

/// The form of the rules, as the library's reader sees it. Gives the document its rules.
void ReadRules(Document& document);

/// Ranges, mask and modulus.
void CheckVersions(Document& document);

/// Runs a check for each readable rule and each readable dependency, with the index of the element of
/// "blocklist" that it belongs to.
void ForEachRule(const Document& document,
                 const std::function<void(std::size_t index, const RuleElement& rule)>& check);

}  // namespace authoring
