// SPDX-License-Identifier: MIT
#include "fuzz/support/Draw.h"

#include <algorithm>

#include "services/FieldNumbers.h"
#include "support/Numbers.h"
#include "text/Units.h"

namespace fuzz {

namespace {

using support::within;
using virtualtv::seam::Form;
using virtualtv::seam::Operation;
using virtualtv::seam::Output;
using virtualtv::seam::Returns;
using virtualtv::text::Range;

constexpr std::size_t longest = 5000;  // units of a text; far longer than the plug-in's buffers
constexpr std::size_t mostEntries = 4;
constexpr std::size_t mostCounted = 300;

constexpr std::array borders{"0",     "1",          "-1",          "2",     "255",   "256",
                             "65535", "2147483647", "-2147483648", "65536", "32767", "-32768"};
constexpr std::array wideBorders{"4294967295", "18446744073709551615", "9223372036854775807", "-9223372036854775808",
                                 "2147483648"};

/// Fields that operations read, and an unknown one.
constexpr std::array fields{1, 2, 4, 6, 7, 12, 13, 14, 15, 16, 18, 22, 37, 41, 110, 115, 200};

/// True for outputs that determine how many calls the plug-in makes next. The plug-in trusts the set, even if it
/// reports billions.
bool isCount(const Output& output) {
  constexpr std::array names{"size", "count", "subtitles", "teletext", "teletextSubtitles"};
  return std::any_of(names.begin(), names.end(), [&](const char* name) { return output.name == name; });
}

std::string drawList(Draw& draw, char open, char close, std::string (*entry)(Draw&)) {
  std::string text(1, open);
  for (std::size_t count = draw.below(mostEntries); count > 0; --count) {
    text += (text.size() == 1 ? "" : ",") + entry(draw);
  }
  return text + close;
}

std::string drawField(Draw& draw) {
  const int id = draw.of(fields);
  return std::to_string(id) + "=" +
         (draw.chance() ? within(virtualtv::rangeOfField(id), draw.number()) : virtualtv::text::quoted(draw.units()));
}

std::string drawNumbers(Draw& draw, const Output& output) {
  std::string text;
  for (const Range& range : output.numbers) {
    text += (text.empty() ? "" : ",") +
            (isCount(output) ? std::to_string(draw.below(mostCounted)) : within(range, draw.number32()));
  }
  return text;
}

std::string drawOutput(Draw& draw, const Output& output) {
  switch (output.form) {
    case Form::numbers:
      return drawNumbers(draw, output);
    case Form::record:
      return drawRecord(draw);
    case Form::records:
      return drawList(draw, '[', ']', drawRecord);
    case Form::favourites:
      return drawList(draw, '{', '}',
                      [](Draw& from) { return std::to_string(from.byte()) + (from.chance() ? "=1" : "=0"); });
    default:
      return {};
  }
}

bool canBeGiven(const Output& output) {
  return output.form != Form::criteria && output.form != Form::interface;
}

bool writesAnInterface(const Operation& operation) {
  return !operation.written().empty() && operation.written().front().form == Form::interface;
}

/// Words for the result; none when only outputs are set.
std::string drawResult(Draw& draw, const Operation& operation) {
  const std::size_t way = draw.below(4);
  if (way == 0) return "result=throw";
  if (operation.returns == Returns::text) return way == 1 ? "result=null" : "result=" + draw.text();
  if (operation.returns == Returns::pointer || (way == 1 && writesAnInterface(operation))) return "result=null";
  if (operation.returns == Returns::nothing) return "result=throw";
  if (way == 2 && !operation.written().empty()) return "result=unwritten";
  return "result=" + draw.number32();
}

}  // namespace

std::uint8_t Draw::byte() {
  if (left_ == 0) return 0;
  --left_;
  return *data_++;
}

std::size_t Draw::below(std::size_t limit) {
  const std::size_t low = byte();
  const std::size_t number = limit > 256 ? low << 8U | byte() : low;
  return number % limit;
}

std::string Draw::number() {
  if (below(4) == 0) return of(wideBorders);
  return number32();
}

std::string Draw::number32() {
  switch (below(4)) {
    case 0:
      return of(borders);
    case 1:
      return std::to_string(below(65536));
    default:
      return std::to_string(byte());
  }
}

std::string Draw::text() {
  const std::size_t length = std::min(below(256), left_);
  if (length == 255) return std::string(below(longest), static_cast<char>(byte()));
  std::string bytes;
  while (bytes.size() < length) bytes += static_cast<char>(byte());
  return bytes;
}

std::u16string Draw::units() {
  const std::string bytes = text();
  std::u16string units;
  if (chance()) return virtualtv::text::toUnits(bytes);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const unsigned high = static_cast<unsigned char>(bytes[at]);
    units += static_cast<char16_t>(high << 8U | static_cast<unsigned char>(bytes[at + 1]));
  }
  return units;
}

std::string Draw::parameter() {
  switch (below(4)) {
    case 0:
      return {};
    case 1:
      return text();
    default:
      return number();
  }
}

std::string drawRecord(Draw& draw) {
  return drawList(draw, '{', '}', drawField);
}

std::vector<std::string> drawFault(Draw& draw) {
  const Operation& operation = draw.of(virtualtv::seam::operations);
  std::vector<std::string> words{std::string(operation.name), "nth=" + std::to_string(draw.below(4) + 1),
                                 draw.chance() ? "always" : "times=1"};
  bool chosen = false;
  for (const Output& output : operation.written()) {
    if (!canBeGiven(output) || !draw.chance()) continue;
    words.push_back("out." + std::string(output.name) + "=" + drawOutput(draw, output));
    chosen = true;
  }
  if (!chosen || draw.chance()) words.push_back(drawResult(draw, operation));
  return words;
}

}  // namespace fuzz
