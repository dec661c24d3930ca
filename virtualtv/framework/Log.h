#pragma once

#include <functional>
#include <memory>

#include "framework/Message.h"
#include "notify/Listeners.h"
#include "text/Shared.h"

/// Where the plug-in's log lines end: a filter by level, then those who listen.
namespace virtualtv::framework {

/// One message as the plug-in logged it, without its location line.
struct LogLine {
  int level = 0;
  int channel = 0;        ///< of the framework's log
  int place = 0;          ///< source line, from the location line before it
  text::Shared function;  ///< from there, too
  Message message;
};

/// Calls `heard` with each message of at most this level (0 failures and routine lines, 3 all), inside the call that
/// logs it, until the subscription ends. A location line is held back until its message comes. What `heard` throws
/// leaves through the plug-in's logger call, but for `std::bad_alloc`: that message is lost to it and the next
/// listeners.
notify::Subscription listenToLog(int level, std::function<void(const LogLine&)> heard);

/// Puts those who listen aside for as long as it lives: they hear nothing meanwhile. Those who listen since then must
/// have ended before.
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

/// The highest level that anybody listens to; -1 when nobody does. Any other message costs one comparison a logger
/// call.
int logLevel();

}  // namespace virtualtv::framework
