// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace virtualtv {

/// A language code as the TV service writes it: the three letters of ISO 639-2, first letter highest, as in
/// 'e' << 16 | 'n' << 8 | 'g'. 0 when unknown.
using LanguageCode = int;

/// The code of three letters in either case; 0 for `und`, the unknown language. Returns nothing for any other text.
inline std::optional<LanguageCode> languageNamed(std::string_view letters) {
  if (letters.size() != 3) return std::nullopt;
  LanguageCode code = 0;
  for (const char letter : letters) {
    const char small = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    if (small < 'a' || small > 'z') return std::nullopt;
    code = code << 8 | small;
  }
  constexpr LanguageCode undetermined = 'u' << 16 | 'n' << 8 | 'd';
  return code == undetermined ? 0 : code;
}

/// The text that `languageNamed` reads: the three letters, or `und` for 0. A code that matches no letters is written as
/// a number.
inline std::string nameOfLanguage(LanguageCode code) {
  if (code == 0) return "und";
  std::string letters;
  for (const int shift : {16, 8, 0}) letters += static_cast<char>(code >> shift & 0xFF);
  return languageNamed(letters) == code ? letters : std::to_string(code);
}

}  // namespace virtualtv
