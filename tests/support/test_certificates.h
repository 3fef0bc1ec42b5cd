// A certificate authority of the test process, and servers' certificates signed by it.
//
// A program that includes this trusts the authority and nothing else: SSL_CERT_FILE and SSL_CERT_DIR are set
// before main. Keys and certificates are made in memory when they are first asked for.
#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <string>
#include <unistd.h>

enum class TestCertificate {
  kGood,           ///< For the address 127.0.0.1 and the name localhost.
  kNameOnly,       ///< For the name localhost alone.
  kAddressAsName,  ///< "127.0.0.1" stands in it as a name, which no address may match.
  kWrongName,      ///< For other.example.
  kExpired,
  kNotYetValid,
  kSelfSigned,    ///< As kGood, but signed by itself.
  kForClients,    ///< As kGood, but not to be used by a server.
  kWithChain,     ///< As kGood, but signed by an authority in between, whose certificate the server sends along.
  kChainMissing,  ///< The same, without that certificate.
  kOldTls,        ///< kGood, offering nothing newer than TLS 1.0.
  kTls12,         ///< kGood, offering TLS 1.2 alone.
  kCount,
};

class TestAuthority {
 public:
  static TestAuthority& Instance() {
    static TestAuthority authority;
    static const bool isTrusted = authority.MakeTrusted();
    (void)isTrusted;
    return authority;
  }
  /// Another one, whom nobody trusts.
  TestAuthority() : key_(EVP_EC_gen("P-256")) { certificate_ = MakeAuthority("Test authority", *key_, *key_); }
  ~TestAuthority() { unlink(path_.c_str()); }

  /// The context of a server that shows this certificate. The authority owns it. Any thread.
  SSL_CTX* ServerContext(TestCertificate kind) {
    const std::lock_guard lock(mutex_);
    ContextPointer& context = contexts_[static_cast<size_t>(kind)];
    if (!context) context = MakeContext(kind);
    return context.get();
  }

 private:
  template <auto kFree>
  struct Freed {
    template <typename T>
    void operator()(T* object) const {
      kFree(object);
    }
  };
  using KeyPointer = std::unique_ptr<EVP_PKEY, Freed<&EVP_PKEY_free>>;
  using CertificatePointer = std::unique_ptr<X509, Freed<&X509_free>>;
  using ContextPointer = std::unique_ptr<SSL_CTX, Freed<&SSL_CTX_free>>;

  static constexpr long kDay = 24 * 60 * 60;

  struct Validity {
    long from = -kDay;  ///< Seconds from now.
    long to = kDay;
  };

  bool MakeTrusted() {
    const int fd = mkstemp(path_.data());
    FILE* file = fd == -1 ? nullptr : fdopen(fd, "w");
    if (!file || PEM_write_X509(file, certificate_.get()) != 1 || fclose(file) != 0) std::abort();
    setenv("SSL_CERT_FILE", path_.c_str(), 1);
    setenv("SSL_CERT_DIR", "/nonexistent", 1);
    return true;
  }

  static CertificatePointer Make(const char* name, Validity validity) {
    static long serial = 1;
    CertificatePointer made(X509_new());
    X509_set_version(made.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(made.get()), serial++);
    X509_gmtime_adj(X509_getm_notBefore(made.get()), validity.from);
    X509_gmtime_adj(X509_getm_notAfter(made.get()), validity.to);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(made.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(name), -1, -1, 0);
    return made;
  }

  static void AddExtension(X509& certificate, int nid, const char* value) {
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, nid, value);
    if (!extension || X509_add_ext(&certificate, extension, -1) != 1) std::abort();
    X509_EXTENSION_free(extension);
  }

  static void Sign(X509& certificate, EVP_PKEY& key, const X509& issuer, EVP_PKEY& issuerKey) {
    X509_set_pubkey(&certificate, &key);
    X509_set_issuer_name(&certificate, X509_get_subject_name(&issuer));
    if (X509_sign(&certificate, &issuerKey, EVP_sha256()) == 0) std::abort();
  }

  /// Issued by the authority, or by itself as long as there is none.
  CertificatePointer MakeAuthority(const char* name, EVP_PKEY& key, EVP_PKEY& issuerKey) const {
    CertificatePointer made = Make(name, Validity());
    AddExtension(*made, NID_basic_constraints, "critical,CA:TRUE");
    AddExtension(*made, NID_key_usage, "critical,keyCertSign,cRLSign");
    Sign(*made, key, certificate_ ? *certificate_ : *made, issuerKey);
    return made;
  }

  static const char* AlternativeNames(TestCertificate kind) {
    switch (kind) {
      case TestCertificate::kNameOnly: return "DNS:localhost";
      case TestCertificate::kAddressAsName: return "DNS:127.0.0.1";
      case TestCertificate::kWrongName: return "DNS:other.example,IP:192.0.2.1";
      default: return "DNS:localhost,IP:127.0.0.1";
    }
  }

  static Validity ValidityOf(TestCertificate kind) {
    if (kind == TestCertificate::kExpired) return {-2 * kDay, -kDay};
    if (kind == TestCertificate::kNotYetValid) return {kDay, 2 * kDay};
    return {};
  }

  ContextPointer MakeContext(TestCertificate kind) {
    const KeyPointer key(EVP_EC_gen("P-256"));
    const CertificatePointer certificate = Make("Test server", ValidityOf(kind));
    AddExtension(*certificate, NID_subject_alt_name, AlternativeNames(kind));
    AddExtension(*certificate, NID_ext_key_usage, kind == TestCertificate::kForClients ? "clientAuth" : "serverAuth");
    const bool isOwnIssuer = kind == TestCertificate::kSelfSigned;
    const bool isBelow = kind == TestCertificate::kWithChain || kind == TestCertificate::kChainMissing;
    const KeyPointer middleKey(EVP_EC_gen("P-256"));
    const CertificatePointer middle = MakeAuthority("Authority in between", *middleKey, *key_);
    if (isBelow) {
      Sign(*certificate, *key, *middle, *middleKey);
    } else {
      Sign(*certificate, *key, isOwnIssuer ? *certificate : *certificate_, isOwnIssuer ? *key : *key_);
    }
    ContextPointer context(SSL_CTX_new(TLS_server_method()));
    if (SSL_CTX_use_certificate(context.get(), certificate.get()) != 1) std::abort();
    if (SSL_CTX_use_PrivateKey(context.get(), key.get()) != 1) std::abort();
    // The chain belongs to the certificate that is in use.
    if (kind == TestCertificate::kWithChain && SSL_CTX_add1_chain_cert(context.get(), middle.get()) != 1) std::abort();
    LimitVersions(*context, kind);
    return context;
  }

  static void LimitVersions(SSL_CTX& context, TestCertificate kind) {
    if (kind == TestCertificate::kTls12) SSL_CTX_set_max_proto_version(&context, TLS1_2_VERSION);
    if (kind != TestCertificate::kOldTls) return;
    SSL_CTX_set_security_level(&context, 0);
    SSL_CTX_set_min_proto_version(&context, TLS1_VERSION);
    SSL_CTX_set_max_proto_version(&context, TLS1_VERSION);
  }

  std::string path_ = "/tmp/test-authority-XXXXXX";
  KeyPointer key_;
  CertificatePointer certificate_;
  std::mutex mutex_;  ///< Guards the contexts, and the making of one.
  std::array<ContextPointer, static_cast<size_t>(TestCertificate::kCount)> contexts_;
};

/// The context of a server that shows this certificate; the test process trusts its authority.
inline SSL_CTX* TestServerContext(TestCertificate kind) { return TestAuthority::Instance().ServerContext(kind); }

/// Before main: the client reads the trusted certificates once, when its first stream is made.
inline const TestAuthority& kTestAuthorityAtStart = TestAuthority::Instance();
