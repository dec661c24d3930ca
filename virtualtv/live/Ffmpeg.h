// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "live/Playing.h"

namespace virtualtv::live {

/// Finds the program `ffmpeg` in the directories of PATH. @throws std::runtime_error `ffmpeg is not installed`.
std::string ffmpeg();

/// The arguments for playing a recording, open as descriptor 3, as fragmented MP4 on standard output. The recording
/// loops, unless subtitles are drawn into the picture: then it plays once. H.264 video without drawn subtitles is
/// passed through; all other video is scaled to 960 x 540 pixels.
std::vector<std::string> playingArguments(const Playing& playing);

}  // namespace virtualtv::live
