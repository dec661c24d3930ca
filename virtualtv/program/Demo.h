// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace virtualtv::program {

/// Creates the recording for demonstrations: three services, each with colour bars around its own colour and tones in
/// two languages. `ffmpeg` creates it at the first call; it is then kept in the user's cache.
/// @return its path. @throws std::runtime_error with a line for a person when it can't be created.
std::string demoRecording();

}  // namespace virtualtv::program
