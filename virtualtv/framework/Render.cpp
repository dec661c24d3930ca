#include "framework/Render.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace virtualtv::framework {

namespace {

/// What stands before a number that differs from run to run.
constexpr std::array<std::string_view, 4> beforeMasked{"LINE=[", "[%s],pid = ", "sigStrength is ",
                                                       "ERROR!!!![%s][%s]["};

bool isMasked(std::string_view before, char conversion) {
  if (conversion == 'p') return true;
  for (const std::string_view mark : beforeMasked) {
    if (before.ends_with(mark)) return true;
  }
  return false;
}

/// One conversion of a format, as in "%-5ld".
struct Conversion {
  std::string spec;      ///< the whole of it, stars replaced by their arguments
  std::string modifier;  ///< "l", "hh" and so on
  char letter = '\0';    ///< 'd', 's' and so on; 0 when the format ends inside
};

/// The arguments of a call. A class of its own, since a `va_list` changes its type when it is passed on.
class Arguments {
 public:
  explicit Arguments(va_list arguments) { va_copy(list_, arguments); }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments() { va_end(list_); }

  template <typename Value>
  Value next() {
    return va_arg(list_, Value);
  }

 private:
  va_list list_;
};

/// Reads the conversion at the front of `format`, which starts with '%', and moves on behind it.
Conversion takeConversion(const char*& format, Arguments& arguments) {
  Conversion conversion;
  conversion.spec = *format++;
  while (*format != '\0' && std::string_view("-+ #0123456789.*").find(*format) != std::string_view::npos) {
    if (*format == '*') {
      conversion.spec += std::to_string(arguments.next<int>());
    } else {
      conversion.spec += *format;
    }
    ++format;
  }
  while (*format != '\0' && std::string_view("hlqjztL").find(*format) != std::string_view::npos) {
    conversion.modifier += *format++;
  }
  conversion.spec += conversion.modifier;
  if (*format == '\0') return conversion;
  conversion.letter = *format;
  conversion.spec += *format++;
  return conversion;
}

template <typename Value>
std::string print(const Conversion& conversion, Value value) {
  const int length = std::snprintf(nullptr, 0, conversion.spec.c_str(), value);
  if (length < 0) return conversion.spec;
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), conversion.spec.c_str(), value);
  text.pop_back();
  return text;
}

std::string printInteger(const Conversion& conversion, Arguments& arguments) {
  if (conversion.modifier == "l") return print(conversion, arguments.next<long>());
  if (conversion.modifier == "ll" || conversion.modifier == "q") return print(conversion, arguments.next<long long>());
  if (conversion.modifier == "j") return print(conversion, arguments.next<std::intmax_t>());
  if (conversion.modifier == "z") return print(conversion, arguments.next<std::size_t>());
  if (conversion.modifier == "t") return print(conversion, arguments.next<std::ptrdiff_t>());
  return print(conversion, arguments.next<int>());
}

std::string printText(const Conversion& conversion, Arguments& arguments) {
  const char* text = arguments.next<const char*>();
  return print(conversion, text == nullptr ? "(null)" : text);
}

std::string printNext(const Conversion& conversion, Arguments& arguments) {
  switch (conversion.letter) {
    case '%':
      return "%";
    case 'd':
    case 'i':
    case 'u':
    case 'o':
    case 'x':
    case 'X':
    case 'c':
      return printInteger(conversion, arguments);
    case 's':
      return printText(conversion, arguments);
    case 'p':
      return print(conversion, arguments.next<const void*>());
    case 'n':
      arguments.next<void*>();
      return "";
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
      return conversion.modifier == "L" ? print(conversion, arguments.next<long double>())
                                        : print(conversion, arguments.next<double>());
    default:
      return conversion.spec;
  }
}

}  // namespace

Rendered render(const char* format, va_list list) {
  Arguments arguments(list);
  Rendered rendered;
  const char* at = format;
  while (*at != '\0') {
    if (*at != '%') {
      rendered.text += *at;
      rendered.masked += *at++;
      continue;
    }
    const std::string_view before(format, static_cast<std::size_t>(at - format));
    const Conversion conversion = takeConversion(at, arguments);
    const std::string text = printNext(conversion, arguments);
    rendered.text += text;
    rendered.masked += isMasked(before, conversion.letter) ? "*" : text;
  }
  return rendered;
}

}  // namespace virtualtv::framework
