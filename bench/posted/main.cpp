// SPDX-License-Identifier: MIT
// Posts messages to a JSON-RPC server in this process, as a script posts them to the module in memory. Each line of the
// input is one message, and is answered with one line: `post MESSAGE` prints the reply, `time MESSAGE` the nanoseconds
// of a post, the minimum of several runs.
#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "rpc/Server.h"
#include "support/Television.h"

namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

constexpr int runs = 5;
constexpr std::chrono::milliseconds shortestRun{20};

class Posted {
 public:
  std::string post(std::string_view message) {
    std::string reply;
    server_.post(message, std::nullopt, [&](const std::optional<std::string>& text) { reply = text.value_or(""); });
    while (television_.device().loop().turn()) {
    }
    return reply;
  }

  double leastTime(std::string_view message) {
    double least = std::numeric_limits<double>::max();
    for (int run = 0; run < runs; ++run) least = std::min(least, timeOf(message));
    return least;
  }

 private:
  /// The time of one post in nanoseconds, averaged over a run.
  double timeOf(std::string_view message) {
    int posts = 0;
    const auto start = Clock::now();
    auto end = start;
    do {
      post(message);
      ++posts;
      end = Clock::now();
    } while (end - start < shortestRun);
    return Nanoseconds(end - start).count() / posts;
  }

  bench::Television television_{0};
  virtualtv::rpc::Server server_{television_.device(), virtualtv::rpc::Options()};
};

}  // namespace

int main() {
  try {
    Posted posted;
    constexpr std::string_view posting = "post ";
    constexpr std::string_view timing = "time ";
    for (std::string line; std::getline(std::cin, line);) {
      if (line.starts_with(posting)) {
        std::cout << posted.post(line.substr(posting.size())) << std::endl;
      } else if (line.starts_with(timing)) {
        std::cout << posted.leastTime(line.substr(timing.size())) << std::endl;
      } else {
        throw std::invalid_argument("neither post nor time: " + line);
      }
    }
    return 0;
  } catch (const std::exception& exception) {
    std::cerr << "bench_posted: " << exception.what() << '\n';
    return 1;
  }
}
