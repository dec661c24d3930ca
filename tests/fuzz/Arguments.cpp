// SPDX-License-Identifier: MIT
// Runs command lines of any words, with any standard input. The program must end with a documented status, and report
// unusable arguments in one line. An input starts with the words, one per line, up to an empty line; the rest is the
// standard input.
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "EmpAppWindow.h"
#include "fuzz/support/Demand.h"
#include "program/Arguments.h"
#include "program/CommandLine.h"
#include "shell/Lines.h"
#include "virtualtv/support/Support.h"

namespace {

namespace fs = std::filesystem;
using fuzz::demand;
using virtualtv::program::ExitStatus;

/// Replaces a standard stream while this object exists.
template <typename Stream>
class Redirected {
 public:
  Redirected(Stream& stream, const std::string& content) : stream_(stream), text_(content) {
    stream_.clear();
    before_ = stream_.rdbuf(text_.rdbuf());
  }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;
  ~Redirected() { stream_.rdbuf(before_); }

  std::string text() const { return text_.str(); }

 private:
  Stream& stream_;
  std::stringstream text_;
  std::streambuf* before_;
};

/// The working folder. The environment makes the program look for a user's state in it.
struct Home {
  Home() {
    fs::current_path(folder.path());
    setenv("XDG_STATE_HOME", folder.path().c_str(), 1);
    // On a terminal the program would start a dialogue.
    if (std::freopen("/dev/null", "r", stdin) == nullptr) std::abort();
    fill();
  }

  void fill() const {
    virtualtv::test::write(folder / "list.conf", "One:578:B8M64:T:0:101:102=eng:103:0:281:8442:1051:0\n");
    virtualtv::test::write(folder / "t.txt", "> GetTVMode\nint 1\n");
  }
  void empty() const {
    for (const auto& entry : fs::directory_iterator(folder.path())) fs::remove_all(entry.path());
  }

  virtualtv::test::TemporaryDirectory folder;
};

/// True for words that name files outside the folder. They are not tried: such files may be endless, or belong to
/// somebody.
bool leadsElsewhere(std::string_view text) {
  return text.find('/') != text.npos || text.find("..") != text.npos;
}

ExitStatus run(std::vector<std::string>& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  kel::CEmpAppWindow app;
  return virtualtv::program::runCommandLine(static_cast<int>(words.size()), arguments.data(), app);
}

/// Only parses the arguments of a server: if started, it would listen on this machine and not end.
ExitStatus read(const std::vector<std::string>& words) {
  try {
    const kel::CEmpAppWindow app;
    static_cast<void>(virtualtv::program::readArguments({words.begin() + 1, words.end()}, app));
    return virtualtv::program::allWell;
  } catch (const std::invalid_argument& error) {
    std::cerr << "emp-window: " << virtualtv::shell::oneLine(error.what()) << "\n";
    return virtualtv::program::unusable;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content(reinterpret_cast<const char*>(data), size);
  if (leadsElsewhere(content)) return 0;
  const std::size_t end = content.find("\n\n");
  std::vector<std::string> words = virtualtv::shell::splitLines(content.substr(0, end));
  for (std::string& word : words)
    word.resize(std::strlen(word.c_str()));  // a word of a command line ends at the first zero byte
  words.insert(words.begin(), "emp-window");
  const std::string input(end == content.npos ? std::string_view() : content.substr(end + 2));

  static const Home home;
  ExitStatus status{};
  std::string told;
  {
    const Redirected in(std::cin, input);
    const Redirected out(std::cout, "");
    const Redirected err(std::cerr, "");
    const bool serves = std::find(words.begin(), words.end(), "serve") != words.end();
    status = serves ? read(words) : run(words);
    told = err.text();
  }
  demand(status >= virtualtv::program::allWell && status <= virtualtv::program::unusable,
         "status " + std::to_string(status));
  demand(status != virtualtv::program::unusable || told.find("emp-window: ") != told.npos, "unusable, without a word");
  demand(told.empty() || told.ends_with('\n'), "not whole lines: " + told);
  home.empty();
  home.fill();
  return 0;
}
