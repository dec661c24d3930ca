#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "import/ServiceList.h"

namespace virtualtv::import {

// How the fields of a line of VDR's channels.conf are written. What can't be read is thrown as `Unreadable`.

/// Where a service comes from: a letter (S satellite, C cable, T terrestrial, A as broadcast in America, others for
/// inputs of other kinds), and for satellites a position as `orbitalSource` makes it.
struct VdrSource {
  char letter;
  std::optional<int> position;
};

/// Nothing when the text is no source.
std::optional<VdrSource> parseVdrSource(std::string_view text);

/// What the parameters tell of the things that a set keeps of services from a source.
struct VdrParameters {
  char polarisation = 0;
  int bandwidth = 0;  ///< kHz, 0 when unknown
  std::optional<Modulation> modulation;
  bool secondGeneration = false;
};

VdrParameters readVdrParameters(std::string_view text, char sourceLetter);

/// kHz. Satellites are written in MHz, the others in MHz, kHz or Hz, which the magnitude tells.
int readVdrFrequency(std::string_view text, char sourceLetter);

/// The video PID, 0 where the field names none.
int readVdrVideo(std::string_view text);

std::vector<AudioTrack> readVdrAudio(std::string_view text);

/// The subtitles stand behind the teletext PID, which is not looked at.
std::vector<SubtitleTrack> readVdrSubtitles(std::string_view text);

}  // namespace virtualtv::import
