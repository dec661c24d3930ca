// SPDX-License-Identifier: MIT
// Writes the catalogue of commands, docs/commands.json and docs/commands.md, from the command table, the help texts in
// docs/commands.help.json and the examples in docs/examples.txt; with --check, only reports where these files differ
// from what it would write.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "Commands.h"
#include "Help.h"
#include "Merge.h"
#include "Page.h"

namespace {

using catalogue::Problems;

struct File {
  std::filesystem::path path;
  std::string text;
};

/// Reads a file; false, and a problem, when it can't be read.
bool read(File& file, Problems& problems) {
  std::ifstream in(file.path, std::ios::binary);
  if (!in || !is_regular_file(file.path)) {
    problems.push_back(file.path.string() + ": can't be read as a file");
    return false;
  }
  file.text.assign(std::istreambuf_iterator<char>(in), {});
  return true;
}

/// The files with their correct content; none when the table, the help texts and the examples are inconsistent.
std::vector<File> made(const std::filesystem::path& docs, Problems& problems) {
  File texts{docs / "commands.help.json", {}};
  if (!read(texts, problems)) return {};
  const catalogue::Help help(texts.path.string(), texts.text, problems);
  if (!problems.empty()) return {};
  std::size_t count = 0;
  const kel::Command* const table = kel::CommandTable(count);
  const Json::Value merged = catalogue::merge({table, count}, catalogue::listForms(), help);
  File transcript{docs / "examples.txt", {}};
  if (!problems.empty() || !read(transcript, problems)) return {};
  const catalogue::Examples examples =
      catalogue::readExamples(transcript.path.string(), transcript.text, merged, problems);
  if (!problems.empty()) return {};
  return {{docs / "commands.json", catalogue::document(merged)},
          {docs / "commands.md", catalogue::page(merged, examples)}};
}

void check(const File& wanted, Problems& problems) {
  File found{wanted.path, {}};
  if (!read(found, problems) || found.text == wanted.text) return;
  const auto [differs, end] =
      std::mismatch(wanted.text.begin(), wanted.text.end(), found.text.begin(), found.text.end());
  const auto line = 1 + std::count(wanted.text.begin(), differs, '\n');
  problems.push_back(
      wanted.path.string() + ":" + std::to_string(line) +
      ": is not what the command table, the help texts and the examples make of it; build the target 'catalogue'");
}

void write(const File& wanted, Problems& problems) {
  std::ofstream out(wanted.path, std::ios::binary);
  out << wanted.text << std::flush;
  if (!out) problems.push_back(wanted.path.string() + ": " + std::strerror(errno));
}

int run(int argc, char** argv) {
  CLI::App app("Writes commands.json and commands.md from the command table, commands.help.json and examples.txt.");
  std::filesystem::path docs;
  bool checkOnly = false;
  app.add_flag("--check", checkOnly, "Write nothing; fail when the files differ from what would be written");
  app.add_option("DOCS", docs, "Folder of the four files")->required()->check(CLI::ExistingDirectory);
  CLI11_PARSE(app, argc, argv);

  Problems problems;
  for (const File& file : made(docs, problems)) {
    if (checkOnly) {
      check(file, problems);
    } else {
      write(file, problems);
    }
  }
  for (const std::string& problem : problems) std::cerr << problem << "\n";
  return problems.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 1;
  }
}
