// Runs commands for a long time, some of them on a set that fails, and looks whether memory or file descriptors grow.
#include <malloc.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
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

#include "seam/Seam.h"
#include "support/Commands.h"
#include "support/bench/Bench.h"

namespace {

using virtualtv::seam::Seam;

/// What the process holds.
struct Held {
  std::uint64_t bytes = 0;  ///< allocated
  std::int64_t files = 0;   ///< open descriptors
};

Held held() {
  const struct mallinfo2 heap = ::mallinfo2();
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {heap.uordblks + heap.hblkhd, std::distance(begin(descriptors), end(descriptors))};
}

/// One day of a set: some hundred commands in one engine, each fifth with a call that fails. The same days come again
/// in the same order, so that whatever is kept for good is held after the first round.
class Soak {
 public:
  static constexpr std::uint64_t commandsADay = 500;
  static constexpr std::uint64_t daysARound = 4;

  /// Carries out a day. @return how many commands that were.
  std::uint64_t day(std::uint64_t number) {
    bench_.renew();
    Seam::instance().record(false);
    if (number % 2 == 1) bench_.showIsp();
    if (!bench_.open()) throw std::runtime_error("no engine can be opened");
    std::mt19937_64 random(number % daysARound);
    for (std::uint64_t done = 0; done < commandsADay; ++done) command(random);
    bench_.renew();
    return commandsADay;
  }

 private:
  void command(std::mt19937_64& random) {
    const std::vector<engine::Call>& calls = engine::everyCall();
    const engine::Call& call = calls[random() % calls.size()];
    const bool fails = random() % 5 == 0;
    if (fails) {
      const auto& operation = virtualtv::seam::operations[random() % virtualtv::seam::operations.size()];
      Seam::instance().add(virtualtv::seam::parseFault({std::string(operation.name), "result=throw"}));
    }
    const std::string wrong = support::undocumented(call.name, bench_.execute(call.name, call.parameters));
    if (!wrong.empty()) throw std::runtime_error(call.name + ": " + wrong);
    if (fails) Seam::instance().clearFaults();
  }

  support::Bench bench_;
};

/// @return 0 when nothing grew.
int soak(std::uint64_t wanted) {
  Soak soak;
  std::uint64_t day = 0;
  const auto round = [&] {
    std::uint64_t done = 0;
    for (std::uint64_t begun = day; day < begun + Soak::daysARound; ++day) done += soak.day(day);
    return done;
  };
  std::uint64_t commands = round();
  commands += round();
  const Held before = held();
  while (commands < wanted) commands += round();
  const Held after = held();

  const std::int64_t bytes = static_cast<std::int64_t>(after.bytes) - static_cast<std::int64_t>(before.bytes);
  const std::int64_t files = after.files - before.files;
  std::cout << "figure: commands = " << commands << "\nfigure: bytes more = " << bytes
            << "\nfigure: file descriptors more = " << files << '\n';
  return bytes > 0 || files > 0 ? 1 : 0;
}

/// Starts the program anew where the allocator keeps what a thread has freed for its next request: that would count as
/// allocated, and differ from round to round.
void keepNoFreedMemory(char** argv) {
  constexpr const char* name = "GLIBC_TUNABLES";
  if (std::getenv(name) != nullptr) return;
  ::setenv(name, "glibc.malloc.tcache_count=0", 1);
  ::execv("/proc/self/exe", argv);
  throw std::system_error(errno, std::generic_category(), "can't be started anew");
}

int run(int argc, char** argv) {
  CLI::App app("Runs commands for a long time and looks whether memory or file descriptors grow");
  std::uint64_t commands = 1'000'000;
  app.add_option("--commands", commands, "how many at least; two rounds come before the first look")
      ->check(CLI::Range(std::uint64_t{3} * Soak::daysARound * Soak::commandsADay, std::uint64_t{1} << 40))
      ->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return soak(commands);
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
