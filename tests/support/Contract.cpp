#include "support/Contract.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

namespace support {

namespace {

std::set<std::string>& noted() {
  static std::set<std::string> lines;
  return lines;
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    switch (letter) {
      case '\n':
        result += "\\n";
        break;
      case '\t':
        result += "\\t";
        break;
      case '\033':
        result += "\\033";
        break;
      case '"':
      case '\\':
        result += '\\';
        [[fallthrough]];
      default:
        result += letter;
    }
  }
  return result;
}

/// Writes what was noted when the tests of the process are over.
class Writer : public ::testing::Environment {
 public:
  void TearDown() override {
    const char* folder = std::getenv("EMP_WINDOW_LOG_CONTRACT");
    if (folder == nullptr) return;
    std::ofstream file(std::filesystem::path(folder) / (std::to_string(::getpid()) + ".tsv"), std::ios::app);
    for (const std::string& line : noted()) file << line << '\n';
    EXPECT_TRUE(file.flush().good()) << "can't write to " << folder;
  }
};

[[maybe_unused]] const ::testing::Environment* const writer = ::testing::AddGlobalTestEnvironment(new Writer);

}  // namespace

std::string contractLine(const virtualtv::framework::LogLine& line) {
  const bool fixedText = line.format == "%s";  // it came out of a table of texts
  return escaped(fixedText ? line.text : line.format) + "\t" + std::to_string(line.level) + "\t" + line.function;
}

void noteForContract(const virtualtv::framework::LogLine& line) {
  noted().insert(contractLine(line));
}

}  // namespace support
