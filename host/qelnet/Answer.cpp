#include "host/qelnet/Answer.h"

namespace qelnet {

Response::~Response() = default;

}  // namespace qelnet
