// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "import/Judgement.h"

namespace virtualtv::import {

/// Checks that an encoding can be used for names: iconv must know it, and it must encode printable ASCII as ASCII, as
/// in the rest of a list. @throws std::invalid_argument with the reason in a line.
void requireEncoding(const std::string& name);

/// Decodes the names of a list, in any of the encodings that channel lists use. A name may start with bytes that select
/// a character table, as in broadcasts; it is read with that table. All other names have the given encoding. If none is
/// given, names that are valid UTF-8 are read as UTF-8, and the remaining names are judged together to be in ISO 6937
/// or in ISO 8859-15. Keeps a converter open for each encoding used.
class TextDecoder {
 public:
  /// @param encoding  the name of the encoding for iconv; empty for none.
  /// @throws std::invalid_argument  as `requireEncoding` does.
  explicit TextDecoder(const std::string& encoding);
  ~TextDecoder();
  TextDecoder(const TextDecoder&) = delete;
  TextDecoder& operator=(const TextDecoder&) = delete;

  /// Takes a name into account. Call for all names of a list before decoding the first.
  void learn(std::string_view bytes);

  /// @return 16-bit units, with U+FFFD for invalid bytes. Tabs and the line breaks of broadcasts (0x8A) become blanks.
  /// Other control characters are removed, and so are blanks at both ends.
  std::u16string decode(std::string_view bytes);

 private:
  class Converter;

  Converter& from(const std::string& charset);
  bool isUtf8(std::string_view bytes);
  std::u16string unmarked(std::string_view bytes);
  bool readIso6937(std::string_view bytes, std::u16string& units);

  std::string encoding_;
  Judgement judgement_;
  std::map<std::string, std::unique_ptr<Converter>> converters_;
};

}  // namespace virtualtv::import
