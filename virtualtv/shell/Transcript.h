#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "shell/Lines.h"

/// The file form of a session: inputs, what each printed, and comments.
namespace virtualtv::shell {

struct Step {
  int line = 0;       ///< of the input in the file, counted from 1
  std::string input;  ///< the whole line, `>` included
  Lines output;       ///< what it prints
  Lines remarks;      ///< the comments and blank lines that follow
};

struct Transcript {
  bool marked = false;  ///< a byte order mark stands before the first line
  Lines opening;        ///< comments and blank lines before the first input
  std::vector<Step> steps;
};

/// True for a line that a transcript may have: UTF-8 without null characters.
bool isText(std::string_view line);

/// The longest input or comment, in bytes.
inline constexpr std::size_t longestLine = 1'000'000;

/// The first input of a transcript that a server has recorded. Those behind it may be longer.
inline constexpr std::string_view recordedMark = "> .recorded";

/// Why a line can't be an input or a comment: it is too long, or no text. Empty when it can.
std::string flawOf(std::string_view line);
/// The comment that stands in a transcript in place of such a line: its flaw, and the line or at least its start.
std::string remarkOn(const std::string& flaw, std::string_view line);

/// True for an input line.
bool isInput(std::string_view line);
/// True for a comment or a blank line.
bool isRemark(std::string_view line);

/// Reads a transcript: lines that start with `>` are inputs, `#` starts a comment, all other lines but blank ones are
/// what the input before them prints. A byte order mark at the start is no part of the first line.
/// @param name  stands before the line number in errors.
/// @throws std::runtime_error `NAME:LINE: REASON` for an input or a comment with a flaw, for output that is no text,
/// and for output that does not directly follow an input.
Transcript readTranscript(const std::string& name, std::string_view content);

/// An example in a transcript: what is run on a set as it comes from the factory.
struct Scene {
  std::string name;         ///< of the command that it shows
  std::vector<Step> steps;  ///< without remarks
};

/// The scenes of a transcript. Each starts behind a step `> .reset`, ends before the next one, and has the name that
/// the last comment above its `> .reset` holds.
std::vector<Scene> scenesIn(const Transcript& transcript);

/// The text of a transcript, each line ended by a line break, with the byte order mark that it had.
std::string writeTranscript(const Transcript& transcript);

}  // namespace virtualtv::shell
