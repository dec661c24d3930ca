// SPDX-License-Identifier: MIT
// What the model expects, as a transcript: it fails on a set that differs from the model, and passes on one that
// agrees.
#include "support/comparison/Expectation.h"

#include <gtest/gtest.h>

#include "EmpAppWindow.h"
#include "shell/Check.h"
#include "shell/Transcript.h"
#include "support/comparison/Scripts.h"
#include "virtualtv/support/Support.h"

namespace comparison {
namespace {

/// A change of the model, and the line that changes the set in the same way.
struct Spoilt {
  const char* what;
  std::function<void(model::World&)> spoil;
  std::string line;
  Script script;
};

const std::vector<Spoilt> all{
    {"a reply",
     [](model::World& world) { world.set.services[1].numbers[TCServiceData::PTC] = 22; },
     ".set service.#1.ptc 22",
     {"GetSource", "GetCurrentChannel_PTC", "GetTVMode"}},
    {"a reply with texts",
     [](model::World& world) { world.set.services[1].texts[TCServiceData::CHANNEL_NAME] = u"\u03a6 two"; },
     ".set service.#1.name '\u03a6 two'",
     {"GetCurrentChannel_Name"}},
    {"calls and a key",
     [](model::World& world) {
       world.applications["main"] = {"an.app", "a widget"};
     },
     ".app an.app 'a widget'",
     {"GetSource", "SetSource 31"}},
    {"calls that write outputs",
     [](model::World& world) { world.set.state.windows[1].source = 13; },
     ".set pip.source 13",
     {"SetWindow 1", "SetSource 31"}},
    {"calls that fail",
     [](model::World& world) { world.set.services[1].numbers[TCServiceData::MAJOR] = 77; },
     ".set service.#1.major 77",
     {".fault IServiceNavigation::GetCurrentService nth=1 times=1 'result=0'", "GetCurrentChannel_Major",
      "SetChannel 77 0"}},
    {"the set's state",
     [](model::World& world) { world.set.state.windows[1].previousService = 3; },
     ".set pip.previous_service '#3'",
     {"GetTVMode"}},
    {"tracks in use and the ISP's tracks",
     [](model::World& world) {
       world.set.state.isp.audio = {{.pid = 256, .lang = 6647399, .decodeType = 4, .audioMode = 2, .audioType = 0}};
       world.set.state.windows[1].inUse.audio = 1;
     },
     ".set pip.audio 1",
     {".set isp.audio 256:eng:aac:2:0", "GetTVMode"}},
    {"an input",
     [](model::World& world) {
       for (virtualtv::Input& input : world.set.state.inputs) {
         if (input.source == 14) input.picture = {.width = 640, .height = 480, .rate = 60};
       }
     },
     ".set input.14.picture 640x480@60",
     {"GetTVMode"}},
    {"a key",
     [](model::World& world) { world.set.settings["db/other"] = std::string("a\"b"); },
     ".vconf set db/other str 'a\"b'",
     {"GetTVMode"}},
    {"favourites",
     [](model::World& world) {
       world.set.services[3].favourites = {{7, true}};
     },
     ".set service.#3.favourites 7=1",
     {"GetSource"}},
    {"tracks of a service",
     [](model::World& world) { world.set.services[2].subtitles = {{.pid = 270, .lang = 6647399, .type = 1}}; },
     ".set service.#2.subtitles 270:eng:teletext",
     {"GetSource"}},
};

/// The result of a transcript on a fresh set.
virtualtv::shell::CheckedFile checked(const std::string& transcript) {
  const virtualtv::test::TemporaryDirectory folder;
  virtualtv::test::write(folder / "expected.txt", transcript);
  kel::CEmpAppWindow app;
  return virtualtv::shell::checkTranscript(app, folder / "expected.txt", false);
}

TEST(Expectation, FailsWhereTheSetDiffersAndPassesWhereItDoesNot) {
  for (const Spoilt& spoilt : all) {
    const auto difference = compare(spoilt.script, nullptr, spoilt.spoil);
    ASSERT_TRUE(difference) << spoilt.what;
    EXPECT_NE(checked(difference->expectation).diff, "") << spoilt.what << "\n" << difference->expectation;
    const auto alike = checked("> " + spoilt.line + "\n" + difference->expectation);
    EXPECT_EQ(alike.diff, "") << spoilt.what;
    EXPECT_EQ(alike.error, "") << spoilt.what;
  }
}

/// A random script as a transcript. After every few lines it also queries everything that can be queried.
std::string wholeOf(std::uint64_t seed) {
  constexpr std::size_t lines = 120;
  constexpr std::size_t between = 15;
  Script script = randomScript(seed, lines, startingSet(), Faults::some);
  std::erase_if(script, [](const std::string& line) { return !virtualtv::shell::isText(line); });
  Pair pair;
  pair.noteOutputs(true);
  std::string transcript;
  for (std::size_t line = 0; line < script.size(); ++line) {
    const std::string details = pair.run(script[line]);
    EXPECT_EQ(details, "") << script[line];
    const bool asks = line % between == 0 || line + 1 == script.size();
    transcript +=
        expectationOf(pair, script[line], {.calls = true, .state = asks, .settings = asks, .services = asks}, true);
  }
  return transcript;
}

/// A set that agrees with the model passes every query: calls with their outputs, knobs and settings keys.
TEST(Expectation, PassesOnTheSetForAllThatTheModelHas) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    const auto result = checked(wholeOf(seed));
    EXPECT_GT(result.steps.size(), 500U);
    EXPECT_EQ(result.diff, "") << "seed " << seed;
    EXPECT_EQ(result.error, "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace comparison
