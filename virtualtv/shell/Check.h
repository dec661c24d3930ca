// SPDX-License-Identifier: MIT
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

/// The result of one input of a transcript.
struct CheckedStep {
  int line = 0;
  std::string input;
  std::string failure;  ///< empty when the output was as expected, otherwise the findings and the difference
  std::chrono::nanoseconds time{};  ///< the time it took
};

/// The result of a transcript.
struct CheckedFile {
  std::string name;
  std::string error;  ///< why it could not be run; empty when it ran
  std::vector<CheckedStep> steps;
  std::string diff;                   ///< expected against actual output, in the unified format; empty when equal
  std::vector<std::string> findings;  ///< failures other than the output, as in `FILE:LINE: FINDING`
  std::chrono::nanoseconds time{};    ///< total time, including the creation of the set
  bool passed() const { return error.empty() && diff.empty() && findings.empty(); }
};

/// Limits for a check.
struct CheckBounds {
  std::size_t inputs = std::numeric_limits<std::size_t>::max();  ///< including the inputs of files that inputs run
  std::chrono::nanoseconds time = std::chrono::nanoseconds::max();
};

/// Runs a transcript on a fresh set in memory and compares the output with the transcript. While it runs, the process's
/// device is put aside, see `device::DeviceAside`.
/// @param name  precedes line numbers in messages.
/// @param files  the files that its inputs can use.
/// @return a result with an error when the text is not a transcript, or when it exceeds the bounds. A transcript that
/// exceeds the bounds is run up to them.
CheckedFile checkText(kel::CEmpAppBase& app, const std::string& name, std::string_view content, const FileAccess& files,
                      const CheckBounds& bounds);

/// Runs a transcript file on a fresh set in memory and compares the output with the file. @param update  replaces the
/// expected output in the file with the actual output, and keeps comments and blank lines. The result then has no
/// difference.
CheckedFile checkTranscript(kel::CEmpAppBase& app, const std::string& file, bool update);

struct CheckOptions {
  std::vector<std::string> files;
  bool update = false;
  std::optional<std::string> junit;  ///< file for the machine-readable report
};

/// Checks transcripts one after the other. Prints differences and a summary on `out`, and errors on `err`. When several
/// transcripts are checked, also lists the failed ones on `out`. @return true when all passed. @throws
/// std::runtime_error when the report can't be written. If it would overwrite one of the transcripts, this happens
/// before anything is run.
bool check(kel::CEmpAppBase& app, const CheckOptions& options, std::ostream& out, std::ostream& err);

}  // namespace virtualtv::shell
