// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "support/LogLines.h"
#include "support/TvTest.h"

/// What the tests of a window's source share: a set whose source they choose, and the calls and log lines that reading
/// it makes.
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

  /// From now on the source control is missing and can't be made.
  void loseSourceControl();

  /// Sets a fault anew; what was seen before is dropped.
  void only(const std::string& words);
};

/// Log lines of a translation that succeeds, from the TV service's number.
Lines converted(int tc, int pl);
/// And of one that fails.
Lines refused(int tc);

/// Log lines of reading the current source, as far as the answer of the TV service; then those of its translation.
Lines currentLogs(int tc);

/// What the worker logs when its source control is missing and can't be made.
extern const Lines noSourceControl;

extern const std::string askState;    ///< as traced, on the main window's first source control, state 2
extern const std::string askCurrent;  ///< source 5

}  // namespace sources
