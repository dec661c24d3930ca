#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace virtualtv::import {

/// Reads names in any of the encodings that channel lists have. A name that starts with one of the bytes by which
/// broadcasts tell the character table is read so; any other is UTF-8 where it is valid UTF-8, else ISO 6937 where its
/// accents make sense in that, else ISO 8859-15. Keeps a converter open for each encoding that it has met.
class TextDecoder {
 public:
  TextDecoder();
  ~TextDecoder();
  TextDecoder(const TextDecoder&) = delete;
  TextDecoder& operator=(const TextDecoder&) = delete;

  /// @return 16-bit units; what can't be read is U+FFFD. Control characters are left out, but a line break or a tab
  ///         is a blank; there is no blank at either end.
  std::u16string decode(std::string_view bytes);

 private:
  class Converter;

  Converter& from(const std::string& charset);
  std::u16string marked(std::string_view bytes);
  std::u16string unmarked(std::string_view bytes);
  bool readIso6937(std::string_view bytes, std::u16string& units);

  std::map<std::string, std::unique_ptr<Converter>> converters_;
};

}  // namespace virtualtv::import
