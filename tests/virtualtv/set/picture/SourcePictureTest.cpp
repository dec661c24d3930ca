// SPDX-License-Identifier: MIT
// The picture of a window's source: that of a service follows from its fields and its channel type, that of an input
// from the incoming signal. Some sources have none.
#include "services/ChannelType.h"
#include "virtualtv/set/picture/PictureTest.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;

constexpr WindowId pip = WindowId::pip;
constexpr const char* usual = "1920x1080@25";
constexpr const char* analogue = "720x576@25";

class SourcePicture : public PictureTest {
 protected:
  /// Puts a service with these fields on the main window's screen.
  void show(std::map<int, std::uint64_t> fields) {
    tv->removeServices();  // no field of the earlier service may stay
    tv->import({serviceOf(10, 0, 1, std::move(fields))}, false);
    ASSERT_GT(tune(10), 0);
  }
  std::string picture(WindowId on = WindowId::main) { return knob(std::string(nameOf(on)) + ".picture"); }
  void set(const std::string& field, const std::string& value) { turn("service.10." + field, value); }
};

TEST_F(SourcePicture, IsThatOfTheChannelTypeWhereTheServiceSaysNothing) {
  const std::map<int, std::string> usualOf{{CHANNEL_ANALOGUE_TERRESTRIAL, analogue},
                                           {CHANNEL_ANALOGUE_CABLE, analogue},
                                           {CHANNEL_RADIO_TERRESTRIAL, "none"},
                                           {CHANNEL_RADIO_CABLE, "none"},
                                           {CHANNEL_RADIO_SATELLITE, "none"},
                                           {CHANNEL_DATA_TERRESTRIAL, "none"},
                                           {CHANNEL_DATA_CABLE, "none"},
                                           {CHANNEL_DATA_SATELLITE, "none"},
                                           {CHANNEL_TELEVISION, usual},
                                           {0, usual},
                                           {10, usual},
                                           {-1, usual}};
  for (const auto& [type, wanted] : usualOf) {
    show({{Data::CHANNEL_TYPE, static_cast<std::uint64_t>(std::int64_t{type})}});
    EXPECT_EQ(picture(), wanted) << "channel type " << type;
  }
  show({});
  EXPECT_EQ(picture(), usual) << "without a channel type";
}

TEST_F(SourcePicture, FillsTheScreenInTheShapeOfTheChannelType) {
  show({{Data::CHANNEL_TYPE, CHANNEL_TELEVISION}});
  EXPECT_EQ(active(), "0,0,1920x1080");
  show({{Data::CHANNEL_TYPE, CHANNEL_ANALOGUE_CABLE}});
  EXPECT_EQ(active(), "240,0,1440x1080");
  show({{Data::CHANNEL_TYPE, CHANNEL_RADIO_CABLE}});
  EXPECT_EQ(active(), "none");
}

TEST_F(SourcePicture, IsWhatTheServiceSaysOfIt) {
  show({{Data::CHANNEL_TYPE, CHANNEL_TELEVISION}, {PICTURE_WIDTH, 720}, {PICTURE_HEIGHT, 480}, {FRAME_RATE, 30}});
  EXPECT_EQ(picture(), "720x480@30");
  EXPECT_EQ(cropped(), "0,0,720x480 at 0,0,1920x1080");
  set("frame_rate", "60");
  EXPECT_EQ(picture(), "720x480@60");
  set("picture_width", "unset");
  EXPECT_EQ(picture(), "1920x480@60");
  set("picture_height", "unset");
  set("frame_rate", "unset");
  EXPECT_EQ(picture(), usual);
}

TEST_F(SourcePicture, OfAnAnalogueServiceToo) {
  show({{Data::CHANNEL_TYPE, CHANNEL_ANALOGUE_TERRESTRIAL}, {PICTURE_HEIGHT, 480}, {PICTURE_SHAPE, 0}});
  EXPECT_EQ(picture(), "720x480@25");
  EXPECT_EQ(active(), "0,0,1920x1080");
}

TEST_F(SourcePicture, OfRadioThereIsNoneWhateverItsFieldsSay) {
  show({{Data::CHANNEL_TYPE, CHANNEL_RADIO_TERRESTRIAL}, {PICTURE_WIDTH, 720}, {PICTURE_HEIGHT, 576}});
  EXPECT_EQ(picture(), "none");
}

TEST_F(SourcePicture, ThereIsNoneWithoutAWidthAHeightAndARateOfOne) {
  show({});
  for (const char* field : {"picture_width", "picture_height", "frame_rate"}) {
    for (const char* odd : {"0", "-1", "-2147483648", "2147483648", "4294967296", "4294967297", "9223372036854775807",
                            "-9223372036854775808"}) {
      set(field, odd);
      EXPECT_EQ(picture(), "none") << field << " " << odd;
      EXPECT_EQ(active(), "none") << field << " " << odd;
      EXPECT_EQ(cropped(), "none") << field << " " << odd;
      EXPECT_EQ(resolution(), std::nullopt) << field << " " << odd;
    }
    set(field, "2147483647");
    EXPECT_NE(picture(), "none") << field;
    set(field, "1");
    EXPECT_NE(picture(), "none") << field;
    set(field, "unset");
  }
  EXPECT_EQ(picture(), usual);
}

TEST_F(SourcePicture, ATextInOneOfItsFieldsIsRefused) {
  show({});
  const std::string wanted = "a number from -9223372036854775808 to 9223372036854775807";
  for (const std::string field : {"picture_width", "picture_height", "frame_rate", "picture_shape", "active_format"}) {
    EXPECT_TRUE(
        refusal("service.10." + field, "\"720\"").ends_with("(" + field + ") takes " + wanted + ", not a text"));
    EXPECT_EQ(knob("service.10." + field), "unset");
  }
}

TEST_F(SourcePicture, ATextThatASetOfAnOlderVersionKeepsInOneOfItsFieldsSaysNothing) {
  for (const int field : {PICTURE_WIDTH, PICTURE_HEIGHT, FRAME_RATE, PICTURE_SHAPE, ACTIVE_FORMAT}) {
    Service kept = serviceOf(10, 0, 1);
    kept.texts[field] = u"720";
    tv->import({kept}, false);
    EXPECT_EQ(picture(), usual) << field;
    EXPECT_EQ(active(), "0,0,1920x1080") << field;
  }
}

TEST_F(SourcePicture, AnOddShapeIsWideAndAnOddFormatFills) {
  show({});
  for (const char* odd : {"0", "2", "-1", "9223372036854775807"}) {
    set("picture_shape", odd);
    EXPECT_EQ(active(), "0,0,1920x1080") << odd;
  }
  for (const char* odd : {"-1", "16", "25", "2147483647", "-9223372036854775808"}) {
    set("active_format", odd);
    EXPECT_EQ(active(), "0,0,1920x1080") << odd;
  }
}

TEST_F(SourcePicture, OfAnInputIsWhatComesIn) {
  switchTo(hdmi1);
  EXPECT_EQ(picture(), "1920x1080@60");
  switchTo(hdmi2);
  EXPECT_EQ(picture(), "3840x2160@50");
  turn("input.14.picture", "640x480@75");
  EXPECT_EQ(picture(), "640x480@75");
  EXPECT_EQ(cropped(), "0,0,640x480 at 0,0,1920x1080");
  EXPECT_EQ(active(), "0,0,1920x1080") << "its shape is its own, whatever the size";
}

TEST_F(SourcePicture, OfAnInputHasTheInputsShape) {
  constexpr int scart = 17;
  switchTo(scart);
  EXPECT_EQ(active(), "240,0,1440x1080");
  turn("input.17.picture", "1920x1080@50");
  EXPECT_EQ(active(), "240,0,1440x1080");
}

TEST_F(SourcePicture, IsOfTheInputNotOfTheServiceBehindIt) {
  show({{PICTURE_WIDTH, 720}});
  switchTo(hdmi1);
  EXPECT_EQ(picture(), "1920x1080@60");
  switchTo(antennaInput);
  EXPECT_EQ(picture(), "720x1080@25");
}

TEST_F(SourcePicture, ThereIsNoneWithoutASignal) {
  switchTo(hdmi1);
  tv->plug(hdmi1, false);
  EXPECT_EQ(picture(), "none");
  tv->plug(hdmi1, true);
  EXPECT_EQ(picture(), "1920x1080@60");
  turn("main.source_state", "1");
  EXPECT_EQ(picture(), "none");
}

TEST_F(SourcePicture, ThereIsNoneWithoutTheAntenna) {
  tv->plug(antennaInput, false);
  EXPECT_EQ(picture(), "none");
}

TEST_F(SourcePicture, ThereIsNoneWithoutASourceOrAService) {
  EXPECT_EQ(picture(pip), "none");
  leaveSource();
  EXPECT_EQ(picture(), "none");
  switchTo(antennaInput);
  EXPECT_NE(picture(), "none");
  turn("main.service", "0");
  EXPECT_EQ(picture(), "none");
}

TEST_F(SourcePicture, ThereIsNoneOfASourceThatTheSetDoesNotHave) {
  turn("main.source", "99");
  EXPECT_EQ(picture(), "none");
}

TEST_F(SourcePicture, IsOfEachWindowsOwnSource) {
  switchTo(hdmi2, pip);
  EXPECT_EQ(picture(pip), "3840x2160@50");
  EXPECT_EQ(picture(), usual);
  EXPECT_EQ(cropped(pip), "0,0,3840x2160 at 1296,702,576x324");
  EXPECT_EQ(active(pip), "1296,702,576x324");
}

TEST_F(SourcePicture, OfTheTvServiceGoesOnBesideTheIspSource) {
  tv->showIsp();
  EXPECT_EQ(picture(), usual);
  leaveSource();
  EXPECT_EQ(picture(), "none");
}

}  // namespace
}  // namespace virtualtv::test
