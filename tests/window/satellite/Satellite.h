// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "support/LogLines.h"
#include "support/TvTest.h"

/// Shared parts of the tests of tuning by a description: a set with a satellite service, and descriptions of it.
namespace satellite {

using support::caught;
using support::join;
using support::Lines;

/// Members of a description, with their values as JSON texts.
using Members = std::map<std::string, std::string>;

/// The description of the set's service 900 with these members replaced; an empty value removes the member.
std::string description(const Members& changes = {});

/// The log lines of a description up to its parsing, and up to its search.
Lines understood(const std::string& text);
/// The log line with the text that was passed.
std::string given(const std::string& text);

extern const std::string notParsed;

/// The calls that a description makes, as traced. The default arguments are those for service 900.
extern const std::string createManager;
std::string lookUp(const std::string& transponder = "65535,26,11727000,27000,1,-1", const std::string& result = "3");
std::string find(const std::string& conditions =
                     "where 1=9, where 6=16, where 7=27, where 2=3, where 15=50, "
                     "where 1=9, where 14=2",
                 const std::string& answer = "service={12=900} -> 1");
extern const std::string tune;

/// A worker for the main window of a set with the satellite service 900 and a terrestrial one, 281, which is on screen.
class SatelliteTest : public support::WorkerTest {
 protected:
  void SetUp() override;

  int set(const std::string& text, int type = 0) { return worker.SetDVBSIChannelDirectEx(text, type); }

  /// Shows the terrestrial service again, and drops everything observed so far.
  void restart();
  /// Id of the service on the main window's screen, read from the set itself.
  unsigned long long onScreen();

  /// Expects that the text returns 0, makes only the expected calls, and changes nothing.
  void expectRefused(const std::string& text, const Lines& expected);
};

}  // namespace satellite
