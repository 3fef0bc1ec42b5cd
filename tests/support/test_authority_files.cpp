#include "support/test_authority_files.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdlib.h>

namespace {

namespace fs = std::filesystem;

void Run(const std::string& command) { EXPECT_EQ(0, system((command + " 2>/dev/null").c_str())) << command; }

/// An authority in a folder of its own, with one server certificate.
class Authority {
 public:
  explicit Authority(const char* name) {
    char folder[] = "/tmp/orvane-authority-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(folder));
    folder_ = folder;
    const std::string key = "-newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes";
    Run("openssl req -x509 " + key + " -days 2 -subj '/CN=" + name + "' -keyout " + In("authority.key") + " -out " +
        In("authority.pem") + " -addext basicConstraints=critical,CA:TRUE -addext keyUsage=critical,keyCertSign");
    Run("openssl req " + key + " -subj /CN=localhost -keyout " + In("server.key") + " -out " + In("server.csr"));
    std::ofstream(In("extensions")) << "subjectAltName=IP:127.0.0.1,DNS:localhost\nextendedKeyUsage=serverAuth\n";
    Run("openssl x509 -req -days 2 -in " + In("server.csr") + " -CA " + In("authority.pem") + " -CAkey " +
        In("authority.key") + " -extfile " + In("extensions") + " -out " + In("server.pem"));
    Run("cat " + In("server.pem") + " " + In("server.key") + " > " + In("both.pem"));
    Run("chmod 600 " + In("server.key") + " " + In("both.pem"));
    files_ = {In("server.pem"), In("server.key"), In("both.pem")};
  }
  Authority(const Authority&) = delete;
  Authority& operator=(const Authority&) = delete;
  ~Authority() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  const CertificateFiles& Files() const { return files_; }
  std::string In(const char* name) const { return folder_ + "/" + name; }

 private:
  std::string folder_;
  CertificateFiles files_;
};

}  // namespace

const CertificateFiles& TrustedCertificate() {
  static const Authority authority("Trusted test authority");
  // The TLS library reads these at its first use, once.
  setenv("SSL_CERT_FILE", authority.In("authority.pem").c_str(), 1);
  setenv("SSL_CERT_DIR", "/nonexistent", 1);
  return authority.Files();
}

const CertificateFiles& UnknownCertificate() {
  static const Authority authority("Unknown test authority");
  TrustedCertificate();
  return authority.Files();
}
