#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "host/qelnet/HostSetup.h"
#include "host/qelnet/Options.h"
#include "host/qelnet/Outcomes.h"
#include "host/qelnet/RequestHeaders.h"
#include "host/qelnet/Requests.h"
#include "host/qelnet/Tracing.h"
#include "host/qelnet/Url.h"
#include "host/qelnet/Worker.h"
#include "platform/qelcore/Config.h"

namespace qelnet {

namespace {

/// Without a lock, because registering takes one that the host holds while it calls initializers, and those
/// may call `GET`.
void RegisterTermination() {
  static std::atomic<bool> isRegistered{false};
  if (!isRegistered.exchange(true)) {
    qelcore::config::AddTerminationForSingleton(host::Shutdown, "qelnet::host::Shutdown");
  }
}

bool Refuse(const qelcore::Guid& identifier, const std::string& url, const char* reason) {
  TraceRequest(kWarningLevel, identifier, [&] { return std::string("Refused: ") + reason; });
  TellOutcome([&] { return host::Outcome{.mUrl = url, .mFailure = reason}; });
  return false;
}

bool Begin(Request request) {
  const qelcore::Guid identifier = request.mIdentifier;
  PrepareCurl();
  RegisterTermination();
  TraceRequest(kDetailLevel, identifier, [&] { return '"' + request.mUrl.mForLog + '"'; });
  const std::string url = request.mUrl.mForLog;
  auto transfer = std::make_unique<Transfer>(std::move(request));
  return Worker::Instance().Start(transfer) ||
         Refuse(identifier, url, "The library cannot serve it any more.");
}

class WorkersRequests final : public Requests {
 public:
  bool Start(const qelcore::Guid& identifier, Completion completion, const std::string& url,
             const Headers& headers) override {
    std::optional<Url> parsed = ParseUrl(url);
    if (!parsed) return Refuse(identifier, {}, "Its address is malformed or of another scheme.");
    if (!CanBeSent(headers))
      return Refuse(identifier, parsed->mForLog, "It has a header that HTTP does not allow.");
    return Begin({.mIdentifier = identifier,
                  .mCompletion = std::move(completion),
                  .mUrl = *std::move(parsed),
                  .mHeaders = headers,
                  .mOptions = CurrentOptions()});
  }

  void Shutdown() override { Worker::Instance().Shutdown(); }
};

}  // namespace

Requests& CurlRequests() {
  static Requests& requests = *new WorkersRequests;
  return requests;
}

}  // namespace qelnet
