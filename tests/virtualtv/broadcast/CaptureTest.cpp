// SPDX-License-Identifier: MIT
// Scans real captures and compares the services with those that third-party programs find in the same files. The
// captures are not part of this tree.
#include <gtest/gtest.h>
#include <json/json.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "services/ListText.h"
#include "virtualtv/broadcast/Broadcast.h"
#include "virtualtv/broadcast/Decoder.h"

namespace broadcast_tests {
namespace {

using virtualtv::broadcast::FoundService;
using virtualtv::broadcast::Scan;

/// Finds the captures in the folder `captures`, next to the folder of channel lists that the variable names.
class RealCapture : public testing::Test {
 protected:
  void SetUp() override {
    if (folder_ == nullptr || *folder_ == '\0')
      GTEST_SKIP() << "skipped: EMP_WINDOW_LISTS does not name a folder beside which real captures are";
  }

  std::string path(const std::string& file) const { return std::string(folder_) + "/../captures/" + file; }

  Blob load(const std::string& file) const {
    std::ifstream stream(path(file), std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  const char* folder_ = std::getenv("EMP_WINDOW_LISTS");
};

std::string lineOf(const FoundService& service) {
  return (service.number ? std::to_string(service.number->major) : "-") + " " + service.name + " " +
         virtualtv::textOf(service.audio);
}

TEST_F(RealCapture, OfATerrestrialMultiplexIsReadWhole) {
  const Scan found = scan(load("dtt-italy.ts"), 100'000);
  EXPECT_EQ(found.packets, 20'000U);
  EXPECT_EQ(problems(found), std::vector<std::string>{});
  ASSERT_EQ(found.services.size(), 26U);
  std::vector<std::string> carried;
  for (const FoundService& service : found.services) {
    if (service.isCarried) carried.push_back(lineOf(service));
    EXPECT_FALSE(service.name.empty());
    EXPECT_EQ(service.stream.network, 318);
  }
  EXPECT_EQ(carried, (std::vector<std::string>{"1 Rai 1 650:ita:mpeg:0:0,694:oth:mpeg:0:0,699:eng:mpeg:0:0",
                                               "2 Rai 2 651:ita:mpeg:0:0,695:oth:mpeg:0:0,696:eng:mpeg:0:0",
                                               "3 Rai 3 TGR Emilia Romagna 652:ita:mpeg:0:0,697:oth:mpeg:0:0",
                                               "48 Rai News 24 690:ita:mpeg:0:0", "100 Test HEVC main10 none",
                                               "701 Rai Radio1 653:und:mpeg:0:0", "702 Rai Radio2 654:und:mpeg:0:0",
                                               "703 Rai Radio3 655:und:mpeg:0:0"}));
  EXPECT_EQ(found.services[0].delivery.frequency, 498000);
  EXPECT_EQ(found.services[0].network, "Rai");
  ASSERT_TRUE(found.services[0].present);
  EXPECT_EQ(found.services[0].present->name, "Santa Messa dalla Chiesa di Sant'Andrea");
}

TEST_F(RealCapture, TellsAnIndependentDecoderTheSame) {
  const Blob bytes = load("dtt-italy.ts");
  std::vector<std::string> lines;
  for (const FoundService& service : scan(bytes).services) lines.push_back(decodedLine(service));
  std::sort(lines.begin(), lines.end());
  EXPECT_EQ(lines, decoded(bytes));
}

TEST_F(RealCapture, ThatIsDamagedIsReadAsFarAsItIsSound) {
  const Blob bytes = load("damaged.ts");
  const Scan found = scan(bytes, 1000);
  EXPECT_GE(found.packets, 290U);
  EXPECT_GT(found.problems.count(), 0U);
  EXPECT_EQ(found.services.size(), 0U);  // it has neither a program table nor a service table
  // A sound stream before or after the damaged one is found.
  const Blob sound = oneService().bytes;
  const Scan whole = scan(sound + bytes);
  ASSERT_EQ(whole.services.size(), 1U);
  EXPECT_EQ(whole.services[0].name, "News");
  EXPECT_EQ(scan(bytes + sound + sound).services.size(), 1U);
}

/// The programs that ffprobe finds: their names and the PIDs of their audio.
std::vector<std::string> probed(const std::string& file) {
  const std::string command = "ffprobe -v quiet -show_programs -of json '" + file + "'";
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  std::string text;
  for (int byte = 0; pipe != nullptr && (byte = std::fgetc(pipe)) != EOF;) text += static_cast<char>(byte);
  EXPECT_EQ(pipe == nullptr ? -1 : ::pclose(pipe), 0) << command;
  Json::Value document;
  std::istringstream(text) >> document;
  std::vector<std::string> lines;
  for (const Json::Value& program : document["programs"]) {
    std::string line = program["program_num"].asString() + " " + program["tags"]["service_name"].asString() + " " +
                       program["tags"]["service_provider"].asString();
    std::set<int> pids;
    for (const Json::Value& stream : program["streams"]) {
      if (stream["codec_type"] == "audio") pids.insert(std::stoi(stream["id"].asString(), nullptr, 16));
    }
    for (const int pid : pids) line += " " + std::to_string(pid);
    lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

TEST_F(RealCapture, TellsAPlayerTheSame) {
  if (std::system("command -v ffprobe >/dev/null") != 0) GTEST_SKIP() << "skipped: there is no ffprobe";
  std::vector<std::string> lines;
  for (const FoundService& service : scan(load("dtt-italy.ts")).services) {
    if (!service.isCarried) continue;
    std::string line = std::to_string(service.program) + " " + service.name + " " + service.provider;
    std::set<int> pids;
    for (const auto& track : service.audio) pids.insert(track.pid);
    for (const int pid : pids) line += " " + std::to_string(pid);
    lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  EXPECT_EQ(lines, probed(path("dtt-italy.ts")));
}

}  // namespace
}  // namespace broadcast_tests
