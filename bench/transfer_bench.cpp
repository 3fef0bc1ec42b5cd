// Moves one file with the program's own engine and no window, for bench/run to time beside other clients.
//
// Usage: transfer_bench get|put plain|tls|bare HOST:PORT USER PASSWORD REMOTE LOCAL
// Exit status: 0 moved, 1 failed, 2 wrong arguments. `tls` is explicit TLS; `bare` moves the bytes of a plain session
// with nothing but a loop of reads and writes of 256 KiB.
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/socket.h>
#include <unistd.h>

#include "core/process.h"
#include "ftp/commands.h"
#include "ftp/logon.h"
#include "ftp/protocol.h"
#include "ftp/transfer.h"

namespace {

struct Job {
  bool upload;
  bool secure;
  bool bare;
  const char* server;
  const char* user;
  const char* password;
  const char* remote;
  const char* local;
};

bool Parse(int count, char** arguments, Job& job) {
  if (count != 8) return false;
  job.upload = strcmp(arguments[1], "put") == 0;
  job.secure = strcmp(arguments[2], "tls") == 0;
  if (!job.upload && strcmp(arguments[1], "get") != 0) return false;
  job.bare = strcmp(arguments[2], "bare") == 0;
  if (!job.secure && !job.bare && strcmp(arguments[2], "plain") != 0) return false;
  job.server = arguments[3];
  job.user = arguments[4];
  job.password = arguments[5];
  job.remote = arguments[6];
  job.local = arguments[7];
  return true;
}

/// Until there is no more. False on a failure of either side.
bool Pump(int from, int to) {
  constexpr size_t kSize = 262144;
  const std::unique_ptr<char[]> bytes(new char[kSize]);
  ssize_t got;
  while ((got = read(from, bytes.get(), kSize)) > 0) {
    for (ssize_t done = 0; done < got;) {
      const ssize_t written = write(to, bytes.get() + done, static_cast<size_t>(got - done));
      if (written <= 0) return false;
      done += written;
    }
  }
  return got == 0;
}

/// The exchanges of a transfer, and the loop.
bool MoveBare(LProcessInterface& process, LFileTransferProtocol& session, const Job& job) {
  char address[kTextSize];
  if (ProcessFtpSendAndWaitForReply(process, session, "TYPE I\r\n", nullptr, nullptr) != LProcessResultOk) return false;
  if (ProcessFtpPassive(process, session, address) != LProcessResultOk) return false;
  LSSLSocketTCP data;
  if (ProcessConnect(process, data, address, 21, 5000, false) != LProcessResultOk) return false;
  fcntl(data.fd, F_SETFL, 0);  // Blocking: one call for each piece.
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "%s %s\r\n", job.upload ? "STOR" : "RETR", job.remote);
  if (ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr) != LProcessResultOk) return false;
  const int file = open(job.local, job.upload ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC, 0666);
  const bool isMoved = job.upload ? Pump(file, data.fd) : Pump(data.fd, file);
  close(file);
  data.CloseSocket();
  unsigned short code = 0;
  char text[kTextSize];
  return isMoved && ProcessFtpWaitForReplyTimeout(process, session, code, text, 60000) == LProcessResultOk &&
         code == 226;
}

bool Run(const Job& job) {
  LProcessInterfaceVoid process;
  LFileTransferProtocol session;
  if (ProcessFtpLogOnServer(process, session, job.server, job.user, job.password, job.secure, false) !=
      LProcessResultOk) {
    fprintf(stderr, "transfer_bench: no logon\n");
    return false;
  }
  // A server that declines TLS is logged on to in the clear: that would be another measurement.
  if (session.IsSecure() != job.secure) {
    fprintf(stderr, "transfer_bench: no TLS\n");
    return false;
  }
  if (job.bare) return MoveBare(process, session, job);
  char error[kTextSize] = {};
  const LProcessResult result = job.upload ? ProcessFtpUpload(process, session, job.remote, job.local, &error, false)
                                           : ProcessFtpDownload(process, session, job.remote, job.local, &error);
  if (result != LProcessResultOk) fprintf(stderr, "transfer_bench: %s\n", error);
  return result == LProcessResultOk;
}

}  // namespace

int main(int count, char** arguments) {
  Job job;
  if (!Parse(count, arguments, job)) {
    fprintf(stderr, "transfer_bench get|put plain|tls|bare HOST:PORT USER PASSWORD REMOTE LOCAL\n");
    return 2;
  }
  return Run(job) ? 0 : 1;
}
