#pragma once

#include <string>

namespace virtualtv::program {

/// The recording that the program makes for demonstrations: three services, each with colour bars around a colour of
/// its own, and tones in two languages. It is made by `ffmpeg` when it is wanted first, and stays in the user's cache.
/// @return its path. @throws std::runtime_error with a line for a person when it can't be made.
std::string demoRecording();

}  // namespace virtualtv::program
