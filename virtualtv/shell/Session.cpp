// SPDX-License-Identifier: MIT
#include "shell/Session.h"

#include <stdexcept>
#include <utility>

#include "catalogue/Catalogue.h"
#include "framework/Reply.h"
#include "shell/DotCommands.h"
#include "shell/Reason.h"
#include "shell/Show.h"
#include "shell/Transcript.h"

namespace virtualtv::shell {

namespace {

constexpr std::size_t deepestFile = 16;

std::string_view withoutMarks(std::string_view input) {
  const std::size_t start = input.find_first_not_of("> \t");
  return start == std::string_view::npos ? std::string_view() : input.substr(start);
}

/// The message for a person about a failed step.
std::string whyNotRun(std::string_view input, const std::exception_ptr& thrown) {
  return reasonOf(thrown, "run '" + std::string(input) + "'");
}

}  // namespace

Session::Session(device::Device& device, std::filesystem::path directory)
    : client_(device), files_(allFiles()), directories_{std::move(directory)} {}

Session::Session(device::Device& device, std::string name, const FileAccess& files)
    : client_(device, std::move(name)), files_(files), directories_{files.start()} {}

Lines Session::run(std::string_view input) {
  ++inputs_;
  return runLine(input);
}

Lines Session::runLine(std::string_view input) {
  if (beforeEach) beforeEach();
  if (ended) return {errorLine("'.quit' has ended the session, nothing behind it is run")};
  try {
    return runStep(withoutMarks(input));
  } catch (const Stopped&) {
    throw;
  } catch (...) {
    return {errorLine(whyNotRun(withoutMarks(input), std::current_exception()))};
  }
}

Session::Remarks Session::takeRemarks() {
  Remarks remarks = std::exchange(remarks_, {});
  remarks.complaints = device().takeComplaints();
  return remarks;
}

void Session::noteIdleFaults() {
  noteIdleFaults([](const seam::Fault&) { return true; });
}

void Session::noteIdleFaults(const std::function<bool(const seam::Fault&)>& isMeant) {
  for (const seam::Fault& fault : device().faults()) {
    if (fault.hits > 0 || isRecorded_ || !isMeant(fault)) continue;
    remarks_.findings.push_back({fault.input, "a fault was never hit: " + describe(fault)});
  }
}

void Session::note(std::string finding) {
  if (!isRecorded_) remarks_.findings.push_back({input(), std::move(finding)});
}

std::string Session::describe(const seam::Fault& fault) const {
  seam::Fault typed = fault;
  typed.engine = client_.engineOf(fault.engine).value_or(fault.engine);
  return seam::describe(typed);
}

bool Session::execute(const std::vector<std::string>& words, bool list, std::string& ret) {
  try {
    return client_.execute(words, list, ret);
  } catch (const device::TooManyParameters& error) {
    if (catalogue().findList(words[0]) == nullptr) throw;
    throw std::invalid_argument(std::string(error.what()) + "; in the shell '+ " + words[0] +
                                " ...' passes any number");
  }
}

Lines Session::source(const std::string& file) {
  if (directories_.size() > deepestFile) throw std::runtime_error(file + ": files run each other too deep");
  const Transcript transcript = readTranscript(file, read(file));
  directories_.push_back(resolve(file).parent_path());
  Lines output;
  for (const Step& step : transcript.steps) {
    append(output, runLine(step.input));
    if (ended) break;
  }
  ended = false;  // `.quit` in a file ends that file only
  directories_.pop_back();
  return output;
}

std::filesystem::path Session::resolve(const std::string& file) const {
  if (file.empty()) throw std::invalid_argument("a file is wanted, not an empty text");
  return directories_.back() / file;
}

std::string Session::read(const std::string& file) const {
  return files_.read(resolve(file), file);
}

NamedList Session::readList(const std::string& file) const {
  return shell::readList(files_, resolve(file), file);
}

RecordingFiles Session::recordings(const std::vector<std::string>& files) const {
  RecordingFiles recordings{{}, files_.areOwn()};
  for (const std::string& file : files) {
    const bool piped = file == "-";
    recordings.paths.push_back(piped ? "" : recordings.areTrusted ? absolute(resolve(file)) : resolve(file));
  }
  return recordings;
}

void Session::readBlocks(const std::string& file, const TakeBlock& take) const {
  files_.readBlocks(resolve(file), file, take);
}

void Session::save(const std::string& file, std::string_view content) const {
  files_.save(resolve(file), content, file);
}

std::string Session::errorLine(const std::string& reason) {
  remarks_.errors.push_back(reason);
  return "error: " + oneLine(reason);
}

void Session::reset() {
  device().reset();
  client_.forget();
  trace = false;
  logLevel = -1;
  lastDeed_ = {};
  lastCommand_.clear();
  lastNumber_ = 0;
}

const std::string& Session::lastCommand() {
  recallLast();
  return lastCommand_;
}

const device::Deed& Session::lastDeed() {
  recallLast();
  return lastDeed_;
}

/// Fetches the last command from the device when it was not run by a line of this session.
void Session::recallLast() {
  if (client_.lastCommand() == lastNumber_) return;
  lastNumber_ = client_.lastCommand();
  lastCommand_.clear();
  lastDeed_ = {};
  auto recalled = client_.recall(lastNumber_);
  if (!recalled) return;
  lastCommand_ = recalled->list ? "+" : "";
  for (const std::string& word : recalled->words) {
    lastCommand_ += (lastCommand_.empty() ? "" : " ") + (word.empty() ? "''" : asTyped(word));
  }
  lastDeed_ = std::move(recalled->deed);
}

Lines Session::runStep(std::string_view input) {
  if (input.empty()) return {};
  if (input.front() != '.') {
    const bool list = input.front() == '+';
    return runCommand(input, list);
  }
  const std::vector<std::string> words = splitWords(input);
  const DotCommand& command = dotCommand(words.front());
  const auto step = [&] { return command.run(*this, {words.begin() + 1, words.end()}); };
  return command.drivesEngines ? observe(input, step, false) : step();
}

Lines Session::runCommand(std::string_view input, bool list) {
  const std::vector<std::string> words = splitWords(input.substr(list ? 1 : 0));
  for (const std::string& word : words) {
    if (word.find('\0') != word.npos) throw std::invalid_argument("a command takes no null characters");
  }
  return observe(
      input,
      [&] {
        std::string ret;
        const bool accepted = execute(words, list, ret);
        return splitLines(framework::showAnswer(accepted, ret));
      },
      true);
}

/// Runs a step that reaches the plug-in. Its output is followed by its calls and log messages, as far as requested.
Lines Session::observe(std::string_view input, const std::function<Lines()>& step, bool remember) {
  Lines output;
  std::exception_ptr thrown;
  device::Deed deed = client_.observe([&] { output = step(); }, thrown);
  if (thrown) output.push_back(errorLine(whyNotRun(input, thrown)));
  if (trace) append(output, callLines(deed));
  append(output, logLines(deed, logLevel));
  if (remember && deed.ran) {
    lastCommand_ = input;
    lastDeed_ = std::move(deed);
    lastNumber_ = client_.lastCommand();
  }
  return output;
}

}  // namespace virtualtv::shell
