// SPDX-License-Identifier: MIT
// The state of the whole set as one document.
#include "set/StateDocument.h"

#include "virtualtv/set/SetTest.h"

namespace virtualtv::test {
namespace {

class StateDocument : public SetTest {
 protected:
  Json::Value document() { return stateDocument(*tv); }
  Json::Value main() { return document()["windows"]["main"]; }
  Json::Value pip() { return document()["windows"]["pip"]; }

  static Json::Value json(const std::string& text) {
    Json::Value value;
    std::istringstream(text) >> value;
    return value;
  }
};

TEST_F(StateDocument, TellsTheBuiltInSet) {
  EXPECT_EQ(main()["source"], json(R"({"state": 2, "number": 0, "name": "Antenna", "previous": 13})"));
  EXPECT_EQ(main()["service"], json(R"({"key": 1, "id": "1152959734176350309", "name": "Lighthouse One", "major": 1,
                                        "minor": 0})"));
  EXPECT_EQ(main()["previousService"]["name"], "Lighthouse Two");
  EXPECT_EQ(main()["tvMode"], json(R"({"antenna": 0, "service": 1})"));
  EXPECT_EQ(main()["picture"],
            json(R"({"width": 1920, "height": 1080, "rate": 25, "shape": "16:9", "activeFormat": 8})"));
  EXPECT_EQ(main()["resolution"], json(R"({"auto": true, "code": 4})"));
  EXPECT_EQ(document()["start"], json(R"({"service": "1152959734176350309", "source": 0})"));
  EXPECT_EQ(document()["region"], 1);
  EXPECT_EQ(document()["country"], 3);
  EXPECT_EQ(document()["tuner"]["fade"], 0);
  EXPECT_EQ(document()["clock"], Json::Value(Json::UInt64{0}));
  EXPECT_EQ(document()["services"], Json::Value(Json::UInt64{tv->services().size()}));
}

TEST_F(StateDocument, HasTheRevisionOfTheSet) {
  const auto before = document()["revision"].asUInt64();
  EXPECT_EQ(before, tv->revision());
  tv->mute(WindowId::main, true);
  EXPECT_EQ(document()["revision"].asUInt64(), before + 1);
}

TEST_F(StateDocument, TellsTracksAndThoseInUse) {
  tv->setAudioTracks(1, {{.pid = 256, .lang = *languageNamed("eng"), .decodeType = CODING_AAC, .audioMode = 2},
                         {.pid = 257, .decodeType = 77, .audioType = 3, .readable = false}});
  tv->setSubtitleTracks(1, {{.pid = 300, .lang = *languageNamed("deu"), .type = KIND_TELETEXT}});
  tv->selectAudio(WindowId::main, 1);
  EXPECT_EQ(main()["tracks"], json(R"({"audioInUse": 1, "subtitleInUse": -1,
      "audio": [{"pid": 256, "lang": "eng", "coding": "aac", "mode": 2, "type": 0, "readable": true},
                {"pid": 257, "lang": "und", "coding": "77", "mode": 0, "type": 3, "readable": false}],
      "subtitles": [{"pid": 300, "lang": "deu", "type": "teletext", "readable": true}]})"));
}

TEST_F(StateDocument, TellsThePlaneInBothSpaces) {
  tv->crop(WindowId::main, {{10, 20, 640, 480}, {101, 201, 960, 541}});
  tv->setOrder(WindowId::main, 2);
  const Json::Value plane = main()["plane"];
  EXPECT_EQ(plane["base"]["rect"], json(R"({"x": 0, "y": 0, "width": 1920, "height": 1080})"));
  EXPECT_EQ(plane["app"]["rect"], json(R"({"x": 0, "y": 0, "width": 960, "height": 540})"));
  EXPECT_EQ(plane["base"]["display"], json(R"({"x": 101, "y": 201, "width": 960, "height": 541})"));
  EXPECT_EQ(plane["app"]["display"], json(R"({"x": 51, "y": 101, "width": 480, "height": 271})"));
  EXPECT_EQ(plane["crop"], json(R"({"x": 10, "y": 20, "width": 640, "height": 480})"));
  EXPECT_EQ(plane["order"], 2);
  EXPECT_EQ(plane["muted"], false);
  tv->place(WindowId::main, {-3, 0, 100, 50});
  EXPECT_EQ(main()["plane"]["crop"], Json::Value());
  EXPECT_EQ(main()["plane"]["app"]["rect"], json(R"({"x": -1, "y": 0, "width": 50, "height": 25})"));
  EXPECT_EQ(main()["plane"]["base"]["active"], json(R"({"x": 3, "y": 0, "width": 88, "height": 50})"));
}

TEST_F(StateDocument, IsNullWhereNothingIs) {
  EXPECT_EQ(pip()["source"], json(R"({"state": -1, "number": -1, "name": null, "previous": -1})"));
  for (const char* const name : {"service", "previousService", "picture"}) {
    EXPECT_TRUE(pip().isMember(name)) << name;
    EXPECT_EQ(pip()[name], Json::Value()) << name;
  }
  EXPECT_EQ(pip()["resolution"], json(R"({"auto": true, "code": null})"));
  EXPECT_EQ(pip()["plane"]["app"]["active"], Json::Value());
  EXPECT_EQ(pip()["tracks"], json(R"({"audio": [], "audioInUse": 0, "subtitles": [], "subtitleInUse": -1})"));
  turn("pip.resolution", "7");
  EXPECT_EQ(pip()["resolution"], json(R"({"auto": false, "code": 7})"));
  for (const int field : {TCServiceData::SERVICE_ID, TCServiceData::CHANNEL_NAME, TCServiceData::MAJOR}) {
    tv->setField(1, field, {});
  }
  EXPECT_EQ(main()["service"], json(R"({"key": 1, "id": null, "name": null, "major": null, "minor": 0})"));
}

TEST_F(StateDocument, TellsInputsAndTheIspSource) {
  turn("input.1.picture", "640x480@30");
  const Json::Value inputs = document()["inputs"];
  ASSERT_EQ(inputs.size(), tv->state().inputs.size());
  EXPECT_EQ(inputs[1], json(R"({"source": 1, "name": "AV", "plugged": false, "picture":
      {"width": 640, "height": 480, "rate": 30, "shape": "4:3", "activeFormat": 8}})"));
  turn("isp.audio", "7:eng:aac:2:0");
  turn("isp.subtitles", "8:eng:teletext-subtitle");
  turn("isp.picture", "720x576");
  turn("isp.subtitle_in_use", "0");
  tv->showIsp();
  EXPECT_EQ(document()["isp"], json(R"({"present": true, "shown": true, "picture": {"width": 720, "height": 576},
      "tracks": {"audioInUse": 0, "subtitleInUse": 0,
        "audio": [{"pid": 7, "lang": "eng", "coding": "aac", "mode": 2, "type": 0, "readable": true}],
        "subtitles": [{"pid": 8, "lang": "eng", "type": "teletext-subtitle", "readable": true}]}})"));
}

}  // namespace
}  // namespace virtualtv::test
