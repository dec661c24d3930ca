// A process that answers once, on a state directory, from its start to its end, against the database's own shell on a
// file.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// Runs a program to its end, without what it writes.
void run(std::vector<std::string> words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", 1, 0);  // for writing
  pid_t process = 0;
  const int error = posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (error != 0 || waitpid(process, &status, 0) != process || status != 0) {
    throw std::runtime_error(words.front() + " does not run");
  }
}

std::string scratch(const char* name) {
  return (std::filesystem::path(BENCH_SCRATCH) / name).string();
}

void exec(benchmark::State& state) {
  const std::vector<std::string> words{EMP_WINDOW, "--state", scratch("state"), "exec", "GetChannel_Size"};
  run(words);  // makes the files
  for (auto _ : state) run(words);
}

void sqlite(benchmark::State& state) {
  const std::string file = scratch("file.db");
  run({"sqlite3", file, "CREATE TABLE IF NOT EXISTS number(value)"});
  for (auto _ : state) run({"sqlite3", file, "select 1"});
}

BENCHMARK(exec)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sqlite)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
