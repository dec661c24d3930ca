// SPDX-License-Identifier: MIT
#include "set/Keeping.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "services/ListText.h"
#include "set/EmbeddedSet.h"
#include "set/Persisted.h"
#include "store/StoreError.h"
#include "text/Numbers.h"

namespace virtualtv {

namespace {

// The persisted form of a value: the digits of a number, the text of a list.

template <typename Number>
std::string written(Number number) {
  return std::to_string(number);
}
std::string written(const std::vector<AudioTrack>& tracks) {
  return textOf(tracks);
}
std::string written(const std::vector<SubtitleTrack>& tracks) {
  return textOf(tracks);
}

template <typename Number>
void read(const std::string& text, const Persisted& place, Number& number) {
  number = text::requireNumber<Number>(text, place.range<Number>());
}
void read(const std::string& text, const Persisted&, std::vector<AudioTrack>& tracks) {
  tracks = readAllAudioTracks(text);
}
void read(const std::string& text, const Persisted&, std::vector<SubtitleTrack>& tracks) {
  tracks = readAllSubtitleTracks(text);
  orderByKind(tracks);
}

/// The version of the set that persisted these values.
Since dayOf(const std::map<std::string, std::string>& kept, TvState& state) {
  Since day = Since::first;
  visitPersisted(state, [&](const Persisted& place, auto&) {
    if (kept.contains(place.name)) day = std::max(day, place.since);
  });
  return day;
}

}  // namespace

std::map<std::string, std::string> keptOf(const TvState& state) {
  std::map<std::string, std::string> kept;
  visitPersisted(state,
                 [&](Persisted place, const auto& value) { kept.emplace(std::move(place.name), written(value)); });
  return kept;
}

TvState switchedOn(const TvState& state) {
  TvState next = embeddedSet().state;
  restore(keptOf(state), "memory", next);
  return next;
}

void restore(const std::map<std::string, std::string>& kept, const std::string& file, TvState& state) {
  const Since day = dayOf(kept, state);
  visitPersisted(state, [&](const Persisted& place, auto& value) {
    const auto found = kept.find(place.name);
    if (found == kept.end() && place.since > day) return;
    try {
      if (found == kept.end()) throw std::invalid_argument("it is not there");
      read(found->second, place, value);
    } catch (const std::invalid_argument& error) {
      throw StoreError(file + ": cannot read " + place.name + " of the set that is kept: " + error.what());
    }
  });
}

}  // namespace virtualtv
