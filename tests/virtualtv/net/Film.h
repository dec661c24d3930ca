// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "virtualtv/net/Wire.h"

// Recordings made by `ffmpeg`, and analyses of the streams played from them.

namespace virtualtv::net {

/// A recording of two seconds, made once: "One" in H.264 with tones of 440 Hz in English and 880 Hz in German, "Two" in
/// MPEG-2 with 600 Hz.
std::string film();

/// The output of a program. Fails the test when the program fails.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments);
/// A line `codec_name|width|height` of each track of a stream of MP4, as `ffprobe` says.
std::string tracksOf(const std::string& mp4);
/// The duration of a stream in seconds.
double lengthOf(const std::string& mp4);
/// The share of a tone in the sound of a stream.
double toneIn(const std::string& mp4, double frequency);
/// The brightness of a pixel in the tenth picture of a stream, as a byte.
std::string pixelIn(const std::string& mp4, int x, int y);
/// The number of occurrences of a text in another one.
std::size_t countOf(const std::string& wanted, const std::string& text);

/// A client that watches a window.
class Viewer {
 public:
  /// @param buffer  see `Wire`. @param lines  additional lines of the head.
  explicit Viewer(unsigned short port, const std::string& window = "main", int buffer = 0,
                  const std::string& lines = "");

  HttpResponse head;  ///< head of the answer; with a body when the request is refused
  /// The next piece; empty at the end.
  std::string piece();
  /// Reads at least this many bytes.
  std::string read(std::size_t bytes);
  /// True when the answer ends regularly.
  bool ends();

  Wire wire;
};

/// Ids of the living children of a process.
std::vector<int> childrenOf(int process);
/// Waits until there are this many. @return false on a timeout.
bool comesTo(std::size_t children, int process);

}  // namespace virtualtv::net
