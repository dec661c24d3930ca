#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "import/Judgement.h"

namespace virtualtv::import {

/// Checks that names can be in an encoding: that iconv knows it, and that each printable ASCII character is the byte
/// itself in it, like in the rest of a list.
/// @throws std::invalid_argument  with a line that says why they can't.
void requireEncoding(const std::string& name);

/// Reads the names of a list, in any of the encodings that channel lists have. A name that starts with one of the bytes
/// by which broadcasts tell the character table is read by that. Any other is in the encoding that the list is said to
/// have. Where none is said, it is UTF-8 if it is valid UTF-8, else in what all such names of the list are judged to be
/// in, ISO 6937 or ISO 8859-15. Keeps a converter open for each encoding that it has met.
class TextDecoder {
 public:
  /// @param encoding  the name of one, for iconv; empty where none is said.
  /// @throws std::invalid_argument  as `requireEncoding` does.
  explicit TextDecoder(const std::string& encoding);
  ~TextDecoder();
  TextDecoder(const TextDecoder&) = delete;
  TextDecoder& operator=(const TextDecoder&) = delete;

  /// Takes a name into account. All names of a list are to be learnt before the first is decoded.
  void learn(std::string_view bytes);

  /// @return 16-bit units; what can't be read is U+FFFD. Control characters are left out, but a line break or a tab
  ///         is a blank; there is no blank at either end.
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
