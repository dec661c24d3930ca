// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "kel/CEmpAppBase.h"
#include "shell/Check.h"
#include "shell/ListWishes.h"

// The arguments of the program. The library that parses them is slow to compile, so only one source uses it.

namespace virtualtv::program {

/// The arguments of `serve`.
struct ServeWishes {
  std::string listen = "127.0.0.1:8090";
  std::vector<std::string> origins;
  std::vector<std::string> hosts;
  std::string token;                    ///< the file that contains the token; empty for none
  std::string files;                    ///< the directory that clients may use; empty for none
  std::string snapshot;                 ///< the snapshot to start the set from; empty for none
  std::string record;                   ///< the file to create and record to; empty for none
  std::vector<std::string> recordings;  ///< recordings whose services the set starts with
  bool fresh = false;
  bool untilEof = false;
  bool noWait = false;
  std::size_t mostSessions = 2000;

  /// True for a set that persists nothing.
  bool isInMemory() const { return fresh || !snapshot.empty(); }
};

enum class Task { shell, exec, check, import, exportList, scan, serve, demo };

/// The parsed arguments of the program.
struct Wishes {
  Task task = Task::shell;
  std::string state;
  int logLevel = -1;
  bool raw = false;
  std::vector<std::string> command;  ///< command of `exec`, with its parameters
  bool marked = false;               ///< a `--` precedes the command
  shell::CheckOptions check;
  shell::ImportWishes list;
  shell::ExportWishes exported;
  shell::ScanWishes scan;
  ServeWishes serve;
};

/// Parses the arguments of the program. @return nothing when they only ask for output, which is then printed: help, the
/// version or, with `--grammar` alone, this grammar as JSON. @throws std::invalid_argument for arguments that can't be
/// understood.
std::optional<Wishes> readArguments(std::vector<std::string> arguments, const kel::CEmpAppBase& app);

}  // namespace virtualtv::program
