// SPDX-License-Identifier: MIT
#include "window/cases/Files.h"

#include <algorithm>
#include <filesystem>

#include "shell/Files.h"

namespace cases {

namespace {

const std::filesystem::path folder = WINDOW_CASES;

std::vector<Case> readAll() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".txt") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<Case> read;
  for (const auto& file : files) {
    for (Case& shown : readCases(file.filename().string(), virtualtv::shell::readFile(file))) {
      read.push_back(std::move(shown));
    }
  }
  return read;
}

}  // namespace

const std::vector<Case>& all() {
  static const std::vector<Case> read = readAll();
  return read;
}

const std::map<std::string, Results>& results() {
  static const std::map<std::string, Results> read = readResults(virtualtv::shell::readFile(folder / "results.tsv"));
  return read;
}

}  // namespace cases
