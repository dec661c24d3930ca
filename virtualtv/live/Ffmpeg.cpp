// SPDX-License-Identifier: MIT
#include "live/Ffmpeg.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

namespace virtualtv::live {

namespace {

using Words = std::vector<std::string>;

void append(Words& words, std::initializer_list<std::string> more) {
  words.insert(words.end(), more.begin(), more.end());
}

/// A stream of the recording, by its PID.
std::string stream(int pid) {
  return "0:i:" + std::to_string(pid);
}

/// The filter for video that is not passed through.
std::string drawn(const Playing& playing) {
  const std::string size = "scale=960:540,setsar=1";
  const std::string picture = "[" + stream(playing.footage.video) + "]yadif=deint=interlaced," + size;
  if (playing.subtitle == 0) return picture + "[shown]";
  return picture + "[picture];[" + stream(playing.subtitle) + "]" + size + "[text];[picture][text]overlay[shown]";
}

}  // namespace

std::string ffmpeg() {
  const char* const path = std::getenv("PATH");
  std::string_view left = path == nullptr ? "" : path;
  while (!left.empty()) {
    const std::string_view directory = left.substr(0, left.find(':'));
    left.remove_prefix(std::min(directory.size() + 1, left.size()));
    const std::filesystem::path program = std::filesystem::path(directory) / "ffmpeg";
    std::error_code unknown;
    if (directory.starts_with('/') && std::filesystem::is_regular_file(program, unknown) &&
        ::access(program.c_str(), X_OK) == 0) {
      return program;
    }
  }
  throw std::runtime_error("ffmpeg is not installed");
}

Words playingArguments(const Playing& playing) {
  // Allow neither playlists nor other files, which a transport stream does not need. Unlike a pipe, the descriptor can
  // be reopened and is seekable.
  Words words{"-nostdin", "-hide_banner", "-nostats", "-loglevel", "error"};
  append(words, {"-protocol_whitelist", "file,pipe"});
  // With subtitles ffmpeg must not loop, as it draws none after the first pass. The viewer starts it again instead.
  if (playing.subtitle == 0) append(words, {"-stream_loop", "-1"});
  append(words, {"-f", "mpegts", "-i", "/dev/fd/3"});
  if (playing.footage.type == streamOfH264 && playing.subtitle == 0) {
    append(words, {"-map", stream(playing.footage.video), "-c:v", "copy"});
  } else {
    append(words, {"-filter_complex", drawn(playing), "-map", "[shown]", "-c:v", "libx264", "-preset", "ultrafast",
                   "-tune", "zerolatency", "-g", "25", "-pix_fmt", "yuv420p"});
  }
  // Re-encode the sound, to fill gaps where the recording loops. Copied sound would break off there.
  if (playing.audio != 0) {
    append(words, {"-map", (stream(playing.audio) + "?"), "-c:a", "aac", "-b:a", "128k", "-ac", "2", "-af",
                   "aresample=async=1000"});
  }
  append(words, {"-map_metadata", "-1", "-movflags", "empty_moov+default_base_moof+frag_keyframe", "-frag_duration",
                 "500000", "-f", "mp4", "pipe:1"});
  return words;
}

}  // namespace virtualtv::live
