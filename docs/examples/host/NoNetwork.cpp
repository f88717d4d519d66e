// The HTTP library of a host that asks no server: every request is refused. A whole implementation of
// `platform/qelnet.h`, the shortest there is.
#include "platform/qelnet.h"

namespace qelnet {

Response::~Response() = default;

bool GET(const qelcore::Guid&, Completion, const qelcore::ImmutableString&, const Headers&,
         const Configuration&) {
  return false;
}

}  // namespace qelnet
