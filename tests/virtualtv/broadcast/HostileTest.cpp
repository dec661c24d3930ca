// SPDX-License-Identifier: MIT
// Streams made to do harm: the scanner reads all of them, limits what it keeps, and reports what it leaves out.
#include <gtest/gtest.h>
#include <malloc.h>

#include "virtualtv/broadcast/Broadcast.h"

namespace broadcast_tests {
namespace {

using virtualtv::broadcast::Findings;
using virtualtv::broadcast::ProgramMap;
using virtualtv::broadcast::Scan;
using virtualtv::broadcast::Scanner;

constexpr int pidCount = 8192;
constexpr std::size_t megabyte = 1'000'000;

/// Feeds a scanner and measures the memory that it holds after each part. The parts themselves are not counted.
class Load {
 public:
  void feed(const Stream& stream) {
    const std::size_t others = allocated();
    scanner_.feed(stream.bytes);
    bytes_ += static_cast<std::ptrdiff_t>(allocated()) - static_cast<std::ptrdiff_t>(others);
    most_ = std::max(most_, bytes_);
  }
  Scan finish() {
    scanner_.endStream();
    return scanner_.finish();
  }
  std::size_t most() const { return static_cast<std::size_t>(most_); }

 private:
  static std::size_t allocated() { return ::mallinfo2().uordblks; }

  Scanner scanner_;
  std::ptrdiff_t bytes_ = 0;
  std::ptrdiff_t most_ = 0;
};

TEST(Hostile, EndlessServicesAreKeptUpToANumber) {
  Load load;
  int made = 0;
  Stream all;
  for (int network = 0; network < 3; ++network) {
    for (int stream = 0; stream < 2700; ++stream) {
      Stream part;
      Blob body;
      for (int at = 0; at < 3; ++at) body = body + described(++made % 65536, 1, "Coast", std::string(250, 'a'));
      part.add(0x11, services(stream, network, body, false));
      load.feed(part.filler(4));
    }
  }
  const Scan found = load.finish();
  EXPECT_EQ(found.services.size(), Findings::mostServices);
  EXPECT_NE(problems(found).back().find("beyond the number that is kept, left out"), std::string::npos);
  EXPECT_LT(load.most(), 30 * megabyte);
}

TEST(Hostile, MapsOnAllPidsThatPointEverywhereAreKeptUpToANumber) {
  Load load;
  Stream stream;
  for (int first = 1; first < 8000; first += 250) {
    std::vector<std::pair<int, int>> maps;
    for (int at = first; at < first + 250; ++at) maps.emplace_back(at, at % (pidCount - 1));
    stream.add(0x00, programs(2, maps, {.section = first / 250, .last = 31}));
  }
  load.feed(stream);
  Blob everywhere;
  for (int at = 0; at < 3; ++at) {
    Blob languages;
    for (int letter = 0; letter < 60; ++letter) languages = languages + text("eng") + Blob{0};
    everywhere = everywhere + elementary(0x03, 1 + 2730 * at, descriptor(0x0A, languages));
  }
  for (int program = 1; program < 8000; ++program) {
    Stream part;
    part.add(program % (pidCount - 1), programMap(program, everywhere));
    load.feed(part);
  }
  const Scan found = load.finish();
  EXPECT_EQ(found.services.size(), 8000U);
  EXPECT_EQ(found.services[0].audio.size(), ProgramMap::mostTracks);
  EXPECT_GT(found.problems.count(), found.problems.kept().size());
  EXPECT_LT(load.most(), 70 * megabyte);
}

TEST(Hostile, SectionsWithoutEndOnAllPidsTakeOneSectionEach) {
  Load load;
  Stream stream;
  for (int first = 0; first < pidCount; first += 250) {
    std::vector<std::pair<int, int>> maps;
    for (int at = first; at < std::min(first + 250, pidCount); ++at) maps.emplace_back(at + 1, at);
    stream.add(0x00, programs(2, maps, {.section = first / 250, .last = 32}));
  }
  load.feed(stream);
  for (int round = 0; round < 24; ++round) {
    Stream part;
    for (int pid = 1; pid < pidCount - 1; ++pid) {
      part.lose(pid, round).packet(pid, round == 0 ? Blob{0, 0x02, 0xBF, 0xFE} : Blob(184, 0x11), round == 0);
    }
    load.feed(part);
  }
  EXPECT_LT(load.most(), 70 * megabyte);
  EXPECT_EQ(load.finish().services.size(), static_cast<std::size_t>(pidCount));
}

TEST(Hostile, DescriptorsThatRunOverHurtNothing) {
  for (const auto& [table, pid] : {std::pair(0x00, 0x00),
                                   {0x02, 100},
                                   {0x40, 0x10},
                                   {0x42, 0x11},
                                   {0x46, 0x11},
                                   {0x4E, 0x12},
                                   {0xC8, 0x1FFB},
                                   {0xC9, 0x1FFB}}) {
    for (const std::uint8_t fill : Blob{0x00, 0x01, 0x48, 0x7F, 0xFF}) {
      Stream stream;
      stream.add(0x00, programs(2, {{1, 100}}));
      for (std::size_t length = 0; length < 90; ++length) stream.add(pid, section(table, 1, Blob(length, fill)));
      EXPECT_GE(scan(stream.bytes).packets, 91U);  // the sanitizers report reads beyond the end
    }
  }
}

TEST(Hostile, TablesThatChangeWithoutEndAreReadWithoutEnd) {
  Load load;
  for (int round = 0; round < 2400; ++round) {
    Stream part;
    part.add(0x00, programs(2, {{1, 100 + round % 50}}, {.version = round % 32}));
    part.add(100 + round % 50, programMap(1, elementary(0x03, 300), {}, {.version = round % 32}));
    load.feed(part);
  }
  EXPECT_LT(load.most(), megabyte);
  EXPECT_EQ(load.finish().services.size(), 1U);
}

}  // namespace
}  // namespace broadcast_tests
