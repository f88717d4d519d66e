#include "host/qelnet/Transfer.h"

#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include "host/qelnet/Redirect.h"
#include "host/qelnet/RequestHeaders.h"
#include "host/qelnet/ServerTrust.h"
#include "host/qelnet/Tracing.h"

namespace qelnet {

namespace {

void Require(CURLcode code) {
  if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
}

std::string DescribeLargeBody(std::size_t limit) {
  return "The body is larger than " + std::to_string(limit) + " bytes.";
}

template <typename Value>
void Set(CURL* handle, CURLoption option, Value value) {
  Require(curl_easy_setopt(handle, option, value));
}

curl_off_t AsOffset(std::size_t size) {
  constexpr auto kLargest = std::numeric_limits<curl_off_t>::max();
  return std::uintmax_t{size} > std::uintmax_t{kLargest} ? kLargest : static_cast<curl_off_t>(size);
}

}  // namespace

Transfer::Transfer(Request request) : mRequest(std::move(request)) {
  Prepare();
}

Transfer::~Transfer() = default;

void Transfer::Prepare() {
  HeaderList headers = MakeHeaderList(mRequest.mHeaders);
  EasyHandle handle(curl_easy_init());
  if (!handle) throw std::bad_alloc();
  Set(handle.get(), CURLOPT_URL, mRequest.mUrl.mText.c_str());
  Set(handle.get(), CURLOPT_PROTOCOLS_STR, "http,https");
  // Redirects are followed here: libcurl would allow one from https to http after one from http to https.
  Set(handle.get(), CURLOPT_FOLLOWLOCATION, 0L);
  Set(handle.get(), CURLOPT_HTTPHEADER, headers.get());
  Set(handle.get(), CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(mRequest.mOptions.mConnectTimeout.count()));
  Set(handle.get(), CURLOPT_TIMEOUT_MS, static_cast<long>(mRequest.mOptions.mTotalTimeout.count()));
  // Signals belong to the application, and a name that is looked up slowly must not hold up the shutdown.
  Set(handle.get(), CURLOPT_NOSIGNAL, 1L);
  Set(handle.get(), CURLOPT_QUICK_EXIT, 1L);
  SetTrust(handle.get());
  SetReceivers(handle.get());

  mHandle = std::move(handle);
  mHeaderList = std::move(headers);
  mLastSign.reset();
  mHasWholeHead = false;
  mBody.clear();
  mErrorText.front() = '\0';
}

void Transfer::SetTrust(CURL* handle) const {
  Set(handle, CURLOPT_SSL_VERIFYPEER, 1L);
  Set(handle, CURLOPT_SSL_VERIFYHOST, 2L);
  Set(handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  const std::string& authorities = mRequest.mOptions.mCertificateAuthorities;
  if (authorities.empty()) {
    // Where OpenSSL has no store of its own, as on Windows, the system's is asked.
    Set(handle, CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));
  } else {
    Set(handle, CURLOPT_CAINFO, authorities.c_str());
    // A library that cannot use directories of authorities has none to forget.
    const CURLcode code = curl_easy_setopt(handle, CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    if (code != CURLE_NOT_BUILT_IN) Require(code);
  }
}

void Transfer::SetReceivers(CURL* handle) {
  Set(handle, CURLOPT_ERRORBUFFER, mErrorText.data());
  Set(handle, CURLOPT_PREREQFUNCTION, &Transfer::OnConnected);
  Set(handle, CURLOPT_PREREQDATA, static_cast<void*>(this));
  Set(handle, CURLOPT_HEADERFUNCTION, &Transfer::OnHeader);
  Set(handle, CURLOPT_HEADERDATA, static_cast<void*>(this));
  Set(handle, CURLOPT_WRITEFUNCTION, &Transfer::OnBody);
  Set(handle, CURLOPT_WRITEDATA, static_cast<void*>(this));
  // A length that the server tells can be refused before the body comes.
  Set(handle, CURLOPT_MAXFILESIZE_LARGE, AsOffset(mRequest.mOptions.mLargestBody));
}

int Transfer::OnConnected(void* transfer, char* /*remoteAddress*/, char* /*localAddress*/, int /*remotePort*/,
                          int /*localPort*/) {
  Transfer& self = *static_cast<Transfer*>(transfer);
  self.mLastSign = Clock::now();
  return self.IsServerAccepted() ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

bool Transfer::IsServerAccepted() {
  const bool isForSystem = mRequest.mUrl.mIsEncrypted && mRequest.mOptions.mCertificateAuthorities.empty();
  if (!isForSystem || IsServerTrusted(mHandle.get())) return true;
  // No exception may pass through libcurl.
  try {
    mFailure = "The system does not trust the server's certificate.";
    return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::size_t Transfer::OnHeader(char* data, std::size_t size, std::size_t count, void* transfer) {
  Transfer& self = *static_cast<Transfer*>(transfer);
  const std::string_view line(data, size * count);
  self.mLastSign = Clock::now();
  // An interim answer or a proxy's has a head of its own before that of the answer.
  if (line.starts_with("HTTP/")) self.mHasWholeHead = false;
  if (line == "\r\n" || line == "\n") self.mHasWholeHead = true;
  return line.size();
}

std::size_t Transfer::OnBody(char* data, std::size_t size, std::size_t count, void* transfer) {
  const std::size_t length = size * count;
  return static_cast<Transfer*>(transfer)->Receive({data, length}) ? length : CURL_WRITEFUNC_ERROR;
}

bool Transfer::Receive(std::string_view data) {
  mLastSign = Clock::now();
  // No exception may pass through libcurl.
  try {
    if (data.size() > mRequest.mOptions.mLargestBody - mBody.size()) {
      mFailure = DescribeLargeBody(mRequest.mOptions.mLargestBody);
      return false;
    }
    mBody.append(data);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::optional<Transfer::Clock::time_point> Transfer::StallsAt() const {
  if (!mLastSign) return std::nullopt;
  return *mLastSign + mRequest.mOptions.mStallTimeout;
}

bool Transfer::Conclude(CURLcode code) {
  if (code != CURLE_OK) {
    std::string text = mErrorText.front() != '\0' ? mErrorText.data() : curl_easy_strerror(code);
    // The server announced a length over the limit, so that no byte was received.
    if (code == CURLE_FILESIZE_EXCEEDED) text = DescribeLargeBody(mRequest.mOptions.mLargestBody);
    Fail(mFailure.empty() ? text : mFailure);
    return true;
  }
  // libcurl takes the end of the connection for the end of the headers.
  if (!mHasWholeHead) {
    Fail("The answer ends within its headers.");
    return true;
  }
  long status = 0;
  const char* location = nullptr;
  curl_easy_getinfo(mHandle.get(), CURLINFO_RESPONSE_CODE, &status);
  // libcurl takes first lines such as "HTTP/20 OK" and "HTTP/21000301 OK" for such of an answer.
  constexpr long kLargestStatus = 999;
  if (status <= 0 || status > kLargestStatus) {
    Fail("The answer has no status.");
    return true;
  }
  curl_easy_getinfo(mHandle.get(), CURLINFO_REDIRECT_URL, &location);
  if (location != nullptr && IsRedirect(status)) {
    const std::string refusal = FollowRedirect(mRequest, location);
    if (!refusal.empty()) {
      Fail(refusal);
      return true;
    }
    TraceRequest(kDetailLevel, mRequest.mIdentifier,
                 [&] { return "Redirected to \"" + mRequest.mUrl.mForLog + "\"."; });
    Prepare();
    return false;
  }
  mStatus = static_cast<int>(status);
  TraceRequest(kDetailLevel, mRequest.mIdentifier, [&] {
    return "Status " + std::to_string(mStatus) + ", " + std::to_string(mBody.size()) + " bytes.";
  });
  return true;
}

void Transfer::Fail(std::string_view reason) {
  mStatus = 0;
  mBody.clear();
  mFailure = reason;
  TraceRequest(kWarningLevel, mRequest.mIdentifier, [&] { return "Failed: " + std::string(reason); });
}

host::Outcome Transfer::GetOutcome() const {
  return {.mUrl = mRequest.mUrl.mForLog, .mStatus = mStatus, .mFailure = mFailure};
}

Answer Transfer::TakeAnswer() {
  return {mStatus, std::move(mBody)};
}

Completion Transfer::TakeCompletion() {
  return std::move(mRequest.mCompletion);
}

}  // namespace qelnet
