#include "authoring/Lint.h"

#include <iterator>
#include <memory>
#include <utility>

#include "authoring/checks/Checks.h"

namespace authoring {

Findings Lint(std::vector<InputText> files) {
  std::vector<std::unique_ptr<Document>> documents;
  for (InputText& file : files) {
    Document& document =
        *documents.emplace_back(std::make_unique<Document>(std::move(file.mPath), std::move(file.mText)));
    CheckDocumentForm(document);
    ReadRules(document);
    CheckVersions(document);
    CheckNames(document);
    CheckProperties(document);
    CheckPaths(document);
    CheckTexts(document);
    CheckDependencies(document);
    CheckNeighbours(document);
    RunExamples(document);
  }
  CheckLanguages(documents);
  Findings all;
  for (const auto& document : documents) {
    Findings findings = document->SortedFindings();
    std::move(findings.begin(), findings.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace authoring
