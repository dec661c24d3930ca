// SPDX-License-Identifier: MIT
// Creates a state directory with many services, and runs the full channel list on it under valgrind's callgrind, with
// the log filtered. This is the unavoidable work of a process that is started for this one command.
#include <cstddef>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include "support/Counted.h"
#include "support/Television.h"

namespace {

constexpr std::size_t services = 20'000;
constexpr const char* label = "GetFullChannelList, 20,000 services";

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 2) throw std::invalid_argument("the one argument is the directory to be made");
    bench::Television television(services, argv[1]);
    const std::string command = "GetFullChannelList";
    bench::count(label, 1, 1, [&] { television.execute(command); });
    return 0;
  } catch (const std::exception& exception) {
    std::cerr << "bench_process: " << exception.what() << '\n';
    return 1;
  }
}
