#include "qelsystemcompatibilityreport/report/startup/Features.h"

#include <string>

#include "platform/qelappsupport.h"

namespace qelsystemcompatibilityreport {

namespace {

namespace feature = qelappsupport::feature;

const feature::BetaFeature gProperties(std::string(kPropertiesFeature), feature::Stage::kBeta,
                                       "$$$/scr/properties/Feature=System Compatibility Report system "
                                       "property support.#{comment}QELAP-2087 Allow "
                                       "the System Compatibility Report to test various system properties.",
                                       "QELAP-2087");

}  // namespace

}  // namespace qelsystemcompatibilityreport
