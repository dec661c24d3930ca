#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kel/CEmpAppBase.h"
#include "shell/FileAccess.h"

namespace virtualtv::shell {

/// How an input of a transcript did.
struct CheckedStep {
  int line = 0;
  std::string input;
  std::string failure;  ///< empty when it printed what was expected, otherwise what was found and the difference
  std::chrono::nanoseconds time{};  ///< that it took
};

/// How a transcript did.
struct CheckedFile {
  std::string name;
  std::string error;  ///< why it could not be run at all, empty when it was
  std::vector<CheckedStep> steps;
  std::string diff;                   ///< expected and printed, in the unified format; empty when they agree
  std::vector<std::string> findings;  ///< what fails it although the texts agree, as in `FILE:LINE: FINDING`
  std::chrono::nanoseconds time{};    ///< that all of it took, also making the set
  bool passed() const { return error.empty() && diff.empty() && findings.empty(); }
};

/// How far a check goes.
struct CheckBounds {
  std::size_t inputs = std::numeric_limits<std::size_t>::max();  ///< those of files that inputs run too
  std::chrono::nanoseconds time = std::chrono::nanoseconds::max();
};

/// Runs a transcript on a fresh set in memory and compares what it prints with what it says. The process has no other
/// device meanwhile, see `device::DeviceAside`.
/// @param name  stands before line numbers.
/// @param files  what its inputs reach of files.
/// @return with an error where the text is no transcript, and where it goes beyond the bounds: it is then run as far as
/// that.
CheckedFile checkText(kel::CEmpAppBase& app, const std::string& name, std::string_view content, const FileAccess& files,
                      const CheckBounds& bounds);

/// Runs a transcript on a fresh set in memory and compares what it prints with what stands in the file.
/// @param update  puts what was printed in place of what stands there; comments and blank lines stay. The difference
/// then is none.
CheckedFile checkTranscript(kel::CEmpAppBase& app, const std::string& file, bool update);

struct CheckOptions {
  std::vector<std::string> files;
  bool update = false;
  std::optional<std::string> junit;  ///< file that receives a report for machines
};

/// Checks transcripts one after the other and reports on them: differences, the failed ones of several and a summary on
/// `out`, errors on `err`.
/// @return true when all passed.
/// @throws std::runtime_error when the report can't be written, before anything is run where it would replace one of
/// the transcripts.
bool check(kel::CEmpAppBase& app, const CheckOptions& options, std::ostream& out, std::ostream& err);

/// The report for machines, in the JUnit format: a suite for each file, a case for each of its inputs, with totals and
/// times in seconds.
std::string junitReport(const std::vector<CheckedFile>& files);

}  // namespace virtualtv::shell
