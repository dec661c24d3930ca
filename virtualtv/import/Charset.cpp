// SPDX-License-Identifier: MIT
#include "import/Charset.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <stdexcept>

#include "import/Words.h"
#include "text/Units.h"

namespace virtualtv::import {

namespace {

constexpr char16_t replacement = 0xFFFD;
constexpr const char* unitsCharset = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

unsigned value(char byte) {
  return static_cast<unsigned char>(byte);
}

bool isAscii(char byte) {
  return value(byte) < 0x80;
}

bool isAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return isAscii(byte); });
}

[[noreturn]] void refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

/// True when `text` is a name as `iconv -l` lists it, with or without two slashes at its end. The library would skip
/// other characters, and read a text after the slashes as options.
bool isName(std::string_view text) {
  const auto isPartOfName = [](char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("-._:()/").find(byte) != std::string_view::npos;
  };
  if (text.ends_with("//")) text.remove_suffix(2);
  return !text.empty() && text.front() != '/' && text.find("//") == std::string_view::npos &&
         std::all_of(text.begin(), text.end(), isPartOfName);
}

std::string printableAscii() {
  std::string ascii;
  for (char byte = ' '; byte <= '~'; ++byte) ascii += byte;
  return ascii;
}

/// The bytes before a text in a broadcast that select its character table.
struct Marker {
  std::size_t length = 0;  ///< number of these bytes; 0 for none
  std::string charset;
};

Marker longMarker(std::string_view bytes) {
  if (bytes.size() < 3 || bytes[1] != 0) return {};
  const unsigned part = value(bytes[2]);
  if (part < 1 || part > 16 || part == 12) return {};
  return {3, "ISO-8859-" + std::to_string(part)};
}

Marker marker(std::string_view bytes) {
  if (bytes.empty()) return {};
  const unsigned first = value(bytes.front());
  switch (first) {
    case 0x10:
      return longMarker(bytes);
    case 0x11:
    case 0x14:
      return {1, "UTF-16BE"};
    case 0x12:
      return {1, "EUC-KR"};
    case 0x13:
      return {1, "GB2312"};
    case 0x15:
      return {1, "UTF-8"};
    default:
      break;
  }
  if (first < 0x01 || first > 0x0B || first == 0x08) return {};
  return {1, "ISO-8859-" + std::to_string(first + 4)};
}

bool isBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == 0x8A || unit == 0xE08A;
}

/// True for control characters, including those of broadcasts (0x80 and up, and U+E080 and up in two-byte tables).
bool isControl(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0xE080 && unit < 0xE0A0) || unit == 0xFEFF;
}

std::u16string cleaned(const std::u16string& units) {
  std::u16string clean;
  clean.reserve(units.size());
  for (const char16_t unit : units) {
    if (isBlank(unit)) {
      clean += u' ';
    } else if (!isControl(unit)) {
      clean += unit;
    }
  }
  clean.erase(clean.find_last_not_of(u' ') + 1);
  clean.erase(0, clean.find_first_not_of(u' '));
  return clean;
}

}  // namespace

/// One conversion of the C library, kept open.
class TextDecoder::Converter {
 public:
  explicit Converter(const std::string& charset)
      : handle_(iconv_open(unitsCharset, charset.c_str())), width_(charset == "UTF-16BE" ? 2 : 1) {}
  ~Converter() {
    if (isOpen()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool isOpen() const {
    return handle_ != reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr): how the library says it
  }

  /// Appends `bytes` up to the first invalid one. @return false when there is an invalid one.
  bool appendStrictly(std::string_view bytes, std::u16string& units) { return append(bytes, units).empty(); }

  /// Appends `bytes`, replacing invalid ones.
  void appendAll(std::string_view bytes, std::u16string& units) {
    for (bytes = append(bytes, units); !bytes.empty(); bytes = append(bytes, units)) {
      units += replacement;
      bytes.remove_prefix(std::min(width_, bytes.size()));
    }
  }

 private:
  /// @return the rest from the first invalid byte on.
  std::string_view append(std::string_view bytes, std::u16string& units) {
    if (!isOpen()) return appendAscii(bytes, units);
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(bytes.data());
    std::size_t left = bytes.size();
    while (left > 0 && step(&in, &left, units)) {
    }
    step(nullptr, nullptr, units);
    return bytes.substr(bytes.size() - left);
  }

  /// Converts one buffer; without input, flushes the converter. Returns false at an invalid byte.
  bool step(char** in, std::size_t* left, std::u16string& units) {
    std::array<char16_t, 256> buffer{};
    char* out = reinterpret_cast<char*>(buffer.data());
    std::size_t room = sizeof(buffer);
    const bool failed = iconv(handle_, in, left, &out, &room) == static_cast<std::size_t>(-1);
    const bool full = failed && errno == E2BIG;
    units.append(buffer.data(), buffer.size() - room / sizeof(char16_t));
    return !failed || full;
  }

  /// The fallback for an encoding that the C library lacks: only ASCII is kept.
  static std::string_view appendAscii(std::string_view bytes, std::u16string& units) {
    while (!bytes.empty() && isAscii(bytes.front())) {
      units += static_cast<char16_t>(bytes.front());
      bytes.remove_prefix(1);
    }
    return bytes;
  }

  iconv_t handle_;
  std::size_t width_;  ///< bytes to skip at an invalid character
};

TextDecoder::TextDecoder(const std::string& encoding) : encoding_(encoding) {
  if (encoding.empty()) return;
  if (!isName(encoding) || !from(encoding).isOpen())
    refuse("there is no encoding '" + encoding + "'; 'iconv -l' lists those that there are");
  const std::string ascii = printableAscii();
  std::u16string units;
  if (!from(encoding).appendStrictly(ascii, units) ||
      !std::equal(ascii.begin(), ascii.end(), units.begin(), units.end()))
    refuse("a list can't be in the encoding '" + encoding + "', in which not every ASCII character is the byte itself");
}

TextDecoder::~TextDecoder() = default;

void requireEncoding(const std::string& name) {
  if (name.empty()) refuse("an encoding needs a name");
  const TextDecoder decoder(name);
}

TextDecoder::Converter& TextDecoder::from(const std::string& charset) {
  std::unique_ptr<Converter>& converter = converters_[charset];
  if (!converter) converter = std::make_unique<Converter>(charset);
  return *converter;
}

bool TextDecoder::isUtf8(std::string_view bytes) {
  std::u16string units;
  return from("UTF-8").appendStrictly(bytes, units);
}

void TextDecoder::learn(std::string_view bytes) {
  if (!encoding_.empty() || isAscii(bytes) || marker(bytes).length != 0 || isUtf8(bytes)) return;
  judgement_.learn(bytes);
}

std::u16string TextDecoder::decode(std::string_view bytes) {
  const Marker mark = marker(bytes);
  if (mark.length == 0) return cleaned(unmarked(bytes));
  bytes.remove_prefix(mark.length);
  if (mark.charset == "UTF-8") return cleaned(text::toUnits(bytes));
  std::u16string units;
  from(mark.charset).appendAll(bytes, units);
  return cleaned(units);
}

std::u16string TextDecoder::unmarked(std::string_view bytes) {
  std::u16string units;
  if (!encoding_.empty()) {
    from(encoding_).appendAll(bytes, units);
    return units;
  }
  if (isAscii(bytes)) return {bytes.begin(), bytes.end()};
  if (from("UTF-8").appendStrictly(bytes, units)) return units;
  units.clear();
  if (judgement_.isIso6937() && readIso6937(bytes, units)) return units;
  units.clear();
  from("ISO-8859-15").appendAll(bytes, units);
  return units;
}

/// Broadcasts use an unassigned byte of ISO 6937 for the euro sign, so the parts between euro signs are converted
/// separately.
bool TextDecoder::readIso6937(std::string_view bytes, std::u16string& units) {
  constexpr char euro = '\xA4';
  while (true) {
    const bool more = bytes.find(euro) != std::string_view::npos;
    if (!from("ISO_6937").appendStrictly(cut(bytes, euro), units)) return false;
    if (!more) return true;
    units += u'\u20AC';
  }
}

}  // namespace virtualtv::import
