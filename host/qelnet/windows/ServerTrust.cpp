// Windows itself refuses a certificate that it does not trust while the connection is made. Not everything
// that presents itself as Windows does, so the question is asked once more, before anything is said to the
// server.
#include "host/qelnet/ServerTrust.h"

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#define NOGDI
#define SECURITY_WIN32
#include <windows.h>
// Behind the general header, which they need.
#include <schannel.h>
#include <security.h>
#include <wincrypt.h>

namespace qelnet {

namespace {

struct CertificateDeleter {
  void operator()(const CERT_CONTEXT* certificate) const noexcept { CertFreeCertificateContext(certificate); }
};
struct ChainDeleter {
  void operator()(const CERT_CHAIN_CONTEXT* chain) const noexcept { CertFreeCertificateChain(chain); }
};
struct UrlDeleter {
  void operator()(CURLU* url) const noexcept { curl_url_cleanup(url); }
};
struct TextDeleter {
  void operator()(char* text) const noexcept { curl_free(text); }
};

using Certificate = std::unique_ptr<const CERT_CONTEXT, CertificateDeleter>;
using Chain = std::unique_ptr<const CERT_CHAIN_CONTEXT, ChainDeleter>;

Certificate ServerCertificate(CURL* handle) {
  curl_tlssessioninfo* session = nullptr;
  if (curl_easy_getinfo(handle, CURLINFO_TLS_SSL_PTR, &session) != CURLE_OK || session == nullptr ||
      session->backend != CURLSSLBACKEND_SCHANNEL || session->internals == nullptr)
    return nullptr;
  const CERT_CONTEXT* certificate = nullptr;
  const SECURITY_STATUS status = QueryContextAttributesW(static_cast<CtxtHandle*>(session->internals),
                                                         SECPKG_ATTR_REMOTE_CERT_CONTEXT, &certificate);
  return Certificate(status == SEC_E_OK ? certificate : nullptr);
}

/// The name that the certificate has to be for.
std::wstring ServerName(CURL* handle) {
  const char* address = nullptr;
  curl_easy_getinfo(handle, CURLINFO_EFFECTIVE_URL, &address);
  const std::unique_ptr<CURLU, UrlDeleter> url(curl_url());
  char* host = nullptr;
  if (!url || address == nullptr || curl_url_set(url.get(), CURLUPART_URL, address, 0) != CURLUE_OK ||
      curl_url_get(url.get(), CURLUPART_HOST, &host, 0) != CURLUE_OK)
    return {};
  const std::unique_ptr<char, TextDeleter> owner(host);
  std::string_view text = host;
  // An address of version 6 stands in brackets, which certificates do not have.
  if (text.starts_with('[') && text.ends_with(']')) text = text.substr(1, text.size() - 2);
  return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

Chain ChainOf(const Certificate& certificate) {
  std::string usage = szOID_PKIX_KP_SERVER_AUTH;
  std::array<char*, 1> usages{usage.data()};
  CERT_CHAIN_PARA parameters{};
  parameters.cbSize = sizeof parameters;
  parameters.RequestedUsage.dwType = USAGE_MATCH_TYPE_OR;
  parameters.RequestedUsage.Usage.cUsageIdentifier = static_cast<DWORD>(usages.size());
  parameters.RequestedUsage.Usage.rgpszUsageIdentifier = usages.data();
  const CERT_CHAIN_CONTEXT* chain = nullptr;
  const BOOL isMade = CertGetCertificateChain(nullptr, certificate.get(), nullptr, certificate->hCertStore,
                                              &parameters, 0, nullptr, &chain);
  return Chain(isMade != FALSE ? chain : nullptr);
}

bool IsTrustedFor(const Chain& chain, std::wstring name) {
  HTTPSPolicyCallbackData server{};
  server.cbStruct = sizeof server;
  server.dwAuthType = AUTHTYPE_SERVER;
  server.pwszServerName = name.data();
  CERT_CHAIN_POLICY_PARA parameters{};
  parameters.cbSize = sizeof parameters;
  parameters.pvExtraPolicyPara = &server;
  CERT_CHAIN_POLICY_STATUS status{};
  status.cbSize = sizeof status;
  return CertVerifyCertificateChainPolicy(CERT_CHAIN_POLICY_SSL, chain.get(), &parameters, &status) !=
             FALSE &&
         status.dwError == ERROR_SUCCESS;
}

}  // namespace

bool IsServerTrusted(CURL* handle) noexcept {
  try {
    const Certificate certificate = ServerCertificate(handle);
    if (!certificate) return false;
    const Chain chain = ChainOf(certificate);
    // The policy alone may overlook an authority that is missing.
    if (!chain || chain->TrustStatus.dwErrorStatus != CERT_TRUST_NO_ERROR) return false;
    std::wstring name = ServerName(handle);
    return !name.empty() && IsTrustedFor(chain, std::move(name));
  } catch (...) {
    return false;
  }
}

}  // namespace qelnet
