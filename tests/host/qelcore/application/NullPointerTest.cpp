#include <gtest/gtest.h>

#include <string>

#include "platform/qelcore/Config.h"

namespace {

TEST(NullPointer, NamesTheInterface) {
  try {
    qelcore::config::DoThrowNullPtrException("IExample");
  } catch (const qelcore::config::NullPointerException& exception) {
    EXPECT_NE(std::string(exception.what()).find("IExample"), std::string::npos);
  }
}

}  // namespace
