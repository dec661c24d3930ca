#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "kel/CEmpAppBase.h"
#include "shell/Check.h"
#include "shell/ListWishes.h"

// What the program is told. The library that reads it is slow to compile, so one source has it.

namespace virtualtv::program {

/// What `serve` is told.
struct ServeWishes {
  std::string listen = "127.0.0.1:8090";
  std::vector<std::string> origins;
  std::vector<std::string> hosts;
  std::string token;                    ///< the file that holds it; so below
  std::string files;                    ///< the directory that clients may use
  std::string snapshot;                 ///< that the set starts from
  std::string record;                   ///< that is made, and receives what happens
  std::vector<std::string> recordings;  ///< whose services the set starts with
  bool fresh = false;
  bool untilEof = false;
  bool noWait = false;
  std::size_t mostSessions = 2000;

  /// True for a set that keeps nothing.
  bool isInMemory() const { return fresh || !snapshot.empty(); }
};

enum class Task { shell, exec, check, import, exportList, scan, serve, demo };

/// What the program's arguments say.
struct Wishes {
  Task task = Task::shell;
  std::string state;
  int logLevel = -1;
  bool raw = false;
  std::vector<std::string> command;  ///< of `exec`, with its parameters
  bool marked = false;               ///< a `--` stands before the command
  shell::CheckOptions check;
  shell::ImportWishes list;
  shell::ExportWishes exported;
  shell::ScanWishes scan;
  ServeWishes serve;
};

/// Reads the program's arguments. @return nothing when they ask for what is then printed: help, the version, or, with
/// `--grammar` alone, this grammar as JSON. @throws std::invalid_argument for what can't be understood.
std::optional<Wishes> readArguments(std::vector<std::string> arguments, const kel::CEmpAppBase& app);

}  // namespace virtualtv::program
