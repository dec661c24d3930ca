// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "shell/Lines.h"

/// The file format of a session: inputs, their output, and comments.
namespace virtualtv::shell {

struct Step {
  int line = 0;       ///< line of the input in the file, counted from 1
  std::string input;  ///< the whole line, `>` included
  Lines output;       ///< its output
  Lines remarks;      ///< the comments and blank lines that follow
};

struct Transcript {
  bool marked = false;  ///< a byte order mark precedes the first line
  Lines opening;        ///< comments and blank lines before the first input
  std::vector<Step> steps;
};

/// True for a line that a transcript may have: UTF-8 without null characters.
bool isText(std::string_view line);

/// The longest input or comment, in bytes.
inline constexpr std::size_t longestLine = 1'000'000;

/// The first input of a transcript that a server has recorded. Its other inputs may exceed `longestLine`.
inline constexpr std::string_view recordedMark = "> .recorded";

/// Why a line can't be an input or a comment: it is too long, or not text. Empty when it can.
std::string flawOf(std::string_view line);
/// The comment that replaces such a line in a transcript: its flaw, and the line or its start.
std::string remarkOn(const std::string& flaw, std::string_view line);

/// True for an input line.
bool isInput(std::string_view line);
/// True for a comment or a blank line.
bool isRemark(std::string_view line);

/// Reads a transcript: lines that start with `>` are inputs, and `#` starts a comment. All other lines, except blank
/// ones, are the output of the input before them. A byte order mark at the start is not part of the first line. @param
/// name precedes the line number in errors.
/// @throws std::runtime_error `NAME:LINE: REASON` for an input or a comment with a flaw, for output that is not text,
/// and for output that does not directly follow an input.
Transcript readTranscript(const std::string& name, std::string_view content);

/// An example in a transcript: inputs that run on a factory-fresh set.
struct Scene {
  std::string name;         ///< name of the command that it shows
  std::vector<Step> steps;  ///< inputs and output, without remarks
};

/// The scenes of a transcript. Each starts after a step `> .reset` and ends before the next one. Its name is the last
/// comment above its `> .reset`.
std::vector<Scene> scenesIn(const Transcript& transcript);

/// The text of a transcript. Each line ends with a line break, and the byte order mark is preserved.
std::string writeTranscript(const Transcript& transcript);

}  // namespace virtualtv::shell
