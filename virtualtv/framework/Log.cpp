#include "framework/Log.h"

#include <cstdarg>
#include <cstring>
#include <utility>

#include "framework/Render.h"
#include "kel/CKELDebug.h"

namespace virtualtv::framework {

namespace {

constexpr const char* locationFormat = "[KEL][%s(%d)] ";

int threshold = -1;

std::function<void(const LogLine&)>& listener() {
  static std::function<void(const LogLine&)> current;
  return current;
}

struct Location {
  std::string function;
  int place = 0;
};

/// The location line that waits for its message.
Location& location() {
  static Location waiting;
  return waiting;
}

void tell(int channel, int level, const char* format, va_list arguments) {
  LogLine line;
  line.level = level;
  Location told = std::exchange(location(), {});
  line.function = std::move(told.function);
  line.place = told.place;
  line.format = format;
  Rendered rendered = render(format, arguments);
  line.text = std::move(rendered.text);
  line.masked = std::move(rendered.masked);
  line.channel = channel;
  if (listener()) listener()(line);
}

}  // namespace

void setLogLevel(int level) {
  threshold = level;
  location() = {};
}

int logLevel() {
  return threshold;
}

void setLogListener(std::function<void(const LogLine&)> heard) {
  listener() = std::move(heard);
}

}  // namespace virtualtv::framework

using namespace virtualtv::framework;

void kel::CKELDebug::PrintLog(int channel, int level, const char* format, ...) {
  if (level > threshold) return;
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  if (std::strcmp(format, locationFormat) == 0) {
    const char* function = va_arg(arguments, const char*);
    location() = {function == nullptr ? "" : function, va_arg(arguments, int)};
  } else {
    tell(channel, level, format, arguments);
  }
  va_end(arguments);
}
