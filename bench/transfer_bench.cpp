// Moves one file with the program's own engine and no window, for bench/run to time beside other clients.
//
// Usage: transfer_bench get|put plain|tls HOST:PORT USER PASSWORD REMOTE LOCAL
// Exit status: 0 moved, 1 failed, 2 wrong arguments. `tls` is explicit TLS.
#include <cstdio>
#include <cstring>

#include "core/process.h"
#include "ftp/logon.h"
#include "ftp/protocol.h"
#include "ftp/transfer.h"

namespace {

struct Job {
  bool upload;
  bool secure;
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
  if (!job.secure && strcmp(arguments[2], "plain") != 0) return false;
  job.server = arguments[3];
  job.user = arguments[4];
  job.password = arguments[5];
  job.remote = arguments[6];
  job.local = arguments[7];
  return true;
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
    fprintf(stderr, "transfer_bench get|put plain|tls HOST:PORT USER PASSWORD REMOTE LOCAL\n");
    return 2;
  }
  return Run(job) ? 0 : 1;
}
