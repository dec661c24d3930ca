// SPDX-License-Identifier: MIT
// Makes the disk under a set fail and cuts its power, and checks that nothing is lost.
#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <stdexcept>

#include "CrashLoop.h"
#include "Disk.h"
#include "FaultLoop.h"
#include "Findings.h"
#include "TwoDatabases.h"
#include "virtualtv/support/Support.h"

namespace {

using namespace virtualtv::proof;

int run(int argc, char** argv) {
  CLI::App app(
      "Makes the disk under a set fail at each access, and cuts its power, and looks whether anything is lost");
  std::uint64_t crashes = 1000;
  std::uint64_t every = 1;
  std::uint32_t seed = 1;
  app.add_option("--crashes", crashes, "how often the power is cut, beside the first start")->capture_default_str();
  app.add_option("--every", every, "let only each so manieth access fail")->capture_default_str();
  app.add_option("--seed", seed, "where random choices start")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  if (every == 0) throw std::invalid_argument("--every: a number from 1 on is wanted");
  Disk::instance();
  const virtualtv::test::TemporaryDirectory directory;
  Findings findings;
  Choice choice(every, seed);
  loopOverFaults(directory.path(), choice, findings);
  loopOverTwoDatabases(directory.path(), choice, findings);
  loopOverCrashes(directory.path(), crashes, seed, findings);
  findings.print();
  return findings.areNone() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& exception) {
    std::cerr << "proof_storage: " << exception.what() << "\n";
    return 1;
  }
}
