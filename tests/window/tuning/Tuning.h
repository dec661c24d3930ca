// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "support/Channels.h"
#include "support/Sources.h"

/// Shared parts of the tests of tuning: the five operations that tune, each to the service 282, and the calls and log
/// lines of their common steps.
namespace tuning {

using support::caught;
using support::join;
using support::Lines;
using support::place;

/// A call with which an operation looks for its service, and the effect of its failure.
struct Lookup {
  std::string call;   ///< the result of the tuning operation
  int result = 0;     ///< what the tuning operation answers
  std::size_t after;  ///< the number of its log lines before the call
  Lines logs;         ///< the log lines after it
  Lines before;       ///< the calls up to and including this one
};

/// An operation that tunes from 281, the service on screen, to 282.
struct Operation {
  std::string name;
  int (*run)(support::WorkerProbe& worker);
  Lines calls;                       ///< the calls that find the service and the application, as in `withoutConditions`
  Lines logs;                        ///< the log lines before it reads the window's source
  std::vector<std::string> proxies;  ///< the proxies that it needs, in the order in which it checks them
  std::vector<Lookup> lookups;
  bool tellsOfOtherSource = false;  ///< it logs when the window does not show TV
};

/// The operation's name in messages of failed tests.
inline std::ostream& operator<<(std::ostream& out, const Operation& operation) {
  return out << operation.name;
}

/// SetChannel, SetChannel_PTC, SetChannelDirect, SetChannelByServiceid, SetChannel_Seek.
const std::vector<Operation>& operations();

/// Calls as in a trace. The word CONDITIONS replaces the conditions that the TV chose.
Lines withoutConditions(const Lines& calls);

extern const std::string askApp;
/// The calls that read the main window's source. @param source  the TV service's number of it.
Lines askSource(int source);
/// The log lines of these calls.
Lines sourceLogs(int source, int plSource);

std::string tune(const std::string& serviceId);
std::string switchToTv(const std::string& serviceId);
std::string readKey(const std::string& key, int value);
std::string writeKey(const std::string& key, int value);
std::string written(const std::string& key, int value);

extern const std::string onTv;     ///< log line: the window shows TV
extern const std::string keyIsTv;  ///< log line: the key says so

/// Calls and log lines of recording that TV has replaced the plug-in's source `previous` in the main window.
Lines recordCalls(int previous);
Lines recordLogs(int previous);

/// A worker for the main window of a set with the three services 281 to 283. The window shows 281 on TV and showed 282
/// before, and the source keys say TV.
class TuningTest : public channels::ChannelTest {
 protected:
  static constexpr int hdmi = 13;    ///< the set's number of HDMI
  static constexpr int plHdmi = 31;  ///< the plug-in's number of it

  /// Makes the window show HDMI, as the main window's keys say too.
  void showHdmi(virtualtv::WindowId window = virtualtv::WindowId::main);
  /// Selects the picture-in-picture window, which shows TV.
  void drivePictureInPicture();

  std::string current(virtualtv::WindowId window = virtualtv::WindowId::main) { return knob(window, ".service"); }
  std::string previous(virtualtv::WindowId window = virtualtv::WindowId::main) {
    return knob(window, ".previous_service");
  }
  /// The set's number of the source that a window shows.
  int shown(virtualtv::WindowId window = virtualtv::WindowId::main) { return tv().state()[window].source; }

  /// Current and previous source of the main window, then of picture-in-picture, then the middleware's key;
  /// `-` for a key that is not there.
  Lines keys();

  Lines seen() { return withoutConditions(calls()); }

 private:
  std::string knob(virtualtv::WindowId window, const std::string& name);
};

extern const Lines keysOfTv;    ///< as the tests start
extern const Lines keysOfHdmi;  ///< after `showHdmi`

/// The same for each operation in turn.
class EachOperation : public TuningTest, public ::testing::WithParamInterface<Operation> {
 protected:
  const Operation& operation() const { return GetParam(); }
  int run() { return operation().run(worker); }
  int runUnder(const std::string& words) {
    return under(words, [&] { return run(); });
  }
  /// The log line for a window that does not show TV, if the operation has one.
  Lines notTv() const;
};

std::string nameOf(const ::testing::TestParamInfo<Operation>& info);

}  // namespace tuning
