// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "framework/Message.h"
#include "notify/Listeners.h"
#include "text/Shared.h"

/// Receives the plug-in's log lines, filters them by level and passes them to listeners.
namespace virtualtv::framework {

/// One message as the plug-in logged it, without its location line.
struct LogLine {
  int level = 0;
  int channel = 0;        ///< channel of the framework's log
  int place = 0;          ///< source line, from the location line before it
  text::Shared function;  ///< function name, also from the location line
  Message message;
};

/// Subscribes to messages up to this level (0: failures and routine lines; 3: all). `heard` is called inside the call
/// that logs the message. A location line is held back until its message arrives. An exception of `heard` propagates
/// through the plug-in's logger call. A `std::bad_alloc` does not: this listener and the later ones then miss the
/// message.
notify::Subscription listenToLog(int level, std::function<void(const LogLine&)> heard);

/// Suspends the current listeners for the lifetime of this object. Listeners added meanwhile must end before it.
class LogAside {
 public:
  LogAside();
  LogAside(const LogAside&) = delete;
  LogAside& operator=(const LogAside&) = delete;
  ~LogAside();

 private:
  struct Aside;
  std::unique_ptr<Aside> aside_;
};

/// The highest level with a listener; -1 without listeners. Messages above it cost one comparison per logger call.
int logLevel();

}  // namespace virtualtv::framework
