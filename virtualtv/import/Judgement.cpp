// SPDX-License-Identifier: MIT
// ISO 6937 writes an accent (0xC1 to 0xCF) before its letter. The codes after the accents are signs (0xD0 to 0xDF),
// capitals (0xE1 to 0xEE) and small letters (0xF0 to 0xFE), all without accents. ISO 8859 has capitals with accents in
// 0xC0 to 0xDE and small letters with accents in 0xDF to 0xFF.
//
// Each such byte gives points to the encoding in which the word around it is more likely. Unlikely are a capital after
// a small letter, a sign within a word, an accent on a letter that never has it, and some pairs of letters. Words in
// capitals are the least conclusive, since they often fit both encodings.

#include "import/Judgement.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace virtualtv::import {

namespace {

// Points for ISO 6937; those for ISO 8859 are negative.
constexpr int certain = 4;
constexpr int likely = 2;
constexpr int hint = 1;
/// The most points of one name, so that a long name does not outvote the list.
constexpr long long mostOfAName = 2 * certain;

/// A byte beyond ASCII with its neighbours. A neighbour beyond the end of the name is 0.
struct Spot {
  unsigned char before = 0;
  unsigned char byte = 0;
  unsigned char after = 0;
  unsigned char behind = 0;  ///< the byte after `after`
};

bool isOneOf(unsigned char byte, std::string_view bytes) {
  return byte != 0 && bytes.find(static_cast<char>(byte)) != std::string_view::npos;
}

bool isAsciiCapital(unsigned char byte) {
  return byte >= 'A' && byte <= 'Z';
}

bool isAsciiSmall(unsigned char byte) {
  return byte >= 'a' && byte <= 'z';
}

// Letters of ISO 8859. Its multiplication and division signs count as letters here.

bool isCapital(unsigned char byte) {
  return isAsciiCapital(byte) || (byte >= 0xC0 && byte <= 0xDE);
}

bool isSmall(unsigned char byte) {
  return isAsciiSmall(byte) || byte >= 0xDF;
}

bool isLetter(unsigned char byte) {
  return isCapital(byte) || isSmall(byte);
}

bool isVowel(unsigned char byte) {
  return isOneOf(byte, "AEIOUYaeiouy");
}

bool isConsonant(unsigned char byte) {
  return (isAsciiCapital(byte) || isAsciiSmall(byte)) && !isVowel(byte);
}

/// The letters that have an accent of ISO 6937 in the languages of Europe, for 0xC0 to 0xCF.
constexpr std::array<std::string_view, 16> accented{
    "",
    "AEIOUaeiou",
    "AEIOUYCLNRSZaeiouyclnrsz",
    "AEIOUWYaeiouwy",
    "ANOano",
    "AEIOUaeiou",
    "AGag",
    "CEGIZcegiz",
    "AEIOUYaeiouy",
    "",
    "AUau",
    "CGKLNRSTcgklnrst",
    "",
    "OUou",
    "AEIUaeiu",
    "CDELNRSTZcdelnrstz",
};

/// Points for an accent before a vowel, when the case of letters is inconclusive. In ISO 8859 the byte is an accented
/// vowel before another vowel. That is rare except for these pairs, as in NÁUTICA, PÂINE, SÃO, RÍO.
int atVowel(const Spot& spot) {
  struct Pairs {
    unsigned char first;
    std::string_view second;
  };
  constexpr std::array<Pairs, 4> usual{{{0xC1, "EIUeiu"}, {0xC2, "Ii"}, {0xC3, "EOeo"}, {0xCD, "OUou"}}};
  for (const Pairs& pairs : usual) {
    if (spot.byte == pairs.first && isOneOf(spot.after, pairs.second)) return 0;
  }
  if (spot.byte == 0xC7) return hint;
  return spot.byte == 0xCF && isVowel(spot.before) ? 0 : likely;  // as in PAÏEN
}

/// The same for an accent before a consonant.
int atConsonant(const Spot& spot) {
  const bool behindVowel = isVowel(spot.before);
  switch (spot.byte) {
    case 0xC7:  // Ç, which precedes vowels
      return likely;
    case 0xCB:  // Ë and Ï, which follow vowels, as in NOËL and MAÏS
      return behindVowel ? 0 : hint;
    case 0xCF:
      return behindVowel && !isOneOf(spot.after, "CRZcrz") ? 0 : hint;
    case 0xC2:  // Â, which starts words too
      if (behindVowel) return hint;
      return isConsonant(spot.before) ? -hint : 0;
    default:
      return behindVowel ? hint : -hint;
  }
}

/// 0xC0 to 0xCF.
int atAccent(const Spot& spot) {
  if (!isOneOf(spot.after, accented[spot.byte - 0xC0U])) return -certain;
  const bool capitalInWord = isSmall(spot.before) || (isLetter(spot.before) && isAsciiSmall(spot.after));
  if (capitalInWord || (isAsciiCapital(spot.after) && isAsciiSmall(spot.behind))) return certain;
  return isVowel(spot.after) ? atVowel(spot) : atConsonant(spot);
}

/// 0xD0 to 0xDF: letters in ISO 8859; the last one is small.
int atSign(const Spot& spot) {
  constexpr unsigned char multiplication = 0xD7;
  constexpr unsigned char sharpS = 0xDF;
  if (spot.byte == multiplication) return 0;
  if (isSmall(spot.before) && spot.byte != sharpS) return 0;
  const bool mark = spot.byte >= 0xD2 && spot.byte <= 0xD4;  // trade marks and the like, which follow words
  if (mark && isLetter(spot.before) && !isLetter(spot.after)) return -hint;
  return isLetter(spot.before) || isLetter(spot.after) ? -certain : 0;
}

/// 0xE0 to 0xEF: capitals and some signs in ISO 6937.
int atCapital(const Spot& spot) {
  const bool inWord = isLetter(spot.before);
  if (isAsciiSmall(spot.before) || (inWord && isAsciiSmall(spot.after))) return -certain;
  if (isAsciiSmall(spot.after)) return spot.byte == 0xE8 && isVowel(spot.after) ? hint : -hint;
  if (!isCapital(spot.before) && !isCapital(spot.after)) return -hint;
  return isOneOf(spot.byte, "\xE1\xE2\xE8\xE9\xEA") ? likely : -likely;  // ÆĐŁØŒ
}

/// 0xF0 to 0xFF: small letters in both encodings. The comments give the letter in ISO 6937, then in ISO 8859.
int atSmall(const Spot& spot) {
  const bool vowelBehind = isVowel(spot.after);
  switch (spot.byte) {
    case 0xF1:  // æ or ñ
      return vowelBehind ? -likely : likely;
    case 0xF2:  // đ or ò
      return vowelBehind ? hint : -hint;
    case 0xF4:  // ħ or ô
      return -likely;
    case 0xF5:  // ı or õ; õ does not end words
      return isLetter(spot.after) ? 0 : hint;
    case 0xF8:  // ł or ø
      return isOneOf(spot.before, "aeiou") || isOneOf(spot.after, "aeiou") ? hint : -likely;
    case 0xF9:  // ø or ù; ù ends words
      return isLetter(spot.after) ? likely : -hint;
    case 0xFA:  // œ or ú
      return spot.after == 'u' ? likely : -hint;
    case 0xFB:  // ß or û
      if (isOneOf(spot.before, "oO") && isLetter(spot.after)) return -hint;
      return isVowel(spot.before) ? hint : -hint;
    case 0xFF:
      return 0;
    case 0xF3:  // ð or ó
    case 0xFC:  // þ or ü
      return -hint;
    default:
      return -certain;
  }
}

/// 0x80 to 0xBF: the few letters of ISO 8859-15, and the apostrophe of ISO 6937.
int atPunctuation(const Spot& spot) {
  if (!isLetter(spot.before) || !isLetter(spot.after)) return 0;
  if (spot.byte == 0xB9) return likely;
  return isOneOf(spot.byte, "\xA6\xA8\xB4\xB8\xBC\xBD\xBE") ? -likely : 0;
}

int points(const Spot& spot) {
  switch (spot.byte >> 4U) {
    case 0xC:
      return atAccent(spot);
    case 0xD:
      return atSign(spot);
    case 0xE:
      return atCapital(spot);
    case 0xF:
      return atSmall(spot);
    default:
      return atPunctuation(spot);
  }
}

}  // namespace

void Judgement::learn(std::string_view name) {
  const auto at = [&](std::size_t place) {
    return place < name.size() ? static_cast<unsigned char>(name[place]) : static_cast<unsigned char>(0);
  };
  long long sum = 0;
  for (std::size_t place = 0; place < name.size(); ++place) {
    if (at(place) >= 0x80) sum += points({at(place - 1), at(place), at(place + 1), at(place + 2)});
  }
  points_ += std::clamp(sum, -mostOfAName, mostOfAName);
}

}  // namespace virtualtv::import
