// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "import/ListBuilder.h"

namespace virtualtv::import {

// Readers for the fields of a line in VDR's channels.conf. Invalid fields throw `Unreadable`.

/// The source of a service: a letter (S satellite, C cable, T terrestrial, A broadcast in America, others for other
/// kinds of inputs), and for satellites a position as returned by `orbitalSource`.
struct VdrSource {
  char letter;
  std::optional<int> position;
};

/// Returns nothing when the text is not a source.
std::optional<VdrSource> parseVdrSource(std::string_view text);

/// The values of the parameters that the set uses.
struct VdrParameters {
  char polarisation = 0;
  int bandwidth = 0;  ///< kHz, 0 when unknown
  std::optional<Modulation> modulation;
  bool secondGeneration = false;
};

VdrParameters readVdrParameters(std::string_view text, char sourceLetter);

/// Returns kHz. Files have MHz for satellites; for other sources MHz, kHz or Hz, as the magnitude shows.
int readVdrFrequency(std::string_view text, char sourceLetter);

/// The video PID; 0 for none.
int readVdrVideo(std::string_view text);

std::vector<AudioTrack> readVdrAudio(std::string_view text);

/// Reads the subtitles after the teletext PID, which is ignored.
std::vector<SubtitleTrack> readVdrSubtitles(std::string_view text);

}  // namespace virtualtv::import
