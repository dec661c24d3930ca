// SPDX-License-Identifier: MIT
#include "shell/Transcript.h"

#include <algorithm>
#include <stdexcept>

#include "text/Units.h"

namespace virtualtv::shell {

namespace {

constexpr const char* noText = "not a text in UTF-8";
constexpr const char* tooLong = "the line has more than 1 MB";

/// In a recording, client programs may have run lines that nobody would type.
bool isRecorded(const Transcript& transcript) {
  return !transcript.steps.empty() && transcript.steps.front().input == recordedMark;
}

/// Why a line can't be in a transcript; empty when it can. Output may have any length.
std::string flawIn(const Transcript& transcript, const std::string& line) {
  if (isRecorded(transcript) && isText(line) && isInput(line)) return {};
  if (isInput(line) || isRemark(line)) return flawOf(line);
  if (!isText(line)) return noText;
  if (transcript.steps.empty()) return "output before the first '>' line";
  if (!transcript.steps.back().remarks.empty()) return "output must directly follow its '>' line";
  return {};
}

void add(Transcript& transcript, int number, const std::string& line) {
  if (isInput(line)) {
    transcript.steps.push_back({number, line, {}, {}});
  } else if (!isRemark(line)) {
    transcript.steps.back().output.push_back(line);
  } else if (transcript.steps.empty()) {
    transcript.opening.push_back(line);
  } else {
    transcript.steps.back().remarks.push_back(line);
  }
}

/// The text of the last comment among remarks; empty without one.
std::string lastCommentIn(const Lines& remarks) {
  const auto found =
      std::find_if(remarks.rbegin(), remarks.rend(), [](const auto& line) { return line.starts_with('#'); });
  if (found == remarks.rend()) return {};
  const std::size_t start = found->find_first_not_of("# \t");
  return start == std::string::npos ? "" : found->substr(start);
}

void append(std::string& text, const Lines& lines) {
  for (const std::string& line : lines) text += line + "\n";
}

}  // namespace

bool isText(std::string_view line) {
  return line.find('\0') == std::string_view::npos && text::isUtf8(line);
}

std::string flawOf(std::string_view line) {
  if (line.size() > longestLine) return tooLong;
  return isText(line) ? "" : noText;
}

std::string remarkOn(const std::string& flaw, std::string_view line) {
  constexpr std::size_t mostShown = 200;
  const bool isWhole = line.size() <= mostShown;
  return "# " + flaw + ": " + oneLine(line.substr(0, mostShown)) + (isWhole ? "" : " ...");
}

bool isInput(std::string_view line) {
  return line.starts_with('>');
}

bool isRemark(std::string_view line) {
  return line.starts_with('#') || line.find_first_not_of(" \t") == std::string_view::npos;
}

Transcript readTranscript(const std::string& name, std::string_view content) {
  Transcript transcript;
  transcript.marked = content.starts_with(text::byteOrderMark);
  int number = 0;
  for (const std::string& line : splitLines(text::withoutMark(content))) {
    ++number;
    const std::string reason = flawIn(transcript, line);
    if (!reason.empty()) throw std::runtime_error(name + ":" + std::to_string(number) + ": " + reason);
    add(transcript, number, line);
  }
  return transcript;
}

std::vector<Scene> scenesIn(const Transcript& transcript) {
  std::vector<Scene> scenes;
  const Lines* above = &transcript.opening;
  for (const Step& step : transcript.steps) {
    if (step.input == "> .reset") {
      scenes.push_back({lastCommentIn(*above), {}});
    } else if (!scenes.empty()) {
      scenes.back().steps.push_back({step.line, step.input, step.output, {}});
    }
    above = &step.remarks;
  }
  return scenes;
}

std::string writeTranscript(const Transcript& transcript) {
  std::string text(transcript.marked ? text::byteOrderMark : "");
  append(text, transcript.opening);
  for (const Step& step : transcript.steps) {
    text += step.input + "\n";
    append(text, step.output);
    append(text, step.remarks);
  }
  return text;
}

}  // namespace virtualtv::shell
