// SPDX-License-Identifier: MIT
// The comparison itself: it finds differences, shrinks scripts, and its random scripts reach every answer.
#include "support/comparison/Comparison.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "catalogue/Catalogue.h"
#include "support/comparison/Scripts.h"

namespace comparison {
namespace {

using Data = TCServiceData;
using Spoil = std::function<void(model::World&)>;

Script scriptOf(std::uint64_t seed) {
  static const model::Set set = startingSet();
  return randomScript(seed, 160, set);
}

/// Shrinks the first random script that reveals a change of the model; empty when no script reveals it.
Script shortest(const Spoil& spoil) {
  const auto fails = [&](const Script& script) { return compare(script, nullptr, spoil).has_value(); };
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    if (fails(scriptOf(seed))) return shrunk(scriptOf(seed), fails);
  }
  return {};
}

bool names(const Script& script, const std::string& command) {
  return std::any_of(script.begin(), script.end(),
                     [&](const std::string& line) { return line.substr(0, line.find(' ')) == command; });
}

/// True when one of the answers contains a text.
bool anyHas(const std::set<std::string>& answers, const std::string& part) {
  return std::any_of(answers.begin(), answers.end(),
                     [&](const std::string& answer) { return answer.find(part) != std::string::npos; });
}

TEST(Comparison, FindsAServiceThatIsLockedForTheModelAlone) {
  const Spoil locked = [](model::World& world) { world.set.services[2].numbers[Data::LOCK] = 1; };
  EXPECT_FALSE(compare({"SetChannel 1 0", "SetChannel_Seek 4 0"}, nullptr, locked));
  const auto difference = compare({"SetChannel 1 0", "SetChannel_Seek 3 0"}, nullptr, locked);
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->line, 1U);
  const Script script = shortest(locked);
  EXPECT_FALSE(script.empty());
  EXPECT_LE(script.size(), 4U) << ::testing::PrintToString(script);
}

TEST(Comparison, FindsAnotherFieldOfAService) {
  const Script script = shortest([](model::World& world) { world.set.services[1].numbers[Data::PTC] = 22; });
  EXPECT_FALSE(script.empty());
  EXPECT_LE(script.size(), 3U) << ::testing::PrintToString(script);
}

TEST(Comparison, FindsWhatTheMiddlewareIsTold) {
  const auto difference = compare({"GetSource", "SetSource 31"}, nullptr,
                                  [](model::World& world) { world.applications["main"].second = "another"; });
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->line, 1U);
  EXPECT_EQ(difference->expectation.find("> GetSource\nint 0\n> .trace on\n> SetSource 31\nint 1\ncall "), 0U)
      << difference->expectation;
  EXPECT_NE(difference->details.find("\"another:31\""), std::string::npos) << difference->details;
  EXPECT_NE(difference->details.find("\":31\""), std::string::npos) << difference->details;
}

TEST(Comparison, FindsAReply) {
  const auto difference =
      compare({"GetSourceState"}, nullptr, [](model::World& world) { world.set.state.windows[0].sourceState = 1; });
  ASSERT_TRUE(difference);
  EXPECT_NE(difference->details.find("reply, by the model:\nint 1\nreply, really:\nint 2\n"), std::string::npos)
      << difference->details;
}

TEST(Comparison, FindsWhatASetIsThatNoReplyTells) {
  const auto difference =
      compare({"GetTVMode"}, nullptr, [](model::World& world) { world.set.state.windows[1].previousService = 3; });
  ASSERT_TRUE(difference);
  EXPECT_NE(difference->details.find("state, really:"), std::string::npos) << difference->details;
}

TEST(Comparison, FindsAPlaneThatStandsElsewhere) {
  const auto difference = compare({"SetScreenRect 10 10 10 10", "SetScreenCropRect 1 1 10 10", "MuteVideo 1"}, nullptr,
                                  [](model::World& world) { world.set.state.windows[1].plane.order = 2; });
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->line, 0U);
  EXPECT_NE(difference->details.find("order 2"), std::string::npos) << difference->details;
}

TEST(Comparison, FindsAnotherPictureOfAService) {
  const Script script =
      shortest([](model::World& world) { world.set.services[1].numbers[virtualtv::FRAME_RATE] = 26; });
  EXPECT_TRUE(names(script, "GetResolutionDetail")) << ::testing::PrintToString(script);
  EXPECT_LE(script.size(), 3U) << ::testing::PrintToString(script);
}

TEST(Comparison, FindsTracksInUseThatNoReplyTells) {
  const std::vector<Spoil> spoils{
      [](model::World& world) { world.set.state.windows[1].inUse.audio = 1; },
      [](model::World& world) { world.set.state.isp.inUse.subtitle = 1; },
      [](model::World& world) { world.set.state.isp.audio.pop_back(); },
  };
  for (const Spoil& spoil : spoils) {
    const auto difference = compare({"GetTVMode"}, nullptr, spoil);
    ASSERT_TRUE(difference);
    EXPECT_NE(difference->details.find("state, really:"), std::string::npos) << difference->details;
  }
}

TEST(Comparison, FindsFavouritesBehindTheLineThatChangesThem) {
  const auto difference = compare({"GetSource", "UpdateFavorites 1152959734176350309 1 5", "GetSource"}, nullptr,
                                  [](model::World& world) { world.set.services[3].favourites[7] = true; });
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->line, 1U);
  EXPECT_NE(difference->details.find("service #3, really:"), std::string::npos) << difference->details;
}

TEST(Comparison, FindsTracksAtTheEndOfAScriptThatIsNotAboutThem) {
  const auto difference = compare({"GetSource", "GetTVMode"}, nullptr,
                                  [](model::World& world) { world.set.services[8].audio[1].readable = false; });
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->line, 1U);
  EXPECT_NE(difference->details.find("!3002:"), std::string::npos) << difference->details;
}

TEST(Comparison, SaysNothingWhereNothingDiffers) {
  EXPECT_FALSE(compare({"SetSource 31", "SetWindow 1", ".engine second", "SetChannel 3 0", "GetSource 6",
                        "SetScreenRect 1 2 3 4", "+ SetScreenCropRect 1 2 3 4 5 6 7 8"}));
}

TEST(Shrinking, LeavesTheLinesThatAFailureNeeds) {
  const auto fails = [](const Script& script) {
    const auto has = [&](const char* line) { return std::find(script.begin(), script.end(), line) != script.end(); };
    return has("3") && has("8") && has("9");
  };
  EXPECT_EQ(shrunk({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}, fails), (Script{"3", "8", "9"}));
  EXPECT_EQ(shrunk({"1"}, [](const Script&) { return true; }), Script());
}

TEST(RandomScripts, AreTheSameForTheSameSeed) {
  EXPECT_EQ(scriptOf(5), scriptOf(5));
  EXPECT_NE(scriptOf(5), scriptOf(6));
}

TEST(RandomScripts, HaveFaultsWhereTheyAreToHaveThem) {
  const auto isFault = [](const std::string& line) { return line.starts_with(".fault "); };
  const model::Set set = startingSet();
  const Script failing = randomScript(5, 160, set, Faults::some);
  EXPECT_GT(std::count_if(failing.begin(), failing.end(), isFault), 5);
  const Script sound = randomScript(5, 160, set);
  EXPECT_EQ(std::count_if(sound.begin(), sound.end(), isFault), 0);
}

/// Whole answers that random scripts must produce, by command. Others are below as parts of answers.
const Replies wanted{
    {"SetWindow", {"int 1"}},
    {"SetSource", {"int 1", "int 0", "int -1"}},
    {"SetSourceAndTune", {"int 1", "int 0", "int -1"}},
    {"SetPreviousSource", {"int 1", "int 0"}},
    {"DisconnectSource", {"int 1", "int 0"}},
    {"GetSource", {"int 0", "int 31", "int 43", "int 101", "int -1"}},
    {"GetPreviousSource", {"int 0", "int 31", "int -1"}},
    {"GetSourceState", {"int -1", "int 1", "int 2"}},
    {"SetChannel", {"int 1", "int 0"}},
    {"SetChannel_PTC", {"int 1", "int 0"}},
    {"SetChannel_Seek", {"int 1", "int 0", "int -1"}},
    {"SetChannelByServiceid", {"int 1", "int 0"}},
    {"SetChannelDirect", {"int 1", "int 0"}},
    {"GetSignalStrength", {"int 0", "int -1"}},
    {"FindChannel", {"int 1", "int 0"}},
    {"SetTVMode", {"int 1", "int -1"}},
    {"GetTVMode", {"int 0", "int 1", "int 2"}},
    {"GetChannel_Size", {"int 0"}},
    {"GetChannel_ServiceId", {"int -1", "ascii", "ascii 1152959734176350309"}},
    {"GetChannel_*", {"int -1", "int 65535", "unicode \"\""}},
    {"GetCurrentChannel_*", {"int -1", "int 65535", "int 28", "unicode \"Lighthouse One\"", "unicode \"\""}},
    {"GetStartChannel_*", {"int -1", "int 28", "unicode \"Lighthouse One\""}},
    {"SetScreenRect", {"int 1", "int 0"}},
    {"SetScreenRect_PosSizeMode", {"int -1"}},
    {"GetScreenRect", {"ascii x:0,y:0,w:960,h:540", "ascii x:648,y:351,w:288,h:162", "ascii"}},
    {"GetScreenRect_PosMode", {"int 9"}},
    {"GetScreenRect_SizeMode", {"int 9"}},
    {"GetAFDGeometryRectSize", {"ascii x:0,y:0,w:1920,h:1080", "ascii x:240,y:0,w:1440,h:1080", "ascii"}},
    {"GetState_Show", {"int 0", "int 1", "int 3"}},
    {"SetScreenCropRect", {"int 1", "int 0", "int -1"}},
    {"+", {"int 1", "int 0", "int -1", "empty"}},
    {"GetScreenCropRect",
     {"ascii {crop:{x:0,y:0,w:1920,h:1080},display:{x:0,y:0,w:1920,h:1080},plane:0}", "int 0", "int -1"}},
    {"SetScreenZorder", {"int 1", "int -1"}},
    {"Show", {"int 1", "int -1"}},
    {"MuteVideo", {"int 1", "int -1"}},
    {"GetResolution", {"int -1", "int 8", "int 14", "int 20", "int 21", "int 22"}},
    {"GetMultiAudioInfo", {"ascii"}},
    {"GetCurrentAudioInfo", {"int -1"}},
    {"ChangeAudioPID", {"int 1", "int 0"}},
    {"ChangeAudioByIndex", {"int 1", "int 0"}},
    {"SetSourceVolume", {"int 0"}},
    {"GetSubtitleInfo", {"ascii"}},
    {"GetCurrentSubtitle", {"int -1", "int 0", "int 6647399", "int 6579573"}},
    {"ChangeSubtitle", {"int 1", "int 0", "int -1"}},
    {"GetFavorites", {"int -1", "ascii |\n| {}"}},
    {"UpdateFavorites", {"int 1", "int -1"}},
    {"SetDVBSIChannelDirectEx", {"int 1", "int 0", "int -1"}},
    {"GetChannel_OnTVJson", {"int -1", "ascii"}},
    {"GetPreviousChannelInfo", {"int -1"}},
    {"GetStartChannel_Info", {"int -1"}},
    {"GetFullChannelList", {"int -1"}},
};
const Replies wantedPieces{
    {"GetMultiAudioInfo",
     {"{\n|    \"NumOfAudio\" : 0\n| }", "\"items\" : []", "\"items\" : null", "\"lang\" : -1,",
      "\"lang\" : 4294967295,"}},
    {"GetCurrentAudioInfo",
     {"\"index\" : 0,", "\"index\" : 1,", "\"lang\" : -1,", "\"lang\" : 4294967295,", "\"pid\" : 7013\n"}},
    {"GetSubtitleInfo",
     {"{\n|    \"NumOfSubtitle\" : 0\n| }", "\"NumOfSubtitle\" : 1,\n|    \"subtitle\" : null",
      "\"NumOfTTXSubtitle\" : 0,\n|    \"subtitle\" : null", "\"subtitle\" : []", "\"lang\" : 4294967295\n",
      "\"NumOfTTX\" : 1,\n|    \"NumOfTTXSubtitle\" : 2,"}},
    {"GetFavorites", {"\"1\" : \"0\"", "\"1\" : \"1\""}},
    {"GetChannel_OnTVJson", {"{"}},
    {"GetCurrentChannelInfo", {"\"new\" : [", "\"channelName\" : \"Lighthouse One\"", "\"lock\" : 1"}},
    {"GetPreviousChannelInfo", {"\"lock\" : 65535"}},
    {"GetStartChannel_Info", {"\"channelName\" : \"Lighthouse One\""}},
    {"GetFullChannelList", {"\"PROGRAM_NUMBER\" : 101"}},
};

/// The required answers that have not occurred.
std::vector<std::string> missing(Replies replies) {
  for (const auto& [command, answers] : Replies(replies)) {
    const std::size_t field = command.find("Channel_");
    if (field != std::string::npos)
      replies[command.substr(0, field) + "Channel_*"].insert(answers.begin(), answers.end());
  }
  std::vector<std::string> missing;
  for (const std::string& command : virtualtv::commandNames()) {
    if (replies[command].empty()) missing.push_back(command + " answers");
  }
  for (const auto& [command, answers] : wanted) {
    for (const std::string& answer : answers) {
      if (!replies[command].contains(answer)) missing.push_back(command + " answers " + answer);
    }
  }
  for (const auto& [command, pieces] : wantedPieces) {
    for (const std::string& piece : pieces) {
      if (!anyHas(replies[command], piece)) missing.push_back(command + " answers with " + piece);
    }
  }
  return missing;
}

TEST(Model, KnowsEveryCommand) {
  model::World world;
  world.set = startingSet();
  for (const virtualtv::CatalogueCommand& command : virtualtv::catalogue()) {
    const auto reply = model::run(world, {command.name});
    EXPECT_FALSE(reply && std::holds_alternative<model::Refused>(*reply))
        << "tests/support/model/Commands.cpp has no " << command.name;
  }
}

TEST(RandomScripts, ReachEveryAnswer) {
  constexpr std::uint64_t most = 500;
  Replies replies;
  for (std::uint64_t seed = 1; seed <= most && !missing(replies).empty(); ++seed) {
    ASSERT_FALSE(compare(scriptOf(seed), &replies)) << seed;
  }
  EXPECT_EQ(missing(replies), std::vector<std::string>());
}

}  // namespace
}  // namespace comparison
