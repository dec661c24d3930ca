#include "shell/Check.h"

#include <ostream>
#include <stdexcept>

#include "shell/Diff.h"
#include "shell/Files.h"
#include "shell/Session.h"
#include "shell/Transcript.h"

namespace virtualtv::shell {

namespace {

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

/// What an input left behind that fails a transcript although the texts may agree.
Lines findingsOf(Session& session) {
  Session::Remarks remarks = session.takeRemarks();
  Lines findings = std::move(remarks.findings);
  for (std::string& complaint : remarks.complaints) findings.push_back(std::move(complaint));
  return findings;
}

/// Runs the transcript on a fresh set. @return the same transcript with what was printed.
Transcript replay(kel::CEmpAppBase& app, const Transcript& expected, CheckedFile& checked) {
  Storage storage;
  Session session(app, storage, std::filesystem::path(checked.name).parent_path());
  Transcript printed = expected;
  for (std::size_t at = 0; at < printed.steps.size(); ++at) {
    Step& step = printed.steps[at];
    step.output = session.run(step.input);
    if (at + 1 == printed.steps.size()) session.noteIdleFaults();
    const Lines findings = findingsOf(session);
    checked.steps.push_back({step.line, step.input, joined(findings)});
    for (const std::string& finding : findings) {
      checked.findings.push_back(checked.name + ":" + std::to_string(step.line) + ": " + finding);
    }
  }
  return printed;
}

/// The difference of two transcripts that have the same inputs and remarks. Failures go into the steps.
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

void checkOpened(kel::CEmpAppBase& app, bool update, CheckedFile& checked) {
  const Transcript expected = readTranscript(checked.name, readFile(checked.name));
  if (expected.steps.empty()) throw std::runtime_error(checked.name + ": there is no '>' line to run");
  const Transcript printed = replay(app, expected, checked);
  if (update) {
    const std::string content = writeTranscript(printed);
    if (content != writeTranscript(expected)) replaceFile(checked.name, content);
  } else {
    checked.diff = difference(expected, printed, checked);
  }
}

void report(const CheckedFile& file, std::ostream& out, std::ostream& err) {
  out << file.diff;
  for (const std::string& finding : file.findings) out << finding << "\n";
  if (!file.error.empty()) err << "emp-window: " << file.error << "\n";
}

}  // namespace

CheckedFile checkTranscript(kel::CEmpAppBase& app, const std::string& file, bool update) {
  CheckedFile checked;
  checked.name = file;
  try {
    checkOpened(app, update, checked);
  } catch (const std::exception& exception) {
    checked.error = oneLine(exception.what());
  }
  return checked;
}

bool check(kel::CEmpAppBase& app, const CheckOptions& options, std::ostream& out, std::ostream& err) {
  std::vector<CheckedFile> files;
  std::size_t failed = 0;
  for (const std::string& name : options.files) {
    files.push_back(checkTranscript(app, name, options.update));
    report(files.back(), out, err);
    if (!files.back().passed()) ++failed;
  }
  out << "transcripts: " << files.size() - failed << " passed, " << failed << " failed\n";
  if (options.junit) writeFile(*options.junit, junitReport(files));
  return failed == 0;
}

}  // namespace virtualtv::shell
