// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "support/TvTest.h"

/// Common log lines, as `TvTest::logs` returns them, and functions to combine lists of lines.
namespace support {

/// The names that the plug-in's sources give in their log lines.
inline constexpr std::string_view engineFile = "Window/Src/EmpEngineWindow";
inline constexpr std::string_view taskFile = "Window/Src/EmpTaskWindow";

/// The line that marks an error.
std::string banner(int level, std::string_view function, std::string_view file = taskFile);
/// The line that tells the place in the source.
std::string place(std::string_view function, int level = 3, std::string_view file = taskFile);
/// The log line for an exception of a faulty platform call, logged by the calling operation. @param level  3 in the ISP
/// source's file.
std::string caught(std::string_view function, std::string_view call, int level = 0);

/// A level before each of some texts.
Lines leveled(int level, const Lines& texts);

/// Concatenates lists.
Lines join(std::initializer_list<Lines> parts);

/// The log lines of a command: the engine's line, those of the worker and the row, and the finish line.
Lines commandLogs(const std::string& command, const Lines& parameters, const Lines& inner, int result);

}  // namespace support
