#pragma once

#include <functional>
#include <string>

/// Where the plug-in's log lines end: a filter by level, then whoever listens.
namespace virtualtv::framework {

/// One message as the plug-in logged it, without its location line.
struct LogLine {
  int level = 0;
  int channel = 0;       ///< of the framework's log
  int place = 0;         ///< source line, from the location line before it
  std::string function;  ///< from there, too
  std::string format;
  std::string text;    ///< as rendered
  std::string masked;  ///< the same with addresses, line numbers, thread ids and pointer-valued numbers as `*`
};

/// Lets only messages of at most this level through: -1 none, 0 failures and routine lines, 3 all. At first -1.
/// A filtered message costs one comparison a logger call.
void setLogLevel(int level);
int logLevel();

/// Calls `heard` with each message that passes; an empty function for nobody. A location line is held back
/// until its message comes.
void setLogListener(std::function<void(const LogLine&)> heard);

}  // namespace virtualtv::framework
