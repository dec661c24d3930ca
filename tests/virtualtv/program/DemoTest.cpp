// SPDX-License-Identifier: MIT
// `demo`, and its recordings when the program is killed while they play.
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "virtualtv/net/Film.h"
#include "virtualtv/program/Program.h"

namespace virtualtv::shell {
namespace {

namespace fs = std::filesystem;

class DemoTest : public ProgramTest {
 protected:
  DemoTest() { cache(); }  // here, not first in the program's process

  /// The folder of the recording, which is made once for all tests.
  static fs::path cache() {
    static const test::TemporaryDirectory made;
    return made.path();
  }
  static unsigned short portOf(Running& server) {
    const std::string line = server.line();
    return static_cast<unsigned short>(std::stoi(line.substr(line.rfind(':') + 1)));
  }
  static bool isGone(int process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string word;
    for (int at = 0; at < 3 && file >> word;) ++at;
    return !file || word == "Z";
  }

  const std::vector<std::string> words{"demo", "--listen", "127.0.0.1:0"};
  const std::function<void()> prepare = [] { ::setenv("XDG_CACHE_HOME", cache().c_str(), 1); };
};

TEST_F(DemoTest, ServesServicesThatPlay) {
  Running server(words, prepare);
  const unsigned short port = portOf(server);
  const std::string body = net::requestOf(1, "tv.services");
  const std::string services = net::Wire(port).ask(net::postOf(body), body).body;
  for (const char* name : {"Demo Red", "Demo Green", "Demo Blue"}) {
    EXPECT_NE(services.find(name), std::string::npos) << services;
  }
  const std::string mp4 = net::Viewer(port).read(200'000);
  EXPECT_EQ(net::tracksOf(mp4), "h264|960|540\naac\n");
  EXPECT_GT(net::toneIn(mp4, 330), 0.9);
  const auto made = fs::last_write_time(cache() / "emp-window/demo-1.ts");
  Running again(words, prepare);
  EXPECT_EQ(net::Viewer(portOf(again), "pip").head.status, 404);
  EXPECT_EQ(fs::last_write_time(cache() / "emp-window/demo-1.ts"), made);
}

TEST_F(DemoTest, WhatPlaysEndsWhenTheProgramIsKilled) {
  Running server(words, prepare);
  const net::Viewer viewer(portOf(server));
  EXPECT_EQ(viewer.head.status, 200);
  const int process = net::childrenOf(::getpid()).at(0);
  const int child = net::childrenOf(process).at(0);
  EXPECT_FALSE(isGone(child));
  server.send(SIGKILL);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!isGone(child) && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  EXPECT_TRUE(isGone(child));
}

TEST_F(DemoTest, WantsFfmpeg) {
  Running server(words, [this] {
    ::setenv("XDG_CACHE_HOME", folder.path().c_str(), 1);
    ::setenv("PATH", "/nowhere", 1);
  });
  const Ending ending = server.wait();
  EXPECT_EQ(ending.status, 2);
  EXPECT_EQ(ending.err, "emp-window: ffmpeg is not installed\n");
  EXPECT_EQ(ending.out, "");
}

}  // namespace
}  // namespace virtualtv::shell
