// SPDX-License-Identifier: MIT
#include "program/Demo.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "live/Child.h"
#include "live/Ffmpeg.h"
#include "program/Desk.h"
#include "text/Units.h"

namespace virtualtv::program {

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

fs::path cacheDirectory() {
  if (const auto own = ownDirectory("XDG_CACHE_HOME", ".cache")) return *own;
  throw std::runtime_error("there is no place for the demo's recording: set XDG_CACHE_HOME or HOME");
}

/// Runs a program to its end. @return its last line on standard error; empty on success.
std::string complaintOf(const std::string& program, const Words& arguments) {
  live::Child child(program, arguments);
  std::string line;
  for (ssize_t count = -1; count != 0;) {
    pollfd waited{child.errors.get(), POLLIN, 0};
    ::poll(&waited, 1, -1);
    std::array<char, 1024> bytes{};
    count = ::read(child.errors.get(), bytes.data(), bytes.size());
    if (count > 0) line.append(bytes.data(), static_cast<std::size_t>(count));
  }
  while (line.ends_with('\n')) line.pop_back();
  line.erase(0, line.rfind('\n') + 1);
  if (child.wait() == 0) return {};
  return line.empty() ? "ffmpeg has failed" : text::printable(line);
}

struct DemoService {
  const char* name;
  const char* colour;
  const char* english;  ///< tone, Hz
  const char* german;
};

constexpr std::array<DemoService, 3> services{
    DemoService{"Demo Red", "red", "330", "660"},
    DemoService{"Demo Green", "green", "440", "880"},
    DemoService{"Demo Blue", "blue", "550", "1100"},
};

/// The arguments for ffmpeg. @param isNamed  true to draw the names into the pictures, which needs a font.
Words making(const fs::path& file, bool isNamed) {
  Words words{"-nostdin", "-y", "-loglevel", "error"};
  Words behind;
  const auto add = [](Words& to, std::initializer_list<std::string> more) { to.insert(to.end(), more); };
  for (std::size_t at = 0; at < services.size(); ++at) {
    const DemoService& service = services.at(at);
    std::string picture = "smptehdbars=s=960x540:r=25:d=8,drawbox=x=240:y=135:w=480:h=270:t=fill:color=";
    picture += service.colour;
    if (isNamed) picture += ",drawtext=fontsize=48:fontcolor=white:x=(w-tw)/2:y=160:text=" + std::string(service.name);
    const auto tone = [](const char* frequency) { return "sine=f=" + std::string(frequency) + ":r=48000:d=8"; };
    for (const std::string& source : {picture, tone(service.english), tone(service.german)}) {
      add(words, {"-f", "lavfi", "-i", source});
    }
    const std::size_t first = 3 * at;
    for (std::size_t input = first; input < first + 3; ++input) add(behind, {"-map", std::to_string(input)});
    add(behind, {"-metadata:s:a:" + std::to_string(2 * at), "language=eng"});
    add(behind, {"-metadata:s:a:" + std::to_string(2 * at + 1), "language=deu"});
    std::string program = "title=" + std::string(service.name) + ":program_num=" + std::to_string(at + 1);
    for (std::size_t input = first; input < first + 3; ++input) program += ":st=" + std::to_string(input);
    add(behind, {"-program", program});
  }
  words.insert(words.end(), behind.begin(), behind.end());
  add(words, {"-c:v", "libx264", "-preset", "ultrafast", "-g", "25", "-pix_fmt", "yuv420p", "-c:a", "mp2", "-b:a",
              "128k", "-metadata", "service_provider=emp-window", "-f", "mpegts", file.string()});
  return words;
}

}  // namespace

std::string demoRecording() {
  const fs::path file = cacheDirectory() / "demo-1.ts";
  if (fs::is_regular_file(file)) return file.string();
  const std::string ffmpeg = live::ffmpeg();
  fs::create_directories(file.parent_path());
  // Write to another name first, so that nobody finds an incomplete file.
  const fs::path made = file.string() + "." + std::to_string(::getpid());
  std::string complaint;
  for (const bool isNamed : {true, false}) {
    complaint = complaintOf(ffmpeg, making(made, isNamed));
    if (complaint.empty()) break;
  }
  std::error_code error;
  if (complaint.empty()) fs::rename(made, file, error);
  if (error) complaint = error.message();
  if (complaint.empty()) return file.string();
  fs::remove(made, error);
  throw std::runtime_error("cannot make the demo's recording: " + complaint);
}

}  // namespace virtualtv::program
