// SPDX-License-Identifier: MIT
#include "virtualtv/set/snapshot/RandomSet.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "services/FieldNumbers.h"
#include "services/Fields.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"

namespace virtualtv::test {

void RandomSet::use(Tv& tv) {
  import(tv);
  for (int count = 40; count > 0; --count) step(tv);
}

void RandomSet::step(Tv& tv) {
  switch (below(8)) {
    case 0:
      import(tv);
      break;
    case 1:
      edit(tv);
      break;
    case 2:
      set(tv);
      break;
    case 3:
      act(tv);
      break;
    default:
      turn(tv);
  }
}

int RandomSet::number32() {
  using Int = std::numeric_limits<int>;
  return oneOf<int>({0, 1, 2, -1, 7, 65535, 65536, Int::min(), Int::max(), below(1000)});
}

std::uint64_t RandomSet::number64() {
  constexpr std::uint64_t exact = std::uint64_t{1} << 53;
  return oneOf<std::uint64_t>({0, 1, 5, exact - 1, exact, exact + 1, ~std::uint64_t{0}, 0 - exact, 1 - exact,
                               std::uint64_t{1} << 63, (std::uint64_t{1} << 63) - 1, engine_()});
}

std::uint64_t RandomSet::serviceId() {
  return std::max<std::uint64_t>(number64(), 1);
}

int RandomSet::pid() {
  return oneOf<int>({0, 1, 256, 8190, 65535});
}

/// Decides whether a field gets a text.
bool RandomSet::hasText(int field) {
  return takesText(field) && (!takesNumber(field) || in(2));
}

std::string RandomSet::bytes() {
  return oneOf<std::string>({"", "a", "db/x", "Düsseldorf\n", std::string("a\0b", 3), "\xff\xfe", "\xed\xa0\x80", "7",
                             "\"\\\x01\x7f", "\xf0\x9f\x90\xb3", "{}", std::string(300, '\x80')});
}

std::u16string RandomSet::units() {
  return oneOf<std::u16string>({u"", u"a", u"\xD800", u"a\xDC00z", u"\xDC00\xD800", u"\xD83D\xDC33", u"\xFFFD",
                                std::u16string(u"a\0b", 3), u"\xFFFF\x0001\"\\", std::u16string(300, u'\xD9AB'),
                                u"12"});
}

Rect RandomSet::rect() {
  return {number32(), number32(), number32(), number32()};
}

int RandomSet::field() {
  if (in(3)) return oneOf<int>({0, 200, 201, 1003, 1005, std::numeric_limits<int>::max()});
  const auto known = knownFields();
  return known[static_cast<std::size_t>(below(static_cast<int>(known.size())))].id;
}

std::uint64_t RandomSet::numberFor(int field) {
  const KnownField* const known = knownField(field);
  if (known == nullptr) return number64();
  if (known->kind == FieldKind::uint64) return serviceId();
  if (known->kind == FieldKind::uint16) return static_cast<std::uint64_t>(below(65536));
  return static_cast<std::uint64_t>(std::int64_t{number32()});
}

Service RandomSet::service() {
  Service service;
  for (int count = below(12); count > 0; --count) {
    const int id = field();
    const bool isText = hasText(id);
    if (service.numbers.contains(id)) continue;
    if (isText) {
      service.texts[id] = units();
    } else if (!service.texts.contains(id)) {
      service.numbers[id] = numberFor(id);
    }
  }
  service.numbers[TCServiceData::SERVICE_ID] = serviceId();
  service.numbers[TCServiceData::ANTENNA_MODE] = static_cast<std::uint64_t>(below(3));
  service.group = bytes();
  service.audio = audio();
  service.subtitles = subtitles();
  service.favourites = favourites();
  service.listEntry = bytes();
  if (in(3)) service.footage = Footage{"/" + bytes(), 1 + below(8191), below(256), false};
  return service;
}

std::vector<AudioTrack> RandomSet::audio() {
  std::vector<AudioTrack> tracks(static_cast<std::size_t>(below(4)));
  for (AudioTrack& track : tracks) track = {pid(), number32(), number32(), number32(), number32(), !in(3)};
  return tracks;
}

std::vector<SubtitleTrack> RandomSet::subtitles() {
  std::vector<SubtitleTrack> tracks(static_cast<std::size_t>(below(4)));
  for (SubtitleTrack& track : tracks) track = {pid(), number32(), below(2), !in(3)};
  return tracks;
}

std::map<std::uint8_t, bool> RandomSet::favourites() {
  std::map<std::uint8_t, bool> groups;
  for (int count = below(4); count > 0; --count) groups[static_cast<std::uint8_t>(below(256))] = in(2);
  return groups;
}

void RandomSet::import(Tv& tv) {
  std::vector<Service> services(static_cast<std::size_t>(1 + below(8)));
  for (Service& service : services) service = this->service();
  tv.import(services, in(2));
}

void RandomSet::edit(Tv& tv) {
  const ServiceKey key = oneOf(tv.services().keys());
  const int id = field();
  tv.setField(key, id, in(5) ? FieldValue() : hasText(id) ? FieldValue(units()) : FieldValue(numberFor(id)));
  tv.setAudioTracks(key, audio());
  tv.setSubtitleTracks(key, subtitles());
  tv.setFavouritesOf(key, favourites());
}

void RandomSet::set(Tv& tv) {
  tv.setSetting(bytes(), in(2) ? Setting(number32()) : Setting(bytes()));
  tv.removeSetting(bytes());
}

/// Most values don't suit the knob and are refused.
void RandomSet::turn(Tv& tv) {
  const std::string value = oneOf<std::string>({"0", "1", "-1", "17", "on", "off", "255", "3,4", "640x480", "1x1@1",
                                                "none", "7:eng,!8:deu:ac3:1:2", "5:und:dvb,6:eng:teletext-subtitle",
                                                "2147483647", "-2147483648", "18446744073709551615", "auto"});
  try {
    setKnob(tv, oneOf(knobNames(tv)), value);
  } catch (const std::invalid_argument&) {
    return;
  }
}

void RandomSet::act(Tv& tv) {
  const WindowId window = in(2) ? WindowId::main : WindowId::pip;
  tv.tune(window, oneOf(tv.services().keys()));
  tv.switchSource(window, oneOf<int>({0, 1, 13, 14, 31, 99}), in(2) ? oneOf(tv.services().keys()) : 0);
  if (in(4)) tv.deactivate(window);
  if (in(4)) tv.showIsp();
  tv.plug(oneOf<int>({0, 1, 13, 14}), in(2));
  tv.setMode(window, {number32(), number32()});
  tv.place(window, rect());
  tv.crop(window, {rect(), rect()});
  tv.setOrder(window, number32());
  tv.mute(window, in(2));
  tv.selectAudio(window, below(3));
  tv.selectSubtitle(window, below(3));
  tv.advance(3);
}

}  // namespace virtualtv::test
