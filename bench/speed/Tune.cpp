// A switch of the source, which writes every key that a tune can, against as many writes of the store alone: both on a
// disk, each write there when it returns.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "store/SettingsStore.h"
#include "support/Television.h"

namespace {

constexpr std::size_t services = 100;
constexpr std::array sources{"15", "0"};  // an input, and the tuner

/// A directory of its own, gone with the object.
class Directory {
 public:
  Directory() {
    std::string path = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("no directory can be made at " + path);
    path_ = path;
  }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() { std::filesystem::remove_all(path_); }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Back and forth between the sources.
void switchSources(bench::Television& television) {
  for (const char* source : sources) television.require(1, "SetSource", source);
}

/// How many durable writes that takes.
std::size_t writesOf(bench::Television& television) {
  std::size_t writes = 0;
  const auto count = [](void* context) {
    ++*static_cast<std::size_t*>(context);
    return 0;
  };
  switchSources(television);
  sqlite3_commit_hook(television.database(), count, &writes);
  switchSources(television);
  sqlite3_commit_hook(television.database(), nullptr, nullptr);
  return writes;
}

void tune(benchmark::State& state) {
  const Directory directory;
  bench::Television::drop();
  bench::Television television(services, directory.path());
  state.counters["writes"] = static_cast<double>(writesOf(television));
  for (auto _ : state) switchSources(television);
}

void store(benchmark::State& state) {
  const Directory directory;
  bench::Television::drop();
  bench::Television television(services, directory.path());
  const std::size_t writes = writesOf(television);
  int value = 0;
  for (auto _ : state) {
    for (std::size_t write = 0; write < writes; ++write) television.tv().settings().set("db/bench", ++value);
  }
}

BENCHMARK(tune)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(store)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
