// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "shell/Lines.h"
#include "shell/Transcript.h"

/// The cases of the plug-in's commands: transcripts whose comments say what each case shows. README.md in this folder
/// describes them.
namespace cases {

using virtualtv::shell::Lines;

struct Case {
  enum class Kind {
    success,
    unparsed,  ///< the text of `parameter` does not parse
    missing,   ///< `parameter` is left out, or the empty text
    result,    ///< the operation fails with the number `result`
  };

  std::string command;
  Kind kind = Kind::success;
  std::string parameter;
  int result = 0;
  std::string title;  ///< the comment that starts it, as in "GetSource: unparsed seek"
  std::string file;
  std::vector<virtualtv::shell::Step> steps;  ///< from `.reset` to the command itself, one at least

  /// The place of its command, as in "sources.txt:7".
  std::string place() const;
};

/// Reads the cases of a transcript.
/// @param file  name in error messages.
/// @throws std::runtime_error `FILE:LINE: REASON` for an invalid transcript.
std::vector<Case> readCases(const std::string& file, std::string_view content);

/// The result of a failed operation.
struct Results {
  std::set<int> numbers;
  bool others = false;  ///< any other number is a failure too
};

/// Reads the table of results, by command. @throws std::runtime_error `LINE: REASON` for an invalid line.
std::map<std::string, Results> readResults(std::string_view content);

}  // namespace cases
