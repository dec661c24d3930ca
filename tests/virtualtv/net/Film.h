// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "virtualtv/net/Wire.h"

// Recordings made by `ffmpeg`, and analyses of the streams played from them.

namespace virtualtv::net {

/// A recording of two seconds, made once for all tests: "One" in H.264 with tones of 440 Hz in English and 880 Hz in
/// German, "Two" in MPEG-2 with a tone of 600 Hz.
std::string film();

/// The output of a program. Fails the test when the program fails.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments);
/// The tracks of an MP4 stream as `ffprobe` prints them, a line `codec_name|width|height` for each.
std::string tracksOf(const std::string& mp4);
/// The duration of a stream in seconds.
double lengthOf(const std::string& mp4);
/// The share of a tone in the sound of a stream. @param frequency  in Hz.
double toneIn(const std::string& mp4, double frequency);
/// The brightness of a pixel in the tenth picture of a stream, as a byte.
std::string pixelIn(const std::string& mp4, int x, int y);
/// The number of occurrences of a text in another one.
std::size_t countOf(const std::string& wanted, const std::string& text);

/// A client that watches a window.
class Viewer {
 public:
  /// @param buffer  see `Wire`. @param lines  additional header lines.
  explicit Viewer(unsigned short port, const std::string& window = "main", int buffer = 0,
                  const std::string& lines = "");

  HttpResponse head;  ///< header of the answer; it has a body when the request is refused
  /// The next chunk; empty at the end.
  std::string piece();
  /// Reads at least this many bytes.
  std::string read(std::size_t bytes);
  /// True when the answer ends as it should.
  bool ends();

  Wire wire;
};

/// Ids of the living children of a process.
std::vector<int> childrenOf(int process);
/// Waits until there are this many. @return false on a timeout.
bool comesTo(std::size_t children, int process);

}  // namespace virtualtv::net
