// What the library asks of the host's core library. This is the one header to include; each topic stands in a
// header of its own, in the order in which they are best read.
#pragma once

#include "platform/qelcore/AppState.h"
#include "platform/qelcore/Browser.h"
#include "platform/qelcore/ClassRef.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Config.h"
#include "platform/qelcore/CrashTrail.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/FileUtils.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Hash.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/JsonView.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Messaging.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Threads.h"
#include "platform/qelcore/Timer.h"
#include "platform/qelcore/Trace.h"
#include "platform/qelcore/UsageStatistics.h"
