// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"

/// Shared parts of the tests of audio tracks, subtitles and favourites: the TV stack that an operation uses, the lists
/// that it returns, and missing proxies.
namespace tracks {

using support::Lines;

/// The settings key that says what was last on screen, and the call that reads it as in a trace.
inline constexpr const char* lastService = "db/boot/last_service";
inline const std::string askStack = "vconf_get_str(key=\"db/boot/last_service\") -> ";
inline const std::string ispTold = askStack + "\"isp-service\"";

/// The log lines of reading that key, when the TV service shows the picture and when the secondary stack does.
inline const Lines onTv{"3 CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (tv-service)",
                        "3 CEmpTaskWindow::IsSourceISP::Source is Not in ISP source"};
inline const std::string onIsp =
    "3 CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (isp-service)";

/// The call that requests the secondary stack's manager, without its result, and the prefix of calls to it.
inline const std::string askManager = "CD2tvMgrProxy::GetInstance(client=\"EMP_WINDOW\") -> ";
inline const std::string manager = "CD2tvMgrProxy[set#1]::";

/// The log line for a missing manager, in lists of both kinds.
inline const std::string noManager = "0 Invalid Channel Manager Instance.";

/// The log lines of looking up the service on screen, where that is 281.
inline const Lines currentTold{"3 SERVICE_ID = 281", "3 MAJOR = 7"};

/// Members of a JSON object with their values as texts, sorted by name.
using Members = std::vector<std::pair<std::string, std::string>>;

/// A list as the plug-in writes it: an object with numbers, followed by an array of objects.
/// @param array  name of the array; empty for none.
std::string document(const Members& numbers, const std::string& array = {}, const std::vector<Members>& elements = {});

/// The ways to fail, as words of a fault, for a call whose success is a number greater than 0, and for a call whose
/// success is 0.
inline const Lines notPositive{"result=0", "result=-1", "result=-2147483648"};
inline const Lines notZero{"result=-1", "result=2", "result=7", "result=-2147483648"};

/// The three services with these tracks and favourites on the first.
std::vector<virtualtv::Service> furnished(const virtualtv::Service& with);

/// A fault in its words, with the result and the log lines of an operation under it. Further faults with the same
/// outcome may follow.
struct Outcome {
  std::string fault;
  int result;
  Lines logs;
  Lines ways = {""};
};

/// A worker for the main window of a set that has the three services, as `ChannelTest` has it.
class TrackTest : public channels::ChannelTest {
 protected:
  void SetUp() override;

  /// The TV service shows 281 with the tracks and favourites of this service.
  void showTv(const virtualtv::Service& with);
  /// The secondary stack shows the ISP source with these tracks.
  void showIsp(const std::vector<virtualtv::AudioTrack>& audio, const std::vector<virtualtv::SubtitleTrack>& subtitles);

  /// Removes a proxy and runs `operation` under each way in which the proxy can't be created again. The operation must
  /// return `result` and log `lines`, which include those of the proxy check.
  template <typename Proxy, typename Operation, typename Result>
  void failsWithout(Proxy*& proxy, const std::string& factory, const Lines& lines, Operation operation, Result result) {
    for (const std::string& way : waysToFail(factory)) {
      SCOPED_TRACE(factory + " " + way);
      proxy = nullptr;
      EXPECT_EQ(under("TVServiceAPI::" + factory + " " + way, operation), result);
      EXPECT_EQ(logs(), way == "result=throw" ? withException(lines, factory) : lines);
    }
  }

  /// Runs an operation under each fault. It must log `begun` first, and leave `left` in the text that it writes to.
  template <typename Operation>
  void expectEach(const Lines& begun, const std::vector<Outcome>& outcomes, Operation operation,
                  const std::string& left = untouched) {
    for (const Outcome& outcome : outcomes) {
      for (const std::string& way : outcome.ways) {
        SCOPED_TRACE(outcome.fault + " " + way);
        text = untouched;
        EXPECT_EQ(under(outcome.fault + " " + way, operation), outcome.result);
        EXPECT_EQ(text, left);
        EXPECT_EQ(logs(), support::join({begun, outcome.logs}));
      }
    }
  }
  /// The same when the secondary stack's manager is not available. @param function  the function that requests it.
  template <typename Operation>
  void expectWithoutManager(const std::string& function, const Lines& begun, const Lines& told, Operation operation,
                            int result, const std::string& left = untouched) {
    const std::string call = "CD2tvMgrProxy::GetInstance";
    expectEach(begun,
               {{call, result, told, {"result=null"}},
                {call, result, support::join({{support::caught(function, call)}, told}), {"result=throw"}}},
               operation, left);
  }

  /// The text that an operation writes to, and its content before.
  static constexpr const char* untouched = "nobody wrote this";
  std::string text = untouched;

 private:
  static Lines waysToFail(const std::string& factory);
  static Lines withException(Lines lines, const std::string& factory);
};

/// The same with the operation under test, which writes to a text.
template <typename Base, int (kel::CEmpTaskWindow::*operation)(std::string&)>
class Telling : public Base {
 protected:
  int tell() { return (this->worker.*operation)(this->text); }
  int tellUnder(const std::string& words) {
    this->text = Base::untouched;
    return this->under(words, [this] { return tell(); });
  }
};

/// The same set with an engine open.
class TrackCommand : public channels::ChannelEngineTest {
 protected:
  void SetUp() override;

  void showTv(const virtualtv::Service& with);
  void showIsp(const std::vector<virtualtv::AudioTrack>& audio, const std::vector<virtualtv::SubtitleTrack>& subtitles);
  /// Expects that a command that lists tracks checks again whether the source is ISP when no document can be written.
  void expectIspAskedAnew(const std::string& command);
};

}  // namespace tracks
