// SPDX-License-Identifier: MIT
// The program on recordings of broadcasts.
#include "services/ServiceStore.h"
#include "set/Tv.h"
#include "virtualtv/broadcast/Broadcast.h"
#include "virtualtv/program/Program.h"

namespace virtualtv::shell {
namespace {

class ScanTest : public ProgramTest {
 protected:
  std::string recording(const std::string& name, const broadcast_tests::Blob& bytes) const {
    return made(name, {bytes.begin(), bytes.end()});
  }
  std::string oneService() const { return recording("news.ts", broadcast_tests::oneService().bytes); }
};

const std::string scannedTable =
    "  NUMBER  KIND        IDS    AUDIO  SUBTITLES  FLAGS  PROVIDER  NAME\n"
    "  -       television  3:2:1  eng    -          -      \"Coast\"   \"News\"\n"
    "1 service in 3 packets\n";

TEST_F(ScanTest, PrintsATableOfTheServicesAndLeavesTheSetAlone) {
  const Ending scanned = run({"scan", oneService()});
  EXPECT_EQ(scanned.out, scannedTable);
  EXPECT_EQ(scanned.err, "");
  EXPECT_EQ(scanned.status, 0);
  EXPECT_FALSE(std::filesystem::exists(state()));
}

TEST_F(ScanTest, PrintsADocument) {
  EXPECT_EQ(run({"scan", "--json", oneService()}).out,
            broadcast_tests::document(broadcast_tests::scan(broadcast_tests::oneService().bytes)) + "\n");
}

TEST_F(ScanTest, ReadsStandardInput) {
  oneService();
  EXPECT_EQ(runOn(folder / "news.ts", {"scan", "-"}).out, scannedTable);
}

TEST_F(ScanTest, TellsProblemsOnStandardError) {
  broadcast_tests::Stream stream = broadcast_tests::oneService();
  stream.packet(101, {}, false).lose(101, 2).packet(101, {}, false);
  const std::string damaged = recording("damaged.ts", stream.bytes);
  EXPECT_EQ(run({"scan", damaged}).err, damaged + ": packet 5: PID 101: 1 gap between packets\n");
  EXPECT_EQ(run({"scan", oneService(), damaged}).err, "packet 5 of " + damaged + ": PID 101: 1 gap between packets\n");
}

TEST_F(ScanTest, PutsTheServicesOfSeveralFilesTogether) {
  broadcast_tests::Stream other;
  other.add(0x11, broadcast_tests::services(7, 3, broadcast_tests::described(1, 1, "Hills", "Hills"))).filler(2);
  const Ending scanned = run({"scan", oneService(), recording("hills.ts", other.bytes)});
  EXPECT_NE(scanned.out.find("2 services in 6 packets\n"), std::string::npos) << scanned.out;
}

TEST_F(ScanTest, WithoutAServiceIsAFailure) {
  const Ending scanned = run({"scan", made("words", "no broadcast")});
  EXPECT_EQ(scanned.out, "0 services in 0 packets\n");
  EXPECT_EQ(scanned.err, "emp-window: " + (folder / "words").string() + ": no service in it\n");
  EXPECT_EQ(scanned.status, 1);
}

TEST_F(ScanTest, OfWhatCannotBeReadIsAnError) {
  for (const std::string& file : {(folder / "none").string(), std::string("/")}) {
    const Ending scanned = run({"scan", oneService(), file});
    expectError(scanned, {"emp-window: cannot read " + file + ": "});
    EXPECT_EQ(scanned.status, 2);
    EXPECT_EQ(scanned.out, "");
  }
}

TEST_F(ScanTest, ImportsTheServices) {
  const Ending imported = run({"scan", "--import", oneService()});
  EXPECT_EQ(imported.out, scannedTable + "imported 1 service: 1 added, 0 changed, 81 gone\n");
  EXPECT_EQ(imported.status, 0);
  EXPECT_EQ(run({"exec", "GetCurrentChannel_Name"}).out, "unicode \"News\"\n");
  const Ending again = run({"scan", "--import", "--json", oneService()});
  EXPECT_EQ(again.err, "imported 1 service: 0 added, 0 changed, 0 gone\n");
  EXPECT_TRUE(again.out.starts_with("{\"packets\":3,")) << again.out;
}

TEST_F(ScanTest, KeepsWhereTheRecordingsAre) {
  const auto footage = [&] {
    Storage storage(folder / "xdg/emp-window");
    const Tv tv(storage);
    return tv.services().all().begin()->second.footage.value_or(Footage());
  };
  const std::string file = oneService();
  run({"scan", "--import", std::filesystem::proximate(file).string()});
  EXPECT_TRUE(std::filesystem::equivalent(footage().path, file)) << footage().path;
  EXPECT_TRUE(std::filesystem::path(footage().path).is_absolute());
  EXPECT_TRUE(footage().isTrusted);
  EXPECT_EQ(footage().video, 101);
  run({}, ".reset\n");
  runOn(file, {"scan", "--import", "-"});
  EXPECT_EQ(footage(), Footage());
  run({}, ".scan --import " + file + "\n");
  EXPECT_EQ(footage(), (Footage{file, 101, streamOfH264, true}));
}

TEST_F(ScanTest, AddsTheServices) {
  EXPECT_EQ(run({"scan", "--import", "--add", oneService()}).out,
            scannedTable + "imported 1 service: 1 added, 0 changed, 0 gone\n");
  EXPECT_EQ(run({}, ".get services\n").out, "> .get services\nservices = 82\n");
}

TEST_F(ScanTest, ShowsHowFarItIsOnATerminal) {
  const std::string big = (folder / "big.ts").string();
  made("big.ts", "");
  std::filesystem::resize_file(big, 3'000'000);
  OnTerminal terminal({"scan", big});
  EXPECT_NE(terminal.readUntil(" %").find(" MB, "), std::string::npos);
  EXPECT_NE(terminal.readUntil("no service in it").find("0 services in 0 packets"), std::string::npos);
  EXPECT_EQ(terminal.wait(), 1);
}

}  // namespace
}  // namespace virtualtv::shell
