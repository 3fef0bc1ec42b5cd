#include "ui/pane_server.h"

#include <cstdio>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

PaneServer::PaneServer(const std::string& folder, const std::string& certificate) {
  int ends[2];
  if (pipe(ends) != 0) return;
  const std::string script = ORVANE_SOURCE_DIR "/tests/ui/pane_server.py";
  pid_ = fork();
  if (pid_ == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    execl("/usr/bin/python3", "python3", script.c_str(), folder.c_str(), User(), Password(),
          certificate.empty() ? nullptr : certificate.c_str(), nullptr);
    _exit(127);
  }
  close(ends[1]);
  FILE* output = fdopen(ends[0], "r");
  if (!output || fscanf(output, "port %d", &port_) != 1) Stop();
  if (output) fclose(output);
}

void PaneServer::FallSilent() { kill(pid_, SIGSTOP); }

void PaneServer::Stop() {
  if (pid_ <= 0) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = 0;
}
