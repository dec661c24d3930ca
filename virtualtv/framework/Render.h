#pragma once

#include <cstdarg>
#include <string>

/// printf for log messages: of any length, and with a second text that reads the same on every run.
namespace virtualtv::framework {

struct Rendered {
  std::string text;    ///< what printf writes
  std::string masked;  ///< the same with `*` for what differs from run to run: addresses, line numbers, thread ids
};

/// Renders a printf format. All conversions of printf are understood but for positional arguments and wide
/// characters; "%n" writes nothing. What differs from run to run is known by its place in the format: "%p", and
/// the number behind "LINE=[", "pid = ", "sigStrength is " or the error banner's second name.
/// @param list  as `va_start` left them, one for each conversion; used up afterwards.
Rendered render(const char* format, va_list list);

}  // namespace virtualtv::framework
