// SPDX-License-Identifier: MIT
// Makes each allocation of the plug-in fail, and each allocation of the set during calls, and checks that the plug-in
// continues.
#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <stdexcept>

#include "StoreMemory.h"
#include "Sweep.h"

namespace {

int run(int argc, char** argv) {
  CLI::App app(
      "Runs every command on both TV stacks, and the making and ending of engines, with each allocation failing in "
      "turn, "
      "once and from then on");
  std::size_t every = 1;
  app.add_option("--every", every, "let only each so manieth allocation fail")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  if (every == 0) throw std::invalid_argument("--every: a number from 1 on is wanted");

  proof::takeOverStoreMemory();
  proof::Sweep sweep(every);
  for (const bool fromThenOn : {false, true}) {
    sweep.makingAnEngine(fromThenOn);
    sweep.endingAnEngine(fromThenOn);
  }
  for (const proof::Command& command : proof::everyCommand()) {
    for (const proof::Stack stack : {proof::Stack::tv, proof::Stack::isp}) {
      for (const bool fromThenOn : {false, true}) sweep.commandOutsideCalls(command, stack, fromThenOn);
    }
  }
  const std::size_t runs = sweep.runs();
  for (const proof::Command& command : proof::everyCommand()) {
    for (const proof::Stack stack : {proof::Stack::tv, proof::Stack::isp}) {
      sweep.commandInsideCalls(command, stack);
      sweep.commandInsideCallsFromThenOn(command, stack);
    }
  }
  const std::size_t runsInside = sweep.runs() - runs;
  for (const proof::Command& command : proof::everyCommand()) {
    for (const proof::Stack stack : {proof::Stack::tv, proof::Stack::isp}) {
      for (const bool fromThenOn : {false, true}) sweep.commandInsideStore(command, stack, fromThenOn);
    }
  }
  std::cout << "figure: runs with failing allocations = " << runs << "\n"
            << "figure: runs with failing allocations inside calls = " << runsInside << "\n"
            << "figure: runs with failing allocations of the database = " << sweep.runs() - runs - runsInside << "\n"
            << "figure: deviations = " << sweep.deviations() << "\n";
  return sweep.deviations() == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& exception) {
    std::cerr << "proof_allocations: " << exception.what() << "\n";
    return 1;
  }
}
