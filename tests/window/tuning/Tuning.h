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

/// A call that an operation makes to find its service, and the result of its failure.
struct Lookup {
  std::string call;   ///< the operation of the set
  int result = 0;     ///< what the tuning operation answers
  std::size_t after;  ///< how many of its log lines stand before
  Lines logs;         ///< those that follow
  Lines before;       ///< calls made up to and with it
};

/// An operation that tunes, with 281 on screen, to 282.
struct Operation {
  std::string name;
  int (*run)(support::WorkerProbe& worker);
  Lines calls;  ///< those that find the service and the application, as `withoutConditions` gives them
  Lines logs;   ///< those before the window's source is asked for
  std::vector<std::string> proxies;  ///< that it needs, in the order in which it asks for them
  std::vector<Lookup> lookups;
  bool tellsOfOtherSource = false;  ///< it logs that the window does not show TV
};

/// What a failed test calls it.
inline std::ostream& operator<<(std::ostream& out, const Operation& operation) {
  return out << operation.name;
}

/// SetChannel, SetChannel_PTC, SetChannelDirect, SetChannelByServiceid, SetChannel_Seek.
const std::vector<Operation>& operations();

/// Calls as a trace shows them, with the conditions that the TV chose replaced by the word CONDITIONS.
Lines withoutConditions(const Lines& calls);

extern const std::string askApp;
/// The window's source is asked for, on the main window's first source control: the TV service's number of it.
Lines askSource(int source);
/// Log lines of that.
Lines sourceLogs(int source, int plSource);

std::string tune(const std::string& serviceId);
std::string switchToTv(const std::string& serviceId);
std::string readKey(const std::string& key, int value);
std::string writeKey(const std::string& key, int value);
std::string written(const std::string& key, int value);

extern const std::string onTv;     ///< log line: the window shows TV
extern const std::string keyIsTv;  ///< log line: the key says so

/// Calls and log lines of recording that TV replaced the plug-in's source `previous` in the main window.
Lines recordCalls(int previous);
Lines recordLogs(int previous);

/// A worker for the main window of a set with the three services 281 to 283, which shows 281 on TV; 282 was on screen
/// before. The source keys say TV.
class TuningTest : public channels::ChannelTest {
 protected:
  static constexpr int hdmi = 13;    ///< a source of the set, which
  static constexpr int plHdmi = 31;  ///< is the plug-in's 31

  /// The window shows another source than TV, as the main window's keys say too.
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
  /// The log line of the operation that has one when the window does not show TV.
  Lines notTv() const;
};

std::string nameOf(const ::testing::TestParamInfo<Operation>& info);

}  // namespace tuning
