#include "host/qelnet/Redirect.h"

#include <utility>

#include "host/qelnet/RequestHeaders.h"

namespace qelnet {

namespace {

constexpr int kMostRedirects = 10;

}  // namespace

bool IsRedirect(long status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

std::string FollowRedirect(Request& request, std::string_view location) {
  if (request.mRedirects >= kMostRedirects) return "It was redirected too often.";
  std::optional<Url> url = ParseUrl(location);
  if (!url) return "It was redirected to an address that is malformed or of another scheme.";
  if (request.mUrl.mIsEncrypted && !url->mIsEncrypted) return "It was redirected from https to http.";
  if (url->mOrigin != request.mUrl.mOrigin) RemoveHeadersOfOneServer(request.mHeaders);
  request.mUrl = *std::move(url);
  ++request.mRedirects;
  return {};
}

}  // namespace qelnet
