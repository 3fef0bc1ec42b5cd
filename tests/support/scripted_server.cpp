#include "support/scripted_server.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

#include "support/server_thread.h"

namespace {

constexpr int kDataWaitMs = 5000;  ///< For a client to come to, or send on, its data connection.

}  // namespace

bool ScriptedServer::one_byte_segments = false;

/// The server's thread and what it shares with the test.
class ScriptedServer::Conversation : public ServerThread {
 public:
  Conversation() {
    Start([this] { Run(); });
  }
  ~Conversation() { End(); }

  Step& AddStep();
  bool WaitUntilDone(int ms);
  void ReportProblems();

  // For the actions, on the server's thread.
  void SendText(const std::string& bytes) { (void)control_.Write(bytes, one_byte_); }
  void SendForever(ServerChannel& channel, const std::string& bytes) const;
  void StartTls(bool succeeds);
  void OpenPassive(bool listening);
  bool NeedData();
  void StartDataTls(bool succeeds);
  void SendData(const std::string& bytes);
  void ReceiveData(size_t limit);
  void ReceiveMeanwhile();
  void Problem(const std::string& text);

  using ServerThread::control_;
  using ServerThread::data_;
  using ServerThread::Pause;
  bool receive_meanwhile_ = false;
  bool ignore_input_ = false;  ///< Of the present client.
  bool entry_open_ = false;    ///< The last text of `received_` belongs to the present data connection.
  std::string input_;          ///< Bytes of the control connection that are no whole line yet.

  // Guarded by the mutex.
  std::condition_variable changed_;
  std::deque<std::unique_ptr<Step>> steps_;  ///< Still to come.
  bool working_ = false;                     ///< A step is being worked through.
  std::vector<Command> commands_;
  std::vector<std::string> received_;
  std::vector<std::string> problems_;
  bool allow_unused_ = false;
  bool one_byte_ = ScriptedServer::one_byte_segments;
  ssl_ctx_st* tls_ = nullptr;

 private:
  void Run();
  void AcceptControl();
  void ReadControl();
  void ReadDataMeanwhile();
  void HandleCommand(const std::string& line);
  void WorkThrough(const Step& step);
  std::unique_ptr<Step> TakeStep(bool accepts);
  std::string& ReceivedEntry();
};

void ScriptedServer::Conversation::Run() {
  for (;;) {
    pollfd entries[4] = {{stop_fd_, POLLIN, 0},
                         {listener_, POLLIN, 0},
                         {control_.Fd(), POLLIN, 0},
                         {receive_meanwhile_ ? data_.Fd() : -1, POLLIN, 0}};
    if (poll(entries, 4, -1) < 0) continue;
    if (entries[0].revents) return;
    if (entries[3].revents) ReadDataMeanwhile();
    if (entries[2].revents) {
      ReadControl();
    } else if (entries[1].revents) {
      AcceptControl();
    }
  }
}

void ScriptedServer::Conversation::AcceptControl() {
  const int fd = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  if (fd == -1) return;
  control_.Take(fd);
  input_.clear();
  ignore_input_ = false;
  std::unique_ptr<Step> step = TakeStep(true);
  if (!step) {
    Problem("a connection that the script does not await");
    control_.Close();
    return;
  }
  WorkThrough(*step);
}

void ScriptedServer::Conversation::ReadControl() {
  ServerChannel::Status status;
  do {
    status = control_.ReadAvailable(input_);
    if (ignore_input_) input_.clear();
    size_t end;
    while ((end = input_.find('\n')) != std::string::npos) {
      const std::string line = input_.substr(0, end + 1);
      input_.erase(0, end + 1);
      HandleCommand(line);
    }
  } while (status == ServerChannel::Status::kOk);
  if (status != ServerChannel::Status::kEnd) return;
  if (!input_.empty() && control_.IsOpen()) Problem("half a command: " + input_);
  input_.clear();
  control_.Close();
}

void ScriptedServer::Conversation::HandleCommand(const std::string& line) {
  const bool proper = line.size() >= 2 && line[line.size() - 2] == '\r';
  const std::string text = proper ? line.substr(0, line.size() - 2) : line;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    commands_.push_back({text, control_.IsSecure()});
  }
  std::unique_ptr<Step> step = TakeStep(false);
  if (!step) {
    Problem("a command that the script does not await: " + text);
    SendText("500 Not in the script\r\n");
    return;
  }
  if (step->expected_ != text) Problem("awaited " + step->expected_ + " but got " + text);
  WorkThrough(*step);
}

std::unique_ptr<ScriptedServer::Step> ScriptedServer::Conversation::TakeStep(bool accepts) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (steps_.empty() || steps_.front()->accepts_ != accepts) return nullptr;
  std::unique_ptr<Step> step = std::move(steps_.front());
  steps_.pop_front();
  working_ = true;
  return step;
}

void ScriptedServer::Conversation::WorkThrough(const Step& step) {
  for (const Action& action : step.actions_) action(*this);
  const std::lock_guard<std::mutex> lock(mutex_);
  working_ = false;
  changed_.notify_all();
}

void ScriptedServer::Conversation::Problem(const std::string& text) {
  const std::lock_guard<std::mutex> lock(mutex_);
  problems_.push_back(text);
}

void ScriptedServer::Conversation::StartTls(bool succeeds) {
  if (!input_.empty()) Problem("text before the handshake: " + input_);
  if (control_.StartTls(tls_) != succeeds) {
    Problem(succeeds ? "the handshake failed" : "the handshake succeeded");
  }
}

void ScriptedServer::Conversation::OpenPassive(bool listening) {
  receive_meanwhile_ = false;
  entry_open_ = false;
  SendText("227 Entering Passive Mode " + NewPassive(listening) + "\r\n");
}

/// Makes sure that the client has come to the data connection.
bool ScriptedServer::Conversation::NeedData() {
  if (data_.IsOpen()) return true;
  if (passive_ == -1 || !WaitForDescriptor(passive_, POLLIN, stop_fd_, kDataWaitMs)) {
    Problem("no data connection came");
    return false;
  }
  data_.Take(accept4(passive_, nullptr, nullptr, SOCK_CLOEXEC));
  return data_.IsOpen();
}

void ScriptedServer::Conversation::StartDataTls(bool succeeds) {
  if (!NeedData()) return;
  if (data_.StartTls(tls_) != succeeds) {
    Problem(succeeds ? "the handshake of the data connection failed"
                     : "the handshake of the data connection succeeded");
  }
}

void ScriptedServer::Conversation::SendForever(ServerChannel& channel, const std::string& bytes) const {
  while (channel.Write(bytes, false) && !WaitForDescriptor(stop_fd_, POLLIN, -1, 0)) continue;
}

void ScriptedServer::Conversation::SendData(const std::string& bytes) {
  // A client may stop reading on purpose, so a write that fails is no problem in itself.
  if (NeedData()) (void)data_.Write(bytes, one_byte_ && bytes.size() <= 4096);
}

std::string& ScriptedServer::Conversation::ReceivedEntry() {
  if (!entry_open_) received_.emplace_back();
  entry_open_ = true;
  return received_.back();
}

void ScriptedServer::Conversation::ReceiveData(size_t limit) {
  if (!NeedData()) return;
  std::string bytes;
  while (bytes.size() < limit) {
    const ServerChannel::Status status = data_.ReadAvailable(bytes, limit - bytes.size());
    if (status == ServerChannel::Status::kEnd) break;
    if (status == ServerChannel::Status::kNothingYet && !data_.WaitReadable(kDataWaitMs)) {
      Problem("the data stopped coming");
      break;
    }
  }
  if (bytes.size() < limit) data_.Close();
  const std::lock_guard<std::mutex> lock(mutex_);
  ReceivedEntry() += bytes;
}

void ScriptedServer::Conversation::ReceiveMeanwhile() {
  if (!NeedData()) return;
  receive_meanwhile_ = true;
  const std::lock_guard<std::mutex> lock(mutex_);
  (void)ReceivedEntry();
}

void ScriptedServer::Conversation::ReadDataMeanwhile() {
  std::string bytes;
  ServerChannel::Status status;
  do {
    status = data_.ReadAvailable(bytes);
  } while (status == ServerChannel::Status::kOk);
  if (status == ServerChannel::Status::kEnd) {
    receive_meanwhile_ = false;
    data_.Close();
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  ReceivedEntry() += bytes;
}

ScriptedServer::Step& ScriptedServer::Conversation::AddStep() {
  const std::lock_guard<std::mutex> lock(mutex_);
  steps_.push_back(std::make_unique<Step>());
  return *steps_.back();
}

bool ScriptedServer::Conversation::WaitUntilDone(int ms) {
  std::unique_lock<std::mutex> lock(mutex_);
  return changed_.wait_for(lock, std::chrono::milliseconds(ms), [this] { return steps_.empty() && !working_; });
}

void ScriptedServer::Conversation::ReportProblems() {
  const bool done = allow_unused_ || WaitUntilDone(1000);
  const std::lock_guard<std::mutex> lock(mutex_);
  for (const std::string& problem : problems_) ADD_FAILURE() << "scripted server: " << problem;
  if (!done && !steps_.empty()) {
    const Step& next = *steps_.front();
    ADD_FAILURE() << "scripted server: " << steps_.size() << " steps left over, the next one is "
                  << (next.accepts_ ? "a connection" : next.expected_);
  }
}

using Step = ScriptedServer::Step;

Step& Step::Then(Action action) {
  actions_.push_back(std::move(action));
  return *this;
}

Step& Step::Raw(const std::string& bytes) {
  return Then([bytes](Conversation& server) { server.SendText(bytes); });
}

Step& Step::Reply(const std::string& line) { return Raw(line + "\r\n"); }

Step& Step::ReplyLines(const std::vector<std::string>& lines) {
  std::string all;
  for (const std::string& line : lines) all += line + "\r\n";
  return Raw(all);
}

Step& Step::ReplyLongLine(const std::string& start, size_t size) {
  return Reply(start + std::string(size > start.size() ? size - start.size() : 0, 'x'));
}

Step& Step::Delay(int ms) {
  return Then([ms](Conversation& server) { server.Pause(ms); });
}

Step& Step::RawForever(const std::string& bytes) {
  return Then([bytes](Conversation& server) { server.SendForever(server.control_, bytes); });
}

Step& Step::DataForever(const std::string& bytes) {
  return Then([bytes](Conversation& server) {
    if (server.NeedData()) server.SendForever(server.data_, bytes);
  });
}

Step& Step::IgnoreInput() {
  return Then([](Conversation& server) { server.ignore_input_ = true; });
}

Step& Step::Close() {
  return Then([](Conversation& server) { server.control_.Close(); });
}

Step& Step::Reset() {
  return Then([](Conversation& server) { server.control_.Reset(); });
}

Step& Step::StartTls(bool succeeds) {
  return Then([succeeds](Conversation& server) { server.StartTls(succeeds); });
}

Step& Step::TryTls() {
  return Then([](Conversation& server) { (void)server.control_.StartTls(server.tls_); });
}

Step& Step::ReplyPassive() {
  return Then([](Conversation& server) { server.OpenPassive(true); });
}

Step& Step::ReplyPassiveRefused() {
  return Then([](Conversation& server) { server.OpenPassive(false); });
}

Step& Step::AcceptData() {
  return Then([](Conversation& server) { (void)server.NeedData(); });
}

Step& Step::DataTls(bool succeeds) {
  return Then([succeeds](Conversation& server) { server.StartDataTls(succeeds); });
}

Step& Step::DataPart(const std::string& bytes) {
  return Then([bytes](Conversation& server) { server.SendData(bytes); });
}

Step& Step::DataSend(const std::string& bytes) { return DataPart(bytes).DataClose(); }

Step& Step::DataClose() {
  return Then([](Conversation& server) {
    if (server.NeedData()) server.data_.Close();
  });
}

Step& Step::DataCut() {
  return Then([](Conversation& server) {
    if (server.NeedData()) server.data_.Cut();
  });
}

Step& Step::DataReset() {
  return Then([](Conversation& server) {
    if (server.NeedData()) server.data_.Reset();
  });
}

Step& Step::DataReceive(size_t bytes) {
  return Then([bytes](Conversation& server) { server.ReceiveData(bytes); });
}

Step& Step::DataReceiveMeanwhile() {
  return Then([](Conversation& server) { server.ReceiveMeanwhile(); });
}

ScriptedServer::ScriptedServer() {
  signal(SIGPIPE, SIG_IGN);  // The TLS library writes with no flag against it.
  conversation_ = std::make_unique<Conversation>();
}

ScriptedServer::~ScriptedServer() { conversation_->ReportProblems(); }

void ScriptedServer::UseOneByteSegments(bool on) { conversation_->one_byte_ = on; }

void ScriptedServer::UseTls(ssl_ctx_st* context) { conversation_->tls_ = context; }

Step& ScriptedServer::Accept() {
  Step& step = conversation_->AddStep();
  step.accepts_ = true;
  return step;
}

Step& ScriptedServer::Greet(const std::string& line) { return Accept().Reply(line); }

Step& ScriptedServer::Expect(const std::string& command) {
  Step& step = conversation_->AddStep();
  step.expected_ = command;
  return step;
}

int ScriptedServer::Port() const { return conversation_->Port(); }

std::string ScriptedServer::Address() const { return conversation_->Address(); }

bool ScriptedServer::WaitUntilDone(int ms) { return conversation_->WaitUntilDone(ms); }

std::vector<ScriptedServer::Command> ScriptedServer::CommandsWithSecurity() const {
  const std::lock_guard<std::mutex> lock(conversation_->mutex_);
  return conversation_->commands_;
}

std::vector<std::string> ScriptedServer::Commands() const {
  std::vector<std::string> texts;
  for (const Command& command : CommandsWithSecurity()) texts.push_back(command.text);
  return texts;
}

std::vector<std::string> ScriptedServer::Received() const {
  const std::lock_guard<std::mutex> lock(conversation_->mutex_);
  return conversation_->received_;
}

std::vector<std::string> ScriptedServer::TakeReceived() {
  const std::lock_guard<std::mutex> lock(conversation_->mutex_);
  return std::exchange(conversation_->received_, {});
}

void ScriptedServer::AllowUnusedSteps() { conversation_->allow_unused_ = true; }

std::vector<std::string> ScriptedServer::TakeProblems() {
  const std::lock_guard<std::mutex> lock(conversation_->mutex_);
  return std::move(conversation_->problems_);
}
