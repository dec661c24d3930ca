// SPDX-License-Identifier: MIT
// The plug-in's operations on audio tracks, subtitles and favourite groups. While the platform's settings say that the
// ISP source is on screen, tracks are those of the secondary stack. The documents of the stacks differ: only the TV
// service has signed codes, omits an empty list, and writes no document on failure.
#include "support/model/Documents.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

template <typename Number>
std::string text(Number number) {
  return std::to_string(number);
}

/// A code in the unsigned form of the secondary stack.
std::string unsignedText(int number) {
  return std::to_string(static_cast<std::uint32_t>(number));
}

/// The list of the readable tracks; `null` if there are tracks but none of them is readable.
std::string listOf(const std::vector<Members>& elements, unsigned count) {
  return elements.empty() && count > 0 ? "null" : arrayOf(elements);
}

/// The engine's answer for a list: the written text. For the ISP source, an empty text becomes the failure code.
Reply listed(const Command& command, const std::string& written) {
  if (showsIsp(command) && written.empty()) return -1;
  return written;
}

/// The engine's answer for a document that is written only on success.
Reply written(const std::optional<std::string>& document) {
  return document ? Reply(*document) : Reply(-1);
}

// Audio of the TV service.

std::string audioList(const Command& command) {
  const auto channel = currentChannel(command);
  if (!channel || !needAux(command)) return {};
  const Interface aux = command.engine.active.aux;
  return attempt(std::string(), [&] {
    unsigned count = 0;
    command.tv.getAudioSize(aux, idOf(*channel), count);
    std::vector<Members> elements;
    for (unsigned position = 0; position < count; ++position) {
      TSAudio audio;
      if (command.tv.getAudio(aux, idOf(*channel), static_cast<int>(position), audio) < 1) continue;
      elements.push_back({{"index", text(position)},
                          {"pid", text(audio.pid)},
                          {"decodeType", text(audio.decodeType)},
                          {"audioMode", text(audio.audioMode)},
                          {"audioType", text(audio.audioType)},
                          {"lang", text(audio.lang)}});
    }
    Members members{{"NumOfAudio", text(count)}};
    if (count > 0) members["items"] = listOf(elements, count);
    return document(members);
  });
}

/// Position and language are those of the track in use. The PID is that of the track at this position of the service on
/// screen.
std::optional<std::string> currentAudio(const Command& command) {
  using Text = std::optional<std::string>;
  if (!needAux(command) || !needAv(command)) return std::nullopt;
  return attempt(Text(), [&]() -> Text {
    int lang = -1;
    int index = -1;
    bool good = command.tv.getCurrentAudioInfo(command.engine.active.av, lang, index) > 0;
    const auto channel = currentChannel(command);
    if (!channel) return std::nullopt;
    TSAudio audio;
    good = command.tv.getAudio(command.engine.active.aux, idOf(*channel), index, audio) > 0 && good;
    if (!good) return std::nullopt;
    return document({{"index", text(index)}, {"lang", text(lang)}, {"pid", text(audio.pid)}});
  });
}

/// Selects the first track with a PID. Unreadable tracks count as PID 0.
bool changeAudioByPid(const Command& command, int pid) {
  if (!needAux(command) || !needAv(command)) return false;
  const auto channel = currentChannel(command);
  if (!channel) return false;
  return attempt(false, [&] {
    unsigned count = 0;
    command.tv.getAudioSize(command.engine.active.aux, idOf(*channel), count);
    for (int position = 0; static_cast<unsigned>(position) < count; ++position) {
      TSAudio audio;
      command.tv.getAudio(command.engine.active.aux, idOf(*channel), position, audio);
      if (audio.pid == pid) return command.tv.setCurrentAudioByIndex(command.engine.active.av, position) > 0;
    }
    return false;
  });
}

bool changeAudioByPosition(const Command& command, int position) {
  if (!needAv(command)) return false;
  return attempt(false, [&] { return command.tv.setCurrentAudioByIndex(command.engine.active.av, position) > 0; });
}

// Audio of the secondary stack.

std::string ispAudioList(const Command& command) {
  std::string failure = document({{"NumOfAudio", "0"}, {"items", "[]"}});
  return attempt(failure, [&] {
    unsigned count = 0;
    if (!command.tv.getInstance() || command.tv.getTotalNumOfAudio(count) != 0) return failure;
    std::vector<Members> elements;
    for (unsigned position = 0; position < count; ++position) {
      MVPDAudio audio{};
      if (command.tv.getMultiAudioInfo(audio, position) != 0) continue;
      elements.push_back({{"index", text(audio.index)},
                          {"pid", text(audio.pid)},
                          {"decodeType", text(audio.decodeType)},
                          {"audioMode", unsignedText(audio.audioMode)},
                          {"audioType", unsignedText(audio.audioType)},
                          {"lang", unsignedText(audio.lang)}});
    }
    return document({{"NumOfAudio", text(count)}, {"items", listOf(elements, count)}});
  });
}

std::optional<std::string> ispCurrentAudio(const Command& command) {
  using Text = std::optional<std::string>;
  return attempt(Text(), [&]() -> Text {
    int pid = -1;
    int index = -1;
    unsigned lang = 0;
    if (!command.tv.getInstance() || command.tv.getCurrentAudioInfo(pid, index, lang) != 0) return std::nullopt;
    return document({{"index", text(index)}, {"lang", text(lang)}, {"pid", text(pid)}});
  });
}

/// Runs a call that selects something in the manager. A failure code of 1 can't be told from success.
template <typename Call>
int selected(const Command& command, Call call) {
  return attempt(-1, [&] {
    if (!command.tv.getInstance()) return -1;
    const int answered = call();
    return answered == 0 ? 1 : answered;
  });
}

// Subtitles.

std::string subtitleList(const Command& command) {
  if (!needData(command) || !needNavigation(command)) return {};
  return attempt(std::string(), [&]() -> std::string {
    const Interface navigation = command.engine.active.navigation;
    TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
    TCCriteriaHelper criteria;
    if (command.tv.getTvMode(navigation, mode) != 1) return {};
    if (command.tv.getNavigationCriteria(mode, criteria, true) == 0) return {};
    criteria.Fetch(TCServiceData::SERVICE_ID);
    TCServiceData service;
    if (command.tv.getCurrentServiceInfo(navigation, mode, criteria, service) < 1 || !needAux(command)) return {};
    unsigned count = 0;
    if (command.tv.getHybridSbtSize(command.engine.active.aux, idOf(service), count) < 1) return {};
    std::vector<Members> elements;
    int lang = -1;
    for (int position = 0; static_cast<unsigned>(position) < count; ++position) {
      if (command.tv.getHybridSbt(command.engine.active.aux, idOf(service), position, lang) < 1) continue;
      elements.push_back({{"index", text(position)}, {"lang", text(lang)}});
    }
    Members members{{"NumOfSubtitle", text(count)}};
    if (count > 0) members["subtitle"] = listOf(elements, count);
    return document(members);
  });
}

std::string ispSubtitleList(const Command& command) {
  std::string failure =
      document({{"NumOfSubtitle", "0"}, {"NumOfTTX", "0"}, {"NumOfTTXSubtitle", "0"}, {"subtitle", "[]"}});
  return attempt(failure, [&] {
    unsigned subtitles = 0, teletext = 0, teletextSubtitles = 0;
    if (!command.tv.getInstance()) return failure;
    if (command.tv.getTotalNumOfSubtitle(subtitles, teletext, teletextSubtitles) != 0) return failure;
    const unsigned count = subtitles + teletext + teletextSubtitles;
    std::vector<Members> elements;
    for (int position = 0; static_cast<unsigned>(position) < count; ++position) {
      DVBSubtitleInfo subtitle{};
      if (command.tv.getDvbSubtitleInfo(subtitle, position) != 0) continue;
      elements.push_back({{"index", text(subtitle.index)}, {"lang", text(subtitle.lang)}});
    }
    return document({{"NumOfSubtitle", text(subtitles)},
                     {"NumOfTTX", text(teletext)},
                     {"NumOfTTXSubtitle", text(teletextSubtitles)},
                     {"subtitle", listOf(elements, count)}});
  });
}

int currentSubtitle(const Command& command) {
  if (!needData(command)) return -1;
  return attempt(-1, [&] {
    int lang = -1;
    return command.tv.getCurrentHybridSbt(command.engine.active.data, lang) < 1 ? -1 : lang;
  });
}

/// The language stays -1 unless the manager writes another one, whatever the call returns.
int ispCurrentSubtitle(const Command& command) {
  int lang = -1;
  attempt(-1, [&] { return command.tv.getInstance() ? command.tv.getCurrentSubtitle(lang) : -1; });
  return lang;
}

}  // namespace

Reply getMultiAudioInfo(const Command& command) {
  const std::string written = showsIsp(command) ? ispAudioList(command) : audioList(command);
  return listed(command, written);
}

Reply getCurrentAudioInfo(const Command& command) {
  return written(showsIsp(command) ? ispCurrentAudio(command) : currentAudio(command));
}

/// PIDs are signed 16-bit numbers here.
Reply changeAudioPid(const Command& command) {
  const auto number = command.number(0);
  if (!number) return 0;
  const int pid = static_cast<std::int16_t>(*number);
  if (!showsIsp(command)) return changeAudioByPid(command, pid) ? 1 : 0;
  return selected(command, [&] { return command.tv.changeAudioByPid(static_cast<unsigned>(pid)); }) == 1 ? 1 : 0;
}

Reply changeAudioByIndex(const Command& command) {
  const auto index = command.number(0);
  if (!index) return 0;
  if (!showsIsp(command)) return changeAudioByPosition(command, *index) ? 1 : 0;
  return selected(command, [&] { return command.tv.changeAudioByIndex(static_cast<unsigned>(*index)); }) == 1 ? 1 : 0;
}

Reply setSourceVolume(const Command&) {
  return 0;
}

/// The TV service reports subtitles if the window has a valid TV mode, even if the service is not in that mode's list.
Reply getSubtitleInfo(const Command& command) {
  const std::string written = showsIsp(command) ? ispSubtitleList(command) : subtitleList(command);
  return listed(command, written);
}

Reply getCurrentSubtitle(const Command& command) {
  return showsIsp(command) ? ispCurrentSubtitle(command) : currentSubtitle(command);
}

Reply changeSubtitle(const Command& command) {
  const auto index = command.number(0);
  if (!index) return 0;
  if (showsIsp(command)) return selected(command, [&] { return command.tv.changeSubtitleLanguage(*index); });
  if (!needData(command)) return -1;
  return attempt(-1, [&] { return command.tv.selectHybridSbt(command.engine.active.data, *index) > 0 ? 1 : -1; });
}

/// Keys have one character: of several groups with the same first digit, the last one counts.
Reply getFavorites(const Command& command) {
  if (command.parameters[0].empty() || !needService(command)) return -1;
  return attempt(Reply(-1), [&]() -> Reply {
    std::map<unsigned char, bool> groups;
    if (command.tv.getFavorites(command.engine.service, command.identifier(0), groups) < 1) return -1;
    Members members;
    for (const auto& [group, member] : groups) {
      members[std::to_string(group).substr(0, 1)] = member ? "\"1\"" : "\"0\"";
    }
    return document(members);
  });
}

Reply updateFavorites(const Command& command) {
  const auto member = command.number(1);
  const auto group = command.number(2);
  if (!member || !group) return -1;
  if (!needService(command)) return 0;
  return attempt(-1, [&] {
    const int answered =
        command.tv.setFavorites(command.engine.service, command.identifier(0), *member != 0, static_cast<char>(*group));
    return answered > 0 ? 1 : -1;
  });
}

}  // namespace model
