#pragma once

#include <string>
#include <vector>

#include "live/Playing.h"

namespace virtualtv::live {

/// Where the program `ffmpeg` is, by the directories in PATH. @throws std::runtime_error `ffmpeg is not installed`.
std::string ffmpeg();

/// What it is told so that it plays a recording, which it has open as descriptor 3, as fragmented MP4 on its standard
/// output: over and over, but where subtitles are drawn into the picture only to its end. Pictures in H.264 are passed
/// through where no subtitles are drawn into them; others become 960 x 540 pixels large.
std::vector<std::string> playingArguments(const Playing& playing);

}  // namespace virtualtv::live
