// SPDX-License-Identifier: MIT
#include "virtualtv/net/Film.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <numbers>
#include <thread>

#include "live/Child.h"
#include "live/Ffmpeg.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::net {

namespace {

using Words = std::vector<std::string>;

test::TemporaryDirectory& folder() {
  static test::TemporaryDirectory made;
  return made;
}

std::string kept(const std::string& mp4) {
  const std::filesystem::path file = folder() / "watched.mp4";
  test::write(file, mp4);
  return file.string();
}

void append(Words& words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
}

/// A number as bytes, in big-endian order.
std::string number(unsigned value, int bytes) {
  std::string text;
  while (bytes-- > 0) text += static_cast<char>(value >> (8U * static_cast<unsigned>(bytes)) & 0xFFU);
  return text;
}

/// Subtitles in the format of discs, which ffmpeg converts to the format of broadcasts: a white box of 240 x 60 pixels
/// at (360, 450) in a picture of 960 x 540, from the start to the end.
std::string subtitles() {
  const auto segment = [](unsigned kind, const std::string& body) {
    return "PG" + number(9000, 4) + number(0, 4) + number(kind, 1) + number(static_cast<unsigned>(body.size()), 2) +
           body;
  };
  const std::string place = number(360, 2) + number(450, 2);
  const std::string size = number(240, 2) + number(60, 2);
  std::string lines;
  for (int line = 0; line < 60; ++line) lines += number(0, 1) + number(0xC000U | 240U, 2) + number(1, 1) + number(0, 2);
  const std::string shown = number(0, 2) + number(0, 2) + place;
  const std::string picture = number(960, 2) + number(540, 2) + number(0x10, 1) + number(0, 2);
  return segment(0x16, picture + number(0x80, 1) + number(0, 2) + number(1, 1) + shown) +
         segment(0x17, number(1, 1) + number(0, 1) + place + size) +
         segment(0x14, number(0, 2) + "\x01\xEB\x80\x80\xFF") +
         segment(0x15,
                 number(0, 3) + number(0xC0, 1) + number(static_cast<unsigned>(lines.size()) + 4, 3) + size + lines) +
         segment(0x80, "");
}

}  // namespace

std::string film() {
  static const std::string made = [] {
    std::string file = folder() / "film.ts";
    test::write(folder() / "subtitles.sup", subtitles());
    Words words{"-v", "error"};
    for (const char* const source : {"testsrc2=s=320x180:r=25:d=2", "sine=440:d=2", "sine=880:d=2",
                                     "smptebars=s=720x576:r=25:d=2", "sine=600:d=2"}) {
      append(words, {"-f", "lavfi", "-i", source});
    }
    append(words, {"-i", folder() / "subtitles.sup"});
    for (const char* const track : {"0:v", "1:a", "2:a", "3:v", "4:a", "5:s"}) append(words, {"-map", track});
    append(words, {"-c:v:0", "libx264", "-preset", "ultrafast", "-g", "25", "-pix_fmt", "yuv420p", "-c:v:1",
                   "mpeg2video", "-c:a", "mp2", "-c:s", "dvbsub"});
    append(words, {"-metadata:s:a:0", "language=eng", "-metadata:s:a:1", "language=deu", "-metadata:s:s:0",
                   "language=eng", "-program", "title=One:program_num=1:st=0:st=1:st=2", "-program",
                   "title=Two:program_num=2:st=3:st=4:st=5", "-f", "mpegts", file});
    outputOf(live::ffmpeg(), words);
    return file;
  }();
  return made;
}

std::string outputOf(const std::string& program, const Words& arguments) {
  live::Child child(program, arguments);
  std::string output;
  std::string errors;
  const auto drain = [](int descriptor, std::string& into) {
    std::array<char, 65536> bytes{};
    for (;;) {
      const ssize_t count = ::read(descriptor, bytes.data(), bytes.size());
      if (count <= 0) return count == 0;
      into.append(bytes.data(), static_cast<std::size_t>(count));
    }
  };
  for (bool ended = false; !ended;) {
    std::array<pollfd, 2> waited{{{child.output.get(), POLLIN, 0}, {child.errors.get(), POLLIN, 0}}};
    ::poll(waited.data(), waited.size(), 10'000);
    ended = drain(child.output.get(), output);
    drain(child.errors.get(), errors);
  }
  EXPECT_EQ(child.wait(), 0) << errors;
  return output;
}

std::string tracksOf(const std::string& mp4) {
  return outputOf(std::filesystem::path(live::ffmpeg()).replace_filename("ffprobe"),
                  {"-v", "fatal", "-of", "csv=p=0:s=|", "-show_entries", "stream=codec_name,width,height", kept(mp4)});
}

double lengthOf(const std::string& mp4) {
  // The header holds no duration; the end of the last picture gives it.
  const std::string times = outputOf(
      std::filesystem::path(live::ffmpeg()).replace_filename("ffprobe"),
      {"-v", "fatal", "-of", "csv=p=0", "-select_streams", "v", "-show_entries", "packet=pts_time", kept(mp4)});
  double most = 0;
  for (std::size_t at = 0; at < times.size(); at = times.find('\n', at) + 1) {
    most = std::max(most, std::strtod(times.c_str() + at, nullptr));
  }
  return most;
}

double toneIn(const std::string& mp4, double frequency) {
  constexpr double rate = 8000;
  const std::string bytes = outputOf(
      live::ffmpeg(), {"-v", "fatal", "-i", kept(mp4), "-vn", "-ac", "1", "-ar", "8000", "-f", "f32le", "pipe:1"});
  std::vector<float> samples(bytes.size() / sizeof(float));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
  double real = 0;
  double imaginary = 0;
  double all = 0;
  const std::size_t count = std::min<std::size_t>(samples.size(), 8000);
  for (std::size_t at = 0; at < count; ++at) {
    const double angle = 2 * std::numbers::pi * frequency * static_cast<double>(at) / rate;
    const auto sample = static_cast<double>(samples[at]);
    real += sample * std::cos(angle);
    imaginary += sample * std::sin(angle);
    all += sample * sample;
  }
  if (count == 0 || all <= 0) return 0;
  return 2 * (real * real + imaginary * imaginary) / (static_cast<double>(count) * all);
}

std::string pixelIn(const std::string& mp4, int x, int y) {
  const std::string crop = "crop=1:1:" + std::to_string(x) + ":" + std::to_string(y) + ",format=gray";
  return outputOf(live::ffmpeg(), {"-v", "fatal", "-i", kept(mp4), "-vf", "format=gray," + crop, "-frames:v", "10",
                                   "-f", "rawvideo", "pipe:1"})
      .substr(9);
}

std::size_t countOf(const std::string& wanted, const std::string& text) {
  std::size_t count = 0;
  for (std::size_t at = text.find(wanted); at != std::string::npos; at = text.find(wanted, at + 1)) ++count;
  return count;
}

Viewer::Viewer(unsigned short port, const std::string& window, int buffer, const std::string& lines)
    : wire(port, buffer) {
  wire.sendRequest("GET /live/" + window + " HTTP/1.1\nHost: localhost\n" + lines);
  const std::string text = wire.readUntil("\r\n\r\n");
  head.status = std::stoi("0" + text.substr(std::min<std::size_t>(9, text.size()), 3));
  for (std::size_t at = text.find("\r\n") + 2; at < text.size();) {
    const std::size_t end = text.find("\r\n", at);
    const std::size_t colon = text.find(": ", at);
    if (end == at || colon > end) break;
    std::string name = text.substr(at, colon - at);
    for (char& letter : name) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    head.headers[name] = text.substr(colon + 2, end - colon - 2);
    at = end + 2;
  }
  const auto length = head.headers.find("content-length");
  if (length != head.headers.end()) head.body = wire.read(std::stoul(length->second));
}

std::string Viewer::piece() {
  const std::size_t size = std::stoul("0" + wire.readUntil("\r\n"), nullptr, 16);
  std::string bytes = size == 0 ? "" : wire.read(size);
  wire.read(2);
  return bytes;
}

std::string Viewer::read(std::size_t bytes) {
  std::string all;
  while (all.size() < bytes) {
    const std::string more = piece();
    if (more.empty()) break;
    all += more;
  }
  return all;
}

bool Viewer::ends() {
  constexpr int mostPieces = 2000;
  for (int count = 0; count < mostPieces; ++count) {
    if (piece().empty()) return wire.ask("GET /live/other HTTP/1.1\nHost: localhost\n").status == 404;
  }
  return false;
}

std::vector<int> childrenOf(int process) {
  std::vector<int> children;
  std::error_code gone;
  const std::filesystem::path tasks = "/proc/" + std::to_string(process) + "/task";
  for (const auto& task : std::filesystem::directory_iterator(tasks, gone)) {
    std::ifstream file(task.path() / "children");
    for (int child = 0; file >> child;) children.push_back(child);
  }
  return children;
}

bool comesTo(std::size_t children, int process) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (childrenOf(process).size() != children) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::yield();
  }
  return true;
}

}  // namespace virtualtv::net
