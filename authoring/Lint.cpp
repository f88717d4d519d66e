#include "authoring/Lint.h"

#include <iterator>
#include <utility>

#include "authoring/checks/Checks.h"

namespace authoring {

Findings Lint(std::vector<InputText> files) {
  Findings all;
  for (InputText& file : files) {
    Document document(std::move(file.mPath), std::move(file.mText));
    CheckDocumentForm(document);
    ReadRules(document);
    CheckVersions(document);
    Findings findings = document.SortedFindings();
    std::move(findings.begin(), findings.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace authoring
