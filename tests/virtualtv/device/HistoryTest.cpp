// SPDX-License-Identifier: MIT
// The last commands: everything that each of them did, and the set as it was after it.
#include "device/History.h"

#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>

#include "framework/Reply.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "set/SnapshotJson.h"
#include "set/StateDocument.h"
#include "virtualtv/device/DeviceTest.h"
#include "virtualtv/set/snapshot/RandomSet.h"

namespace virtualtv::device {
namespace {

using Words = std::vector<std::string>;

/// The set as it was after a command.
struct Taken {
  Json::Value document;
  TvState state;
  Snapshot snapshot;
};

class HistoryTest : public DeviceTest {
 protected:
  const History& history() { return *device().history(); }
  Taken now() { return {stateDocument(tv()), tv().state(), tv().snapshot()}; }

  /// Runs a command. @return its number.
  std::uint64_t run(Session& runner, const Words& words) {
    std::string ret;
    runner.execute(words, false, ret);
    reply = framework::showAnswer(true, ret);
    return runner.lastCommand();
  }

  std::vector<std::string> callsOf(std::uint64_t command) {
    std::vector<std::string> calls;
    history().replay(command, [&](const Happening& happening) {
      if (const auto* call = std::get_if<seam::Call>(&happening.what)) calls.push_back(seam::line(*call));
    });
    return calls;
  }

  void expectHeld(std::uint64_t command, const Taken& taken) {
    SCOPED_TRACE("command " + std::to_string(command));
    const History::Moment moment = history().behind(command, tv());
    EXPECT_EQ(moment.set.state(), taken.state);
    EXPECT_EQ(stateDocument(moment.set, moment.revision), taken.document);
    EXPECT_EQ(moment.set.snapshot(), taken.snapshot);
  }

  std::string reply;
  Session session{device(), "one"};
};

/// A list of `count` services. Their names tell which list they are from.
std::vector<Service> listOf(int count, const std::u16string& name) {
  std::vector<Service> services;
  for (int at = 1; at <= count; ++at) {
    Service service;
    service.numbers = {{TCServiceData::SERVICE_ID, 1000 + static_cast<std::uint64_t>(at)},
                       {TCServiceData::ANTENNA_MODE, 0},
                       {TCServiceData::MAJOR, static_cast<std::uint64_t>(at)},
                       {TCServiceData::MINOR, 0}};
    service.texts[TCServiceData::CHANNEL_NAME] = name;
    services.push_back(service);
  }
  return services;
}

TEST_F(HistoryTest, HoldsNothingUnlessItIsAskedTo) {
  run(session, {"SetChannel", "3", "0"});
  EXPECT_EQ(device().history(), nullptr);
  EXPECT_EQ(session.lastCommand(), 0U);
  EXPECT_THROW(device().goBack(1), std::invalid_argument);
}

TEST_F(HistoryTest, TellsAllOfACommandWithoutAnyFeed) {
  feed.reset();
  device().remember();
  const std::uint64_t command = run(session, {"SetSource", "31"});
  std::map<std::string, int> kinds;
  const CommandRun* last = nullptr;
  ASSERT_TRUE(history().replay(command, [&](const Happening& happening) {
    EXPECT_EQ(happening.command, command);
    ++kinds[std::holds_alternative<seam::Call>(happening.what)           ? "call"
            : std::holds_alternative<framework::LogLine>(happening.what) ? "log"
            : std::holds_alternative<Change>(happening.what)             ? "change"
                                                                         : "other"];
    last = std::get_if<CommandRun>(&happening.what);
  }));
  EXPECT_GT(kinds["call"], 0);
  EXPECT_GT(kinds["log"], 2);
  EXPECT_GT(kinds["change"], 1);
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(last->words, Words({"SetSource", "31"}));
  EXPECT_EQ(last->session, "one");
  EXPECT_FALSE(history().replay(command + 1, [](const Happening&) {}));
}

TEST_F(HistoryTest, TellsTheSetAsItWasBehindACommand) {
  device().remember();
  const std::uint64_t first = run(session, {"SetChannel", "3", "0"});
  const Taken then = now();
  run(session, {"SetChannel", "5", "0"});
  setKnob(tv(), "main.resolution", "29");
  setKnob(tv(), "region", "9");
  setKnob(tv(), "service.#3.name", "Another");
  tv().setSetting("a/key", 7);
  expectHeld(first, then);
  tv().import(listOf(3, u"List"), false);
  device().restart();
  expectHeld(first, then);
}

TEST_F(HistoryTest, TellsOfCommandsThatAreHeldAndNoOthers) {
  device().remember({.commands = 3});
  std::vector<std::uint64_t> numbers;
  for (const char* const major : {"3", "5", "6", "3", "5"}) numbers.push_back(run(session, {"SetChannel", major, "0"}));
  EXPECT_EQ(history().size(), 3U);
  for (const std::uint64_t number : {numbers[0], numbers[1], numbers[4] + 1, std::uint64_t{0}}) {
    EXPECT_THROW(history().behind(number, tv()), std::invalid_argument) << number;
    EXPECT_THROW(device().goBack(number), std::invalid_argument) << number;
    EXPECT_FALSE(history().replay(number, [](const Happening&) {})) << number;
  }
  EXPECT_NO_THROW(history().behind(numbers[2], tv()));
}

TEST_F(HistoryTest, GoesBackAndStillTellsOfEarlierCommands) {
  device().remember();
  const std::uint64_t first = run(session, {"SetChannel", "3", "0"});
  const Taken behindFirst = now();
  const std::uint64_t second = run(session, {"SetChannel", "5", "0"});
  const Taken behindSecond = now();
  tv().import(listOf(3, u"List"), false);
  const std::uint64_t third = run(session, {"GetTVMode"});
  const Taken behindThird = now();
  const std::uint64_t revision = device().revision();
  feed->take();
  device().goBack(first);
  EXPECT_GT(device().revision(), revision);
  EXPECT_EQ(now().snapshot, behindFirst.snapshot);
  EXPECT_TRUE(session.openEngines().empty());
  const auto happenings = feed->take().happenings;
  EXPECT_TRUE(std::any_of(happenings.begin(), happenings.end(),
                          [](const auto& happening) { return std::holds_alternative<SetStarted>(happening->what); }));
  expectHeld(first, behindFirst);
  expectHeld(second, behindSecond);
  expectHeld(third, behindThird);
  device().goBack(third);
  EXPECT_EQ(now().snapshot, behindThird.snapshot);
  device().goBack(second);
  EXPECT_EQ(now().snapshot, behindSecond.snapshot);
}

TEST_F(HistoryTest, HoldsServicesThatWereReplacedOnceForAllCommandsBeforeIt) {
  device().remember();
  const std::uint64_t first = run(session, {"GetTVMode"});
  const std::size_t before = history().bytes();
  for (int count = 0; count < 20; ++count) tv().import(listOf(50 + count, u"List"), false);
  EXPECT_LT(history().bytes(), before + 400'000) << "only those that the command saw";
  EXPECT_EQ(history().behind(first, tv()).set.services(), 81U);
}

TEST_F(HistoryTest, KeepsWithinItsBytes) {
  constexpr std::size_t most = 2'000'000;
  device().remember({.bytes = most});
  std::map<std::uint64_t, Taken> taken;
  std::uint64_t last = 0;
  for (int count = 0; count < 40; ++count) {
    last = run(session, {"GetTVMode"});
    EXPECT_LE(history().bytes(), most);
    taken.emplace(last, now());
    tv().import(listOf(200 + count % 2, count % 2 == 0 ? u"One" : u"Other"), false);
    EXPECT_LE(history().bytes(), most);
  }
  EXPECT_LT(history().size(), 40U);
  EXPECT_GT(history().size(), 5U);
  for (std::uint64_t number = last - history().size() + 1; number <= last; ++number) {
    expectHeld(number, taken.at(number));
  }
  for (int count = 0; count < 4000; ++count) tv().setSetting("key" + std::to_string(count), std::string(1000, 'x'));
  EXPECT_EQ(history().size(), 0U) << "what changed since takes more than that";
  EXPECT_EQ(history().bytes(), 0U);
  last = run(session, {"GetTVMode"});
  expectHeld(last, now());
}

TEST_F(HistoryTest, HoldsNoCommandThatTakesMoreThanItsBytes) {
  device().remember({.bytes = 40'000});
  const std::uint64_t small = run(session, {"GetTVMode"});
  EXPECT_NO_THROW(history().behind(small, tv()));
  const std::uint64_t large = run(session, {"GetFullChannelList"});
  EXPECT_THROW(history().behind(large, tv()), std::invalid_argument);
  EXPECT_EQ(history().bytes(), 0U);
}

/// A history that went on would claim to know services that it has lost.
TEST_F(HistoryTest, BeginsAnewWhereServicesCouldNotBeHeld) {
  device().remember();
  const std::uint64_t first = run(session, {"GetTVMode"});
  History history{{}};
  const auto ended = std::make_shared<const Happening>(Happening{1, {}, 1, CommandRun{}});
  const auto replaced = std::make_shared<const Happening>(Happening{2, {}, 0, Change(ServicesChanged{1, 2})});
  history.add(ended, nullptr);
  EXPECT_TRUE(history.wantsServices());
  history.add(replaced, nullptr);
  EXPECT_EQ(history.size(), 0U);
  EXPECT_EQ(history.bytes(), 0U);
  EXPECT_NO_THROW(this->history().behind(first, tv()));
}

TEST_F(HistoryTest, TellsOfTheCommandsOfAllSessionsInTheirOrder) {
  device().remember();
  Session other(device(), "two");
  const std::uint64_t first = run(session, {"SetChannel", "3", "0"});
  const Taken behindFirst = now();
  const std::uint64_t second = run(other, {"SetSource", "31"});
  const Taken behindSecond = now();
  EXPECT_EQ(second, first + 1);
  EXPECT_EQ(session.lastCommand(), first);
  EXPECT_NE(callsOf(first), callsOf(second));
  other.closeEngines("test");
  expectHeld(first, behindFirst);
  expectHeld(second, behindSecond);
}

/// Runs random commands in two sessions, between other random actions on the set.
class RandomHistory : public HistoryTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  RandomHistory() { device().remember({.commands = 60}); }

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine_); }
  std::string oneOf(const Words& words) {
    return words[static_cast<std::size_t>(below(static_cast<int>(words.size())))];
  }

  Words command() {
    const std::string major = std::to_string(below(9));
    const std::string flag = std::to_string(below(2));
    const auto keys = tv().services().keys();
    const auto service =
        keys.empty() ? std::nullopt : tv().services().read(keys[static_cast<std::size_t>(below(7)) % keys.size()]);
    const auto id = service && service->numbers.contains(TCServiceData::SERVICE_ID)
                        ? std::to_string(service->numbers.at(TCServiceData::SERVICE_ID))
                        : "0";
    switch (below(9)) {
      case 0:
        return {"SetWindow", flag};
      case 1:
        return {"SetSource", oneOf({"0", "31", "35", "17"})};
      case 2:
        return {"UpdateFavorites", id, flag, major};
      case 3:
        return {"SetScreenRect", major, "0", "480", "27" + major};
      case 4:
        return {"SetChannelByServiceid", id};
      case 5:
        return {"GetCurrentChannel_Name"};
      case 6:
        return {"ChangeAudioByIndex", flag};
      case 7:
        return {"SetTVMode", flag};
      default:
        return {"SetChannel", major, "0"};
    }
  }

  void deed() {
    switch (below(12)) {
      case 0:
        return device().restart();
      case 1:
        return device().reset();
      case 2:
        return device().restore(taken.empty() ? tv().snapshot() : any().second.snapshot);
      case 3:
        return tv().removeServices();
      case 4:
        tv().import(listOf(1 + below(40), below(2) == 0 ? u"One" : u"Other"), below(2) == 0);
        return;
      case 5:
        return other.closeEngines("test");
      case 6:
        if (!taken.empty()) goBack();
        return;
      case 7:
        return tv().setLatency(seam::op("IServiceNavigation::GetTvMode"), static_cast<std::uint64_t>(below(3)));
      default:
        if (tv().services().size() > 0) edits_.step(tv());
    }
  }

  std::pair<const std::uint64_t, Taken>& any() {
    return *std::next(taken.begin(), below(static_cast<int>(taken.size())));
  }

  /// Goes back to a command. The commands after that have to answer as on a set restored from a snapshot.
  void goBack() {
    const auto& [number, then] = any();
    const std::uint64_t revision = device().revision();
    device().goBack(number);
    EXPECT_GT(device().revision(), revision);
    EXPECT_EQ(tv().snapshot(), then.snapshot) << "command " << number;
    const std::vector<Words> commands{command(), command(), {"GetCurrentChannelInfo"}};
    const auto answers = [&] {
      std::string all;
      for (const Words& words : commands) {
        note(run(session, words));
        all += reply + "\n";
      }
      return all;
    };
    const Snapshot snapshot = then.snapshot;
    const std::string behindIt = answers();
    const Snapshot after = tv().snapshot();
    device().restore(snapshot);
    EXPECT_EQ(answers(), behindIt);
    EXPECT_EQ(tv().snapshot(), after);
  }

  void note(std::uint64_t number) {
    taken.insert_or_assign(number, now());
    while (taken.size() > history().size()) taken.erase(taken.begin());
  }

  Session other{device(), "two"};
  std::map<std::uint64_t, Taken> taken;

 private:
  std::mt19937 engine_{GetParam()};
  test::RandomSet edits_{GetParam()};
};

TEST_P(RandomHistory, TellsEachSetAsItWas) {
  for (int step = 0; step < 150; ++step) {
    if (below(3) == 0) {
      deed();
    } else {
      note(run(below(2) == 0 ? session : other, command()));
    }
    if (::testing::Test::HasFailure()) FAIL() << "step " << step;
  }
  EXPECT_EQ(history().size(), 60U);
  ASSERT_EQ(taken.size(), history().size());
  for (const auto& [number, then] : taken) expectHeld(number, then);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomHistory, ::testing::Range(0U, 6U));

}  // namespace
}  // namespace virtualtv::device
