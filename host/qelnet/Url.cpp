#include "host/qelnet/Url.h"

#include <algorithm>
#include <new>

#include "host/qelnet/CurlHandles.h"

namespace qelnet {

namespace {

std::string Part(CURLU* url, CURLUPart part, unsigned int flags = 0) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, flags) != CURLUE_OK) return {};
  return CurlText(text).get();
}

std::string InLowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return text;
}

}  // namespace

std::optional<Url> ParseUrl(std::string_view text) {
  // libcurl would take the text up to a zero byte, and some of its versions would escape a space.
  if (text.find_first_of(std::string_view("\0 ", 2)) != std::string_view::npos) return std::nullopt;
  const UrlHandle handle(curl_url());
  if (!handle) throw std::bad_alloc();
  // Bytes beyond ASCII in the path are escaped, because a request line cannot hold them.
  if (curl_url_set(handle.get(), CURLUPART_URL, std::string(text).c_str(), CURLU_URLENCODE) != CURLUE_OK) {
    return std::nullopt;
  }
  const std::string scheme = Part(handle.get(), CURLUPART_SCHEME);
  if (scheme != "http" && scheme != "https") return std::nullopt;

  Url url;
  url.mText = Part(handle.get(), CURLUPART_URL);
  url.mIsEncrypted = scheme == "https";
  url.mOrigin = InLowerCase(scheme + "://" + Part(handle.get(), CURLUPART_HOST) + ':' +
                            Part(handle.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT));
  for (const CURLUPart part : {CURLUPART_USER, CURLUPART_PASSWORD, CURLUPART_QUERY}) {
    curl_url_set(handle.get(), part, nullptr, 0);
  }
  url.mForLog = Part(handle.get(), CURLUPART_URL);
  return url;
}

}  // namespace qelnet
