// SPDX-License-Identifier: MIT
// The recording on a window's screen, as clients receive it.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "channels/ImportList.h"
#include "services/ServiceStore.h"
#include "shell/Files.h"
#include "shell/Scan.h"
#include "virtualtv/net/Film.h"
#include "virtualtv/net/Served.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::net {
namespace {

/// Default options with one change.
template <typename Change>
Options with(Change change) {
  Options options;
  change(options);
  return options;
}

constexpr std::size_t some = 300'000;  // bytes; "One" has about 800,000 in two seconds
constexpr std::size_t few = 25'000;    // bytes; "Two" has few, since its picture stands still
constexpr int hdmi = 31;

class PlayTest : public ::testing::Test {
 protected:
  explicit PlayTest(Options options = {}) : served(std::move(options)) {
    served.onDevice([](device::Device& device) {
      const auto read = [](const std::string& file, const shell::TakeBlock& take) {
        shell::readFileInBlocks(file, file, take);
      };
      device.import({film()}, shell::scanFiles({film()}, read), false, {{film()}, true});
    });
  }

  void tune(WindowId window, ServiceKey key) {
    served.onDevice([&](device::Device& device) { EXPECT_TRUE(device.tv().tune(window, key)); });
  }
  /// Shows "Two" in the picture-in-picture window.
  void bringPip() {
    served.onDevice([](device::Device& device) { EXPECT_TRUE(device.tv().switchSource(WindowId::pip, SOURCE_TV, 2)); });
  }
  void play(const std::string& path, bool isTrusted) {
    served.onDevice([&](device::Device& device) {
      Service service = *device.tv().services().read(1);
      service.footage = Footage{path, 256, streamOfH264, isTrusted};
      device.tv().import({service}, true);
    });
  }
  /// Copies the recording to another file. The set trusts "One" to play from the first file only.
  std::string copy() const {
    test::write(elsewhere / "copy.ts", test::contentOf(film()));
    return (elsewhere / "copy.ts").string();
  }
  /// The reason why the main window's recording does not play.
  std::string refusal() {
    const Viewer viewer(served.port());
    EXPECT_EQ(viewer.head.status, 503);
    EXPECT_EQ(viewer.head.headers.at("content-type"), "text/plain; charset=utf-8");
    return viewer.head.body;
  }

  const test::TemporaryDirectory elsewhere;
  Served served;
};

TEST_F(PlayTest, PlaysWhatTheWindowShowsOverAndOver) {
  Viewer viewer(served.port());
  EXPECT_EQ(viewer.head.status, 200);
  EXPECT_TRUE(viewer.head.headers.at("content-type").starts_with("video/mp4; codecs=\"avc1.42c0"));
  EXPECT_TRUE(viewer.head.headers.at("content-type").ends_with(",mp4a.40.2\""));
  EXPECT_EQ(viewer.head.headers.at("transfer-encoding"), "chunked");
  EXPECT_EQ(viewer.head.headers.at("cache-control"), "no-store");
  const std::string mp4 = viewer.read(3'000'000);
  EXPECT_EQ(tracksOf(mp4), "h264|320|180\naac\n");
  EXPECT_GT(lengthOf(mp4), 5);
  EXPECT_GT(countOf("moof", mp4), 8U);
  EXPECT_EQ(mp4.substr(4, 4), "ftyp");
}

TEST_F(PlayTest, TheTrackInUseIsHeard) {
  EXPECT_GT(toneIn(Viewer(served.port()).read(some), 440), 0.9);
  Viewer viewer(served.port());
  served.onDevice([](device::Device& device) { EXPECT_TRUE(device.tv().selectAudio(WindowId::main, 1)); });
  EXPECT_TRUE(viewer.ends());
  EXPECT_GT(toneIn(Viewer(served.port()).read(some), 880), 0.9);
}

TEST_F(PlayTest, WhatIsNotInH264IsTranscoded) {
  bringPip();
  Viewer viewer(served.port(), "pip");
  EXPECT_EQ(viewer.head.status, 200);
  const std::string mp4 = viewer.read(some);
  EXPECT_EQ(tracksOf(mp4), "h264|960|540\naac\n");
  EXPECT_GT(toneIn(mp4, 600), 0.9);
}

TEST_F(PlayTest, SubtitlesInUseAreDrawnIntoThePicture) {
  tune(WindowId::main, 2);
  const std::string without = Viewer(served.port()).read(few);
  EXPECT_LT(static_cast<unsigned char>(pixelIn(without, 480, 480)[0]), 100);
  served.onDevice([](device::Device& device) { EXPECT_TRUE(device.tv().selectSubtitle(WindowId::main, 0)); });
  Viewer viewer(served.port());
  const std::string with = viewer.read(few);
  EXPECT_EQ(tracksOf(with), "h264|960|540\naac\n");
  EXPECT_GT(static_cast<unsigned char>(pixelIn(with, 480, 480)[0]), 220);
  EXPECT_LT(static_cast<unsigned char>(pixelIn(with, 480, 435)[0]), 220);
  EXPECT_TRUE(viewer.ends());  // after the last picture
}

TEST_F(PlayTest, EndsWhenTheWindowShowsAnotherServiceAndOnlyThen) {
  Viewer viewer(served.port());
  bringPip();
  Viewer other(served.port(), "pip");
  EXPECT_FALSE(viewer.piece().empty());
  tune(WindowId::main, 2);
  EXPECT_TRUE(viewer.ends());
  EXPECT_FALSE(other.piece().empty());
  served.onDevice([](device::Device& device) { device.restart(); });
  EXPECT_EQ(Viewer(served.port()).head.status, 200);
  served.onDevice([](device::Device& device) { device.reset(); });
  EXPECT_TRUE(other.ends());
  EXPECT_TRUE(comesTo(0, ::getpid()));
}

TEST_F(PlayTest, ChildrenGoWithTheirViewers) {
  {
    const Viewer viewer(served.port());
    EXPECT_EQ(childrenOf(::getpid()).size(), 1U);
    bringPip();
    const Viewer another(served.port(), "pip");
    EXPECT_EQ(childrenOf(::getpid()).size(), 2U);
  }
  EXPECT_TRUE(comesTo(0, ::getpid()));
  Viewer viewer(served.port());
  viewer.wire.reset();
  EXPECT_TRUE(comesTo(0, ::getpid()));
}

TEST_F(PlayTest, ChildrenGoWithTheServer) {
  const Viewer viewer(served.port());
  served.end();
  served.wait();
  EXPECT_TRUE(childrenOf(::getpid()).empty());
}

TEST_F(PlayTest, MakesNoMoreThanIsRead) {
  const Viewer viewer(served.port(), "main", 4096);
  const int child = childrenOf(::getpid()).at(0);
  const auto written = [child] {
    std::ifstream file("/proc/" + std::to_string(child) + "/io");
    std::string name;
    long long count = 0;
    while (file >> name >> count && name != "wchar:") {
    }
    return count;
  };
  long long before = -1;
  for (int unchanged = 0; unchanged < 20; std::this_thread::sleep_for(std::chrono::milliseconds(20))) {
    const long long now = written();
    unchanged = now == before ? unchanged + 1 : 0;
    before = now;
    ASSERT_LT(now, 8'000'000);
  }
  EXPECT_GT(before, 50'000);
}

TEST_F(PlayTest, AnswersHeadAndOlderClients) {
  Wire wire(served.port());
  wire.sendRequest("HEAD /live/main HTTP/1.1\nHost: localhost\n");
  const HttpResponse response = wire.response(false);
  EXPECT_EQ(response.status, 200);
  EXPECT_TRUE(response.headers.at("content-type").starts_with("video/mp4; "));
  EXPECT_TRUE(comesTo(0, ::getpid()));
  EXPECT_EQ(wire.ask("POST /live/main HTTP/1.1\nHost: localhost\nContent-Length: 0\n").headers.at("allow"),
            "GET, HEAD");
  Wire old(served.port());
  old.sendRequest("GET /live/main HTTP/1.0\nHost: localhost\n");
  EXPECT_EQ(old.readUntil("\r\n\r\n").find("chunked"), std::string::npos);
  EXPECT_EQ(old.read(8).substr(4), "ftyp");
  tune(WindowId::main, 2);
  old.readAll();
}

TEST_F(PlayTest, EndsWhenTheWindowShowsAnInput) {
  Viewer viewer(served.port());
  EXPECT_EQ(viewer.head.status, 200);
  served.onDevice([](device::Device& device) { EXPECT_TRUE(device.tv().switchSource(WindowId::main, hdmi)); });
  EXPECT_TRUE(viewer.ends());
  const Viewer after(served.port());
  EXPECT_EQ(after.head.status, 404);
  EXPECT_EQ(after.head.body, "an input is on the screen\n");
}

TEST_F(PlayTest, TellsWhenThereIsNothingToPlay) {
  Wire wire(served.port());
  const std::string request = "GET /live/main HTTP/1.1\nHost: localhost\n";
  served.onDevice([](device::Device& device) { device.tv().deactivate(WindowId::main); });
  HttpResponse response = wire.ask(request);
  EXPECT_EQ(response.status, 404);
  served.onDevice([](device::Device& device) { device.reset(); });
  response = wire.ask(request);
  EXPECT_EQ(response.status, 404);
  EXPECT_EQ(response.body, "the service on the screen comes from no recording\n");
  served.onDevice([](device::Device& device) { device.tv().removeServices(); });
  EXPECT_EQ(wire.ask(request).body, "no service with a picture is on the screen\n");
}

TEST_F(PlayTest, TellsWhyARecordingDoesNotPlay) {
  const test::TemporaryDirectory folder;
  play((folder / "gone.ts").string(), true);
  EXPECT_EQ(refusal(), "cannot read gone.ts: No such file or directory\n");
  play(folder.path().string(), true);
  EXPECT_TRUE(refusal().ends_with(": Is a directory\n") || refusal().ends_with(": not a regular file\n"));
  ASSERT_EQ(::mkfifo((folder / "pipe.ts").c_str(), 0600), 0);
  play((folder / "pipe.ts").string(), true);
  EXPECT_EQ(refusal(), "cannot read pipe.ts: not a regular file\n");
  test::write(folder / "broken.ts", std::string(100'000, 'x'));
  play((folder / "broken.ts").string(), true);
  EXPECT_TRUE(refusal().starts_with("cannot play broken.ts: ")) << refusal();
  EXPECT_TRUE(comesTo(0, ::getpid()));
}

TEST_F(PlayTest, TellsThatFfmpegIsNotInstalled) {
  const std::string path = std::getenv("PATH");
  served.onDevice([](device::Device&) { ::setenv("PATH", "/nowhere", 1); });
  EXPECT_EQ(refusal(), "ffmpeg is not installed\n");
  served.onDevice([&](device::Device&) { ::setenv("PATH", path.c_str(), 1); });
  EXPECT_EQ(Viewer(served.port()).head.status, 200);
}

TEST_F(PlayTest, PlaysNothingForClientsUnlessTheyReachFiles) {
  const std::string file = copy();
  play(file, false);
  EXPECT_EQ(refusal(), "cannot play copy.ts: clients reach no files unless the server is started with --files\n");
}

class PlayWithFilesTest : public PlayTest {
 protected:
  PlayWithFilesTest() : PlayTest(with([](Options& options) { options.files = folder().path(); })) {
    test::write(folder() / "a.ts", test::contentOf(film()));
  }
  ~PlayWithFilesTest() override { served.end(); }
  static test::TemporaryDirectory& folder() {
    static test::TemporaryDirectory made;
    return made;
  }
};

TEST_F(PlayWithFilesTest, PlaysWhatIsBeneathTheDirectoryAlone) {
  for (const std::string& path : {std::string("a.ts"), (folder() / "a.ts").string()}) {
    play(path, false);
    EXPECT_EQ(Viewer(served.port()).head.status, 200) << path;
  }
  std::filesystem::create_symlink(folder() / "a.ts", folder() / "link.ts");
  ASSERT_EQ(::mkfifo((folder() / "pipe.ts").c_str(), 0600), 0);
  const std::string leadsOut = "it leads out of the directory, or over a link\n";
  for (const std::string& path : {std::string("link.ts"), copy(), "../" + copy(), std::string("/etc/passwd")}) {
    play(path, false);
    EXPECT_TRUE(refusal().ends_with(": " + leadsOut)) << path << refusal();
  }
  play("pipe.ts", false);
  EXPECT_EQ(refusal(), "cannot read pipe.ts: not a regular file\n");
}

class PlayBoundTest : public PlayTest {
 protected:
  PlayBoundTest() : PlayTest(with([](Options& options) { options.limits.mostPlays = 2; })) {}
};

TEST_F(PlayBoundTest, OnlySoManyPlayAtATime) {
  const Viewer one(served.port());
  {
    const Viewer two(served.port());
    EXPECT_EQ(two.head.status, 200);
    EXPECT_EQ(refusal(), "as many recordings are playing as may be: 2\n");
    EXPECT_EQ(childrenOf(::getpid()).size(), 2U);
  }
  EXPECT_TRUE(comesTo(1, ::getpid()));
  EXPECT_EQ(Viewer(served.port()).head.status, 200);
}

class PlayImpatientTest : public PlayTest {
 protected:
  PlayImpatientTest()
      : PlayTest(with([](Options& options) { options.limits.forPicture = std::chrono::milliseconds(1); })) {}
};

TEST_F(PlayImpatientTest, WaitsOnlySoLongForAPicture) {
  EXPECT_EQ(refusal(), "cannot play film.ts: ffmpeg makes nothing of it\n");
  EXPECT_TRUE(comesTo(0, ::getpid()));
}

TEST_F(PlayTest, PagesOfOthersMayNotEmbedIt) {
  for (const char* const from : {"cross-site", "same-site"}) {
    EXPECT_EQ(Viewer(served.port(), "main", 0, "Sec-Fetch-Site: " + std::string(from) + "\n").head.status, 403) << from;
  }
  EXPECT_TRUE(childrenOf(::getpid()).empty());
  EXPECT_EQ(Viewer(served.port(), "main", 0, "Sec-Fetch-Site: same-origin\n").head.status, 200);
}

class PlayWithTokenTest : public PlayTest {
 protected:
  PlayWithTokenTest() : PlayTest(with([](Options& options) { options.access.token = "secret"; })) {}
};

TEST_F(PlayWithTokenTest, AsksForTheToken) {
  EXPECT_EQ(Viewer(served.port()).head.status, 401);
  EXPECT_EQ(Viewer(served.port(), "main?token=secret").head.status, 401);
  EXPECT_EQ(Viewer(served.port(), "main", 0, "Authorization: Bearer secret\n").head.status, 200);
}

}  // namespace
}  // namespace virtualtv::net
