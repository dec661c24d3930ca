// SPDX-License-Identifier: MIT
#include "window/cases/Runner.h"

#include <algorithm>

#include "kel/StringToNumber.h"

namespace cases {

namespace {

using virtualtv::device::Deed;
using virtualtv::shell::Step;

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : " / ") + line;
  return text;
}

/// The number in the last finish line.
std::optional<int> finishOf(const Deed& deed) {
  constexpr std::string_view format = "CEmpEngineWindow::Execute Command[%s] Finish result[%d].";
  constexpr std::string_view end = "].";
  const auto line = std::find_if(deed.log.rbegin(), deed.log.rend(),
                                 [&](const auto& logged) { return logged.message.format() == format; });
  if (line == deed.log.rend()) return std::nullopt;
  const std::size_t start = line->message.text().rfind('[') + 1;
  int number = 0;
  if (!kel::StringToNumber(line->message.text().substr(start, line->message.text().size() - start - end.size()),
                           number))
    return {};
  return number;
}

std::string placeOf(const Case& shown, const Step& step) {
  return shown.file + ":" + std::to_string(step.line) + ": ";
}

Lines callsOf(const Deed& deed) {
  Lines calls;
  for (const virtualtv::seam::Call& call : deed.calls) {
    if (call.caller.command != 0) calls.push_back(virtualtv::seam::line(call));
  }
  return calls;
}

/// A word that the shell reads as this text.
std::string quoted(const std::string& text) {
  std::string word = "'";
  for (const char letter : text) word += letter == '\'' ? "'\\''" : std::string(1, letter);
  return word + "'";
}

}  // namespace

std::optional<int> Seen::number() const {
  constexpr std::string_view kind = "int ";
  int value = 0;
  if (reply.size() != 1 || !reply.front().starts_with(kind)) return std::nullopt;
  if (!kel::StringToNumber(reply.front().substr(kind.size()), value)) return std::nullopt;
  return value;
}

bool Seen::same(const Seen& other) const {
  return reply == other.reply && finish == other.finish && calls == other.calls;
}

Runner::Runner() : session_(television_.device, {}) {}

Seen Runner::run(const Case& shown) {
  Seen seen;
  for (const Step& step : shown.steps) {
    seen.reply = session_.run(step.input);
    if (seen.reply == step.output) continue;
    seen.complaints.push_back(placeOf(shown, step) + step.input + " prints '" + joined(seen.reply) +
                              "', expected is '" + joined(step.output) + "'");
  }
  seen.words = virtualtv::shell::splitWords(session_.lastCommand());
  seen.finish = finishOf(session_.lastDeed());
  seen.calls = callsOf(session_.lastDeed());
  session_.run(".fault clear");  // adds a finding for each fault that was never hit
  const auto remarks = session_.takeRemarks();
  const std::string place = placeOf(shown, shown.steps.back());
  for (const Lines& lines : {remarks.errors, remarks.complaints}) {
    for (const std::string& line : lines) seen.complaints.push_back(place + line);
  }
  for (const auto& finding : remarks.findings) seen.complaints.push_back(place + finding.text);
  return seen;
}

Seen Runner::runWith(const Case& shown, std::size_t at, const std::string& text) {
  Case other = shown;
  Lines words = virtualtv::shell::splitWords(shown.steps.back().input.substr(1));
  words.resize(std::max(words.size(), at + 2));
  words[at + 1] = text;
  std::string& input = other.steps.back().input;
  input = ">";
  for (const std::string& word : words) input += " " + quoted(word);
  Seen seen = run(other);
  seen.complaints.clear();
  return seen;
}

}  // namespace cases
