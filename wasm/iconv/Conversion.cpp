// SPDX-License-Identifier: MIT
#include "iconv/Conversion.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "iconv/Tables.h"

namespace wasm {

namespace {

using Bytes = std::string_view;

unsigned at(Bytes bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

bool isSurrogate(char32_t point) {
  return point >= 0xD800 && point < 0xE000;
}

}  // namespace

/// A character of the input.
struct Character {
  char32_t point = 0;
  std::size_t size = 0;  ///< its length in bytes
  int error = 0;         ///< EILSEQ, EINVAL
};

/// Reads characters. In UTF-8 also those above U+10FFFF, which no encoder accepts.
class Decoder {
 public:
  Decoder() = default;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  virtual ~Decoder() = default;
  /// @param bytes  at least one byte.
  virtual Character first(Bytes bytes) const = 0;
};

class Encoder {
 public:
  Encoder() = default;
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  virtual ~Encoder() = default;
  /// The bytes at the front of a text, such as a byte order mark.
  virtual Bytes mark() const { return {}; }
  /// @param out  receives at most four bytes. @return their number.
  virtual std::size_t write(char32_t point, char* out) const = 0;
};

namespace {

class Ucs2BigEndian : public Decoder {
 public:
  Character first(Bytes bytes) const override {
    if (bytes.size() < 2) return {.error = EINVAL};
    const char32_t unit = at(bytes, 0) << 8U | at(bytes, 1);
    if (isSurrogate(unit)) return {.error = EILSEQ};
    return {unit, 2};
  }
};

class Utf16BigEndian : public Decoder {
 public:
  Character first(Bytes bytes) const override {
    if (bytes.size() < 2) return {.error = EINVAL};
    const char32_t high = unit(bytes, 0);
    if (!isSurrogate(high)) return {high, 2};
    if (high >= 0xDC00) return {.error = EILSEQ};
    if (bytes.size() < 4) return {.error = EINVAL};
    const char32_t low = unit(bytes, 2);
    if (low < 0xDC00 || low >= 0xE000) return {.error = EILSEQ};
    return {0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00), 4};
  }

 private:
  static char32_t unit(Bytes bytes, std::size_t index) { return at(bytes, index) << 8U | at(bytes, index + 1); }
};

class Utf8Decoder : public Decoder {
 public:
  Character first(Bytes bytes) const override {
    const unsigned lead = at(bytes, 0);
    if (lead < 0x80) return {lead, 1};
    const std::size_t size = sizeOf(lead);
    if (size == 0) return {.error = EILSEQ};
    char32_t point = lead & (0x7FU >> size);
    for (std::size_t index = 1; index < size; ++index) {
      if (index == bytes.size()) return {.error = EINVAL};
      if ((at(bytes, index) & 0xC0U) != 0x80) return {.error = EILSEQ};
      point = point << 6U | (at(bytes, index) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    if (size >= least.size() || point < least.at(size) || isSurrogate(point)) return {.error = EILSEQ};
    return {point, size};
  }

 private:
  /// The length according to the lead byte, even if no character is that long.
  static std::size_t sizeOf(unsigned lead) {
    if (lead < 0xC2) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    if (lead < 0xF8) return 4;
    if (lead < 0xFC) return 5;
    return lead < 0xFE ? 6 : 0;
  }
};

class TableDecoder : public Decoder {
 public:
  explicit TableDecoder(const Table& table) : units_(ascii + (1 + 2 * table.leadCount) * ascii) {
    std::uint16_t unit = 0;
    for (std::size_t index = ascii; index < units_.size(); ++index) {
      unit = static_cast<std::uint16_t>(unit + table.units[index - ascii]);
      units_[index] = unit;
    }
    for (std::size_t byte = 0; byte < ascii; ++byte) units_[byte] = static_cast<std::uint16_t>(byte);
    for (std::size_t row = 0; row < table.leadCount; ++row) rows_[table.leads[row]] = 2 * ascii * (row + 1);
  }

  Character first(Bytes bytes) const override {
    const unsigned byte = at(bytes, 0);
    const std::size_t row = rows_.at(byte);
    if (row == 0) return character(units_[byte], 1, byte == 0);
    if (bytes.size() < 2) return {.error = EINVAL};
    return character(units_[row + at(bytes, 1)], 2, false);
  }

 private:
  static constexpr std::size_t ascii = 128;

  static Character character(std::uint16_t unit, std::size_t size, bool isNull) {
    if (unit == 0 && !isNull) return {.error = EILSEQ};
    return {unit, size};
  }

  std::vector<std::uint16_t> units_;     ///< indexed by byte, followed by rows indexed by second byte
  std::array<std::size_t, 256> rows_{};  ///< start of the row of a lead byte; 0 for other bytes
};

class Utf16LittleEndian : public Encoder {
 public:
  std::size_t write(char32_t point, char* out) const override {
    if (point < 0x10000) return put(point, out);
    put(0xD800 + ((point - 0x10000) >> 10U), out);
    return 2 + put(0xDC00 + ((point - 0x10000) & 0x3FFU), out + 2);
  }

 private:
  static std::size_t put(char32_t unit, char* out) {
    out[0] = static_cast<char>(unit & 0xFFU);
    out[1] = static_cast<char>(unit >> 8U);
    return 2;
  }
};

class MarkedUtf16 : public Utf16LittleEndian {
 public:
  Bytes mark() const override { return "\xFF\xFE"; }
};

class Utf8Encoder : public Encoder {
 public:
  std::size_t write(char32_t point, char* out) const override {
    if (point < 0x80) {
      *out = static_cast<char>(point);
      return 1;
    }
    const std::size_t size = point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
    for (std::size_t index = size - 1; index > 0; --index, point >>= 6U) {
      out[index] = static_cast<char>(0x80U | (point & 0x3FU));
    }
    *out = static_cast<char>((0xF00U >> size & 0xFFU) | point);
    return size;
  }
};

std::string plainName(std::string_view name) {
  while (name.ends_with('/')) name.remove_suffix(1);
  std::string plain;
  for (const char letter : name) {
    plain += letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  }
  return plain;
}

const Table* tableOf(std::string_view name) {
  const Name* const end = tableNames.first + tableNames.count;
  const Name* const found = std::lower_bound(
      tableNames.first, end, name, [](const Name& entry, std::string_view wanted) { return entry.name < wanted; });
  return found != end && found->name == name ? found->table : nullptr;
}

bool isAmong(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::unique_ptr<Decoder> decoderOf(const std::string& name) {
  if (isAmong(name, {"UTF-8", "UTF8", "ISO-10646/UTF-8", "ISO-10646/UTF8", "ISO-IR-193", "OSF05010001"}))
    return std::make_unique<Utf8Decoder>();
  if (name == "UTF-16BE") return std::make_unique<Utf16BigEndian>();
  if (isAmong(name, {"UCS-2BE", "UNICODEBIG"})) return std::make_unique<Ucs2BigEndian>();
  const Table* const table = tableOf(name);
  return table == nullptr ? nullptr : std::make_unique<TableDecoder>(*table);
}

std::unique_ptr<Encoder> encoderOf(const std::string& name) {
  if (name == "UTF-16LE") return std::make_unique<Utf16LittleEndian>();
  if (name == "UTF-16") return std::make_unique<MarkedUtf16>();
  if (name == "UTF-8") return std::make_unique<Utf8Encoder>();
  return nullptr;
}

}  // namespace

std::unique_ptr<Conversion> Conversion::open(std::string_view to, std::string_view from) {
  auto decoder = decoderOf(plainName(from));
  auto encoder = encoderOf(plainName(to));
  if (!decoder || !encoder) return nullptr;
  return std::make_unique<Conversion>(std::move(decoder), std::move(encoder));
}

Conversion::Conversion(std::unique_ptr<Decoder> decoder, std::unique_ptr<Encoder> encoder)
    : decoder_(std::move(decoder)), encoder_(std::move(encoder)) {}

Conversion::~Conversion() = default;

void Conversion::reset() {
  isMarked_ = false;
}

int Conversion::convert(const char*& from, std::size_t& fromLeft, char*& to, std::size_t& toLeft) {
  constexpr std::size_t leastRoom = 2;  // free bytes that an encoder requires before it examines a character
  const auto put = [&](Bytes bytes) {
    if (bytes.size() > toLeft) return false;
    to = std::copy(bytes.begin(), bytes.end(), to);
    toLeft -= bytes.size();
    return true;
  };
  while (fromLeft > 0) {
    const Character character = decoder_->first({from, fromLeft});
    if (character.error != 0) return character.error;
    if (character.point > 0x10FFFF) return toLeft < leastRoom ? E2BIG : EILSEQ;
    if (!std::exchange(isMarked_, true) && !put(encoder_->mark())) {
      isMarked_ = false;
      return E2BIG;
    }
    std::array<char, 4> out{};
    if (!put({out.data(), encoder_->write(character.point, out.data())})) return E2BIG;
    from += character.size;
    fromLeft -= character.size;
  }
  return 0;
}

}  // namespace wasm
