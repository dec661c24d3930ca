// SPDX-License-Identifier: MIT
// `serve`, as people, tests and service managers start it.
#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "virtualtv/net/Wire.h"
#include "virtualtv/program/Program.h"

namespace virtualtv::shell {
namespace {

namespace fs = std::filesystem;
using net::Wire;

/// The port in `emp-window: http://127.0.0.1:8090/`.
unsigned short portIn(const std::string& line) {
  const std::size_t colon = line.rfind(':');
  if (!line.starts_with("emp-window: http://") || !line.ends_with('/')) {
    ADD_FAILURE() << "no address: " << line;
    throw std::runtime_error("no address");
  }
  return static_cast<unsigned short>(std::stoi(line.substr(colon + 1)));
}

/// The answer to a POST that calls a method.
std::string called(unsigned short port, const std::string& method, const std::string& parameters = "[]") {
  const std::string body = net::requestOf(1, method, parameters);
  return Wire(port).ask(net::postOf(body), body).body;
}

class ServeTest : public ProgramTest {
 protected:
  /// The arguments to serve on a free port, with `more` after them.
  static std::vector<std::string> words(std::vector<std::string> more = {"--fresh"}) {
    more.insert(more.begin(), {"serve", "--listen", "127.0.0.1:0"});
    return more;
  }
  /// Expects that the server does not start: status 2, this line on standard error, and no other output.
  void expectRefusal(std::vector<std::string> arguments, const std::string& error) {
    arguments.insert(arguments.begin(), "serve");
    const Ending refused = run(arguments);
    EXPECT_EQ(refused.err, "emp-window: " + error + "\n");
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.status, 2);
  }
  /// Writes a file that only its owner can read.
  std::string secret(const std::string& content) const {
    std::string file = made("token", content);
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    return file;
  }
};

TEST_F(ServeTest, TellsItsAddressOnceClientsCanConnectAndEndsOnSignals) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    Running server(words(), [] { std::signal(SIGHUP, SIG_DFL); });  // the test itself may run under nohup
    const unsigned short port = portIn(server.line());
    Wire client(port);
    EXPECT_EQ(client.upgrade().status, 101);
    EXPECT_NE(called(port, "window.GetCurrentChannel_Name").find("Lighthouse One"), std::string::npos);
    server.send(signal);
    EXPECT_EQ(client.frame().code(), 1001);
    client.close();
    const Ending ended = server.wait();
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "");
  }
}

TEST_F(ServeTest, GoesOnWhenItsTerminalHangsUpIfItWasStartedToIgnoreThat) {
  Running server(words(), [] { std::signal(SIGHUP, SIG_IGN); });
  const unsigned short port = portIn(server.line());
  server.send(SIGHUP);
  EXPECT_NE(called(port, "window.GetTVMode").find("\"result\""), std::string::npos);
  server.send(SIGTERM);
  EXPECT_EQ(server.wait().status, 0);
}

TEST_F(ServeTest, WritesAddressesOfBothKinds) {
  Running six({"serve", "--fresh", "--listen", "[::1]:0"});
  const std::string line = six.line();
  EXPECT_TRUE(line.starts_with("emp-window: http://[::1]:")) << line;
  Running named({"serve", "--fresh", "--listen", "localhost:0"});
  EXPECT_TRUE(named.line().starts_with("emp-window: http://127.0.0.1:"));
}

TEST_F(ServeTest, AnAddressInUseIsAnError) {
  Running server(words());
  const std::string place = "127.0.0.1:" + std::to_string(portIn(server.line()));
  expectRefusal({"--fresh", "--listen", place}, "cannot listen on " + place + ": Address already in use");
}

TEST_F(ServeTest, WhatIsNoAddressIsAnError) {
  for (const std::string listen : {"", "8090", ":8090", "127.0.0.1", "127.0.0.1:", "127.0.0.1:65536", "127.0.0.1:x",
                                   "tv.example:80", "::1:80", "[127.0.0.1]:80", "http://127.0.0.1:80"}) {
    expectRefusal({"--fresh", "--listen", listen},
                  "--listen: an address and a port are wanted, as in 127.0.0.1:8090, not '" + listen + "'");
  }
}

TEST_F(ServeTest, OthersMayReachItOnlyWithAToken) {
  expectRefusal({"--fresh", "--listen", "0.0.0.0:0"},
                "--listen: others can reach 0.0.0.0:0, so --token FILE is wanted");
  expectRefusal({"--fresh", "--listen", "[::]:0"}, "--listen: others can reach [::]:0, so --token FILE is wanted");
  expectRefusal({"--fresh", "--listen", "[::ffff:0.0.0.0]:0"},
                "--listen: others can reach [::ffff:0.0.0.0]:0, so --token FILE is wanted");
  Running mapped({"serve", "--fresh", "--listen", "[::ffff:127.0.0.1]:0"});
  EXPECT_TRUE(mapped.line().starts_with("emp-window: http://[::ffff:127.0.0.1]:"));
  Running server({"serve", "--fresh", "--listen", "0.0.0.0:0", "--token", secret("s3cret\n")});
  const std::string line = server.line();
  EXPECT_TRUE(line.starts_with("emp-window: http://0.0.0.0:")) << line;
  EXPECT_EQ(Wire(portIn(line)).upgrade("/rpc?token=s3cret").status, 101);
}

TEST_F(ServeTest, WantsATokenThatIsOneAndThatNobodyElseCanRead) {
  const auto refusal = [&](const std::string& file, const std::string& why) {
    expectRefusal({"--fresh", "--token", file}, "--token: " + file + ": " + why);
  };
  refusal(secret(""), "its first line has no token");
  refusal(secret("\nsecond\n"), "its first line has no token");
  refusal(secret("two words\n"), "a token of visible ASCII characters without blanks is wanted on its first line");
  refusal((folder / "none").string(), "No such file or directory");
  refusal(folder.path().string(), fs::perms::none != (fs::status(folder.path()).permissions() & fs::perms::others_read)
                                      ? "others can read or change it; 'chmod 600' helps"
                                      : "Is a directory");
  const std::string file = secret("s3cret\n");
  for (const fs::perms others : {fs::perms::group_read, fs::perms::others_read, fs::perms::group_write}) {
    fs::permissions(file, fs::perms::owner_read | others);
    refusal(file, "others can read or change it; 'chmod 600' helps");
  }
}

TEST_F(ServeTest, KnowsTheTokenOfItsFileAndNeverTellsIt) {
  Running server([&] {
    std::vector<std::string> arguments = words({"--fresh", "--token", secret("s3cret\r\nmore\n")});
    arguments.insert(arguments.begin(), {"--log", "1"});
    return arguments;
  }());
  const unsigned short port = portIn(server.line());
  EXPECT_EQ(Wire(port).ask("GET /openrpc.json HTTP/1.1\nHost: localhost\n").status, 401);
  EXPECT_EQ(Wire(port).ask("GET /openrpc.json HTTP/1.1\nHost: localhost\nAuthorization: Bearer s3cret\n").status, 200);
  EXPECT_EQ(Wire(port).upgrade("/rpc?token=s3cret").status, 101);
  EXPECT_EQ(Wire(port).upgrade("/rpc?token=other").status, 401);
  server.send(SIGTERM);
  const Ending ended = server.wait();
  EXPECT_EQ(ended.status, 0);
  for (const char* line : {"http GET /openrpc.json 401 ", "http GET /openrpc.json 200 ", "http GET /rpc 101 "}) {
    EXPECT_NE(ended.err.find(line), std::string::npos) << ended.err;
  }
  EXPECT_EQ(ended.err.find("s3cret"), std::string::npos) << ended.err;
}

TEST_F(ServeTest, SaysNothingOfRequestsUnlessAskedTo) {
  Running server(words());
  Wire(portIn(server.line())).ask("GET / HTTP/1.1\nHost: localhost\n");
  server.send(SIGTERM);
  EXPECT_EQ(server.wait().err, "");
}

TEST_F(ServeTest, SaysOnceWhoseRequestsItRefuses) {
  Running server(words());
  const unsigned short port = portIn(server.line());
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(Wire(port).ask("GET / HTTP/1.1\nHost: localhost\nOrigin: http://a.example\n").status, 403);
  }
  server.send(SIGTERM);
  EXPECT_EQ(server.wait().err,
            "emp-window: pages of http://a.example may not use this server: start it with --allow-origin "
            "http://a.example\n");
}

TEST_F(ServeTest, LetsOriginsAndHostsInByTheirOptions) {
  Running server(words({"--fresh", "--allow-origin", "http://a.example", "--allow-origin=http://localhost:*",
                        "--allow-host", "tv.example", "--allow-host", "box"}));
  const unsigned short port = portIn(server.line());
  for (const char* origin : {"http://a.example", "http://localhost:5173"}) {
    for (const char* host : {"tv.example", "box:80", "localhost"}) {
      EXPECT_EQ(Wire(port)
                    .ask("GET / HTTP/1.1\nHost: " + std::string(host) + "\nOrigin: " + std::string(origin) + "\n")
                    .status,
                200);
    }
  }
  expectRefusal({"--fresh", "--allow-origin", "http://a.example/"},
                "--allow-origin: an origin is wanted, as in http://localhost:5173, not 'http://a.example/'");
  expectRefusal({"--fresh", "--allow-host", "a:80"},
                "--allow-host: the name of a host is wanted, without a port, not 'a:80'");
}

TEST_F(ServeTest, ArgumentsThatItDoesNotKnowAreAnError) {
  for (const auto& [arguments, mentioned] : {
           std::pair<std::vector<std::string>, std::string>{{"serve", "--files", "."}, "--files requires --token"},
           {{"serve", "--nonsense"}, "--nonsense"},
           {{"serve", "more"}, "more"},
           {{"serve", "--max-sessions", "0"}, "--max-sessions: a number from 1 to 1000000 is wanted, not '0'"},
           {{"serve", "--max-sessions", "x"}, "--max-sessions"},
           {{"serve", "--token="}, "--token: a file is wanted"},
           {{"serve", "--snapshot="}, "--snapshot: a file is wanted"},
           {{"serve", "--record="}, "--record: a file is wanted"},
       }) {
    const Ending refused = run(arguments);
    expectError(refused, {mentioned});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.out, "");
  }
}

TEST_F(ServeTest, KeepsWhatClientsDo) {
  std::string before = "unicode \"Lighthouse One\"\n";
  for (const int signal : {SIGTERM, SIGHUP}) {
    Running server({"--state", state().string(), "serve", "--listen", "127.0.0.1:0"},
                   [] { std::signal(SIGHUP, SIG_DFL); });
    called(portIn(server.line()), "window.SetChannel", signal == SIGHUP ? "[5, 0]" : "[3, 0]");
    server.send(signal);
    EXPECT_EQ(server.wait().status, 0);
    const std::string name = run({"--state", state().string(), "exec", "GetCurrentChannel_Name"}).out;
    EXPECT_NE(name, before);
    before = name;
  }
}

TEST_F(ServeTest, AFreshSetLeavesTheStateUntouched) {
  const std::vector<std::string> kept{"--state", state().string(), "exec", "GetCurrentChannel_Name"};
  ASSERT_EQ(run({"--state", state().string(), "exec", "SetChannel", "3", "0"}).status, 0);
  const std::string before = run(kept).out;
  const auto changed = fs::last_write_time(state() / "tv.db");
  {
    std::vector<std::string> arguments = words();
    arguments.insert(arguments.begin(), {"--state", state().string()});
    Running server(arguments);
    const unsigned short port = portIn(server.line());
    EXPECT_NE(called(port, "window.GetCurrentChannel_Name").find("Lighthouse One"), std::string::npos);
    called(port, "window.SetChannel", "[4, 0]");
    EXPECT_EQ(run(kept).out, before) << "the state is free for others";
    server.send(SIGTERM);
    EXPECT_EQ(server.wait().status, 0);
  }
  EXPECT_EQ(fs::last_write_time(state() / "tv.db"), changed);
  EXPECT_EQ(run(kept).out, before);
}

TEST_F(ServeTest, NeedsNoPlaceForASetThatKeepsNothing) {
  Running server(words(), [] {
    ::unsetenv("XDG_STATE_HOME");
    ::unsetenv("HOME");
  });
  portIn(server.line());
}

TEST_F(ServeTest, StartsFromASnapshot) {
  const std::string snapshot = (folder / "s.json").string();
  run({}, "SetChannel 3 0\n.snapshot " + snapshot + "\n");
  const std::string name = run({"exec", "--raw", "GetCurrentChannel_Name"}).out;
  run({}, ".reset\n");
  for (const std::vector<std::string>& more :
       {std::vector<std::string>{"--snapshot", snapshot}, {"--fresh", "--snapshot", snapshot}}) {
    Running server(words(more));
    const std::string answer = called(portIn(server.line()), "window.GetCurrentChannel_Name");
    EXPECT_NE(answer.find(name.substr(0, name.size() - 1)), std::string::npos) << answer;
  }
  EXPECT_EQ(run({"exec", "GetCurrentChannel_Name"}).out, "unicode \"Lighthouse One\"\n");
  expectRefusal({"--snapshot", (folder / "none").string()},
                "cannot read " + (folder / "none").string() + ": No such file or directory");
  const Ending bad = run({"serve", "--snapshot", made("bad.json", "{}")});
  expectError(bad, {(folder / "bad.json").string() + ": "});
  EXPECT_EQ(bad.status, 2);
}

/// What `check` prints for a transcript that passes.
constexpr const char* allPassed = "transcripts: 1 passed, 0 failed\n";

TEST_F(ServeTest, RecordsWhatIsDone) {
  const std::string file = (folder / "rec.txt").string();
  ::umask(0);
  Running server(words({"--fresh", "--record", file}));
  const unsigned short port = portIn(server.line());
  called(port, "window.FindChannel", "[0, 1]");
  Wire client(port);
  client.upgrade();
  client.call(net::requestOf(1, "window.GetChannel_Size", "[]"));
  client.call(net::requestOf(2, "tv.set", R"(["region", 7])"));
  client.call(net::requestOf(3, "tv.run", R"([".vconf set k str $'a\\nb'"])"));
  called(port, "tv.restart");
  called(port, "window.GetChannel_Size");
  server.send(SIGTERM);
  const Ending ended = server.wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  const std::string text = test::contentOf(file);
  std::size_t at = 0;
  for (const std::string line :
       {"> .recorded\n", "> .engine 1:main\n", "> FindChannel 0 1\nint 1\n", "> .engine 2:main\n",
        "> GetChannel_Size\nint 0\n", "> .set region 7\n", "> .vconf set k str $'a\\nb'\n", "> .close 1:main\n",
        "> .restart\n", "> .engine 1:main\n", "> GetChannel_Size\nint 0\n"}) {
    at = text.find(line, at);
    ASSERT_NE(at, std::string::npos) << line << text;
  }
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(run({"check", file}).out, allPassed);
  test::write(file, text.substr(0, text.find("int 1\n")) + "int 3\n" + text.substr(text.find("int 1\n") + 6));
  EXPECT_EQ(run({"check", file}).status, 1);
}

TEST_F(ServeTest, RecordsASetThatIsNotFreshBehindItsSnapshot) {
  const std::string file = (folder / "rec.txt").string();
  ASSERT_EQ(run({"--state", state().string(), "exec", "SetChannel", "3", "0"}).status, 0);
  {
    Running server({"--state", state().string(), "serve", "--listen", "127.0.0.1:0", "--record", file});
    called(portIn(server.line()), "window.GetCurrentChannel_Name");
    server.send(SIGTERM);
    EXPECT_EQ(server.wait().status, 0);
  }
  const std::string text = test::contentOf(file);
  EXPECT_TRUE(text.starts_with("> .recorded\n> .restore ./rec.txt.d/1.json\n")) << text;
  EXPECT_EQ(text.find("Lighthouse One"), std::string::npos);
  EXPECT_EQ(run({"check", file}).out, allPassed);

  fs::rename(folder / "rec.txt.d", folder / "from");
  const std::string other = (folder / "other.txt").string();
  Running server(words({"--snapshot", (folder / "from/1.json").string(), "--record", other}));
  called(portIn(server.line()), "window.GetCurrentChannel_Name");
  server.send(SIGTERM);
  server.wait();
  EXPECT_EQ(test::contentOf(folder / "other.txt.d/1.json"), test::contentOf(folder / "from/1.json"));
  EXPECT_EQ(run({"check", other}).out, allPassed);
}

TEST_F(ServeTest, RecordsIntoANewFileAlone) {
  const std::string file = made("rec.txt", "kept");
  expectRefusal({"--fresh", "--listen", "127.0.0.1:0", "--record", file}, "cannot record to " + file + ": File exists");
  EXPECT_EQ(test::contentOf(file), "kept");
  const std::string missing = (folder / "none/rec.txt").string();
  expectRefusal({"--fresh", "--listen", "127.0.0.1:0", "--record", missing},
                "cannot record to " + missing + ": No such file or directory");
}

TEST_F(ServeTest, GoesOnWhereItCantRecordAnyMore) {
  const std::string file = (folder / "rec.txt").string();
  Running server(words({"--fresh", "--record", file}), [] {
    std::signal(SIGXFSZ, SIG_IGN);
    ::setenv("LLVM_PROFILE_FILE", "/dev/null", 1);  // the limit would stop a coverage build from writing it
    test::limitFileSize(400);
  });
  const unsigned short port = portIn(server.line());
  for (int time = 0; time < 20; ++time) {
    EXPECT_NE(called(port, "window.GetTVMode").find("\"result\""), std::string::npos);
  }
  server.send(SIGTERM);
  const Ending ended = server.wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "emp-window: cannot record to " + file + ": File too large; the recording has ended\n");
  EXPECT_EQ(run({"check", file}).out, allPassed);
}

TEST_F(ServeTest, EndsWithItsInputWhereThatIsAskedFor) {
  Running server(words({"--fresh", "--until-eof"}));
  Wire client(portIn(server.line()));
  EXPECT_EQ(client.upgrade().status, 101);
  server.endInput();
  EXPECT_EQ(client.frame().code(), 1001);
  client.close();
  EXPECT_EQ(server.wait().status, 0);
  EXPECT_EQ(run(words({"--fresh", "--until-eof"}), "what is typed is dropped\n").status, 0);
  EXPECT_EQ(runIn({}, words({"--fresh", "--until-eof"})).status, 0) << "the null device has ended, too";
}

TEST_F(ServeTest, GoesOnWithoutInputOtherwise) {
  Running server(words());
  const unsigned short port = portIn(server.line());
  server.endInput();
  EXPECT_NE(called(port, "window.GetTVMode").find("\"result\""), std::string::npos);
}

TEST_F(ServeTest, HoldsRepliesBackUnlessToldNotTo) {
  Running server(words({"--fresh", "--no-wait"}));
  Wire client(portIn(server.line()));
  client.upgrade();
  client.call(net::holdBack());
  EXPECT_EQ(net::idOf(client.call(net::heldBack(2))), 2);
}

TEST_F(ServeTest, RefusesMoreSessionsThanItMayHave) {
  Running server(words({"--fresh", "--max-sessions", "1"}));
  const unsigned short port = portIn(server.line());
  Wire first(port);
  EXPECT_EQ(first.upgrade().status, 101);
  EXPECT_EQ(Wire(port).upgrade().status, 503);
  const std::string body = net::requestOf(1, "tv.state");
  const net::HttpResponse refused = Wire(port).ask(net::postOf(body), body);
  EXPECT_EQ(refused.status, 503);
  EXPECT_EQ(refused.body, "as many sessions are open as may be\n");
}

/// Makes a socket that listens on a free port. @param port  receives the port.
int listening(in_addr_t address, unsigned short& port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(address);
  socklen_t size = sizeof place;
  EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&place), size), 0);
  EXPECT_EQ(::listen(socket, 8), 0);
  EXPECT_EQ(::getsockname(socket, reinterpret_cast<sockaddr*>(&place), &size), 0);
  port = ntohs(place.sin_port);
  return socket;
}

/// In a new process: hands a socket to the program that the process becomes, as service managers do.
void handOver(int socket, const std::string& process, const char* count = "1") {
  ::dup2(socket, 3);
  ::fcntl(3, F_SETFD, 0);
  ::setenv("LISTEN_FDS", count, 1);
  ::setenv("LISTEN_PID", process.c_str(), 1);
}

TEST_F(ServeTest, ListensOnTheSocketThatItIsHandedOver) {
  unsigned short port = 0;
  const int socket = listening(INADDR_LOOPBACK, port);
  Wire early(port);  // the socket accepts clients before the server starts
  Running server({"serve", "--fresh"}, [&] { handOver(socket, std::to_string(::getpid())); });
  ::close(socket);
  EXPECT_EQ(server.line(), "emp-window: http://127.0.0.1:" + std::to_string(port) + "/");
  EXPECT_EQ(early.upgrade().status, 101);
}

TEST_F(ServeTest, ASocketForAnotherProcessIsNotItsOwn) {
  unsigned short port = 0;
  const int socket = listening(INADDR_LOOPBACK, port);
  Running server(words(), [&] { handOver(socket, "1"); });
  ::close(socket);
  EXPECT_NE(portIn(server.line()), port);
}

TEST_F(ServeTest, RefusesSocketsThatItCantServe) {
  const auto refusal = [](int socket, const char* count = "1") {
    Running server({"serve", "--fresh"}, [&] { handOver(socket, std::to_string(::getpid()), count); });
    ::close(socket);
    const Ending ended = server.wait();
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    return ended.err;
  };
  unsigned short port = 0;
  const int open = listening(INADDR_ANY, port);
  EXPECT_EQ(refusal(open),
            "emp-window: --listen: others can reach 0.0.0.0:" + std::to_string(port) + ", so --token FILE is wanted\n");
  EXPECT_EQ(refusal(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
            "emp-window: cannot listen on the socket 3 that was handed over: it does not listen for TCP\n");
  EXPECT_EQ(refusal(::open("/dev/null", O_RDONLY | O_CLOEXEC)),
            "emp-window: cannot listen on the socket 3 that was handed over: Socket operation on non-socket\n");
  const std::string fewer = refusal(listening(INADDR_LOOPBACK, port), "2000000000");
  EXPECT_EQ(fewer.find("emp-window: cannot listen on the socket 4 that was handed over: "), 0U) << fewer;
}

// On a terminal.

class ServeOnTerminalTest : public ProgramTest {
 protected:
  OnTerminal terminal{{"serve", "--fresh", "--listen", "127.0.0.1:0"}};

  /// Waits for the prompt. @return the port that it serves on.
  unsigned short port() {
    std::string line = terminal.readUntil("/\r\n");
    terminal.readUntil("\n> ");
    return portIn(line.substr(0, line.size() - 2));
  }
};

TEST_F(ServeOnTerminalTest, TheShellAndClientsHaveTheSameSet) {
  const unsigned short at = port();
  terminal.type(".set region 7\n");
  terminal.readUntil("\n> ");
  EXPECT_NE(called(at, "tv.get", R"({"name":"region"})").find("\"7\""), std::string::npos);
  called(at, "tv.set", R"({"name":"region","value":"8"})");
  terminal.type(".get region\n");
  EXPECT_NE(terminal.readUntil("\n> ").find("region = 8\r\n"), std::string::npos);
  terminal.type("GetCurrentChannel_Na\t\n");
  EXPECT_NE(terminal.readUntil("\n> ").find("Lighthouse One"), std::string::npos);
}

TEST_F(ServeOnTerminalTest, ControlCClearsTheLineAndTheEndOfTheInputEndsTheServer) {
  Wire client(port());
  EXPECT_EQ(client.upgrade().status, 101);
  terminal.type("nonsense\x03");
  terminal.type("GetSource 2\n");
  EXPECT_NE(terminal.readUntil("\n> ").find("int 0\r\n"), std::string::npos);
  terminal.type("\x04");
  EXPECT_EQ(client.frame().code(), 1001);
  client.close();
  terminal.readUntil("nothing more");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(ServeOnTerminalTest, LinesGoToTheShellEvenWhereTheEndOfTheInputEndsIt) {
  OnTerminal other({"serve", "--fresh", "--listen", "127.0.0.1:0", "--until-eof"});
  other.readUntil("\n> ");
  for (int time = 0; time < 10; ++time) {
    other.type("GetSource 2\n");
    EXPECT_NE(other.readUntil("\n> ").find("int 0\r\n"), std::string::npos);
  }
  other.type("\x04");
  other.readUntil("nothing more");
  EXPECT_EQ(other.wait(), 0);
}

TEST_F(ServeOnTerminalTest, WhatIsTypedIsRecordedBesideWhatClientsDo) {
  const std::string file = (folder / "rec.txt").string();
  OnTerminal typed({"serve", "--fresh", "--listen", "127.0.0.1:0", "--record", file});
  const std::string line = typed.readUntil("/\r\n");
  typed.readUntil("\n> ");
  typed.type(".set region 7\nGetTVMode\n");
  typed.readUntil("int 1\r\n");
  called(portIn(line.substr(0, line.size() - 2)), "window.GetTVMode");
  typed.type("\x04");
  typed.readUntil("nothing more");
  EXPECT_EQ(typed.wait(), 0);
  const std::string text = test::contentOf(file);
  for (const char* part : {"> .set region 7\n", "> .engine main\n", "> .engine 1:main\n", "> GetTVMode\nint 1\n"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << text;
  }
  EXPECT_EQ(run({"check", file}).out, "transcripts: 1 passed, 0 failed\n");
}

TEST_F(ServeOnTerminalTest, QuitEndsTheServer) {
  port();
  terminal.type(".quit\n");
  terminal.readUntil("nothing more");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(ServeOnTerminalTest, ASignalEndsItAndLeavesTheTerminalAsItWas) {
  Wire client(port());
  EXPECT_EQ(client.upgrade().status, 101);
  terminal.send(SIGTERM);
  EXPECT_EQ(client.frame().code(), 1001);
  client.close();
  terminal.readUntil("nothing more");
  EXPECT_TRUE(terminal.echoes());
  EXPECT_EQ(terminal.wait(), 0);
}

}  // namespace
}  // namespace virtualtv::shell
