#include "host/qelcore/components/Properties.h"

#include <utility>

#include "host/qelcore/components/PlainText.h"

namespace qelcore::host::components {

void AddProperty(Properties& properties, std::string_view name, std::string_view value) {
  std::string text = CleanText(value);
  if (!text.empty()) properties.insert_or_assign(std::string(name), std::move(text));
}

}  // namespace qelcore::host::components
