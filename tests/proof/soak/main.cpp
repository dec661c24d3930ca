// SPDX-License-Identifier: MIT
// Runs commands for a long time, some of them on a failing set, and checks that memory, file descriptors and the set's
// files do not grow.
#include <malloc.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "seam/Seam.h"
#include "support/Commands.h"
#include "support/bench/Bench.h"
#include "support/comparison/Ways.h"
#include "virtualtv/support/Support.h"

namespace {

using virtualtv::seam::Seam;

/// The resources of the process, and of its set on the disk.
struct Look {
  std::uint64_t bytes = 0;     ///< allocated
  std::int64_t files = 0;      ///< open descriptors
  std::uint64_t database = 0;  ///< bytes of the set's file
  std::uint64_t log = 0;       ///< bytes of its log
};

/// A set on a state directory, with an engine that stays open.
class Soak {
 public:
  static constexpr std::uint64_t commandsADay = 500;

  explicit Soak(std::uint64_t seed) : seed_(seed) {
    if (!bench_.open()) throw std::runtime_error("no engine can be opened");
  }

  /// Runs some hundred commands, every fifth on a failing set, and opens and closes another engine. Then brings set and
  /// engine to the state that they have after every day, and measures. The same number gives the same day.
  Look day(std::uint64_t number) {
    random_.seed(seed_ + number);
    if (number % 2 == 1) bench_.showIsp();
    for (std::uint64_t done = 0; done < commandsADay; ++done) command();
    visit();
    bench_.rest();
    for (const auto& command :
         {engine::Command{"SetWindow", {"0"}, ""}, engine::Command{"FindChannel", {"0", "1"}, ""}}) {
      bench_.execute(command.name, command.parameters);
    }
    return look();
  }

 private:
  void command() {
    const std::vector<engine::Command>& commands = engine::everyCommand();
    const engine::Command& command = commands[random_() % commands.size()];
    const bool fails = random_() % 5 == 0;
    if (fails) Seam::instance().add(fault());
    const std::string wrong = support::undocumented(command.name, bench_.execute(command.name, command.parameters));
    if (!wrong.empty()) throw std::runtime_error(command.name + ": " + wrong);
    if (fails) Seam::instance().clearFaults();
  }

  virtualtv::seam::Fault fault() {
    const auto& common = comparison::commonOperations();
    const auto& operation = random_() % 2 == 0
                                ? *common[random_() % common.size()]
                                : virtualtv::seam::operations[random_() % virtualtv::seam::operations.size()];
    const std::vector<std::string>& ways = comparison::waysOf(operation);
    return virtualtv::seam::parseFault({std::string(operation.name), "nth=" + std::to_string(1 + random_() % 2),
                                        random_() % 2 == 0 ? "always" : "times=1", ways[random_() % ways.size()]});
  }

  void visit() {
    constexpr const char* visitor = "visitor";
    std::string ret;
    if (!bench_.app().Open(visitor, "visitor.app", "visitor.widget", "")) throw std::runtime_error("no second engine");
    bench_.app().Execute(ret, visitor, "FindChannel", "0", "1", "", "");
    if (!bench_.app().Close(visitor, kel::EmpType::type{})) throw std::runtime_error("it can't be closed");
  }

  Look look() const {
    const struct mallinfo2 heap = ::mallinfo2();
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return {heap.uordblks + heap.hblkhd, std::distance(begin(descriptors), end(descriptors)),
            std::filesystem::file_size(state_ / "tv.db"), std::filesystem::file_size(state_ / "tv.db-wal")};
  }

  std::uint64_t seed_;
  std::mt19937_64 random_;
  virtualtv::test::TemporaryDirectory state_;
  support::Bench bench_{{}, state_.path()};
};

/// Each round repeats the same days in the same order. Whatever is kept permanently, such as prepared statements,
/// exists after the first two rounds.
constexpr std::uint64_t rounds = 8;
constexpr std::uint64_t roundsBefore = 2;
/// Enough commands for SQLite to empty its log once in each round.
constexpr std::uint64_t leastCommands = rounds * 4 * Soak::commandsADay;

/// The least of each value over the days of a round, since the allocator's fragmentation differs slightly between days.
Look round(Soak& soak, std::uint64_t days) {
  Look least = soak.day(0);
  for (std::uint64_t day = 1; day < days; ++day) {
    const Look look = soak.day(day);
    least.bytes = std::min(least.bytes, look.bytes);
    least.files = std::min(least.files, look.files);
    least.database = std::min(least.database, look.database);
    least.log = std::max(least.log, look.log);
  }
  return least;
}

template <typename Number>
std::int64_t growth(Number before, Number after) {
  return static_cast<std::int64_t>(after) - static_cast<std::int64_t>(before);
}

/// Tolerance for the allocator's fragmentation; less than one leaked block per day.
constexpr std::int64_t slack = 256;

/// @return 0 when nothing grew.
int soak(std::uint64_t commands, std::uint64_t seed) {
  constexpr std::uint64_t largestLog = 5'000'000;  // SQLite empties it at a thousand pages of 4 KiB
  const std::uint64_t days = (commands - 1) / (rounds * Soak::commandsADay) + 1;
  Soak soak(seed);
  std::vector<Look> looks;
  looks.reserve(rounds);
  for (std::uint64_t number = 0; number < rounds; ++number) looks.push_back(round(soak, days));

  const Look& before = looks[roundsBefore];
  const Look& after = looks.back();
  std::uint64_t log = 0;
  for (const Look& look : looks) log = std::max(log, look.log);
  const std::int64_t grown[] = {growth(before.bytes, after.bytes), growth(before.files, after.files),
                                growth(before.database, after.database)};
  std::cout << "figure: commands = " << rounds * days * Soak::commandsADay << "\nfigure: bytes more = " << grown[0]
            << "\nfigure: file descriptors more = " << grown[1]
            << "\nfigure: bytes more in the set's file = " << grown[2] << "\nfigure: bytes of its log at most = " << log
            << '\n';
  return grown[0] > slack || grown[1] > 0 || grown[2] > 0 || log > largestLog ? 1 : 0;
}

/// Restarts the program with the allocator's per-thread caches switched off: cached blocks would count as allocated,
/// and differ from day to day.
void keepNoFreedMemory(char** argv) {
  constexpr const char* name = "GLIBC_TUNABLES";
  if (std::getenv(name) != nullptr) return;
  ::setenv(name, "glibc.malloc.tcache_count=0", 1);
  ::execv("/proc/self/exe", argv);
  throw std::system_error(errno, std::generic_category(), "can't be started anew");
}

int run(int argc, char** argv) {
  CLI::App app("Runs commands for a long time and looks whether memory, file descriptors or the set's files grow");
  std::uint64_t commands = 1'000'000;
  std::uint64_t seed = 1;
  app.add_option("--commands", commands, "how many at least")
      ->check(CLI::Range(leastCommands, std::uint64_t{1} << 40))
      ->capture_default_str();
  app.add_option("--seed", seed, "where random choices start")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return soak(commands, seed);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    keepNoFreedMemory(argv);
    return run(argc, argv);
  } catch (const std::exception& exception) {
    std::cerr << "proof_soak: " << exception.what() << '\n';
    return 1;
  }
}
