// SPDX-License-Identifier: MIT
#include "shell/Recording.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <regex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "set/Knobs.h"
#include "shell/Check.h"
#include "shell/Files.h"
#include "shell/Transcript.h"
#include "virtualtv/broadcast/Broadcast.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

namespace fs = std::filesystem;

/// A set whose inputs are all recorded.
class RecordingTest : public ::testing::Test {
 protected:
  std::string file() const { return (folder / "rec.txt").string(); }
  device::Device& device() { return television->device; }
  void record() {
    recording.emplace(device(), file(), [this](const std::string& error) { errors.push_back(error); });
  }
  void end() { recording.reset(); }
  /// What was recorded, without the times.
  std::string recorded() {
    device().loop().turn();
    return std::regex_replace(readFile(file()), std::regex("# \\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z\n"),
                              "");
  }
  /// Checks the recording as `emp-window check` does.
  CheckedFile checked() {
    const device::DeviceAside aside(television->app);
    return checkTranscript(television->app, file(), false);
  }
  void expectPassed() {
    const CheckedFile result = checked();
    EXPECT_TRUE(result.passed()) << result.error << result.diff << readFile(file());
  }
  void expectRefusal(const std::string& reason) {
    try {
      record();
      ADD_FAILURE() << "it is recorded";
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), "cannot record to " + file() + ": " + reason);
    }
  }

  TemporaryDirectory folder;
  std::unique_ptr<support::Assembly<TestApp>> television = std::make_unique<support::Assembly<TestApp>>();
  std::vector<std::string> errors;
  std::optional<Recording> recording;
};

TEST_F(RecordingTest, TellsCommandsAndTheirRepliesOfAllSessions) {
  record();
  {
    Session own(device(), folder.path());
    own.run("int 1");
    own.run("lines a b");
    device::Session client(device(), "c0ffee-1");
    std::string reply;
    client.execute({"+x", "", "it's", "a\nb\x01"}, false, reply);
    client.execute({"any", "1", "2", "3", "4", "5"}, true, reply);
    own.run("refuse 7");
  }
  end();
  EXPECT_EQ(recorded(),
            "> .recorded\n> .engine main\n> int 1\nint 1\n> lines a b\nascii |\n| a\n| b\\\n"
            "# Engines of session c0ffee-1 are called 1:NAME.\n> .engine 1:main\n"
            "> '+x' '' 'it'\\''s' $'a\\nb\\001'\nempty\n>+ any 1 2 3 4 5\nascii any,1,2,3,4,5\n"
            "> .engine main\n> refuse 7\nrefused int 7\n> .close 1:main\n> .close main\n");
  expectPassed();
}

TEST_F(RecordingTest, TellsOfScansOfFilesAndRemarksOnOthers) {
  const broadcast_tests::Blob bytes = broadcast_tests::oneService().bytes;
  test::write(folder / "news.ts", {bytes.begin(), bytes.end()});
  record();
  Session own(device(), folder.path());
  own.run(".scan news.ts --import --add");
  device().import(std::vector<std::string>{}, broadcast_tests::scan(bytes), false);
  end();
  const std::string text = recorded();
  EXPECT_NE(text.find("> .scan news.ts --import --add\n  NUMBER "), std::string::npos) << text;
  EXPECT_NE(
      text.find("\n# imported 1 service: 0 added, 0 changed, 81 gone, from a broadcast that a client sent and that "
                "is not kept\n"),
      std::string::npos)
      << text;
  expectPassed();
}

TEST_F(RecordingTest, TellsWhenItHappened) {
  record();
  Session(device(), folder.path()).run(".set region 7");
  end();
  const std::string text = readFile(file());
  EXPECT_TRUE(
      std::regex_match(text, std::regex("> \\.recorded\n# 2\\d{3}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z\n"
                                        "> \\.set region 7\n")))
      << text;
}

TEST_F(RecordingTest, TellsEnginesWhenTheyAreOpenedAndClosedAndWhoCalls) {
  record();
  device::Session client(device(), "a-1");
  client.setApplication({"app", "w i"});
  device().setSetting("opened", 1);
  std::string reply;
  client.execute({"app"}, false, reply);
  client.setApplication({"other", ""});
  client.use("se:cond");
  client.reopen();
  client.use("main");
  client.execute({"app"}, false, reply);
  device().restart();
  client.execute({"app"}, false, reply);
  device().reset();
  client.execute({"app"}, false, reply);
  end();
  EXPECT_EQ(recorded(),
            "> .recorded\n> .vconf set opened int 1\n"
            "# Engines of session a-1 are called 1:NAME.\n> .engine 1:main\n> .app app 'w i'\n> app\nascii app\n"
            "> .app other ''\n> .engine 1:se:cond\n> .close 1:se:cond\n> .engine 1:se:cond\n"
            "> .engine 1:main\n> app\nascii other\n> .close 1:main\n> .close 1:se:cond\n> .restart\n"
            "> .engine 1:main\n> app\nascii other\n> .close 1:main\n> .reset\n"
            "> .engine 1:main\n> .app other ''\n> app\nascii other\n");
  expectPassed();
}

TEST_F(RecordingTest, TellsWhatIsDoneToTheSet) {
  record();
  Session session(device(), folder.path());
  device::Session client(device(), "a-1");
  seam::Fault fault = seam::parseFault({"vconf_get_str", "nth=2", "always", "result=a\nb"});
  fault.engine = client.key("main");
  device().addFault(fault);
  for (const char* line :
       {".fault vconf_get_int engine=main times=2 result=-1", ".fault clear 2", ".set main.source 17",
        ".set main.source x", ".get main", ".vconf set $'k\\x00\\n' str \"it's\"", ".vconf unset $'k\\x00\\n'",
        ".vconf unset k", ".fault clear", ".nosuch", "bad 'quote"}) {
    session.run(line);
  }
  end();
  EXPECT_EQ(recorded(),
            "> .recorded\n# Engines of session a-1 are called 1:NAME.\n"
            "> .fault vconf_get_str nth=2 always engine=1:main $'result=a\\nb'\n"
            "> .fault vconf_get_int times=2 engine=main result=-1\n> .fault clear 2\n> .set main.source 17\n"
            "> .vconf set $'k\\000\\n' str 'it'\\''s'\n> .vconf unset $'k\\000\\n'\n> .fault clear 1\n");
  expectPassed();
}

TEST_F(RecordingTest, KeepsListsAndSnapshotsBesideIt) {
  record();
  Session session(device(), folder.path());
  test::write(folder / "a list", smallList);
  session.run(".snapshot s.json");
  session.run(".import 'a list' --add --encoding ISO-8859-15");
  ImportOptions options;
  options.format = import::formatNamed("vdr");
  device().import("name of a client", smallList, options);
  session.run(".import s.json");
  session.run(".restore s.json");
  session.run(".restore 'a list'");
  end();
  EXPECT_EQ(recorded(),
            "> .recorded\n> .import ./rec.txt.d/1.list --add --encoding=ISO-8859-15\n"
            "./rec.txt.d/1.list:2: \"no channel\" has 1 of the 13 fields of a service\n"
            "imported 2 services: 2 added, 0 changed, 0 gone; 1 line could not be read\n"
            "> .import ./rec.txt.d/2.list --format=vdr\n"
            "./rec.txt.d/2.list:2: \"no channel\" has 1 of the 13 fields of a service\n"
            "imported 2 services: 0 added, 0 changed, 81 gone; 1 line could not be read\n"
            "> .restore ./rec.txt.d/3.json\n");
  EXPECT_EQ(readFile(folder / "rec.txt.d/1.list"), smallList);
  EXPECT_EQ(readFile(folder / "rec.txt.d/3.json"), readFile(folder / "s.json"));
  expectPassed();
  test::write(folder / "rec.txt.d/2.list", "changed");
  EXPECT_FALSE(checked().passed());
}

TEST_F(RecordingTest, StartsWithTheSetAsItIs) {
  setKnob(television->tv(), "country", "9");
  Storage other;
  record();
  Session session(device(), folder.path());
  session.run(".set region 3");
  const std::string shown = session.run(".get country").front();
  end();
  EXPECT_EQ(recorded(), "> .recorded\n> .restore ./rec.txt.d/1.json\n> .set region 3\n");
  test::write(file(), readFile(file()) + "> .get country\n" + shown + "\n");
  EXPECT_EQ(shown, "country = 9");
  expectPassed();
}

TEST_F(RecordingTest, AFreshStateDirectoryNeedsNoSnapshot) {
  television.reset();
  television = std::make_unique<support::Assembly<TestApp>>(folder / "state");
  record();
  end();
  EXPECT_EQ(recorded(), "> .recorded\n");
  EXPECT_FALSE(fs::exists(folder / "rec.txt.d"));
}

TEST_F(RecordingTest, IsForItsOwnerAlone) {
  const mode_t before = ::umask(0);
  record();
  Session(device(), folder.path()).run(".reset");
  device().restore(television->tv().snapshot());
  end();
  ::umask(before);
  for (const auto& [name, mode] : {std::pair("rec.txt", 0600U), {"rec.txt.d", 0700U}, {"rec.txt.d/1.json", 0600U}}) {
    struct stat what {};
    ASSERT_EQ(::stat((folder / name).c_str(), &what), 0) << name;
    EXPECT_EQ(what.st_mode & 07777U, mode) << name;
  }
}

TEST_F(RecordingTest, NeverReplacesWhatIsThere) {
  fs::create_directory(folder / "rec.txt.d");
  expectRefusal(file() + ".d is there already");
  EXPECT_FALSE(fs::exists(file()));
  fs::remove(folder / "rec.txt.d");
  fs::create_symlink("elsewhere", file());
  expectRefusal("File exists");
  fs::remove(file());
  test::write(file(), "kept");
  expectRefusal("File exists");
  EXPECT_EQ(readFile(file()), "kept");
  fs::remove(file());
  fs::create_directory(file());
  expectRefusal("File exists");
}

TEST_F(RecordingTest, EndsWhereItCantBeWrittenAndCanBeReplayedUpToThere) {
  const std::string told = test::inChild([&]() -> std::string {
    record();
    Session session(device(), folder.path());
    session.run("int 1");
    device().loop().turn();
    std::signal(SIGXFSZ, SIG_IGN);
    test::limitFileSize(fs::file_size(file()) + 60);
    session.run("echo 012345678901234567890123456789012345678901234567890123456789");
    device().loop().turn();
    const bool isServed = session.run("int 2") == Lines{"int 2"};
    device().loop().turn();
    end();
    return errors.size() == 1 && isServed ? errors.front() : "not told once";
  });
  EXPECT_EQ(told, "cannot record to " + file() + ": File too large; the recording has ended");
  EXPECT_EQ(recorded(), "> .recorded\n> .engine main\n> int 1\nint 1\n");
  expectPassed();
}

TEST_F(RecordingTest, TellsOfServicesThatAreEdited) {
  record();
  device().editService("#2", "rename", "Mine and yours");
  device().editService("#3", "remove", "");
  end();
  EXPECT_EQ(recorded(), "> .recorded\n> .service #2 rename 'Mine and yours'\n> .service #3 remove\n");
  expectPassed();
}

TEST_F(RecordingTest, EndsWhereAListCantBeKept) {
  record();
  test::write(folder / "rec.txt.d", "in the way");
  device().import("list", smallList, {});
  device().setKnob("region", "3");
  end();
  EXPECT_EQ(recorded(), "> .recorded\n");
  EXPECT_EQ(errors,
            std::vector<std::string>{"cannot record to " + file() + ".d: File exists; the recording has ended"});
}

TEST_F(RecordingTest, TellsOfACommandThatCouldNotBeRun) {
  record();
  Session session(device(), folder.path());
  session.run("throw");
  television->app.opens = false;
  session.run(".engine other");
  television->app.opens = true;
  session.run("int 1");
  end();
  EXPECT_EQ(recorded(), "> .recorded\n> .engine main\n# could not be run: throw\n> int 1\nint 1\n");
  expectPassed();
}

TEST_F(RecordingTest, InputsMayBeLongerThanAPersonTypesThem) {
  record();
  const std::string text(longestLine + 1, 'x');
  {
    device::Session client(device(), "a-1");
    std::string reply;
    client.execute({"ascii", text}, false, reply);
  }
  end();
  expectPassed();
  test::write(file(), "> .engine x\n> ascii " + text + "\nascii " + text + "\n");
  EXPECT_EQ(checked().error, file() + ":2: the line has more than 1 MB");
}

TEST_F(RecordingTest, IdleFaultsAndUnknownOperationsFailOtherTranscriptsAlone) {
  const std::string idle =
      "> .fault vconf_set_int result=-1\n> .get latency.Nothing\nerror: there is no operation "
      "'Nothing'\n> .restart\n";
  test::write(file(), "> .recorded\n" + idle);
  expectPassed();
  test::write(file(), "> .set region 1\n> .recorded\n" + idle);
  EXPECT_EQ(checked().findings.size(), 2U);
}

TEST_F(RecordingTest, WhatIsRecordedIsSharedWithNobodyElse) {
  record();
  end();
  Session session(device(), folder.path());
  session.run("int 1");
  EXPECT_EQ(recorded(), "> .recorded\n");
  EXPECT_FALSE(device().isHeard());
}

}  // namespace
}  // namespace virtualtv::shell
