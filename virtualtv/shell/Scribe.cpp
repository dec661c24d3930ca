// SPDX-License-Identifier: MIT
#include "shell/Scribe.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <variant>

#include "framework/Reply.h"
#include "set/SnapshotJson.h"
#include "shell/Scan.h"
#include "shell/Transcript.h"
#include "text/Units.h"

namespace virtualtv::shell {

namespace {

using std::chrono::system_clock;

/// A point in time, as in `2026-01-31T12:00:00.250Z`.
std::string textOf(system_clock::time_point time) {
  const std::time_t second = system_clock::to_time_t(time);
  const auto inAll = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
  std::tm parts{};
  ::gmtime_r(&second, &parts);
  std::array<char, 32> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(text.data() + length, text.size() - length, ".%03dZ", static_cast<int>(inAll % 1000));
  return text.data();
}

/// Writes the name of a command as the first word of an input, so that it can't be read as something else.
std::string firstWord(const std::string& name) {
  const std::string word = text::asWord(name);
  return word.find_first_of(".+>") == 0 ? "'" + word + "'" : word;
}

}  // namespace

Lines Scribe::tell(const device::Happening& happening) {
  lines_.clear();
  std::visit([this](const auto& what) { put(what); }, happening.what);
  if (!lines_.empty()) lines_.insert(lines_.begin(), "# " + textOf(happening.time));
  return std::exchange(lines_, {});
}

Lines Scribe::restore(const Snapshot& snapshot) {
  putInput("> .restore", {keep_(writeSnapshot(snapshot), ".json")});
  return std::exchange(lines_, {});
}

void Scribe::put(const device::CommandRun& command) {
  const std::string engine = nameOf(command.caller.engine);
  if (!command.accepted) {
    lines_.push_back(remarkOn("could not be run", command.words.front()));
    return;
  }
  use(engine);
  putInput((command.list ? ">+ " : "> ") + firstWord(command.words.front()),
           {command.words.begin() + 1, command.words.end()});
  for (std::string& line : splitLines(framework::showAnswer(*command.accepted, command.reply))) {
    lines_.push_back(std::move(line));
  }
}

// Engines.

void Scribe::put(const framework::EngineOpened& opened) {
  const std::string engine = nameOf(opened.engine);
  open_.insert(opened.engine);
  inUse_ = engine;
  putInput("> .engine", {engine});
  const device::Application application{opened.client.appId, opened.client.widgetId};
  if (applications_[engine] != application) putApplication(engine, application);
}

/// An engine that could not be created is also reported as closed.
void Scribe::put(const framework::EngineClosed& closed) {
  if (open_.erase(closed.engine) > 0) putInput("> .close", {nameOf(closed.engine)});
}

void Scribe::put(const device::ApplicationGiven& application) {
  const std::string engine = nameOf(application.engine);
  use(engine);
  putApplication(engine, {application.appId, application.widgetId});
}

void Scribe::putApplication(const std::string& engine, const device::Application& application) {
  applications_[engine] = application;
  putInput("> .app", {application.appId, application.widgetId});
}

void Scribe::use(const std::string& engine) {
  if (inUse_ == engine) return;
  inUse_ = engine;
  putInput("> .engine", {engine});
}

/// The name of an engine in the transcript. The key identifies the engine, but it starts with the name of a session,
/// which is long and differs from run to run.
std::string Scribe::nameOf(const std::string& key) {
  const std::size_t mark = key.find(':');
  if (mark == key.npos || mark == 0) return key;
  const std::string session = key.substr(0, mark);
  const auto [known, isNew] = clients_.try_emplace(session, std::to_string(clients_.size() + 1));
  if (isNew) lines_.push_back("# Engines of session " + oneLine(session) + " are called " + known->second + ":NAME.");
  return known->second + key.substr(mark);
}

// The set.

/// The engines were closed before. A restore was already recorded as an act.
void Scribe::put(const device::SetStarted& started) {
  if (started.why == "restart") putInput("> .restart", {});
  if (started.why != "reset") return;
  putInput("> .reset", {});
  inUse_ = device::Session::firstEngine;
  applications_.clear();
}

void Scribe::put(const device::FaultSet& fault) {
  constexpr std::string_view engine = "engine=";
  Lines words = splitWords(fault.fault);
  for (std::string& word : words) {
    if (word.starts_with(engine)) word = std::string(engine) + nameOf(word.substr(engine.size()));
  }
  putInput("> .fault", words);
}

void Scribe::put(const device::FaultGone& fault) {
  if (!fault.withSet) putInput("> .fault", {"clear", std::to_string(fault.id)});
}

void Scribe::put(const device::Act& act) {
  std::visit([this](const auto& what) { put(what); }, act);
}

void Scribe::put(const device::KnobTurned& turned) {
  putInput("> .set", {turned.name, turned.value});
}

void Scribe::put(const device::ServiceEdited& edited) {
  Lines words{edited.service, edited.edit};
  if (!edited.value.empty()) words.push_back(edited.value);
  putInput("> .service", words);
}

void Scribe::put(const device::SettingGiven& setting) {
  if (!setting.value) return putInput("> .vconf", {"unset", setting.key});
  const int* const number = std::get_if<int>(&*setting.value);
  putInput("> .vconf", {"set", setting.key, number == nullptr ? "str" : "int",
                        number == nullptr ? std::get<std::string>(*setting.value) : std::to_string(*number)});
}

void Scribe::put(const device::ListImported& list) {
  ImportReport report = list.report;
  report.list = keep_(list.content, ".list");
  Lines words{report.list};
  if (list.options.add) words.emplace_back("--add");
  if (list.options.format != nullptr) words.push_back("--format=" + std::string(list.options.format->name));
  if (!list.options.encoding.empty()) words.push_back("--encoding=" + list.options.encoding);
  putInput("> .import", words);
  for (std::string& line : report.problemLines()) lines_.push_back(std::move(line));
  lines_.push_back(report.summary());
}

/// Recordings of broadcasts are not stored with the transcript: their files must still exist when it is replayed.
void Scribe::put(const device::ScanImported& scan) {
  if (scan.files.empty()) {
    lines_.push_back("# " + scan.report.summary() + ", from a broadcast that a client sent and that is not kept");
    return;
  }
  const ScanWishes wishes{.files = scan.files, .json = false, .import = true, .add = scan.add};
  Lines words = wishes.files;
  words.emplace_back("--import");
  if (scan.add) words.emplace_back("--add");
  putInput("> .scan", words);
  for (std::string& line : scanLines(*scan.scan, wishes)) lines_.push_back(std::move(line));
  lines_.push_back(scan.report.summary());
}

void Scribe::put(const device::SnapshotRestored& restored) {
  for (std::string& line : restore(*restored.snapshot)) lines_.push_back(std::move(line));
}

void Scribe::putInput(const std::string& start, const Lines& words) {
  std::string line = start;
  for (const std::string& word : words) line += " " + text::asWord(word);
  lines_.push_back(std::move(line));
}

}  // namespace virtualtv::shell
