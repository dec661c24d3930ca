// The plug-in's audio tracks and subtitles, of the TV service or, while the platform notes that the ISP source is on
// screen, of the secondary stack; and the favourite groups of services. The stacks' documents differ: codes have a sign
// on the TV service only, which leaves a list without tracks out, and writes no document on failure.
#include "support/model/Documents.h"
#include "support/model/Plugin.h"
#include "support/model/Tracks.h"

namespace model {

namespace {

using Data = TCServiceData;

/// How a stack writes a code.
using Writer = std::string (*)(int);

std::string text(int number) {
  return std::to_string(number);
}

/// As the secondary stack does, which knows no sign.
std::string unsignedText(int number) {
  return std::to_string(static_cast<std::uint32_t>(number));
}

/// The service that the TV service's lists are of: they ask by the id of the one on screen, which another service, in
/// front of it, may have as well. Null when it has none.
const Service* namedByScreen(const Command& command) {
  const Service* const shown = at(command.set, command.window().service);
  const auto id = shown == nullptr ? std::nullopt : number(*shown, Data::SERVICE_ID);
  return id ? at(command.set, keyOf(command.set, *id)) : nullptr;
}

std::vector<AudioTrack> audioOfNamed(const Command& command) {
  const Service* const service = namedByScreen(command);
  return service == nullptr ? std::vector<AudioTrack>() : service->audio;
}

Members elementOf(const AudioTrack& track, int position, Writer write) {
  return {{"index", text(position)},
          {"pid", text(track.pid)},
          {"decodeType", text(track.decodeType)},
          {"audioMode", write(track.audioMode)},
          {"audioType", write(track.audioType)},
          {"lang", write(track.lang)}};
}

Members elementOf(const SubtitleTrack& track, int position, Writer write) {
  return {{"index", text(position)}, {"lang", write(track.lang)}};
}

/// The tracks that can be read; that none of them can is not the same as that there are none.
template <typename Track>
std::string listOf(const std::vector<Track>& tracks, Writer write) {
  std::vector<Members> elements;
  int position = 0;
  for (const Track& track : tracks) {
    if (track.readable) elements.push_back(elementOf(track, position, write));
    ++position;
  }
  return elements.empty() && !tracks.empty() ? "null" : arrayOf(elements);
}

// Audio.

std::string ispAudioList(const Set& set) {
  const std::vector<AudioTrack> tracks = showsIspTracks(set) ? set.state.isp.audio : std::vector<AudioTrack>();
  return document({{"NumOfAudio", std::to_string(tracks.size())}, {"items", listOf(tracks, unsignedText)}});
}

Reply ispCurrentAudio(const Set& set) {
  const int index = set.state.isp.inUse.audio;
  const AudioTrack* const track = showsIspTracks(set) ? told(set.state.isp.audio, index) : nullptr;
  if (track == nullptr) return -1;
  return document({{"index", text(index)}, {"lang", unsignedText(track->lang)}, {"pid", text(track->pid)}});
}

/// The first track of a PID, where those that can't be read count as of PID 0.
bool changeAudioByPid(const Command& command, int pid) {
  const std::vector<AudioTrack> tracks = audioOfNamed(command);
  for (std::size_t position = 0; position < tracks.size(); ++position) {
    const int read = tracks[position].readable ? tracks[position].pid : 0;
    if (read == pid) return selectAudio(command.set, command.engine.window, static_cast<std::int64_t>(position));
  }
  return false;
}

// Subtitles.

std::string ispSubtitleList(const Set& set) {
  const auto tracks = showsIspTracks(set) ? set.state.isp.subtitles : std::vector<SubtitleTrack>();
  std::map<int, int> counts;
  for (const SubtitleTrack& track : tracks) ++counts[track.type];
  return document({{"NumOfSubtitle", text(counts[virtualtv::KIND_DVB])},
                   {"NumOfTTX", text(counts[virtualtv::KIND_TELETEXT])},
                   {"NumOfTTXSubtitle", text(counts[virtualtv::KIND_TELETEXT_SUBTITLE])},
                   {"subtitle", listOf(tracks, unsignedText)}});
}

/// The subtitle in use is the main window's, whichever the engine has selected.
const SubtitleTrack* currentSubtitle(const Set& set) {
  if (!showsIsp(set)) return subtitleInUse(set, WindowId::main);
  return showsIspTracks(set) ? told(set.state.isp.subtitles, set.state.isp.inUse.subtitle) : nullptr;
}

}  // namespace

Reply getMultiAudioInfo(const Command& command) {
  if (showsIsp(command.set)) return ispAudioList(command.set);
  if (at(command.set, command.window().service) == nullptr) return std::string();
  const std::vector<AudioTrack> tracks = audioOfNamed(command);
  Members members{{"NumOfAudio", std::to_string(tracks.size())}};
  if (!tracks.empty()) members["items"] = listOf(tracks, text);
  return document(members);
}

/// Position and language are those of the track in use, the PID is that of the service of its id.
Reply getCurrentAudioInfo(const Command& command) {
  if (showsIsp(command.set)) return ispCurrentAudio(command.set);
  const AudioTrack* const track = audioInUse(command.set, command.engine.window);
  const std::vector<AudioTrack> tracks = audioOfNamed(command);
  const int index = command.window().inUse.audio;
  const AudioTrack* const named = told(tracks, index);
  if (track == nullptr || named == nullptr) return -1;
  return document({{"index", text(index)}, {"lang", text(track->lang)}, {"pid", text(named->pid)}});
}

/// PIDs are of 16 bits with a sign here.
Reply changeAudioPid(const Command& command) {
  const auto number = command.number(0);
  if (!number) return 0;
  const int pid = static_cast<std::int16_t>(*number);
  const bool isp = showsIsp(command.set);
  return (isp ? selectIspAudioByPid(command.set, pid) : changeAudioByPid(command, pid)) ? 1 : 0;
}

Reply changeAudioByIndex(const Command& command) {
  const auto index = command.number(0);
  if (!index) return 0;
  const bool changed = showsIsp(command.set) ? selectIspAudio(command.set, *index)
                                             : selectAudio(command.set, command.engine.window, *index);
  return changed ? 1 : 0;
}

Reply setSourceVolume(const Command&) {
  return 0;
}

/// The TV service tells them while the window's TV mode is one of its own, whether or not the service is in its list.
Reply getSubtitleInfo(const Command& command) {
  if (showsIsp(command.set)) return ispSubtitleList(command.set);
  const Service* const service = namedByScreen(command);
  if (service == nullptr || !listOf(command.window().mode)) return std::string();
  Members members{{"NumOfSubtitle", std::to_string(service->subtitles.size())}};
  if (!service->subtitles.empty()) members["subtitle"] = listOf(service->subtitles, text);
  return document(members);
}

Reply getCurrentSubtitle(const Command& command) {
  const SubtitleTrack* const track = currentSubtitle(command.set);
  return track == nullptr ? -1 : track->lang;
}

Reply changeSubtitle(const Command& command) {
  const auto index = command.number(0);
  if (!index) return 0;
  const bool changed = showsIsp(command.set) ? selectIspSubtitle(command.set, *index)
                                             : selectSubtitle(command.set, WindowId::main, *index);
  return changed ? 1 : -1;
}

/// Keys are of one character: the later of two groups with the same first digit is told.
Reply getFavorites(const Command& command) {
  const Service* const service = at(command.set, keyOf(command.set, command.identifier(0)));
  if (command.parameters[0].empty() || service == nullptr) return -1;
  Members members;
  for (const auto& [group, member] : service->favourites) {
    members[std::to_string(group).substr(0, 1)] = member ? "\"1\"" : "\"0\"";
  }
  return document(members);
}

Reply updateFavorites(const Command& command) {
  const auto member = command.number(1);
  const auto group = command.number(2);
  const ServiceKey key = keyOf(command.set, command.identifier(0));
  if (!member || !group || key == 0) return -1;
  command.set.services.at(key).favourites[static_cast<std::uint8_t>(*group)] = *member != 0;
  return 1;
}

}  // namespace model
