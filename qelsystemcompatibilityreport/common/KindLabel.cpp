#include "qelsystemcompatibilityreport/common/KindLabel.h"

#include "platform/qelcore/Localisation.h"

namespace qelsystemcompatibilityreport {

std::u16string KindLabel(qelcore::utility::OSComponentType kind) {
  using qelcore::utility::OSComponentType;
  switch (kind) {
    case OSComponentType::kOS:
      return qelcore::Localise("$$$/qel/scr/kMatchOSText=Operating System");
    case OSComponentType::kVideo:
      return qelcore::Localise("$$$/qel/scr/kMatchVideoText=Video");
    case OSComponentType::kAudio:
      return qelcore::Localise("$$$/qel/scr/kMatchAudioText=Audio");
    case OSComponentType::kNetwork:
      return qelcore::Localise("$$$/qel/scr/kMatchNetworkText=Network");
    case OSComponentType::kFile:
      return qelcore::Localise("$$$/qel/scr/kMatchFileText=File System");
    case OSComponentType::kProperty:
      return qelcore::Localise("$$$/qel/scr/kMatchPropertyText=Property");
    case OSComponentType::kInvalid:
      break;
  }
  return qelcore::Localise("$$$/qel/scr/kMatchUnknownText=Unknown");
}

}  // namespace qelsystemcompatibilityreport
