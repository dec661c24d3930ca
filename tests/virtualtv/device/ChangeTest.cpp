// SPDX-License-Identifier: MIT
// Every change of the set is an event with the old and the new value: a copy of the set that applies all events stays
// equal to the set.
#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <random>

#include "services/Fields.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "virtualtv/device/DeviceTest.h"
#include "virtualtv/device/Replica.h"

namespace virtualtv::device {
namespace {

class ChangeTest : public DeviceTest {
 protected:
  /// Applies what has happened to the copy, and compares it with the set. @return the number of changes.
  std::size_t follow(const std::string& what) {
    std::size_t count = 0;
    for (const auto& happening : feed->take().happenings) {
      const Change* const change = std::get_if<Change>(&happening->what);
      if (change == nullptr) continue;
      ++count;
      EXPECT_TRUE(replica.apply(*change, tv())) << what << ": a change says of what it was before what it was not";
    }
    EXPECT_EQ(replica.differences(tv()), "") << what;
    return count;
  }

  /// Prepares a set on which each verb changes something.
  void furnish() {
    device().reset();
    follow("a reset");  // the copy reads the services only now, so it has to follow before they change again
    tv().tune(WindowId::main, 1);
    tv().setAudioTracks(1, {{.pid = 1}, {.pid = 2}});
    tv().setSubtitleTracks(1, {{.pid = 3}});
    tv().setSetting("b/key", 1);
    tv().place(WindowId::main, {5, 6, 7, 8});
    tv().adjust([](TvState& state) {
      state.isp.audio = {{.pid = 1}, {.pid = 2}};
      state.isp.subtitles = {{.pid = 3}};
    });
    follow("furnishing");
  }

  Replica replica{tv()};
};

/// Two valid texts for each kind of knob, by the knob's description of its values.
const std::map<std::string, std::pair<std::string, std::string>> texts{
    {"number", {"1", "2"}},
    {"number or auto", {"4", "auto"}},
    {"0 to 255", {"7", "8"}},
    {"on or off", {"off", "on"}},
    {"0 to 600000", {"3", "0"}},
    {"ANTENNA,SERVICE", {"1,0", "2,1"}},
    {"WIDTHxHEIGHT", {"720x576", "1280x720"}},
    {"WIDTHxHEIGHT@RATE", {"720x576@50", "1280x720@25"}},
    {"service id or 0", {"5", "6"}},
    {"service id, #KEY or 0", {"#2", "#3"}},
    {"tracks or none", {"1:eng", "none"}},
    {"groups or none", {"1=1", "none"}},
    {"number, text or unset", {"1", "unset"}},
};

/// Replaces the parts of a knob's name that are in capitals by examples.
std::string filledIn(std::string name) {
  for (const auto& [part, value] : {std::pair("WINDOW", "pip"), std::pair("SOURCE", "13"), std::pair("FIELD", "major"),
                                    std::pair("ID", "#1"), std::pair("OPERATION", "IService::FindService")}) {
    if (const std::size_t at = name.find(part); at != std::string::npos)
      name.replace(at, std::string(part).size(), value);
  }
  return name;
}

TEST_F(ChangeTest, EachKnobThatIsTurnedIsTold) {
  for (const Knob& knob : knobs()) {
    if (knob.set == nullptr) continue;
    const auto samples = texts.find(std::string(knob.value));
    ASSERT_NE(samples, texts.end()) << knob.name << " takes " << knob.value;
    const std::string name = filledIn(std::string(knob.name));
    setKnob(tv(), name, samples->second.first);
    follow(name);
    for (const std::string& text : {samples->second.second, samples->second.first}) {
      const std::uint64_t before = device().revision();
      setKnob(tv(), name, text);
      EXPECT_GT(follow(name + " " + text), 0U) << name << " " << text;
      EXPECT_EQ(device().revision(), before + 1) << name << " " << text;
    }
  }
}

TEST_F(ChangeTest, EachFieldOfAServiceThatIsSetIsTold) {
  for (const KnownField& field : knownFields()) {
    if (field.id == TCServiceData::SERVICE_ID) continue;  // windows refer to a service by its id
    const std::string name = field.name;
    const bool isText = field.kind == FieldKind::text;
    tv().setField(1, field.id, std::monostate());
    follow(name);
    for (const FieldValue& value : {isText ? FieldValue(u"one") : FieldValue(std::uint64_t{1}),
                                    isText ? FieldValue(u"two") : FieldValue(std::uint64_t{2}), FieldValue()}) {
      ASSERT_TRUE(tv().setField(1, field.id, value)) << name;
      EXPECT_EQ(follow(name), 1U) << name;
      tv().setField(1, field.id, value);
      EXPECT_EQ(follow(name), 0U) << name << " a second time changes nothing";
    }
  }
}

TEST_F(ChangeTest, EachSettingsKeyThatIsSetOrRemovedIsTold) {
  Session session(device());
  number(session, {"GetSource"});
  follow("an engine seeds its keys");
  const std::map<std::string, Setting> seeded = tv().settings().list();
  ASSERT_FALSE(seeded.empty());
  for (const auto& [key, value] : seeded) {
    tv().setSetting(key, std::string("another"));
    EXPECT_EQ(follow(key), 1U) << key;
    EXPECT_TRUE(tv().removeSetting(key));
    EXPECT_EQ(follow(key), 1U) << key;
    EXPECT_FALSE(tv().removeSetting(key));
    EXPECT_EQ(follow(key), 0U) << key;
  }
}

/// A verb, and whether repeating it changes the set again.
struct Verb {
  const char* name;
  std::function<void(Tv&)> act;
  bool changesAgain = false;
};

std::vector<Service> oneService() {
  Service service;
  service.numbers = {{TCServiceData::SERVICE_ID, 10}, {TCServiceData::ANTENNA_MODE, 0}};
  return {service};
}

std::vector<Verb> verbs() {
  constexpr WindowId main = WindowId::main;
  return {{"tune", [](Tv& tv) { tv.tune(main, 3); }},
          {"switchSource", [](Tv& tv) { tv.switchSource(main, 13); }},
          {"deactivate", [](Tv& tv) { tv.deactivate(main); }},
          {"showIsp", [](Tv& tv) { tv.showIsp(); }},
          {"plug", [](Tv& tv) { tv.plug(13, false); }},
          {"setMode",
           [](Tv& tv) {
             tv.setMode(WindowId::pip, TvMode{2, 0});
           }},
          {"place",
           [](Tv& tv) {
             tv.place(main, Rect{1, 2, 3, 4});
           }},
          {"placeDefault", [](Tv& tv) { tv.placeDefault(main); }},
          {"crop",
           [](Tv& tv) {
             tv.crop(main, Crop{{0, 0, 10, 10}, {0, 0, 20, 20}});
           }},
          {"setOrder", [](Tv& tv) { tv.setOrder(WindowId::pip, 3); }},
          {"mute", [](Tv& tv) { tv.mute(main, true); }},
          {"selectAudio", [](Tv& tv) { tv.selectAudio(main, 1); }},
          {"selectSubtitle", [](Tv& tv) { tv.selectSubtitle(main, 0); }},
          {"selectIspAudio", [](Tv& tv) { tv.selectIspAudio(1); }},
          {"selectIspSubtitle", [](Tv& tv) { tv.selectIspSubtitle(0); }},
          {"setFavourites",
           [](Tv& tv) {
             tv.setFavourites(9, {{tv.state().startServiceId, true}});
           }},
          {"setSetting", [](Tv& tv) { tv.setSetting("a/key", 1); }},
          {"removeSetting", [](Tv& tv) { tv.removeSetting("b/key"); }},
          {"setField", [](Tv& tv) { tv.setField(1, TCServiceData::MAJOR, std::uint64_t{77}); }},
          {"setAudioTracks", [](Tv& tv) { tv.setAudioTracks(1, {}); }},
          {"setSubtitleTracks", [](Tv& tv) { tv.setSubtitleTracks(1, {}); }},
          {"setFavouritesOf",
           [](Tv& tv) {
             tv.setFavouritesOf(1, {{200, true}});
           }},
          {"setLatency", [](Tv& tv) { tv.setLatency(seam::op("IService::FindService"), 7); }},
          {"adjust", [](Tv& tv) { tv.adjust([](TvState& state) { state.country = 99; }); }},
          {"advance", [](Tv& tv) { tv.advance(5); }, true},
          {"import", [](Tv& tv) { tv.import(oneService(), false); }},
          {"removeService", [](Tv& tv) { tv.removeService(3); }},
          {"moveService", [](Tv& tv) { tv.moveService(4, 8); }, true},
          {"removeServices", [](Tv& tv) { tv.removeServices(); }},
          {"reset", [](Tv& tv) { tv.reset(); }},
          {"restore", [](Tv& tv) {
             Snapshot snapshot = tv.snapshot();
             snapshot.settings = {{"c/key", 1}};
             snapshot.services.erase(2);
             tv.restore(snapshot);
           }}};
}

TEST_F(ChangeTest, EachVerbTellsWhatItChangesAndNothingWhereNothingIsAnother) {
  for (const Verb& verb : verbs()) {
    furnish();
    if (std::string_view(verb.name).starts_with("selectIsp")) tv().showIsp();
    follow("showing the ISP source");
    const std::uint64_t before = device().revision();
    verb.act(tv());
    EXPECT_GT(follow(verb.name), 0U) << verb.name;
    EXPECT_EQ(device().revision(), before + 1) << verb.name;
    verb.act(tv());
    EXPECT_EQ(follow(verb.name) > 0, verb.changesAgain) << verb.name << " a second time";
    EXPECT_EQ(device().revision(), before + (verb.changesAgain ? 2 : 1)) << verb.name << " a second time";
  }
}

TEST_F(ChangeTest, WhatCommandsAndDeedsDoIsTold) {
  const std::vector<std::vector<std::string>> commands{{"SetSource", "31"},
                                                       {"SetSource", "13"},
                                                       {"SetChannel", "3", "0"},
                                                       {"SetChannel_Seek", "0", "0"},
                                                       {"SetWindow", "1"},
                                                       {"SetWindow", "0"},
                                                       {"SetTVMode", "0", "1"},
                                                       {"SetTVMode", "1", "1"},
                                                       {"SetScreenRect", "0", "0", "480", "270"},
                                                       {"Show"},
                                                       {"MuteVideo", "1"},
                                                       {"DisconnectSource"},
                                                       {"ChangeAudioByIndex", "1"},
                                                       {"SetPreviousSource"}};
  std::mt19937 random(5);
  Session session(device());
  const std::vector<Verb> deeds = verbs();
  std::size_t changes = 0;
  for (int step = 0; step < 300; ++step) {
    const std::size_t chosen = random() % 20;
    const std::vector<std::string>& command = commands[random() % commands.size()];
    if (chosen == 0) device().restart();
    if (chosen == 1) furnish();
    if (chosen > 1 && chosen < 6) deeds[random() % deeds.size()].act(tv());
    if (chosen >= 6) number(session, command);
    changes += follow("step " + std::to_string(step) + " " + command[0]);
  }
  EXPECT_GT(changes, 200U);
}

TEST_F(ChangeTest, ASettingsKeyIsToldFromWhatToWhat) {
  tv().setSetting("a/key", 1);
  tv().setSetting("a/key", std::string("text"));
  tv().removeSetting("a/key");
  const auto changes = happened<SettingChanged>();
  ASSERT_EQ(changes.size(), 3U);
  EXPECT_EQ(changes[0].before, std::nullopt);
  EXPECT_EQ(changes[0].after, Setting(1));
  EXPECT_EQ(changes[1].before, Setting(1));
  EXPECT_EQ(changes[1].after, Setting(std::string("text")));
  EXPECT_EQ(changes[2].before, Setting(std::string("text")));
  EXPECT_EQ(changes[2].after, std::nullopt);
}

TEST_F(ChangeTest, WhatThePlugInWritesIsToldWithTheEngineThatWrote) {
  Session session(device());
  number(session, {"SetSource", "31"});
  bool written = false;
  for (const auto& happening : feed->take().happenings) {
    const Change* const change = std::get_if<Change>(&happening->what);
    if (change == nullptr || !std::holds_alternative<SettingChanged>(*change) || happening->caller.command == 0)
      continue;
    written = true;
    EXPECT_EQ(happening->caller.engine, "main");
  }
  EXPECT_TRUE(written);
}

}  // namespace
}  // namespace virtualtv::device
