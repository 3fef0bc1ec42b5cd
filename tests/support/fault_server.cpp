#include "support/fault_server.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>

#include "support/server_thread.h"
#include "support/test_files.h"

namespace {

constexpr int kLateMs = 500;  ///< Longer than a client waits that expects a fault.
constexpr int kSlowMs = 150;
constexpr int kDataWaitMs = 3000;
constexpr size_t kBytesBeforeFault = 1000;
constexpr size_t kAll = static_cast<size_t>(-1);

std::string ListLine(const char* mode, size_t size, const std::string& name) {
  return std::string(mode) + " 1 anna users " + std::to_string(size) + " Jan 15 2020 " + name + "\r\n";
}

std::string FactsLine(const char* type, size_t size, const std::string& name) {
  return std::string("type=") + type + ";size=" + std::to_string(size) + ";modify=20200115103000;mode=0644; " + name;
}

}  // namespace

/// The server's thread and what it shares with the test.
class FaultServer::Conversation : public ServerThread {
 public:
  Conversation(const ServerManner& manner, ssl_ctx_st* context) : manner_(manner), tls_(context) {
    Start([this] { Run(); });
  }
  ~Conversation() { End(); }

  // Guarded by the mutex.
  std::vector<std::string> commands_;
  size_t failing_ = kAll;
  ServerFault fault_ = ServerFault::kNone;
  std::string moved_;

  std::atomic<bool> logged_on_ = false;
  std::atomic<bool> moving_ = false;

 private:
  enum class Wake { kStop, kControl, kData };

  void Run();
  void Serve();
  bool ReadLine(std::string& line);
  void Meet(const std::string& command);
  bool TakeControlInput();
  Wake WaitForEither(int dataFd, short events, int ms);

  void Answer(const std::string& verb, const std::string& argument);
  bool AnswerLogon(const std::string& verb, const std::string& argument);
  bool AnswerQuestion(const std::string& verb, const std::string& argument);
  bool AnswerTransfer(const std::string& verb, const std::string& argument);
  std::string ListingOf(const std::string& verb, const std::string& argument) const;
  bool HasFeature(const char* word) const;

  void Speak(const std::string& reply);
  void SpeakWrongly(const std::string& reply);
  void Write(const std::string& line) { (void)control_.Write(line + "\r\n", false); }
  void WriteBytes(const std::string& bytes) { (void)control_.Write(bytes, false); }
  void OpenPassive();

  void Transfer(const std::string& content, bool isUpload, bool isFile);
  bool OpenData();
  void SendContent(const std::string& content, bool isFile, ServerFault fault);
  void ReceiveContent(ServerFault fault);
  static size_t LimitOf(ServerFault fault);
  void BreakData(ServerFault fault);
  bool AnswerMeanwhile();
  void HoldTransfer();
  void CloseTransfer(ServerFault fault);
  void RecordMoved(const std::string& bytes);

  const ServerManner manner_;
  ssl_ctx_st* const tls_;
  std::string input_;
  ServerFault now_ = ServerFault::kNone;  ///< The fault of the command that is being answered.
  bool dead_ = false;                     ///< Takes what comes and says nothing.
  bool protected_ = false;                ///< PROT P.
  bool in_folder_ = false;                ///< The client went into the one folder.
  bool refused_once_ = false;
  bool in_transfer_ = false;
  bool noop_came_ = false;
  bool aborted_ = false;
};

void FaultServer::Conversation::Run() {
  while (WaitForDescriptor(listener_, POLLIN, stop_fd_, -1)) {
    control_.Take(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC));
    Serve();
    control_.Close();
    data_.Close();
    ClosePassive();
  }
}

/// One client, from its greeting to its end.
void FaultServer::Conversation::Serve() {
  input_.clear();
  dead_ = protected_ = in_folder_ = false;
  if (manner_.implicit && !control_.StartTls(tls_)) return;
  Meet("greeting");
  Speak("220 Ready");
  std::string line;
  while (control_.IsOpen() && ReadLine(line)) {
    if (dead_) continue;
    Meet(line);
    const size_t blank = line.find(' ');
    Answer(line.substr(0, blank), blank == std::string::npos ? "" : line.substr(blank + 1));
  }
}

void FaultServer::Conversation::Meet(const std::string& command) {
  const std::lock_guard<std::mutex> lock(mutex_);
  now_ = commands_.size() == failing_ ? fault_ : ServerFault::kNone;
  commands_.push_back(command);
}

/// False when the client has gone.
bool FaultServer::Conversation::TakeControlInput() {
  ServerChannel::Status status;
  do {
    status = control_.ReadAvailable(input_);
  } while (status == ServerChannel::Status::kOk);
  return status == ServerChannel::Status::kNothingYet;
}

bool FaultServer::Conversation::ReadLine(std::string& line) {
  for (;;) {
    const size_t end = input_.find("\r\n");
    if (end != std::string::npos) {
      line = input_.substr(0, end);
      input_.erase(0, end + 2);
      return true;
    }
    if (!TakeControlInput()) return false;
    if (input_.find("\r\n") == std::string::npos && !control_.WaitReadable(-1)) return false;
  }
}

// What is said

void FaultServer::Conversation::Speak(const std::string& reply) {
  if (dead_) return;
  switch (now_) {
    case ServerFault::kExtraReply:
      Write(reply);
      Write(reply);
      return;
    case ServerFault::kReplyAndClose:
      Write(reply);
      control_.Close();
      return;
    default:
      if (now_ > ServerFault::kNone && now_ < ServerFault::kExtraReply) {
        SpeakWrongly(reply);
      } else {
        Write(reply);
      }
  }
}

void FaultServer::Conversation::SpeakWrongly(const std::string& reply) {
  const ServerFault fault = now_;
  dead_ = fault == ServerFault::kStall || fault == ServerFault::kHalfLine || fault == ServerFault::kLongLine;
  switch (fault) {
    case ServerFault::kClose: return control_.Close();
    case ServerFault::kReset: return control_.Reset();
    case ServerFault::kGarbage: {
      std::string bytes;
      for (unsigned i = 0; i < 200; ++i) bytes += static_cast<char>((i * 2654435761u) >> 11);
      return Write(bytes);
    }
    case ServerFault::kHalfLine: return WriteBytes(reply.substr(0, reply.size() / 2));
    case ServerFault::kHalfLineAndClose: WriteBytes(reply.substr(0, reply.size() / 2)); return control_.Close();
    case ServerFault::kLongLine: return WriteBytes(std::string(10000, 'x'));
    case ServerFault::kLongLineAndClose: WriteBytes(std::string(10000, 'x')); return control_.Close();
    case ServerFault::kLateReply: Pause(kLateMs); return Write(reply);
    case ServerFault::kWrongRefusal: return Write("500 What");
    case ServerFault::kWrongSuccess: return Write("250 As you like");
    case ServerFault::kWrongPreliminary: return Write("150 Soon");
    case ServerFault::kNotAvailable: Write("421 Too many"); return control_.Close();
    default: return;
  }
}

void FaultServer::Conversation::Answer(const std::string& verb, const std::string& argument) {
  if (AnswerLogon(verb, argument) || AnswerQuestion(verb, argument) || AnswerTransfer(verb, argument)) return;
  Speak("500 Unknown");
}

bool FaultServer::Conversation::AnswerLogon(const std::string& verb, const std::string& argument) {
  if (verb == "USER") {
    Speak("331 Password please");
  } else if (verb == "PASS") {
    logged_on_ = now_ == ServerFault::kNone;
    Speak("230 Welcome");
  } else if (verb == "AUTH" && manner_.tls) {
    Speak("234 Go on");
    // A client that heard something else does not come.
    if (now_ == ServerFault::kNone || now_ == ServerFault::kExtraReply) (void)control_.StartTls(tls_);
  } else if (verb == "PBSZ") {
    Speak("200 Ok");
  } else if (verb == "PROT") {
    protected_ = argument == "P";
    Speak("200 Ok");
  } else if (manner_.proxy && (verb == "OPEN" || (verb == "SITE" && argument.find(':') != std::string::npos))) {
    Speak("220 Connected");
  } else {
    return false;
  }
  return true;
}

bool FaultServer::Conversation::HasFeature(const char* word) const {
  for (const std::string& feature : manner_.features) {
    if (feature.find(word) != std::string::npos) return true;
  }
  return false;
}

bool FaultServer::Conversation::AnswerQuestion(const std::string& verb, const std::string& argument) {
  const std::string size = std::to_string(Content().size());
  if (verb == "FEAT") {
    std::string reply = "211-Features\r\n";
    for (const std::string& feature : manner_.features) reply += " " + feature + "\r\n";
    Speak(manner_.features.empty() ? "500 Unknown" : reply + "211 End");
  } else if (verb == "TYPE" || verb == "OPTS" || verb == "NOOP") {
    noop_came_ |= verb == "NOOP";
    Speak("200 Ok");
  } else if (verb == "SYST") {
    Speak(std::string("215 ") + manner_.system);
  } else if (verb == "site" && argument == "dirstyle") {
    Speak("200 MSDOS-like directory output is off");
  } else if (verb == "PWD") {
    Speak("257 \"/home\" is current");
  } else if (verb == "CWD") {
    in_folder_ = argument == "sub";
    Speak("250 Done");
  } else if (verb == "RMD" || verb == "DELE" || verb == "MFMT") {
    Speak("250 Done");
  } else if (verb == "MKD") {
    Speak("257 Made");
  } else if (verb == "SIZE" && HasFeature("SIZE")) {
    Speak("213 " + size);
  } else if (verb == "MDTM" && HasFeature("MDTM")) {
    Speak("213 20200115103000");
  } else if (verb == "MLST" && HasFeature("MLST")) {
    Speak("250-Here\r\n " + FactsLine("file", Content().size(), argument) + "\r\n250 End");
  } else if (verb == "ABOR") {
    if (in_transfer_) Write("426 Broken off");
    aborted_ = true;
    Speak("226 Aborted");
  } else if (verb == "QUIT") {
    Speak("221 Bye");
    control_.Close();
  } else {
    return false;
  }
  return true;
}

// Data

bool FaultServer::Conversation::AnswerTransfer(const std::string& verb, const std::string& argument) {
  if (verb == "PASV") {
    OpenPassive();
  } else if (verb == "LIST" || (verb == "MLSD" && HasFeature("MLSD") && !manner_.refuses_mlsd)) {
    Transfer(ListingOf(verb, argument), false, false);
  } else if (verb == "RETR") {
    Transfer(Content(), false, true);
  } else if (verb == "STOR" && manner_.busy && !refused_once_) {
    refused_once_ = true;
    Speak("550 Busy");
  } else if (verb == "STOR" || verb == "APPE") {
    Transfer("", true, true);
  } else {
    return false;
  }
  return true;
}

std::string FaultServer::Conversation::ListingOf(const std::string& verb, const std::string& argument) const {
  const bool isFacts = verb == "MLSD";
  const bool isWhole = argument.empty() || argument[0] == '.' || argument[0] == '*';
  std::string lines;
  for (const std::string& name : Listed()) {
    if (!isWhole && argument.compare(0, name.size(), name) != 0) continue;
    const bool isFolder = name == "sub";
    if (isFolder && in_folder_) continue;
    const size_t size = name == kFile ? Content().size() : 7;
    lines += isFacts ? FactsLine(isFolder ? "dir" : "file", size, name) + "\r\n"
                     : ListLine(isFolder ? "drwxr-xr-x" : "-rw-r--r--", size, name);
  }
  return lines;
}

void FaultServer::Conversation::OpenPassive() {
  const std::string numbers = NewPassive(now_ != ServerFault::kPassiveRefused);
  moving_ = false;
  if (now_ == ServerFault::kPassiveNonsense) return Write("227 Passive (999,-1,70000,x,300,99999999999)");
  Speak("227 Passive " + numbers);
  dead_ |= now_ == ServerFault::kPassiveDeaf;
}

FaultServer::Conversation::Wake FaultServer::Conversation::WaitForEither(int dataFd, short events, int ms) {
  pollfd entries[3] = {{stop_fd_, POLLIN, 0}, {control_.Fd(), POLLIN, 0}, {dataFd, events, 0}};
  if (poll(entries, 3, ms) <= 0 || entries[0].revents) return Wake::kStop;
  return entries[2].revents ? Wake::kData : Wake::kControl;
}

/// Lets the client in. Not when it goes on with something else instead.
bool FaultServer::Conversation::OpenData() {
  if (WaitForEither(passive_, POLLIN, kDataWaitMs) != Wake::kData) return false;
  data_.Take(accept4(passive_, nullptr, nullptr, SOCK_CLOEXEC));
  ClosePassive();
  if (!protected_) return data_.IsOpen();
  if (now_ == ServerFault::kDataTlsGarbage) {
    (void)data_.Write(std::string(500, '\x16'), false);
    return false;
  }
  // A client may have a question before it secures its side.
  Wake wake;
  while ((wake = WaitForEither(data_.Fd(), POLLIN, kDataWaitMs)) == Wake::kControl) {
    if (!AnswerMeanwhile()) return false;
  }
  return wake == Wake::kData && !dead_ && data_.StartTls(tls_);
}

void FaultServer::Conversation::Transfer(const std::string& content, bool isUpload, bool isFile) {
  const ServerFault fault = now_;
  if (passive_ == -1) return Speak("425 PASV first");
  Speak("150 Here it comes");
  const bool isSaid = fault == ServerFault::kNone || fault >= ServerFault::kExtraReply;
  if (!isSaid || !control_.IsOpen() || dead_) return;
  noop_came_ = aborted_ = false;
  in_transfer_ = true;
  const bool isOpen = OpenData();
  if (isOpen && isUpload) ReceiveContent(fault);
  if (isOpen && !isUpload) SendContent(content, isFile, fault);
  in_transfer_ = false;
  if (fault == ServerFault::kDataStall) dead_ = true;
  if (dead_) return;
  data_.Close();
  if (!isOpen) return Write("425 No data connection");
  if (!aborted_ && control_.IsOpen()) CloseTransfer(fault);
}

void FaultServer::Conversation::CloseTransfer(ServerFault fault) {
  switch (fault) {
    case ServerFault::kNoClosingReply: dead_ = true; return;
    case ServerFault::kDataClosedWithControl: return control_.Close();
    case ServerFault::kClosingDiskFull: return Write("451 Disk full");
    case ServerFault::kClosingTwice: Write("226 Done"); return Write("226 Done");
    case ServerFault::kClosingFailed:
    case ServerFault::kDataCutAtOnce:
    case ServerFault::kDataCutBehindBytes:
    case ServerFault::kDataReset: return Write("426 Broken off");
    default: return Write("226 Done");
  }
}

void FaultServer::Conversation::RecordMoved(const std::string& bytes) {
  const std::lock_guard<std::mutex> lock(mutex_);
  moved_ = bytes;
}

/// One command in the middle of a transfer. False when the client has gone.
bool FaultServer::Conversation::AnswerMeanwhile() {
  std::string line;
  if (!ReadLine(line)) {
    control_.Close();
    return false;
  }
  Meet(line);
  Answer(line, "");
  return true;
}

/// A NOOP lets a slow transfer go on; one that stands is only ever aborted.
void FaultServer::Conversation::HoldTransfer() {
  while (!aborted_ && !dead_ && control_.IsOpen()) {
    if (noop_came_ && manner_.pace == ServerManner::Pace::kSlow) return;
    if (!AnswerMeanwhile()) return;
  }
}

/// What is left of a content when the connection is to break in the middle of it.
size_t FaultServer::Conversation::LimitOf(ServerFault fault) {
  if (fault == ServerFault::kDataCutAtOnce) return 0;
  const bool isCut = fault >= ServerFault::kDataCutBehindBytes && fault <= ServerFault::kDataClosedWithControl;
  return isCut ? kBytesBeforeFault : kAll;
}

void FaultServer::Conversation::BreakData(ServerFault fault) {
  if (fault == ServerFault::kDataReset) data_.Reset();
  if (fault == ServerFault::kDataCutAtOnce || fault == ServerFault::kDataCutBehindBytes) data_.Cut();
}

void FaultServer::Conversation::SendContent(const std::string& content, bool isFile, ServerFault fault) {
  const bool isCut = LimitOf(fault) != kAll;
  const std::string whole = isCut ? content.substr(0, std::min(LimitOf(fault), content.size() / 2)) : content;
  const bool holds = isFile && manner_.pace != ServerManner::Pace::kFast && !isCut;
  const size_t first = holds ? whole.size() / 2 : whole.size();
  // The time to the first NOOP is over when the client gets to look.
  if (holds) Pause(kSlowMs);
  if (isFile) RecordMoved(whole);
  (void)data_.Write(whole.substr(0, first), false);
  moving_ = true;
  if (holds) HoldTransfer();
  if (aborted_ || dead_) return;
  (void)data_.Write(whole.substr(first), false);
  BreakData(fault);
}

void FaultServer::Conversation::ReceiveContent(ServerFault fault) {
  const size_t limit = LimitOf(fault);
  if (manner_.pace == ServerManner::Pace::kSlow) Pause(kSlowMs);
  std::string bytes;
  ServerChannel::Status status = ServerChannel::Status::kOk;
  while (bytes.size() < limit && status != ServerChannel::Status::kEnd && !aborted_ && !dead_) {
    status = data_.ReadAvailable(bytes, limit - bytes.size());
    moving_ = moving_ || !bytes.empty();
    if (moving_ && manner_.pace == ServerManner::Pace::kStanding) HoldTransfer();
    if (status != ServerChannel::Status::kNothingYet) continue;
    const Wake wake = WaitForEither(data_.Fd(), POLLIN, kDataWaitMs);
    if (wake == Wake::kStop || (wake == Wake::kControl && !AnswerMeanwhile())) break;
  }
  RecordMoved(bytes);
  BreakData(fault);
}

// The test's side

std::string FaultServer::Content() { return TestBytes(3000); }

std::vector<std::string> FaultServer::Listed() { return {kFile, "sub", "with blank.txt", "日本語.txt"}; }

FaultServer::FaultServer(const ServerManner& manner, ssl_ctx_st* context) {
  signal(SIGPIPE, SIG_IGN);  // The TLS library writes with no flag against it.
  conversation_ = std::make_unique<Conversation>(manner, context);
}

FaultServer::~FaultServer() = default;

std::string FaultServer::Address() const { return conversation_->Address(); }

void FaultServer::FailAt(size_t number, ServerFault fault) {
  const std::lock_guard<std::mutex> lock(conversation_->mutex_);
  conversation_->failing_ = number;
  conversation_->fault_ = fault;
}

std::vector<std::string> FaultServer::Commands() const {
  const std::lock_guard<std::mutex> lock(conversation_->mutex_);
  return conversation_->commands_;
}

bool FaultServer::IsLoggedOn() const { return conversation_->logged_on_; }

std::string FaultServer::Moved() const {
  const std::lock_guard<std::mutex> lock(conversation_->mutex_);
  return conversation_->moved_;
}

bool FaultServer::IsMoving() const { return conversation_->moving_; }
