// SPDX-License-Identifier: MIT
#include "program/Serve.h"

#include <sys/eventfd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <functional>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "net/InheritedSockets.h"
#include "net/Server.h"
#include "net/Token.h"
#include "program/Desk.h"
#include "program/Keys.h"
#include "program/Terminal.h"
#include "set/SnapshotJson.h"
#include "shell/Files.h"
#include "shell/Recording.h"
#include "shell/Scan.h"

namespace virtualtv::program {

using namespace shell;

namespace {

/// An event that one thread waits for and another thread triggers.
class Happening {
 public:
  Happening() : descriptor_(::eventfd(0, EFD_CLOEXEC)) {
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "cannot serve");
  }
  Happening(const Happening&) = delete;
  Happening& operator=(const Happening&) = delete;
  ~Happening() { ::close(descriptor_); }

  /// Becomes readable once the event has happened.
  int descriptor() const { return descriptor_; }
  void happen() const { ::eventfd_write(descriptor_, 1); }

 private:
  int descriptor_;
};

/// Raises the limit of descriptors, since each connection takes one.
void allowManyDescriptors() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

net::Options optionsOf(const Wishes& wishes) {
  const ServeWishes& serve = wishes.serve;
  net::Options options;
  options.listen = serve.listen;
  options.sockets = net::takeInheritedSockets();
  options.access.origins = serve.origins;
  options.access.hosts = serve.hosts;
  if (!serve.token.empty()) options.access.token = net::readToken(serve.token);
  options.waits = !serve.noWait;
  options.mostSessions = serve.mostSessions;
  options.files = serve.files;
  options.complain = complain;
  if (wishes.logLevel > 0) {
    options.log = [](const std::string& line) { std::cerr << "http " + line + "\n"; };
  }
  return options;
}

void startFrom(Desk& desk, const std::string& snapshot) {
  const std::string text = readFile(snapshot);
  try {
    desk.device().restore(readSnapshot(text));
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(snapshot + ": " + error.what());
  }
}

/// True when the program runs in the foreground of a terminal.
bool hasTerminal() {
  const bool isTerminal = ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
  return isTerminal && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

/// Serves while a person talks to the set. The terminal has its own thread; typed lines run on this thread.
void serveBesideTerminal(net::Server& server, Desk& desk) {
  device::Loop& loop = desk.device().loop();
  const Happening end;
  Talk talk{.history = desk.history(),
            .afterEach = [&] { desk.sayComplaints(); },
            .onSet = [&loop](const std::function<void()>& work) { loop.call(work); },
            .end = end.descriptor()};
  const Keys::Tending tending;  // the other thread handles the signals, as without a server
  std::thread terminal([&] {
    try {
      program::talk(desk.session(), talk);
    } catch (const std::exception& error) {
      complain(error.what());
    }
    server.end();
    loop.stop();
  });
  server.run();
  end.happen();
  loop.run();  // runs the remaining work of the terminal until it has ended
  terminal.join();
}

}  // namespace

ExitStatus runServer(kel::CEmpAppBase& app, const Wishes& wishes) {
  net::Options options = optionsOf(wishes);
  allowManyDescriptors();
  Desk desk(app, wishes);
  if (!wishes.serve.snapshot.empty()) startFrom(desk, wishes.serve.snapshot);
  if (const auto& files = wishes.serve.recordings; !files.empty()) {
    const auto read = [](const std::string& file, const TakeBlock& take) { readFileInBlocks(file, file, take); };
    desk.device().import(files, scanFiles(files, read), false, desk.session().recordings(files));
  }
  options.state = desk.state();
  net::Server server(desk.device(), std::move(options));
  std::optional<Recording> recording;
  if (!wishes.serve.record.empty()) recording.emplace(desk.device(), wishes.serve.record, complain);
  server.endOnSignals();
  std::cout << "emp-window: " << server.address() << std::endl;
  if (hasTerminal()) {
    serveBesideTerminal(server, desk);  // ends with its input anyway
  } else {
    if (wishes.serve.untilEof) server.endWithInput(STDIN_FILENO);
    server.run();
  }
  desk.sayComplaints();
  return desk.status();
}

}  // namespace virtualtv::program
