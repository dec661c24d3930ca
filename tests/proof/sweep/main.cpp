// SPDX-License-Identifier: MIT
// Makes every call of every command to the set fail in every possible way, and compares the effects with the model.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <map>

#include "Sweep.h"

namespace {

struct Options {
  std::string only;
  sweep::Pairs pairs = sweep::Pairs::none;
  std::size_t part = 1;
  std::size_t parts = 1;
  std::size_t reports = 10;
};

void print(const sweep::Sweep& sweep) {
  for (const std::string& report : sweep.reports()) std::cout << report << "\n";
  const sweep::Figures& figures = sweep.figures();
  std::cout << "figure: commands = " << figures.commands << "\nfigure: runs under faults = " << figures.runs
            << "\nfigure: deviations = " << figures.deviations << "\n";
}

sweep::Figures run(const Options& options) {
  sweep::Sweep sweep(options.reports);
  std::size_t number = 0;
  for (const sweep::Context& context : sweep::contexts()) {
    for (const std::string& line : sweep::commands()) {
      const bool mine = number++ % options.parts == options.part - 1;
      if (mine && line.starts_with(options.only)) sweep.command(context, line, options.pairs);
    }
  }
  print(sweep);
  return sweep.figures();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Options options;
    CLI::App app{"Makes every call of every command to the set fail, in every way that it can, once and from then on."};
    app.add_option("--only", options.only, "commands whose lines start like this");
    app.add_option("--pairs", options.pairs, "which faults also come two at a time, for commands with up to 12 calls")
        ->transform(CLI::CheckedTransformer(std::map<std::string, sweep::Pairs>{
            {"none", sweep::Pairs::none}, {"some", sweep::Pairs::some}, {"all", sweep::Pairs::all}}));
    app.add_option("--part", options.part, "which share of the commands, counted from 1")->capture_default_str();
    app.add_option("--parts", options.parts, "how many shares there are")->capture_default_str();
    app.add_option("--reports", options.reports, "how many deviations are told; all are counted")
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    return run(options).deviations == 0 ? 0 : 1;
  } catch (const std::exception& exception) {
    std::cerr << "proof_sweep: " << exception.what() << "\n";
    return 1;
  }
}
