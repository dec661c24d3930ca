// SPDX-License-Identifier: MIT
// Tests the report on a failure of the simulation, with deliberately wrong models.
#include "proof/simulation/Report.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

#include "virtualtv/support/Support.h"

namespace simulation {
namespace {

using Spoil = Simulation::Spoil;

/// The first failure of a simulation.
struct First {
  explicit First(Simulation& simulation, bool replay = false) {
    constexpr std::uint64_t scripts = 5;
    for (std::uint64_t seed = 1; seed <= scripts && !failure; ++seed) failure = simulation.run(seed, replay);
    if (!failure) throw std::runtime_error("no script fails");
  }

  std::optional<Failure> failure;
};

/// The report on a deliberately wrong model.
Report reportOn(const Spoil& spoil) {
  Simulation simulation(spoil);
  return reportOf(simulation, First(simulation).failure.value());
}

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(SimulationReport, HasATranscriptThatFailsUnderCheck) {
  const virtualtv::test::TemporaryDirectory folder;
  const std::vector<Spoil> spoils{
      [](model::World& world) { world.set.services[2].numbers[TCServiceData::LOCK] = 1; },
      [](model::World& world) { world.applications["main"].second = "another"; },
      [](model::World& world) { world.set.state.windows[1].previousService = 3; },
      [](model::World& world) { world.set.services[8].favourites[7] = true; },
      [](model::World& world) { world.set.settings["db/other"] = 7; },
  };
  for (const Spoil& spoil : spoils) {
    const Report report = reportOn(spoil);
    EXPECT_TRUE(has(report.text, "by the model")) << report.text;
    ASSERT_FALSE(report.transcript.empty()) << report.text;
    EXPECT_TRUE(has(tryOut(report.transcript, folder / "spoilt.txt"), "and fails under")) << report.transcript;
    EXPECT_EQ(virtualtv::test::contentOf(folder / "spoilt.txt"), report.transcript);
  }
}

TEST(SimulationReport, SaysThatATranscriptPassesUnderCheck) {
  const virtualtv::test::TemporaryDirectory folder;
  EXPECT_TRUE(has(tryOut("> GetSource\nint 0\n", folder / "sound.txt"), "but passes under"));
}

TEST(SimulationReport, SaysThatATranscriptCantBeChecked) {
  const virtualtv::test::TemporaryDirectory folder;
  const std::string said = tryOut("> .vconf set k str \xff\n> GetSource\nint 5\n", folder / "bytes.txt");
  EXPECT_TRUE(has(said, "but can't be checked: ")) << said;
  EXPECT_TRUE(has(said, "not a text in UTF-8")) << said;
}

/// The model's difference is the aspect ratio of an input's picture, which no knob shows.
TEST(SimulationReport, SaysThatADifferenceCantBeAskedFor) {
  const virtualtv::test::TemporaryDirectory folder;
  const Report report =
      reportOn([](model::World& world) { world.set.state.inputs[5].picture.shape = virtualtv::Shape::narrow; });
  ASSERT_FALSE(report.transcript.empty()) << report.text;
  EXPECT_TRUE(has(tryOut(report.transcript, folder / "hidden.txt"), "but passes under")) << report.transcript;
}

TEST(SimulationReport, HasTheScriptOfAFailureThatIsNotSeenAgain) {
  bool spoils = true;
  Simulation simulation([&](model::World& world) {
    if (spoils) world.set.state.windows[1].previousService = 3;
    spoils = false;
  });
  const Failure failure = First(simulation).failure.value();
  const Report report = reportOf(simulation, failure);
  EXPECT_EQ(report.transcript, "");
  EXPECT_TRUE(has(report.text, "state, really:")) << report.text;
  for (const std::string& line : failure.script) EXPECT_TRUE(has(report.text, "> " + line + "\n")) << line;
}

TEST(SimulationReport, HasAShortScriptThatEndsInAnException) {
  const virtualtv::test::TemporaryDirectory folder;
  Simulation simulation;
  Failure failure{7, "it ends in an exception\n", simulation.scriptOf(7)};
  failure.script.resize(200);
  failure.script[150] = ".unheard of";
  const Report report = reportOf(simulation, failure);
  EXPECT_TRUE(has(report.text, "seed 7: ")) << report.text;
  EXPECT_TRUE(has(report.text, "this ends in an exception, ")) << report.text;
  EXPECT_EQ(report.inputs, "> .unheard of\n");
  EXPECT_EQ(keep(report, folder / "short.txt"), (folder / "short.txt").string() + " has that\n");
  EXPECT_EQ(virtualtv::test::contentOf(folder / "short.txt"), report.inputs);
}

TEST(SimulationReport, IsFoundInTheFileWhenTheProgramDies) {
  const virtualtv::test::TemporaryDirectory folder;
  const auto file = folder / "died.txt";
  const std::string end = virtualtv::test::inChild([&]() -> std::string {
    const Simulation simulation;
    leaveBehind(3, simulation.scriptOf(3), file);
    std::_Exit(1);
  });
  EXPECT_EQ(end, "died");
  std::string inputs;
  for (const std::string& line : Simulation().scriptOf(3)) inputs += "> " + line + "\n";
  EXPECT_EQ(virtualtv::test::contentOf(file), "# seed 3, not yet at its end\n" + inputs);
}

TEST(SimulationReport, TellsWhatIsNotTheSameAgain) {
  int runs = 0;
  Simulation simulation([&](model::World& world) {
    if (++runs == 2) world.set.state.windows[1].previousService = 3;
  });
  const Failure failure = First(simulation, true).failure.value();
  EXPECT_TRUE(has(failure.what, "it does not do the same again\n> ")) << failure.what;
}

Figures figuresOf(bool replay) {
  Simulation simulation;
  EXPECT_FALSE(simulation.run(1, replay));
  return simulation.figures();
}

TEST(SimulationFigures, LeaveReplaysOut) {
  const Figures once = figuresOf(false);
  const Figures twice = figuresOf(true);
  EXPECT_EQ(twice.replays, 1U);
  EXPECT_GT(once.commands, 1000U);
  EXPECT_EQ(twice.commands, once.commands);
  EXPECT_EQ(twice.faults, once.faults);
  EXPECT_EQ(twice.hits, once.hits);
}

}  // namespace
}  // namespace simulation
