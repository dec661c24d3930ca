// SPDX-License-Identifier: MIT
#include "virtualtv/broadcast/Broadcast.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

class ScanCommandTest : public SessionTest {
 protected:
  void make(const std::string& name, const broadcast_tests::Blob& bytes) const {
    test::write(folder / name, {bytes.begin(), bytes.end()});
  }
};

const Lines scannedTable{"  NUMBER  KIND        IDS    AUDIO  SUBTITLES  FLAGS  PROVIDER  NAME",
                         "  -       television  3:2:1  eng    -          -      \"Coast\"   \"News\"",
                         "1 service in 3 packets"};

TEST_F(ScanCommandTest, PrintsWhatIsInARecording) {
  make("news.ts", broadcast_tests::oneService().bytes);
  EXPECT_EQ(lines(".scan news.ts"), scannedTable);
  EXPECT_TRUE(run(".scan news.ts --json").starts_with("{\"packets\":3,"));
  EXPECT_EQ(run(".get services"), "services = 81");
}

TEST_F(ScanCommandTest, ImportsOrAddsWhatIsInARecording) {
  make("news.ts", broadcast_tests::oneService().bytes);
  Lines added = scannedTable;
  added.emplace_back("imported 1 service: 1 added, 0 changed, 0 gone");
  EXPECT_EQ(lines(".scan news.ts --import --add"), added);
  EXPECT_EQ(run(".get services"), "services = 82");
  EXPECT_EQ(lines(".scan news.ts --import").back(), "imported 1 service: 0 added, 0 changed, 81 gone");
}

TEST_F(ScanCommandTest, SaysWhatIsWrong) {
  broadcast_tests::Stream stream = broadcast_tests::oneService();
  stream.packet(101, {}, false).lose(101, 2).packet(101, {}, false);
  make("gap.ts", stream.bytes);
  EXPECT_EQ(lines(".scan gap.ts").front(), "gap.ts: packet 5: PID 101: 1 gap between packets");
  make("words", broadcast_tests::text("no broadcast"));
  EXPECT_EQ(lines(".scan words --import"), (Lines{"0 services in 0 packets", "error: words: no service in it"}));
  EXPECT_EQ(run(".get services"), "services = 81");
  EXPECT_EQ(run(".scan none"), "error: cannot read none: No such file or directory");
  EXPECT_EQ(run(".scan"), "error: usage: .scan FILE... [--json] [--import [--add]]");
}

}  // namespace
}  // namespace virtualtv::shell
