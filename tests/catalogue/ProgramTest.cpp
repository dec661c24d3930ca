// SPDX-License-Identifier: MIT
// The program reports when the committed files differ from those that it would write.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

struct Outcome {
  int status = -1;
  std::string said;  ///< its standard output and standard error
};

/// Works on a copy of the four files of the documentation. The path has a blank, as people's paths do.
class ProgramTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string folder = (fs::temp_directory_path() / "scratch docs XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    docs_ = folder;
    for (const char* name : {"commands.help.json", "examples.txt", "commands.json", "commands.md"}) {
      fs::copy_file(fs::path(CATALOGUE_DOCS) / name, docs_ / name);
    }
  }
  void TearDown() override { removeDocs(); }

  void removeDocs() { fs::remove_all(docs_); }

  std::string path(const std::string& name) const { return (docs_ / name).string(); }

  std::string read(const std::string& name) const {
    std::ifstream in(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void write(const std::string& name, const std::string& text) const { std::ofstream(path(name)) << text; }

  /// Replaces a text in a file, which must contain it.
  void change(const std::string& name, const std::string& from, const std::string& to) const {
    std::string text = read(name);
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << name << " holds no " << from;
    write(name, text.replace(at, from.size(), to));
  }

  Outcome run(const std::string& arguments) const {
    const std::string command = std::string(CATALOGUE_PROGRAM) + " " + arguments + " '" + docs_.string() + "' 2>&1";
    Outcome outcome;
    FILE* const pipe = popen(command.c_str(), "r");
    std::array<char, 4096> part{};
    while (pipe != nullptr && std::fgets(part.data(), part.size(), pipe) != nullptr) outcome.said += part.data();
    if (pipe != nullptr) outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
  }

  void expectDrift(const std::string& start) const {
    const Outcome checked = run("--check");
    EXPECT_EQ(checked.status, 1);
    EXPECT_EQ(checked.said.rfind(start, 0), 0U) << checked.said;
  }

 private:
  fs::path docs_;
};

TEST_F(ProgramTest, TheFilesThatAreKeptAreWhatItWrites) {
  const Outcome checked = run("--check");
  EXPECT_EQ(checked.said, "");
  EXPECT_EQ(checked.status, 0);
}

TEST_F(ProgramTest, AChangedJsonFileIsNoticed) {
  change("commands.json", "\"name\" : \"SetWindow\"", "\"name\" : \"SetWindows\"");
  expectDrift(path("commands.json") + ":");
}

TEST_F(ProgramTest, AChangedPageIsNoticedWithItsLine) {
  write("commands.md", "<!-- Mine. -->\n");
  expectDrift(path("commands.md") + ":1: is not what ");
}

TEST_F(ProgramTest, AFileThatIsCutOrHasMoreIsNoticed) {
  write("commands.md", read("commands.md") + "More.\n");
  expectDrift(path("commands.md") + ":");
  run("");
  write("commands.json", "");
  expectDrift(path("commands.json") + ":1: is not what ");
}

TEST_F(ProgramTest, AMissingFileIsNoticed) {
  fs::remove(path("commands.json"));
  expectDrift(path("commands.json") + ": can't be read as a file");
}

TEST_F(ProgramTest, AChangedHelpTextIsNoticedUntilTheFilesAreWritten) {
  change("commands.help.json", "\"Returns the window's TV mode.\"", "\"Returns the mode.\"");
  expectDrift(path("commands.json") + ":");
  EXPECT_EQ(run("").status, 0);
  EXPECT_EQ(run("--check").status, 0);
  EXPECT_NE(read("commands.json").find("\"Returns the mode.\""), std::string::npos);
  EXPECT_NE(read("commands.md").find("Returns the mode."), std::string::npos);
}

TEST_F(ProgramTest, ACommandWithoutAHelpTextIsNoticedAndNothingWritten) {
  change("commands.help.json", "\"GetTVMode\": {", "\"GetTVModes\": {");
  const std::string before = read("commands.json");
  for (const char* arguments : {"--check", ""}) {
    const Outcome ran = run(arguments);
    EXPECT_EQ(ran.status, 1);
    EXPECT_NE(ran.said.find(": 'GetTVMode' is a command and has no help text\n"), std::string::npos) << ran.said;
    EXPECT_NE(ran.said.find(": 'GetTVModes' has a help text and is no command\n"), std::string::npos) << ran.said;
  }
  EXPECT_EQ(read("commands.json"), before);
}

TEST_F(ProgramTest, AChangedExampleIsNoticedUntilTheFilesAreWritten) {
  change("examples.txt", "int 209", "int 210");
  expectDrift(path("commands.md") + ":");
  EXPECT_EQ(run("").status, 0);
  EXPECT_EQ(run("--check").status, 0);
  EXPECT_NE(read("commands.md").find("\n> GetSignalStrength\nint 210\n"), std::string::npos);
}

TEST_F(ProgramTest, ACommandWithoutAnExampleIsNoticed) {
  change("examples.txt", "# GetTVMode\n", "# GetTVModes\n");
  const Outcome ran = run("--check");
  EXPECT_EQ(ran.status, 1);
  EXPECT_NE(ran.said.find("examples.txt: 'GetTVMode' has no example\n"), std::string::npos) << ran.said;
  EXPECT_NE(ran.said.find(": the example of 'GetTVModes' is named after no command\n"), std::string::npos) << ran.said;
}

TEST_F(ProgramTest, AnExampleThatDoesNotRunItsCommandIsNoticed) {
  change("examples.txt", "# GetTVMode\n", "# SetTVMode\n");
  const Outcome ran = run("--check");
  EXPECT_NE(ran.said.find(": the example of 'SetTVMode' does not run it\n"), std::string::npos) << ran.said;
}

TEST_F(ProgramTest, ASecondExampleOfACommandIsNoticed) {
  write("examples.txt", read("examples.txt") + "\n# Show\n> .reset\n> Show 1\nint 1\n");
  const Outcome ran = run("--check");
  EXPECT_NE(ran.said.find(": the example of 'Show' is its second one\n"), std::string::npos) << ran.said;
}

TEST_F(ProgramTest, ExamplesThatAreNoTranscriptAreNoticed) {
  write("examples.txt", "int 1\n");
  const Outcome ran = run("--check");
  EXPECT_EQ(ran.status, 1);
  EXPECT_EQ(ran.said, path("examples.txt") + ":1: output before the first '>' line\n");
}

TEST_F(ProgramTest, AParameterTooManyIsNoticed) {
  change("commands.help.json", "\"parameters\": [\"index\"]", "\"parameters\": [\"index\", \"index\"]");
  const Outcome checked = run("--check");
  EXPECT_EQ(checked.status, 1);
  EXPECT_NE(checked.said.find("' has 1 parameters, its help describes 2\n"), std::string::npos) << checked.said;
}

TEST_F(ProgramTest, AFolderThatIsNotThereIsRefused) {
  removeDocs();
  const Outcome checked = run("--check");
  EXPECT_NE(checked.status, 0);
  EXPECT_NE(checked.said.find("scratch docs"), std::string::npos) << checked.said;
}

}  // namespace
