// SPDX-License-Identifier: MIT
// Compares the messages that the plug-in's tests log with the log contract: log_contract CONTRACT FOLDER PROGRAM...
//
// Empties FOLDER, then runs the test programs, which write their messages there. The tests must log every line of the
// contract, and no other message.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

Lines read(const fs::path& path) {
  std::ifstream file(path);
  Lines lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

/// Runs a test program to its end. @return true when its tests passed.
bool run(const char* program) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::execl(program, program, "--gtest_brief=1", nullptr);
    std::perror(program);
    ::_exit(127);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || status != 0) {
    std::cerr << program << ": failed\n";
    return false;
  }
  return true;
}

std::set<std::string> printed(const fs::path& folder) {
  std::set<std::string> lines;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    for (std::string& line : read(entry.path())) lines.insert(std::move(line));
  }
  return lines;
}

/// Prints the lines that are in one set only, and their number. @return true when there are none.
bool report(const std::string& what, const std::set<std::string>& of, const std::set<std::string>& without) {
  Lines lines;
  std::set_difference(of.begin(), of.end(), without.begin(), without.end(), std::back_inserter(lines));
  for (const std::string& line : lines) std::cerr << what << ": " << line << '\n';
  std::cout << "figure: " << what << " = " << lines.size() << '\n';
  return lines.empty();
}

bool inOrder(const Lines& contract) {
  const auto fault = std::adjacent_find(contract.begin(), contract.end(), std::greater_equal<>());
  if (fault == contract.end()) return true;
  std::cerr << "not sorted, or there twice: " << *std::next(fault) << '\n';
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::cerr << "usage: log_contract CONTRACT FOLDER PROGRAM...\n";
    return 2;
  }
  const fs::path folder = argv[2];
  fs::remove_all(folder);
  fs::create_directories(folder);
  ::setenv("EMP_WINDOW_LOG_CONTRACT", folder.c_str(), 1);

  bool good = true;
  for (int at = 3; at < argc; ++at) good = run(argv[at]) && good;

  const Lines lines = read(argv[1]);
  const std::set<std::string> contract(lines.begin(), lines.end());
  const std::set<std::string> seen = printed(folder);
  good = inOrder(lines) && good;
  good = report("never printed", contract, seen) && good;
  good = report("not in the contract", seen, contract) && good;
  if (!good) std::cerr << argv[1] << " is not what the tests print, or they fail\n";
  std::cout << "figure: messages in the contract = " << contract.size() << '\n';
  return good && !contract.empty() ? 0 : 1;
}
