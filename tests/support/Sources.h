// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "support/LogLines.h"
#include "support/TvTest.h"

/// Shared parts of the tests of a window's source: a set with a chosen source, and the calls and log lines of reading
/// it.
namespace sources {

using support::Lines;

inline constexpr const char* mainKey = "db/emp/mainsource";
inline constexpr const char* previousMainKey = "db/emp/previousmainsource";
inline constexpr const char* pipKey = "db/emp/pipsource";
inline constexpr const char* previousPipKey = "db/emp/previouspipsource";
inline constexpr const char* middlewareKey = "db/kel/current_source_type";

/// A worker for the main window. Its set shows the source 5 (the plug-in's 20) there, and showed 8 (the plug-in's 24)
/// before.
class SourceTest : public support::WorkerTest {
 protected:
  void SetUp() override;

  void show(int source, int previous, virtualtv::WindowId window = virtualtv::WindowId::main);
  void deactivate();

  /// From now on the source control is missing and can't be created.
  void loseSourceControl();

  /// Replaces all faults by this one, and drops everything observed before.
  void only(const std::string& words);
};

/// Log lines of a translation that succeeds, from the TV service's number.
Lines converted(int tc, int pl);
/// Log lines of a translation that fails.
Lines refused(int tc);

/// Log lines of reading the current source, up to the answer of the TV service. Those of its translation follow.
Lines currentLogs(int tc);

/// The log lines of the worker when its source control is missing and can't be created.
extern const Lines noSourceControl;

extern const std::string askState;    ///< as traced, on the main window's first source control, state 2
extern const std::string askCurrent;  ///< source 5

}  // namespace sources
