#include "support/test_authority_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/scratch_folder.h"
#include "support/test_certificates.h"

namespace {

/// The good certificate of an authority, with its key, in a folder of its own.
class KeptCertificate {
 public:
  explicit KeptCertificate(TestAuthority& authority) {
    const SSL_CTX* context = authority.ServerContext(TestCertificate::kGood);
    const X509* certificate = SSL_CTX_get0_certificate(context);
    const EVP_PKEY* key = SSL_CTX_get0_privatekey(context);
    Write(files.certificate, certificate, nullptr);
    Write(files.key, nullptr, key);
    Write(files.both, certificate, key);
  }

 private:
  static void Write(const std::string& path, const X509* certificate, const EVP_PKEY* key) {
    FILE* file = fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr) << path;
    if (certificate) {
      EXPECT_EQ(PEM_write_X509(file, certificate), 1);
    }
    if (key) {
      fchmod(fileno(file), 0600);
      EXPECT_EQ(PEM_write_PrivateKey(file, key, nullptr, nullptr, 0, nullptr, nullptr), 1);
    }
    EXPECT_EQ(fclose(file), 0);
  }

  const ScratchFolder folder;

 public:
  const CertificateFiles files{folder.Path("server.pem"), folder.Path("server.key"), folder.Path("both.pem")};
};

}  // namespace

const CertificateFiles& TrustedCertificate() {
  static const KeptCertificate kept(TestAuthority::Instance());
  return kept.files;
}

const CertificateFiles& UnknownCertificate() {
  static TestAuthority unknown;
  static const KeptCertificate kept(unknown);
  return kept.files;
}
