// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <optional>
#include <sstream>
#include <stdexcept>

#include "kel/StringToNumber.h"

namespace cases {

namespace {

using virtualtv::shell::Step;
using virtualtv::shell::Transcript;

[[noreturn]] void refuse(const std::string& place, const std::string& reason) {
  throw std::runtime_error(place + ": " + reason);
}

std::string placeOf(const std::string& file, const Step& step) {
  return file + ":" + std::to_string(step.line);
}

/// The title in a comment; empty when the comment starts no case.
std::string titleIn(const std::string& remark) {
  constexpr std::string_view mark = "# ";
  if (!remark.starts_with(mark)) return {};
  const std::size_t colon = remark.find(": ");
  if (colon == std::string::npos || remark.find(' ', mark.size()) < colon) return {};
  return remark.substr(mark.size());
}

/// Reads "success", "unparsed NAME", "missing NAME" or a number. @return false for any other text.
bool readKind(const std::string& text, Case& read) {
  std::istringstream words(text);
  std::string kind;
  words >> kind >> read.parameter;
  if (!words.eof()) return false;
  const bool named = !read.parameter.empty();
  if (kind == "unparsed" || kind == "missing") {
    read.kind = kind == "missing" ? Case::Kind::missing : Case::Kind::unparsed;
    return named;
  }
  read.kind = kind == "success" ? Case::Kind::success : Case::Kind::result;
  return !named && (kind == "success" || kel::StringToNumber(kind, read.result));
}

/// A case without steps. @param place  the place of its first step, for errors.
Case titled(const std::string& title, const std::string& place) {
  Case read;
  const std::size_t colon = title.find(": ");
  const std::string rest = title.substr(colon + 2);
  read.title = title;
  read.command = title.substr(0, colon);
  if (!readKind(rest.substr(0, rest.find(',')), read)) {
    refuse(place, "'" + title + "': success, unparsed NAME, missing NAME or a number is wanted behind the command");
  }
  return read;
}

/// The title among remarks, of which at most one may be a title; empty when none is.
std::string titleAmong(const Lines& remarks, const std::string& place) {
  std::string found;
  for (const std::string& remark : remarks) {
    const std::string title = titleIn(remark);
    if (title.empty()) continue;
    if (!found.empty()) refuse(place, "'" + found + "': there is no input");
    found = title;
  }
  return found;
}

void checkSteps(const Case& read) {
  if (read.steps.front().input != "> .reset") {
    refuse(placeOf(read.file, read.steps.front()), "'" + read.title + "': its first input is to be '> .reset'");
  }
  const std::string& last = read.steps.back().input;
  if (last != "> " + read.command && !last.starts_with("> " + read.command + " ")) {
    refuse(read.place(), "'" + read.title + "': its last input is to be the command");
  }
}

Results resultsIn(const std::string& text, const std::string& place) {
  Results read;
  if (text == "none") return read;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    int number = 0;
    if (word == "*") {
      read.others = true;
    } else if (kel::StringToNumber(word, number)) {
      read.numbers.insert(number);
    } else {
      refuse(place, "'" + word + "': a number is wanted");
    }
  }
  if (read.numbers.empty() && !read.others) refuse(place, "numbers or none are wanted");
  return read;
}

}  // namespace

std::string Case::place() const {
  return placeOf(file, steps.back());
}

std::vector<Case> readCases(const std::string& file, std::string_view content) {
  const Transcript transcript = virtualtv::shell::readTranscript(file, content);
  if (transcript.steps.empty()) refuse(file, "there are no cases");
  std::vector<Case> all;
  const Lines* remarks = &transcript.opening;
  for (const Step& step : transcript.steps) {
    const std::string title = titleAmong(*remarks, placeOf(file, step));
    if (!title.empty()) {
      all.push_back(titled(title, placeOf(file, step)));
      all.back().file = file;
    }
    if (all.empty()) refuse(placeOf(file, step), "an input before the first case");
    all.back().steps.push_back(step);
    remarks = &step.remarks;
  }
  const std::string idle = titleAmong(*remarks, file);
  if (!idle.empty()) refuse(file, "'" + idle + "': there is no input");
  for (const Case& read : all) checkSteps(read);
  return all;
}

std::map<std::string, Results> readResults(std::string_view content) {
  std::map<std::string, Results> all;
  int number = 0;
  for (const std::string& line : virtualtv::shell::splitLines(content)) {
    const std::string place = std::to_string(++number);
    if (line.starts_with('#')) continue;
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos) refuse(place, "a command, a tab and numbers are wanted");
    const std::string command = line.substr(0, tab);
    const bool added = all.emplace(command, resultsIn(line.substr(tab + 1), place)).second;
    if (!added) refuse(place, command + " stands there twice");
  }
  return all;
}

}  // namespace cases
