// Certificates for test servers, made on the spot.
#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <chrono>
#include <memory>
#include <string>

namespace testsupport {

struct CertificateDeleter {
  void operator()(X509* certificate) const { X509_free(certificate); }
};

struct KeyDeleter {
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};

/// A certificate and its private key.
struct Identity {
  std::unique_ptr<X509, CertificateDeleter> mCertificate;
  std::unique_ptr<EVP_PKEY, KeyDeleter> mKey;
};

/// An authority that is in no system's store.
class CertificateAuthority {
 public:
  CertificateAuthority();

  /// The authority's own certificate as PEM text.
  [[nodiscard]] std::string AsPem() const;

  /// A server's certificate for these names, such as "IP:127.0.0.1,DNS:localhost". It was made two hours ago
  /// and ends in `remainingTime`, which is negative for one that has ended.
  [[nodiscard]] Identity Issue(const std::string& names,
                               std::chrono::minutes remainingTime = std::chrono::hours(1)) const;

 private:
  Identity mIdentity;
};

}  // namespace testsupport
