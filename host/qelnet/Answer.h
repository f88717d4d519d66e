// The answer that a completion receives.
#pragma once

#include <string>
#include <utility>

#include "platform/qelnet.h"

namespace qelnet {

class Answer final : public Response {
 public:
  /// No answer: status 0 and no body.
  Answer() = default;
  Answer(int status, std::string body) : mStatus(status), mBody(std::move(body)) {}

  [[nodiscard]] int GetStatus() const override { return mStatus; }
  [[nodiscard]] std::string GetPayloadAsUTF8String() const override { return mBody; }

 private:
  int mStatus = 0;
  std::string mBody;
};

}  // namespace qelnet
