// SPDX-License-Identifier: MIT
// Knobs of the secondary TV stack, which shows the ISP source.
#include "services/ListText.h"
#include "set/KnobParts.h"

namespace virtualtv::knobparts {

namespace {

template <auto member>
std::string getSwitch(Tv& tv, const Parts&) {
  return onOff(tv.state().isp.*member);
}
void setPresent(Tv& tv, const Parts&, const std::string& value) {
  const bool present = onOrOff(value);
  tv.adjust([=](TvState& state) { state.isp.present = present; });
}

std::string getIspPicture(Tv& tv, const Parts&) {
  const SecondaryStack& isp = tv.state().isp;
  return std::to_string(isp.width) + "x" + std::to_string(isp.height);
}
void setIspPicture(Tv& tv, const Parts&, const std::string& value) {
  const auto size = lengthsIn<2>(value, {'x'}, "WIDTHxHEIGHT");
  tv.adjust([&](TvState& state) {
    state.isp.width = size[0];
    state.isp.height = size[1];
  });
}

template <auto list>
std::string getIspList(Tv& tv, const Parts&) {
  return textOf(tv.state().isp.*list);
}
template <auto list, auto read>
void setIspList(Tv& tv, const Parts&, const std::string& value) {
  auto tracks = read(value);
  tv.adjust([&](TvState& state) { state.isp.*list = std::move(tracks); });
}

template <auto member>
std::string getIspInUse(Tv& tv, const Parts&) {
  return std::to_string(tv.state().isp.inUse.*member);
}
template <auto member>
void setIspInUse(Tv& tv, const Parts&, const std::string& value) {
  const int position = text::requireNumber<int>(value);
  tv.adjust([=](TvState& state) { state.isp.inUse.*member = position; });
}

constexpr std::array ispTable{
    Knob{"isp.present", "on or off", "whether the secondary TV stack can be reached",
         getSwitch<&SecondaryStack::present>, setPresent},
    Knob{"isp.shown", "", "whether the secondary TV stack shows the ISP source", getSwitch<&SecondaryStack::shown>,
         nullptr},
    Knob{"isp.picture", "WIDTHxHEIGHT", "size of the ISP source's picture, pixels", getIspPicture, setIspPicture},
    Knob{"isp.audio", "tracks or none", "audio tracks of the ISP source, as in service.ID.audio",
         getIspList<&SecondaryStack::audio>, setIspList<&SecondaryStack::audio, readAudioTracks>},
    Knob{"isp.audio_in_use", "number", "position of the ISP source's audio track in use, counted from 0",
         getIspInUse<&TracksInUse::audio>, setIspInUse<&TracksInUse::audio>},
    Knob{"isp.subtitles", "tracks or none",
         "subtitles of the ISP source, as in service.ID.subtitles; KIND may also be teletext-subtitle; sorted by kind",
         getIspList<&SecondaryStack::subtitles>, setIspList<&SecondaryStack::subtitles, readIspSubtitles>},
    Knob{"isp.subtitle_in_use", "number", "position of the ISP source's subtitle in use, counted from 0; -1 for none",
         getIspInUse<&TracksInUse::subtitle>, setIspInUse<&TracksInUse::subtitle>},
};

}  // namespace

std::span<const Knob> ispKnobs() {
  return ispTable;
}

}  // namespace virtualtv::knobparts
