// What the library asks of the host's user-interface toolkit. This is the one header to include; each topic
// stands in a header of its own.
//
// A process may be without a toolkit, such as one that runs in the background: then the node manager is
// missing, and nothing is shown. Everything here is the main thread's.
#pragma once

#include "platform/qelui/Controls.h"
#include "platform/qelui/Dialog.h"
#include "platform/qelui/NodeManager.h"
