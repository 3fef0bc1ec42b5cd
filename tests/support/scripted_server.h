// An FTP server for tests whose script reads like a story:
//
//   ScriptedServer server;
//   server.Greet("220 Ready");
//   server.Expect("USER anna").Reply("331 Password please");
//   server.Expect("PASS secret").Reply("230 Welcome");
//   server.Expect("PASV").ReplyPassive();
//   server.Expect("LIST").Reply("150 Here it comes").DataSend("-rw-r--r-- ...\r\n").Reply("226 Done");
//   ... connect to server.Address(), run the client ...
//   EXPECT_THAT(server.Commands(), ElementsAre("USER anna", "PASS secret", "PASV", "LIST"));
//
// The server runs in a thread of its own on 127.0.0.1 and works through the steps in order. `Greet` and
// `Accept` are the steps at which a client connects; a script may hold several, for a client that connects
// again. Steps may be added while the client is idle. A command that differs from its step, a command or a
// connection that no step awaits, and steps that nobody came for are failures of the test, reported by the
// destructor.
//
// The actions of a step run in order on the server's thread, so their order says what comes before what: a
// `DataTls` before the `Reply` is a server that secures the data connection before it answers. A step without
// an action is silence. After a step the data connection stays as it is, for the steps that follow.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

struct ssl_ctx_st;

class ScriptedServer {
 public:
  class Conversation;
  using Action = std::function<void(Conversation&)>;

  class Step {
   public:
    // On the control connection.
    Step& Reply(const std::string& line);                        ///< The line and its end.
    Step& ReplyLines(const std::vector<std::string>& lines);     ///< Each with its end.
    Step& ReplyLongLine(const std::string& start, size_t size);  ///< A line of `size` bytes, filled with 'x'.
    Step& Raw(const std::string& bytes);                         ///< As they are: half a line, garbage.
    Step& RawForever(const std::string& bytes);                  ///< Again and again, until the client goes.
    Step& Delay(int ms);
    Step& Silence() { return *this; }
    Step& IgnoreInput();  ///< What this client sends from here on is no command.
    Step& Close();
    Step& Reset();
    /// The server's side of the handshake; `succeeds` false where the story wants it to fail.
    Step& StartTls(bool succeeds = true);
    Step& TryTls();  ///< The same, whatever comes of it.

    // On the data connection.
    Step& ReplyPassive();         ///< 227 with the address of a new listening socket.
    Step& ReplyPassiveRefused();  ///< 227 with a port at which connections are refused.
    Step& AcceptData();           ///< The other actions do it by themselves.
    Step& DataTls(bool succeeds = true);
    Step& DataSend(const std::string& bytes);  ///< Sends all and closes.
    Step& DataPart(const std::string& bytes);  ///< Sends and leaves the connection open: the data stall here.
    Step& DataForever(const std::string& bytes);
    Step& DataClose();  ///< In the proper way.
    Step& DataCut();    ///< Closes without the close notice of TLS.
    Step& DataReset();  ///< With a TCP reset.
    /// Takes so many and leaves the connection open, or all up to the client's close.
    Step& DataReceive(size_t bytes = static_cast<size_t>(-1));
    Step& DataReceiveMeanwhile();  ///< Takes what comes while the following steps run.

    Step& Then(Action action);  ///< Anything else.

   private:
    friend class ScriptedServer;
    friend class Conversation;
    bool accepts_ = false;  ///< A step at which a client connects, rather than sends a command.
    std::string expected_;
    std::vector<Action> actions_;
  };

  struct Command {
    std::string text;  ///< Without its "\r\n"; an end of another kind is kept.
    bool tls;
  };

  ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;
  ~ScriptedServer();

  /// Replies cut into segments of one byte. A server takes the value of `one_byte_segments` when it is made.
  void UseOneByteSegments(bool on);
  static bool one_byte_segments;
  /// The certificate and key of the server's TLS side. Not owned.
  void UseTls(ssl_ctx_st* context);

  Step& Greet(const std::string& line);  ///< A client connects and is greeted.
  Step& Accept();                        ///< A client connects; the actions say what happens.
  Step& Expect(const std::string& command);

  int Port() const;
  std::string Address() const;  ///< "127.0.0.1:port".

  /// Waits until every step has been worked through, at most `ms`.
  bool WaitUntilDone(int ms = 2000);
  std::vector<std::string> Commands() const;
  std::vector<Command> CommandsWithSecurity() const;
  /// What the server took over data connections, one text for each that it read from.
  std::vector<std::string> Received() const;
  /// The same, and forgets it.
  std::vector<std::string> TakeReceived();
  /// The client went in the middle of the script on purpose: steps left over are no failure.
  void AllowUnusedSteps();
  /// What went against the script, and forgets it: for a test in which that is wanted.
  std::vector<std::string> TakeProblems();

 private:
  std::unique_ptr<Conversation> conversation_;
};
