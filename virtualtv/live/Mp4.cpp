// SPDX-License-Identifier: MIT
#include "live/Mp4.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

namespace virtualtv::live {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t headOfBox = 8;       // length and name of a box, bytes
constexpr std::size_t mostHead = 1 << 20;  // bytes
constexpr std::size_t headOfList = 8;      // bytes of the list of codings before the first coding
constexpr std::size_t headOfPicture = 78;  // bytes of a video coding before its boxes

/// Reads the head of the box at the start of some bytes, which must be complete. @return the length of the box.
std::size_t lengthOf(Bytes bytes) {
  const std::size_t length =
      std::size_t{bytes[0]} << 24U | std::size_t{bytes[1]} << 16U | std::size_t{bytes[2]} << 8U | std::size_t{bytes[3]};
  if (length < headOfBox) throw std::invalid_argument("what ffmpeg makes is no fragmented MP4");
  return length;
}

std::string_view nameOf(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()) + 4, 4};
}

/// Calls `take` with the name and the content of each box.
template <typename Take>
void eachBox(Bytes bytes, Take take) {
  while (bytes.size() >= headOfBox) {
    const std::size_t length = std::min(lengthOf(bytes), bytes.size());
    take(nameOf(bytes), bytes.subspan(headOfBox, length - headOfBox));
    bytes = bytes.subspan(length);
  }
}

/// The content of the first box with a name; empty when there is none.
Bytes boxIn(Bytes bytes, std::string_view wanted) {
  Bytes found;
  eachBox(bytes, [&](std::string_view name, Bytes content) {
    if (found.empty() && name == wanted) found = content;
  });
  return found;
}

Bytes behind(Bytes bytes, std::size_t count) {
  return bytes.subspan(std::min(count, bytes.size()));
}

/// The codec of a track: `avc1` with its profile and level, or the audio codec; empty for others.
std::string codingOf(Bytes track) {
  Bytes list = track;
  for (const char* const name : {"mdia", "minf", "stbl", "stsd"}) list = boxIn(list, name);
  std::string coding;
  eachBox(behind(list, headOfList), [&](std::string_view name, Bytes content) {
    if (name == "mp4a") coding = "mp4a.40.2";
    if (name != "avc1") return;
    const Bytes settings = boxIn(behind(content, headOfPicture), "avcC");
    if (settings.size() < 4) return;
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "avc1.%02x%02x%02x", settings[1], settings[2], settings[3]);
    coding = text.data();
  });
  return coding;
}

}  // namespace

std::optional<std::size_t> lengthOfHead(Bytes start) {
  std::size_t at = 0;
  while (start.size() - at >= headOfBox) {
    const Bytes box = start.subspan(at);
    at += lengthOf(box);
    if (at > mostHead) throw std::invalid_argument("what ffmpeg makes is no fragmented MP4");
    if (at > start.size()) return std::nullopt;
    if (nameOf(box) == "moov") return at;
  }
  return std::nullopt;
}

std::string typeOf(Bytes head) {
  std::string picture;
  std::string sound;
  eachBox(boxIn(head, "moov"), [&](std::string_view name, Bytes track) {
    if (name != "trak") return;
    const std::string coding = codingOf(track);
    (coding.starts_with("avc1") ? picture : sound) = coding;
  });
  if (picture.empty()) throw std::invalid_argument("there is no picture in what ffmpeg makes of it");
  return "video/mp4; codecs=\"" + picture + (sound.empty() ? "" : "," + sound) + "\"";
}

}  // namespace virtualtv::live
