// SPDX-License-Identifier: MIT
#include "shell/Check.h"

#include <filesystem>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <system_error>

#include "shell/Diff.h"
#include "shell/Files.h"
#include "shell/Junit.h"
#include "shell/Reason.h"
#include "shell/Session.h"
#include "shell/Transcript.h"

namespace virtualtv::shell {

namespace {

using Clock = std::chrono::steady_clock;

std::string place(const CheckedFile& file, const CheckedStep& step) {
  return file.name + ":" + std::to_string(step.line) + ": ";
}

/// Adds to each step the findings that fail a transcript even when its output is as expected. Complaints of the set
/// belong to the last step.
void takeFindings(Session& session, std::vector<Lines>& findings) {
  Session::Remarks remarks = session.takeRemarks();
  for (Session::Finding& finding : remarks.findings) findings[finding.input].push_back(std::move(finding.text));
  for (std::string& complaint : remarks.complaints) findings.back().push_back(std::move(complaint));
}

void report(const std::vector<Lines>& findings, CheckedFile& checked) {
  for (std::size_t at = 0; at < findings.size(); ++at) {
    CheckedStep& step = checked.steps[at];
    for (const std::string& finding : findings[at]) {
      checked.findings.push_back(place(checked, step) + oneLine(finding));
      step.failure += (step.failure.empty() ? "" : "\n") + checked.findings.back();
    }
  }
}

/// Runs the transcript in a session on a fresh set. @return the transcript with its actual output.
Transcript replay(Session& session, const Transcript& expected, CheckedFile& checked) {
  Transcript printed = expected;
  std::vector<Lines> findings;
  for (Step& step : printed.steps) {
    const Clock::time_point start = Clock::now();
    step.output = session.run(step.input);
    checked.steps.push_back({step.line, step.input, {}, Clock::now() - start});
    findings.emplace_back();
    takeFindings(session, findings);
  }
  session.noteIdleFaults();
  takeFindings(session, findings);
  report(findings, checked);
  return printed;
}

/// The difference of two transcripts with the same inputs and remarks. Failures are added to the steps.
std::string difference(const Transcript& expected, const Transcript& printed, CheckedFile& checked) {
  Diff whole;
  same(whole, expected.opening);
  for (std::size_t at = 0; at < expected.steps.size(); ++at) {
    const Step& step = expected.steps[at];
    same(whole, step.input);
    compare(whole, step.output, printed.steps[at].output);
    same(whole, step.remarks);
    Diff own;
    compare(own, step.output, printed.steps[at].output);
    std::string& failure = checked.steps[at].failure;
    const std::string changes = unified(own, "expected", "printed");
    if (!changes.empty()) failure = failure.empty() ? changes : failure + "\n" + changes;
  }
  return unified(whole, checked.name, checked.name + " (printed now)");
}

Transcript readInputs(const std::string& name, std::string_view content) {
  Transcript transcript = readTranscript(name, content);
  if (transcript.steps.empty()) throw std::runtime_error(name + ": there is no '>' line to run");
  return transcript;
}

void checkOpened(kel::CEmpAppBase& app, bool update, CheckedFile& checked) {
  const Transcript expected = readInputs(checked.name, readFile(checked.name));
  Storage storage;
  device::Device device(app, storage);
  Session session(device, std::filesystem::path(checked.name).parent_path());
  const Transcript printed = replay(session, expected, checked);
  if (update) {
    const std::string content = writeTranscript(printed);
    if (content != writeTranscript(expected)) replaceFile(checked.name, content);
  } else {
    checked.diff = difference(expected, printed, checked);
  }
}

/// A function that throws once a check exceeds its bounds.
std::function<void()> guardOf(const std::string& name, const CheckBounds& bounds) {
  const Clock::time_point start = Clock::now();
  return [name, bounds, start, inputs = std::size_t{0}]() mutable {
    if (++inputs > bounds.inputs) {
      throw Stopped(name + ": more than " + std::to_string(bounds.inputs) + " inputs, those of files included");
    }
    if (Clock::now() - start > bounds.time) {
      const auto most = std::chrono::duration_cast<std::chrono::milliseconds>(bounds.time);
      throw Stopped(name + ": it takes more than " + std::to_string(most.count()) + " ms");
    }
  };
}

/// Runs a check. @return its result with the time it took. An exception becomes the error of the result.
template <typename Run>
CheckedFile checkedBy(const std::string& name, Run run) {
  const Clock::time_point start = Clock::now();
  CheckedFile checked;
  checked.name = name;
  try {
    run(checked);
  } catch (...) {
    checked.error = oneLine(reasonOf(std::current_exception(), "check " + name));
  }
  checked.time = Clock::now() - start;
  return checked;
}

/// True when two names refer to the same file, which need not exist.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
  std::error_code failure;
  if (std::filesystem::equivalent(one, other, failure)) return true;
  const auto place = std::filesystem::weakly_canonical(one, failure);
  return !failure && place == std::filesystem::weakly_canonical(other, failure);
}

/// Refuses a report that would overwrite a transcript.
void refuseReportInPlaceOfTranscript(const CheckOptions& options) {
  if (!options.junit) return;
  for (const std::string& name : options.files) {
    if (!isSameFile(*options.junit, name)) continue;
    throw std::runtime_error("cannot write the report to " + *options.junit + ": it is the transcript " + name);
  }
}

void print(const CheckedFile& file, std::ostream& out, std::ostream& err) {
  out << file.diff;
  for (const std::string& finding : file.findings) out << finding << "\n";
  if (!file.error.empty()) err << "emp-window: " << file.error << "\n";
}

}  // namespace

CheckedFile checkText(kel::CEmpAppBase& app, const std::string& name, std::string_view content, const FileAccess& files,
                      const CheckBounds& bounds) {
  return checkedBy(name, [&](CheckedFile& checked) {
    const Transcript expected = readInputs(name, content);
    Storage storage;
    device::Device device(app, storage);
    Session session(device, {}, files);
    session.beforeEach = guardOf(name, bounds);
    const Transcript printed = replay(session, expected, checked);
    checked.diff = difference(expected, printed, checked);
  });
}

CheckedFile checkTranscript(kel::CEmpAppBase& app, const std::string& file, bool update) {
  return checkedBy(file, [&](CheckedFile& checked) { checkOpened(app, update, checked); });
}

bool check(kel::CEmpAppBase& app, const CheckOptions& options, std::ostream& out, std::ostream& err) {
  refuseReportInPlaceOfTranscript(options);
  std::vector<CheckedFile> files;
  Lines failed;
  for (const std::string& name : options.files) {
    files.push_back(checkTranscript(app, name, options.update));
    print(files.back(), out, err);
    if (!files.back().passed()) failed.push_back(name);
  }
  if (files.size() > 1) {
    for (const std::string& name : failed) out << "failed: " << oneLine(name) << "\n";
  }
  out << "transcripts: " << files.size() - failed.size() << " passed, " << failed.size() << " failed\n";
  if (options.junit) writeFile(*options.junit, junitReport(files));
  return failed.empty();
}

}  // namespace virtualtv::shell
