// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "support/Channels.h"
#include "support/LogLines.h"
#include "support/Sources.h"

/// Shared parts of the tests of switching: a set whose source will be switched, and the log lines of the steps of a
/// switch.
namespace switching {

using support::caught;
using support::join;
using support::Lines;

inline constexpr int noMajor = -1;
inline constexpr int isp = 48;
inline constexpr int none = 43;

extern const Lines startKeys;  ///< the keys at the start of a test

/// A failing call, its log lines, and the keys and the set's own source afterwards.
struct Failure {
  std::string fault;
  Lines logs;
  Lines keys = startKeys;
  int shown = 5;
};

/// A worker for the main window of a set with the three services. The set shows its source 5 (the plug-in's 20) there,
/// as the keys say too; the plug-in's 77 was shown before.
class SwitchTest : public sources::SourceTest {
 protected:
  void SetUp() override;

  bool set(int source, int major = noMajor) {
    return worker.t_SetSource(static_cast<_PL_WINDOW_Source>(source), major);
  }

  /// Restores the initial state, and drops everything observed so far.
  virtual void restart();

  /// Requests a source under each fault, each time from the initial state. The request must fail and log the request,
  /// `begun`, and the lines of the fault.
  void expectFailures(int source, int major, const Lines& begun, const std::vector<Failure>& failures);

  /// The keys of current and previous source, main window then picture-in-picture, and what the middleware was told;
  /// `-` for a key that is not there.
  Lines keys();
  /// The set's own number of the source that a window shows, -1 for none.
  int shown(virtualtv::WindowId window = virtualtv::WindowId::main);

  /// The log lines of a request up to the read of the window's source.
  virtual Lines request(int source, int major);
};

// Log lines.

/// A request that has read the main window's source, the plug-in's 20.
Lines asked(int source, int major = noMajor);
/// The requested source is a different one.
Lines other(int source);
/// The requested source is one of the TV service.
Lines translated(int source, int tc, int major = noMajor);
std::string leaving(int source);
std::string written(const std::string& key, int source);
std::string unwritten(const std::string& key, int source);
Lines published(int source);
/// The main window's switch is recorded.
Lines recorded(int source, int previous);
/// The ways in which recording fails, after the lines `begun`. @param shown  the set's own source of the window then.
std::vector<Failure> unrecorded(const Lines& begun, int source, int previous, int shown);

/// The call that switches, as traced, with the id of the service if there is one.
std::string switchTo(int tc, const std::string& serviceId = {});

}  // namespace switching
