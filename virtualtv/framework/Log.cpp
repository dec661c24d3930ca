// SPDX-License-Identifier: MIT
#include "framework/Log.h"

#include <cstdarg>
#include <cstring>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <utility>

#include "kel/CKELDebug.h"

namespace virtualtv::framework {

namespace {

constexpr const char* locationFormat = "[KEL][%s(%d)] ";

int threshold = -1;

std::multiset<int>& levels() {
  static std::multiset<int> wanted;
  return wanted;
}

notify::Listeners<LogLine>& listeners() {
  static notify::Listeners<LogLine> all;
  return all;
}

struct Location {
  text::Shared function;
  int place = 0;
  bool lost = false;  ///< no memory for the location; without it the message would be attributed to another operation
};

/// The last location line, whose message has not been logged yet.
Location& location() {
  static Location waiting;
  return waiting;
}

/// The name of a function, shared with the previous location if it is the same. Commands on lists log several lines per
/// service.
text::Shared nameOf(const char* function) {
  static text::Shared last;
  if (function == nullptr) return {};
  if (!(last == function)) last = std::string(function);
  return last;
}

/// Handles a message that passes the filter. Not inlined: otherwise the caller would save registers for each message
/// that is dropped. If there is no memory, the message is lost and the logging code continues.
[[gnu::noinline]] void take(int channel, int level, const char* format, va_list arguments) try {
  if (std::strcmp(format, locationFormat) == 0) {
    const char* function = va_arg(arguments, const char*);
    location().lost = true;  // until it is stored
    location() = {nameOf(function), va_arg(arguments, int)};
    return;
  }
  Location told = std::exchange(location(), {});
  if (told.lost) return;
  listeners().tell({level, channel, told.place, std::move(told.function), Message(format, arguments)});
} catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
}

void setThreshold() {
  threshold = levels().empty() ? -1 : *levels().rbegin();
  location() = {};
}

}  // namespace

notify::Subscription listenToLog(int level, std::function<void(const LogLine&)> heard) {
  auto listening =
      std::make_shared<notify::Subscription>(listeners().add([level, heard = std::move(heard)](const LogLine& line) {
        if (line.level <= level) heard(line);
      }));
  levels().insert(level);
  setThreshold();
  return notify::Subscription([level, listening] {
    listening->end();
    levels().erase(levels().find(level));
    setThreshold();
  });
}

struct LogAside::Aside {
  std::multiset<int> levels;
  notify::Listeners<LogLine> listeners;
};

LogAside::LogAside() : aside_(std::make_unique<Aside>()) {
  std::swap(levels(), aside_->levels);
  std::swap(listeners(), aside_->listeners);
  setThreshold();
}

LogAside::~LogAside() {
  std::swap(levels(), aside_->levels);
  std::swap(listeners(), aside_->listeners);
  setThreshold();
}

int logLevel() {
  return threshold;
}

}  // namespace virtualtv::framework

using namespace virtualtv::framework;

void kel::CKELDebug::PrintLog(int channel, int level, const char* format, ...) {
  if (level > threshold || format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  take(channel, level, format, arguments);
  va_end(arguments);
}
