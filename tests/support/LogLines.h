// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "support/TvTest.h"

/// Log lines that many operations print, as `TvTest::logs` gives them, and putting lists of lines together.
namespace support {

/// The names that the plug-in's sources give in their log lines.
inline constexpr std::string_view engineFile = "Window/Src/EmpEngineWindow";
inline constexpr std::string_view taskFile = "Window/Src/EmpTaskWindow";

/// The line that marks an error.
std::string banner(int level, std::string_view function, std::string_view file = taskFile);
/// The line that tells the place in the source.
std::string place(std::string_view function, int level = 3, std::string_view file = taskFile);
/// An exception that a faulty platform call left with, told by the operation that made the call. @param level  3 in the
/// ISP source's file.
std::string caught(std::string_view function, std::string_view call, int level = 0);

/// A level before each of some texts.
Lines leveled(int level, const Lines& texts);

/// Lists one after another.
Lines join(std::initializer_list<Lines> parts);

/// What a command logs: the engine's line, what the worker and the row log, the finish line.
Lines commandLogs(const std::string& command, const Lines& parameters, const Lines& inner, int result);

}  // namespace support
