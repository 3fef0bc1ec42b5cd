// Certificates as files, for servers that are programs of their own. A program with these trusts one authority of its
// own, and no other.
#pragma once

#include <string>

struct CertificateFiles {
  std::string certificate;  ///< PEM.
  std::string key;          ///< PEM.
  std::string both;         ///< One PEM file, certificate first. Readable by the user alone, as is `key`.
};

/// For the address 127.0.0.1 and the name localhost. The files live as long as the process.
const CertificateFiles& TrustedCertificate();
/// The same, signed by an authority that nobody trusts.
const CertificateFiles& UnknownCertificate();
