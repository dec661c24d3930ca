// SPDX-License-Identifier: MIT
// Runs random commands with random faults on the plug-in, and compares the effects with the model.
#include <CLI/CLI.hpp>
#include <ctime>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

#include "Report.h"
#include "Simulation.h"

namespace {

struct Options {
  std::uint64_t commands = 20000;
  std::uint64_t seed = 1;
  std::string transcript = "simulation.txt";
  std::string scripts;  ///< where to write scripts; empty for nowhere
};

constexpr std::uint64_t scriptsBetweenReplays = 16;

void print(const simulation::Figures& figures, std::uint64_t deviations) {
  const double seconds = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
  std::cout << "figure: commands = " << figures.commands << "\nfigure: faults = " << figures.faults
            << "\nfigure: calls that failed = " << figures.hits << "\nfigure: replays = " << figures.replays
            << "\nfigure: commands per second of processor time = "
            << static_cast<std::uint64_t>(static_cast<double>(figures.commands) / seconds)
            << "\nfigure: deviations = " << deviations << "\n";
}

/// Runs scripts until enough commands have run or a script fails. @return the report on the failure, if any.
std::optional<simulation::Report> simulate(const Options& options) {
  simulation::Simulation simulation;
  std::optional<simulation::Report> report;
  for (std::uint64_t seed = options.seed; !report && simulation.figures().commands < options.commands; ++seed) {
    simulation::leaveBehind(seed, simulation.scriptOf(seed), options.transcript);
    const auto failure = simulation.run(seed, (seed - options.seed) % scriptsBetweenReplays == 0);
    if (failure) report = simulation::reportOf(simulation, *failure);
    if (!failure && !options.scripts.empty()) simulation::keepScript(seed, simulation.scriptOf(seed), options.scripts);
  }
  print(simulation.figures(), report ? 1 : 0);
  return report;
}

int run(const Options& options) {
  const auto report = simulate(options);
  std::filesystem::remove(options.transcript);
  if (!report) return 0;
  std::cout << report->text;
  std::cout << simulation::keep(*report, options.transcript);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Options options;
    CLI::App app{"Runs random commands with random faults and holds what comes of them against the model."};
    app.add_option("--commands", options.commands, "how many commands at least")->capture_default_str();
    app.add_option("--seed", options.seed, "seed of the first script; the next one has the next seed")
        ->capture_default_str();
    app.add_option("--transcript", options.transcript, "file for the script under way, and the transcript of a failure")
        ->capture_default_str();
    app.add_option("--scripts", options.scripts, "directory for the scripts that ran as they should, SEED.txt each");
    CLI11_PARSE(app, argc, argv);
    return run(options);
  } catch (const std::exception& exception) {
    std::cerr << "proof_simulation: " << exception.what() << "\n";
    return 1;
  }
}
