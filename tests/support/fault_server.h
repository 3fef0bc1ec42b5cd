// A small FTP server that answers every client properly, command by command, and goes wrong at one of them.
//
// It serves one folder with one file, one client at a time, in a thread of its own on 127.0.0.1. Unlike the
// scripted server it awaits no order of commands: a client that has met a fault may go on as it likes and gets the
// answers of a plain server. All members may be called from the test's thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

struct ssl_ctx_st;

enum class ServerFault {
  kNone,
  // Instead of the reply.
  kClose,
  kReset,
  kStall,  ///< Silent from here on.
  kGarbage,
  kHalfLine,  ///< And silence.
  kHalfLineAndClose,
  kLongLine,  ///< 10,000 bytes without a line end, and silence.
  kLongLineAndClose,
  kLateReply,  ///< When the client has given up waiting.
  kWrongRefusal,
  kWrongSuccess,
  kWrongPreliminary,
  kNotAvailable,  ///< 421, and the connection is closed.
  // Behind the reply.
  kExtraReply,
  kReplyAndClose,
  // In the answer to PASV.
  kPassiveRefused,   ///< The port lets nobody in.
  kPassiveDeaf,      ///< It lets in, and nothing ever happens there.
  kPassiveNonsense,  ///< Numbers that are no address.
  // On the data connection.
  kDataCutAtOnce,
  kDataCutBehindBytes,
  kDataReset,
  kDataStall,  ///< Some bytes, then silence on both connections.
  kDataTlsGarbage,
  kDataClosedWithControl,
  // Behind the data.
  kNoClosingReply,
  kClosingFailed,    ///< 426
  kClosingDiskFull,  ///< 451
  kClosingTwice,
};

/// What kind of server this is.
struct ServerManner {
  bool tls = false;                   ///< It knows AUTH TLS.
  bool implicit = false;              ///< TLS from the first byte.
  bool proxy = false;                 ///< It leads to another server with SITE, OPEN or USER name@server.
  std::vector<std::string> features;  ///< Empty: FEAT is refused, and so is what a feature would name.
  const char* system = "UNIX Type: L8";
  bool refuses_mlsd = false;  ///< Although it is a feature.
  bool busy = false;          ///< The first STOR is answered with 550.
  /// A transfer of a file goes so slowly that a NOOP comes, or stands still until it is aborted.
  enum class Pace { kFast, kSlow, kStanding } pace = Pace::kFast;
};

class FaultServer {
 public:
  static constexpr char kFile[] = "r.bin";
  static std::string Content();              ///< Of the file.
  static std::vector<std::string> Listed();  ///< The names in the folder.

  FaultServer(const ServerManner& manner, ssl_ctx_st* context);
  FaultServer(const FaultServer&) = delete;
  FaultServer& operator=(const FaultServer&) = delete;
  ~FaultServer();

  std::string Address() const;  ///< "127.0.0.1:port".
  /// The command with that number goes wrong; the greeting is number 0 and counts as a command.
  void FailAt(size_t number, ServerFault fault);
  /// What has been met so far, the greeting as "greeting".
  std::vector<std::string> Commands() const;
  /// A password was taken.
  bool IsLoggedOn() const;
  /// What was sent, or received, over the last data connection of a RETR, STOR or APPE.
  std::string Moved() const;
  /// Bytes have gone over the present data connection, in either direction.
  bool IsMoving() const;

 private:
  class Conversation;
  std::unique_ptr<Conversation> conversation_;
};
