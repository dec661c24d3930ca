// SPDX-License-Identifier: MIT
#include "framework/Message.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <unordered_map>

namespace virtualtv::framework {

/// One conversion of a format, as in "%-5ld".
struct Conversion {
  std::size_t sign = 0;       ///< position of the '%'
  std::size_t end = 0;        ///< position after the conversion
  std::string_view layout;    ///< flags, width and precision; a star takes an argument
  std::string_view modifier;  ///< "l", "hh" and so on
  char letter = '\0';         ///< 'd', 's' and so on; 0 when the format ends inside
  std::size_t stars = 0;      ///< number of stars in the layout

  bool isInteger() const { return std::string_view("diuoxXc").find(letter) != std::string_view::npos; }
  bool isFloat() const { return std::string_view("eEfFgGaA").find(letter) != std::string_view::npos; }
  bool isPrinted() const { return isInteger() || isFloat() || letter == 's' || letter == 'p'; }
};

namespace {

/// Texts that are followed by a number that differs between runs.
constexpr std::array<std::string_view, 4> beforeMasked{"LINE=[", "[%s],pid = ", "sigStrength is ",
                                                       "ERROR!!!![%s][%s]["};

bool isMasked(std::string_view before, char letter) {
  if (letter == 'p') return true;
  return std::any_of(beforeMasked.begin(), beforeMasked.end(),
                     [=](std::string_view mark) { return before.ends_with(mark); });
}

std::string_view takeAnyOf(std::string_view letters, std::string_view& rest) {
  const std::string_view taken = rest.substr(0, rest.find_first_not_of(letters));
  rest.remove_prefix(taken.size());
  return taken;
}

/// Reads the conversion that starts with the '%' at `sign`.
Conversion conversionAt(std::string_view format, std::size_t sign) {
  Conversion conversion;
  std::string_view rest = format.substr(sign + 1);
  conversion.layout = takeAnyOf("-+ #0123456789.*", rest);
  conversion.modifier = takeAnyOf("hlqjztL", rest);
  if (!rest.empty()) conversion.letter = rest.front();
  conversion.sign = sign;
  conversion.end = format.size() - rest.size() + (rest.empty() ? 0 : 1);
  conversion.stars = static_cast<std::size_t>(std::count(conversion.layout.begin(), conversion.layout.end(), '*'));
  return conversion;
}

/// The arguments of a call. Wraps the `va_list`, which changes its type when passed to a function.
class Arguments {
 public:
  explicit Arguments(va_list list) { va_copy(list_, list); }
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

/// Adds an integer as the modifier passes it.
template <typename Kept>
void keepInteger(std::string_view modifier, Arguments& arguments, Kept& kept) {
  if (modifier == "l") {  // NOLINT(bugprone-branch-clone): where a long has 32 bits they differ
    kept.emplace_back(arguments.next<long>());
  } else if (modifier == "j") {
    kept.emplace_back(arguments.next<std::intmax_t>());
  } else if (modifier == "t") {
    kept.emplace_back(arguments.next<std::ptrdiff_t>());
  } else if (modifier == "ll" || modifier == "q") {
    kept.emplace_back(arguments.next<long long>());
  } else if (modifier == "z") {
    kept.emplace_back(arguments.next<std::size_t>());
  } else {
    kept.emplace_back(arguments.next<int>());
  }
}

/// The most bytes to read of a text argument: with a precision, it need not be terminated. @param star  the value of
/// the last star.
std::size_t limitOf(std::string_view layout, int star) {
  constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
  const std::size_t point = layout.find('.');
  if (point == std::string_view::npos) return none;
  const std::string_view digits = layout.substr(point + 1);
  if (digits.starts_with('*')) return star < 0 ? none : static_cast<std::size_t>(star);
  std::size_t limit = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), limit);
  return limit;
}

/// Copies the arguments of a conversion.
template <typename Kept>
void keep(const Conversion& conversion, Arguments& arguments, Kept& kept) {
  int star = -1;
  for (std::size_t stars = conversion.stars; stars > 0; --stars) {
    star = arguments.next<int>();
    kept.emplace_back(star);
  }
  if (conversion.letter == 's') {
    const char* text = arguments.next<const char*>();
    if (text == nullptr) text = "(null)";
    kept.emplace_back(std::in_place_type<std::string>, text, ::strnlen(text, limitOf(conversion.layout, star)));
  } else if (conversion.letter == 'p') {
    kept.emplace_back(arguments.next<const void*>());
  } else if (conversion.isInteger()) {
    keepInteger(conversion.modifier, arguments, kept);
  } else if (conversion.isFloat() && conversion.modifier == "L") {
    kept.emplace_back(arguments.next<long double>());
  } else if (conversion.isFloat()) {
    kept.emplace_back(arguments.next<double>());
  } else if (conversion.letter == 'n') {
    arguments.next<void*>();
  }
}

template <typename Value>
std::string print(const std::string& spec, Value value) {
  const int length = std::snprintf(nullptr, 0, spec.c_str(), value);
  if (length < 0) return spec;
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), spec.c_str(), value);
  text.pop_back();
  return text;
}

std::string print(const std::string& spec, const std::string& value) {
  return print(spec, value.c_str());
}

/// Appends the text of a conversion, and consumes its arguments.
template <typename Iterator>
std::string printed(const Conversion& conversion, Iterator& argument) {
  std::string spec = "%";
  for (const char sign : conversion.layout) {
    if (sign != '*') {
      spec += sign;
      continue;
    }
    const int star = std::get<int>(*argument++);
    if (star < 0 && spec.back() == '.') {
      spec.pop_back();  // as if there were no precision
    } else {
      spec += std::to_string(star);
    }
  }
  spec += conversion.modifier;
  if (conversion.letter != '\0') spec += conversion.letter;
  if (conversion.isPrinted()) return std::visit([&](const auto& value) { return print(spec, value); }, *argument++);
  if (conversion.letter == '%') return "%";
  return conversion.letter == 'n' ? "" : spec;
}

}  // namespace

/// A format as it was read.
struct Message::Format {
  explicit Format(std::string_view written) : text(written) {
    for (std::size_t sign = text.find('%'); sign != std::string::npos; sign = text.find('%', conversions.back().end)) {
      conversions.push_back(conversionAt(text, sign));
      arguments += conversions.back().stars + (conversions.back().isPrinted() ? 1 : 0);
    }
  }
  Format(const Format&) = delete;
  Format& operator=(const Format&) = delete;
  ~Format() = default;

  const std::string text;
  std::vector<Conversion> conversions;  ///< with views of the text
  std::size_t arguments = 0;            ///< number of arguments that it takes and stores
};

struct Message::Content {
  std::shared_ptr<const Format> format;
  std::vector<Argument> arguments;
};

/// Parses each format once and finds it again by its address, since most formats are literals in the code.
std::shared_ptr<const Message::Format> Message::formatAt(const char* written) {
  constexpr std::size_t most = 4096;
  static std::unordered_map<const char*, std::shared_ptr<const Format>> known;
  const auto found = known.find(written);
  if (found != known.end() && found->second->text == written) return found->second;
  auto format = std::make_shared<const Format>(written);
  if (found != known.end()) {
    found->second = format;
  } else if (known.size() < most) {
    known.emplace(written, format);
  }
  return format;
}

Message::Message(const char* format, va_list list) {
  const auto content = std::make_shared<Content>();
  content->format = formatAt(format);
  content->arguments.reserve(content->format->arguments);
  Arguments arguments(list);
  for (const Conversion& conversion : content->format->conversions) keep(conversion, arguments, content->arguments);
  content_ = content;
}

const std::shared_ptr<const Message::Content>& Message::empty() {
  static const auto none = std::make_shared<const Content>(Content{std::make_shared<const Format>(""), {}});
  return none;
}

const std::string& Message::format() const {
  return content_->format->text;
}

std::size_t Message::bytes() const {
  const std::vector<Argument>& arguments = content_->arguments;
  std::size_t bytes = arguments.capacity() * sizeof(Argument);
  for (const Argument& argument : arguments) {
    if (const auto* text = std::get_if<std::string>(&argument)) bytes += text->size();
  }
  return bytes;
}

std::string Message::text() const {
  return rendered(false);
}

std::string Message::masked() const {
  return rendered(true);
}

std::string Message::rendered(bool masks) const {
  const std::string_view format = this->format();
  std::string text;
  auto argument = content_->arguments.begin();
  std::size_t end = 0;  // end of the rendered part
  for (const Conversion& conversion : content_->format->conversions) {
    text += format.substr(end, conversion.sign - end);
    const std::string part = printed(conversion, argument);
    text += masks && isMasked(format.substr(0, conversion.sign), conversion.letter) ? "*" : part;
    end = conversion.end;
  }
  return text += format.substr(end);
}

}  // namespace virtualtv::framework
