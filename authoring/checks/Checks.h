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

/// Names, and expressions. Asks the library's engine.
void CheckNames(Document& document);

/// The comparisons of property rules.
void CheckProperties(Document& document);

/// The paths of file rules.
void CheckPaths(Document& document);

/// Messages and links.
void CheckTexts(Document& document);

/// Rules beside rules: shared identifiers, and rules that others cover.
void CheckNeighbours(Document& document);

/// Dependencies that can never hold beside what else their rule asks for.
void CheckDependencies(Document& document);

/// Runs the examples of the rules through the library's matching.
void RunExamples(Document& document);

/// Compares the lists of several languages.
void CheckLanguages(const std::vector<std::unique_ptr<Document>>& documents);

/// Runs a check for each readable rule and each readable dependency, with the index of the element of
/// "blocklist" that it belongs to.
void ForEachRule(const Document& document,
                 const std::function<void(std::size_t index, const RuleElement& rule)>& check);

}  // namespace authoring
