// Runs random commands with random faults on the plug-in and holds what comes of them against the model.
#include <CLI/CLI.hpp>
#include <ctime>
#include <exception>
#include <fstream>
#include <iostream>

#include "Simulation.h"

namespace {

struct Options {
  std::uint64_t commands = 20000;
  std::uint64_t seed = 1;
  std::string transcript = "simulation.txt";
};

constexpr std::uint64_t scriptsBetweenReplays = 16;

/// Makes a failing script short, prints and writes it.
void report(simulation::Simulation& simulation, const simulation::Failure& failure, const Options& options) {
  std::cout << "seed " << failure.seed << ": " << failure.what << "\n";
  const auto fails = [&](const comparison::Script& script) { return simulation.differenceIn(script).has_value(); };
  if (!fails(failure.script)) return;
  const auto difference = simulation.differenceIn(comparison::shrunk(failure.script, fails)).value();
  std::ofstream(options.transcript) << difference.expectation;
  std::cout << "by the model this holds, which stands in " << options.transcript << ":\n"
            << difference.expectation << difference.details;
}

int run(const Options& options) {
  simulation::Simulation simulation;
  std::uint64_t failures = 0;
  for (std::uint64_t seed = options.seed; failures == 0 && simulation.figures().commands < options.commands; ++seed) {
    const auto failure = simulation.run(seed, (seed - options.seed) % scriptsBetweenReplays == 0);
    if (!failure) continue;
    ++failures;
    report(simulation, *failure, options);
  }
  const double seconds = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
  const simulation::Figures& figures = simulation.figures();
  std::cout << "figure: commands = " << figures.commands << "\nfigure: faults = " << figures.faults
            << "\nfigure: calls that failed = " << figures.hits << "\nfigure: replays = " << figures.replays
            << "\nfigure: commands per second of processor time = "
            << static_cast<std::uint64_t>(static_cast<double>(figures.commands) / seconds)
            << "\nfigure: deviations = " << failures << "\n";
  return failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Options options;
    CLI::App app{"Runs random commands with random faults and holds what comes of them against the model."};
    app.add_option("--commands", options.commands, "how many commands at least")->capture_default_str();
    app.add_option("--seed", options.seed, "seed of the first script; the next one has the next seed")
        ->capture_default_str();
    app.add_option("--transcript", options.transcript, "file for the transcript of a failure")->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    return run(options);
  } catch (const std::exception& exception) {
    std::cerr << "proof_simulation: " << exception.what() << "\n";
    return 1;
  }
}
