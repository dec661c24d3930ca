// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"

/// What the tests of audio tracks, subtitles and favourites share: which of the two TV stacks an operation asks, the
/// lists that it answers, and proxies that are missing.
namespace tracks {

using support::Lines;

/// The settings key that tells what was on screen last, and its reading as a trace shows it.
inline constexpr const char* lastService = "db/boot/last_service";
inline const std::string askStack = "vconf_get_str(key=\"db/boot/last_service\") -> ";
inline const std::string ispTold = askStack + "\"isp-service\"";

/// What asking logs where the TV service shows the picture, and where the secondary stack does.
inline const Lines onTv{"3 CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (tv-service)",
                        "3 CEmpTaskWindow::IsSourceISP::Source is Not in ISP source"};
inline const std::string onIsp =
    "3 CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (isp-service)";

/// The call for the secondary stack's manager, without what it answers, and before its operations.
inline const std::string askManager = "CD2tvMgrProxy::GetInstance(client=\"EMP_WINDOW\") -> ";
inline const std::string manager = "CD2tvMgrProxy[set#1]::";

/// The log line of a manager that is missing, in the lists of both kinds.
inline const std::string noManager = "0 Invalid Channel Manager Instance.";

/// The log lines of looking up the service on screen, where that is 281.
inline const Lines currentTold{"3 SERVICE_ID = 281", "3 MAJOR = 7"};

/// Members of a JSON object with their values as texts, sorted by name.
using Members = std::vector<std::pair<std::string, std::string>>;

/// A list as the plug-in writes it: an object of numbers, and behind them an array of objects.
/// @param array  name of the array; empty for none.
std::string document(const Members& numbers, const std::string& array = {}, const std::vector<Members>& elements = {});

/// Ways in which a call fails that answers a number greater than 0 for success, as words of a fault; and one that
/// answers 0.
inline const Lines notPositive{"result=0", "result=-1", "result=-2147483648"};
inline const Lines notZero{"result=-1", "result=2", "result=7", "result=-2147483648"};

/// The three services with these tracks and favourites on the first.
std::vector<virtualtv::Service> furnished(const virtualtv::Service& with);

/// A fault in its words, what an operation answers under it, and what it logs; the same for other words behind these.
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

  /// Takes a proxy away and runs `operation` under each way in which it can't be made again: it answers `result` and
  /// logs `lines`, among them the proxy check's own.
  template <typename Proxy, typename Operation, typename Result>
  void failsWithout(Proxy*& proxy, const std::string& factory, const Lines& lines, Operation operation, Result result) {
    for (const std::string& way : waysToFail(factory)) {
      SCOPED_TRACE(factory + " " + way);
      proxy = nullptr;
      EXPECT_EQ(under("TVServiceAPI::" + factory + " " + way, operation), result);
      EXPECT_EQ(logs(), way == "result=throw" ? withException(lines, factory) : lines);
    }
  }

  /// Runs an operation under each fault. It logs `begun` first, and leaves `text` in the text that it writes.
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
  /// The same where the secondary stack's manager can't be had. @param function  that asks for it.
  template <typename Operation>
  void expectWithoutManager(const std::string& function, const Lines& begun, const Lines& told, Operation operation,
                            int result, const std::string& left = untouched) {
    const std::string call = "CD2tvMgrProxy::GetInstance";
    expectEach(begun,
               {{call, result, told, {"result=null"}},
                {call, result, support::join({{support::caught(function, call)}, told}), {"result=throw"}}},
               operation, left);
  }

  /// What an operation writes its text into, and what stands there before.
  static constexpr const char* untouched = "nobody wrote this";
  std::string text = untouched;

 private:
  static Lines waysToFail(const std::string& factory);
  static Lines withException(Lines lines, const std::string& factory);
};

/// The same with the operation under test, which writes a text.
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
};

}  // namespace tracks
