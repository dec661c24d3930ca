// Runs commands for valgrind's callgrind, which counts the instructions of each. Outside of it nothing is counted.
#include <cstddef>
#include <exception>
#include <iostream>
#include <string>

#include "support/Counted.h"
#include "support/Television.h"

namespace {

constexpr std::size_t services = 200;
constexpr int warming = 3;
constexpr int counted = 10;

struct Run {
  const char* label = "";
  const char* command = "";
  const char* first = "";
  const char* second = "";
};

/// In this order: a command stands on what those before it have left.
constexpr Run runs[] = {
    {"a name that no command has", "GetNothing"},
    {"GetSource", "GetSource"},
    {"GetSourceState", "GetSourceState"},
    {"GetState_Show", "GetState_Show"},
    {"SetChannel", "SetChannel", "1", "7"},
    {"GetCurrentChannel_Major", "GetCurrentChannel_Major"},
    {"GetCurrentChannel_Name", "GetCurrentChannel_Name"},
    {"GetCurrentChannelInfo", "GetCurrentChannelInfo"},
    {"FindChannel, 200 services", "FindChannel", "0", "1"},
    {"GetChannel_Major", "GetChannel_Major", "150"},
    {"GetChannel_Name", "GetChannel_Name", "150"},
    {"GetFullChannelList, 200 services", "GetFullChannelList"},
    {"GetMultiAudioInfo", "GetMultiAudioInfo"},
    {"GetResolutionDetail", "GetResolutionDetail"},
    {"SetSource to an input", "SetSource", "15"},
    {"SetSource to the tuner", "SetSource", "0"},
};

void run(bench::Television& television, const Run& run) {
  const std::string command = run.command;
  const std::string first = run.first;
  const std::string second = run.second;
  bench::count(run.label, warming, counted, [&] { television.execute(command, first, second); });
}

}  // namespace

int main() {
  try {
    bench::Television television(services);
    for (const Run& one : runs) run(television, one);
    return 0;
  } catch (const std::exception& exception) {
    std::cerr << "bench_instructions: " << exception.what() << '\n';
    return 1;
  }
}
