// How each server is told what to serve and to whom.
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/real_server.h"
#include "support/test_authority_files.h"

namespace {

constexpr unsigned kNobody = 65534;

/// RealServer::Password() as crypt(3) hashes it with SHA-256.
constexpr char kHashedPassword[] = "$5$orvane$NM1QVDCNU6b7uSG6F7n49qjOu.IUt1Nz47daWXEjI6D";

/// The libraries that come with the servers.
std::vector<std::string> FetchedLibraries() { return {"LD_LIBRARY_PATH=" + FetchedPath("/usr/lib/x86_64-linux-gnu")}; }

const CertificateFiles& Certificate(const ServerSetup& setup) {
  return setup.certificate == ServerCertificate::kTrusted ? TrustedCertificate() : UnknownCertificate();
}

/// Who the servers that refuse to serve as root become.
unsigned ServingUser() { return geteuid() == 0 ? kNobody : geteuid(); }

std::string NameOf(unsigned user) {
  const passwd* entry = getpwuid(user);
  return entry ? entry->pw_name : std::to_string(user);
}

std::string GroupOf(unsigned user) {
  const passwd* entry = getpwuid(user);
  const group* found = entry ? getgrgid(entry->pw_gid) : nullptr;
  return found ? found->gr_name : std::to_string(user);
}

void WriteForAll(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
  chmod(path.c_str(), 0644);
}

void WritePrivately(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
  chmod(path.c_str(), 0600);
}

}  // namespace

std::string FetchedPath(const std::string& path) { return std::string(ORVANE_SOURCE_DIR) + "/build/servers" + path; }

RealServer::Launch RealServer::Configure() const {
  switch (setup_.kind) {
    case ServerKind::kVsftpd: return ConfigureVsftpd();
    case ServerKind::kProftpd: return ConfigureProftpd();
    case ServerKind::kPureFtpd: return ConfigurePureFtpd();
    case ServerKind::kPyftpdlib: return ConfigurePyftpdlib();
    case ServerKind::kInetutils: return ConfigureInetutils();
    case ServerKind::kBusybox: return ConfigureBusybox();
  }
  return {};
}

RealServer::Launch RealServer::ConfigureVsftpd() const {
  WritePrivately(Work("passwords"), std::string(Password()) + "\n");
  std::string text =
      "listen=YES\nlisten_ipv6=NO\nlisten_address=127.0.0.1\nbackground=NO\n"
      "run_as_launching_user=YES\nseccomp_sandbox=NO\nisolate=NO\nisolate_network=NO\n"
      // An anonymous user whose e-mail address is a password: the one kind that asks nothing of the system.
      "anonymous_enable=YES\nlocal_enable=NO\nsecure_email_list_enable=YES\n"
      "write_enable=YES\nanon_upload_enable=YES\nanon_mkdir_write_enable=YES\nanon_other_write_enable=YES\n"
      "anon_world_readable_only=NO\nanon_umask=022\nallow_writeable_chroot=YES\n"
      "force_dot_files=YES\npasv_address=127.0.0.1\nconnect_from_port_20=NO\n"
      "xferlog_enable=YES\nmax_login_fails=1\ndelay_failed_login=0\n";
  text += "listen_port=" + std::to_string(port_) + "\nftp_username=nobody\nanon_root=" + folder_ +
          "\nemail_password_file=" + Work("passwords") + "\nvsftpd_log_file=" + Work("log") +
          "\nsecure_chroot_dir=" + folder_ + "\n";
  if (HasTls()) {
    text +=
        "ssl_enable=YES\nallow_anon_ssl=YES\nforce_anon_logins_ssl=YES\nforce_anon_data_ssl=YES\n"
        "require_ssl_reuse=NO\nssl_ciphers=HIGH\nrsa_cert_file=" +
        Certificate(setup_).certificate + "\nrsa_private_key_file=" + Certificate(setup_).key + "\n";
  }
  if (setup_.security == ServerSecurity::kImplicitTls) text += "implicit_ssl=YES\n";
  WritePrivately(Work("vsftpd.conf"), text);
  return {{FetchedPath("/usr/sbin/vsftpd"), Work("vsftpd.conf")}, FetchedLibraries()};
}

RealServer::Launch RealServer::ConfigureProftpd() const {
  const std::string user = std::to_string(ServingUser());
  WritePrivately(Work("passwd"),
                 std::string(User()) + ":" + kHashedPassword + ":" + user + ":" + user + "::" + folder_ + ":/bin/sh\n");
  std::string text =
      "ServerType standalone\nDefaultAddress 127.0.0.1\nMasqueradeAddress 127.0.0.1\nSocketBindTight on\n"
      "UseIPv6 off\nUseReverseDNS off\nAuthOrder mod_auth_file.c\nRequireValidShell off\nAllowOverwrite on\n"
      "AllowStoreRestart on\nUmask 022\nWtmpLog off\nDelayEngine off\nTransferLog none\nTimesGMT off\nListOptions -a\n";
  text += "ModulePath " + FetchedPath("/usr/lib/proftpd") + "\nLoadModule mod_tls.c\nPort " + std::to_string(port_) +
          "\nUser " + NameOf(ServingUser()) + "\nGroup " + GroupOf(ServingUser()) + "\nAuthUserFile " + Work("passwd") +
          "\nPidFile " + Work("pid") + "\nScoreboardFile " + Work("scoreboard") + "\nSystemLog " + Work("log") + "\n";
  if (HasTls()) {
    text += "TLSEngine on\nTLSRequired on\nTLSVerifyClient off\nTLSECCertificateFile " +
            Certificate(setup_).certificate + "\nTLSECCertificateKeyFile " + Certificate(setup_).key +
            "\nTLSOptions NoSessionReuseRequired" +
            (setup_.security == ServerSecurity::kImplicitTls ? " UseImplicitSSL" : "") + "\n";
  }
  WritePrivately(Work("proftpd.conf"), text);
  return {{FetchedPath("/usr/sbin/proftpd"), "-n", "-q", "-c", Work("proftpd.conf")}, FetchedLibraries()};
}

RealServer::Launch RealServer::ConfigurePureFtpd() const {
  const std::string user = std::to_string(ServingUser());
  // Its own tool hashes a password in seconds; the server takes this hash as well.
  WritePrivately(Work("users"), std::string(User()) + ":" + kHashedPassword + ":" + user + ":" + user + "::" + folder_ +
                                    "/./::::::::::::\n");
  const std::string command = FetchedPath("/usr/bin/pure-pw") + " mkdb " + Work("users.pdb") + " -f " + Work("users");
  if (system(command.c_str()) != 0) return {};
  Launch launch{{FetchedPath("/usr/sbin/pure-ftpd"), "-4", "-E", "-H", "-A", "-P", "127.0.0.1", "-U", "022:022", "-S",
                 "127.0.0.1," + std::to_string(port_), "-l", "puredb:" + Work("users.pdb"), "-g", Work("pid"), "-O",
                 "clf:" + Work("log")},
                FetchedLibraries()};
  if (HasTls()) {
    for (const char* argument : {"-Y", "3", "-2"}) launch.arguments.emplace_back(argument);
    launch.arguments.push_back(Certificate(setup_).both);
  }
  return launch;
}

RealServer::Launch RealServer::ConfigurePyftpdlib() const {
  const char* security = setup_.security == ServerSecurity::kPlain         ? "plain"
                         : setup_.security == ServerSecurity::kExplicitTls ? "explicit"
                                                                           : "implicit";
  Launch launch{{"/usr/bin/python3", std::string(ORVANE_SOURCE_DIR) + "/tests/servers/pyftpd_server.py",
                 std::to_string(port_), folder_, User(), Password(), security},
                {}};
  if (HasTls()) launch.arguments.push_back(Certificate(setup_).both);
  return launch;
}

/// A server that is started anew for each connection, and asks the system for its users.
RealServer::Launch RealServer::ServeEachConnection(const std::vector<std::string>& program) const {
  const std::string user = std::to_string(kNobody);
  // Read once more when the server has become that user.
  WriteForAll(Work("passwd"), "root:x:0:0::/:/bin/sh\n" + std::string(User()) + ":" + kHashedPassword + ":" + user +
                                  ":" + user + "::" + folder_ + ":/bin/sh\n");
  WriteForAll(Work("group"), "root:x:0:\nnogroup:x:" + user + ":\n");
  Launch launch{{FetchedPath("/usr/bin/busybox-ftpd"), "tcpsvd", "-E", "127.0.0.1", std::to_string(port_)},
                // The users of the files above in place of the system's.
                {"LD_PRELOAD=" + FetchedPath("/usr/lib/x86_64-linux-gnu/libnss_wrapper.so"),
                 "NSS_WRAPPER_PASSWD=" + Work("passwd"), "NSS_WRAPPER_GROUP=" + Work("group"), "LC_ALL=C"}};
  launch.arguments.insert(launch.arguments.end(), program.begin(), program.end());
  return launch;
}

RealServer::Launch RealServer::ConfigureInetutils() const {
  return ServeEachConnection({FetchedPath("/usr/sbin/ftpd"), "-q", "-u", "022", "-a", "default"});
}

RealServer::Launch RealServer::ConfigureBusybox() const {
  return ServeEachConnection({FetchedPath("/usr/bin/busybox-ftpd"), "ftpd", "-w", folder_});
}
