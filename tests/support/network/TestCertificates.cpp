#include "tests/support/network/TestCertificates.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/ecdsa.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdint>
#include <stdexcept>

namespace testsupport {

namespace {

constexpr long kTwoHours = 7200;

void Require(bool isTrue) {
  if (!isTrue) throw std::runtime_error("the test's certificate cannot be made");
}

void AddExtension(X509* certificate, X509* issuer, int kind, const std::string& value) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str());
  Require(extension != nullptr);
  const int result = X509_add_ext(certificate, extension, -1);
  X509_EXTENSION_free(extension);
  Require(result == 1);
}

/// A certificate with a fresh key, not yet signed.
Identity MakeIdentity(const std::string& name, long serialNumber, std::chrono::seconds remainingTime) {
  Identity identity;
  identity.mKey.reset(EVP_EC_gen("P-256"));
  identity.mCertificate.reset(X509_new());
  X509* const certificate = identity.mCertificate.get();
  Require(identity.mKey && certificate != nullptr);
  Require(X509_set_version(certificate, X509_VERSION_3) == 1);
  Require(ASN1_INTEGER_set(X509_get_serialNumber(certificate), serialNumber) == 1);
  Require(X509_gmtime_adj(X509_getm_notBefore(certificate), -kTwoHours) != nullptr);
  Require(X509_gmtime_adj(X509_getm_notAfter(certificate), static_cast<long>(remainingTime.count())) !=
          nullptr);
  Require(X509_set_pubkey(certificate, identity.mKey.get()) == 1);
  const std::basic_string<unsigned char> bytes(name.begin(), name.end());
  Require(X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_UTF8, bytes.c_str(),
                                     -1, -1, 0) == 1);
  return identity;
}

/// Whether the certificate's signature has a number that begins with a zero byte.
bool IsSignatureShort(const X509& certificate) {
  constexpr int kBytesOfANumber = 32;
  const ASN1_BIT_STRING* bits = nullptr;
  X509_get0_signature(&bits, nullptr, &certificate);
  const unsigned char* data = ASN1_STRING_get0_data(bits);
  const std::unique_ptr<ECDSA_SIG, decltype(&ECDSA_SIG_free)> signature(
      d2i_ECDSA_SIG(nullptr, &data, ASN1_STRING_length(bits)), &ECDSA_SIG_free);
  Require(signature != nullptr);
  return BN_num_bytes(ECDSA_SIG_get0_r(signature.get())) < kBytesOfANumber ||
         BN_num_bytes(ECDSA_SIG_get0_s(signature.get())) < kBytesOfANumber;
}

/// One signature in 128 is short, and not everything that presents itself as Windows takes those for valid:
/// another one is made then.
void Sign(Identity& identity, X509* issuer, EVP_PKEY* issuerKey) {
  X509* const certificate = identity.mCertificate.get();
  Require(X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1);
  do {
    Require(X509_sign(certificate, issuerKey, EVP_sha256()) > 0);
  } while (IsSignatureShort(*certificate));
}

}  // namespace

CertificateAuthority::CertificateAuthority()
    : mIdentity(MakeIdentity("Test authority", 1, std::chrono::hours(1))) {
  X509* const certificate = mIdentity.mCertificate.get();
  AddExtension(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE");
  AddExtension(certificate, certificate, NID_key_usage, "critical,keyCertSign");
  Sign(mIdentity, certificate, mIdentity.mKey.get());
}

std::string CertificateAuthority::AsPem() const {
  const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), &BIO_free);
  Require(memory && PEM_write_bio_X509(memory.get(), mIdentity.mCertificate.get()) == 1);
  std::string text(BIO_ctrl_pending(memory.get()), '\0');
  Require(BIO_read(memory.get(), text.data(), static_cast<int>(text.size())) ==
          static_cast<int>(text.size()));
  return text;
}

Identity CertificateAuthority::Issue(const std::string& names, std::chrono::minutes remainingTime) const {
  Identity identity = MakeIdentity("Test server", 2, remainingTime);
  AddExtension(identity.mCertificate.get(), mIdentity.mCertificate.get(), NID_subject_alt_name, names);
  Sign(identity, mIdentity.mCertificate.get(), mIdentity.mKey.get());
  return identity;
}

}  // namespace testsupport
