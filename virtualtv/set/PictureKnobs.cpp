// SPDX-License-Identifier: MIT
// Knobs for the pictures of the inputs, and for how the windows show them.
#include "set/KnobParts.h"

#include "set/Picture.h"

namespace virtualtv::knobparts {

namespace {

std::string textOfRect(const Rect& rect) {
  return std::to_string(rect.x) + "," + std::to_string(rect.y) + "," + std::to_string(rect.width) + "," +
         std::to_string(rect.height);
}

std::string textOfPicture(const Picture& picture) {
  return std::to_string(picture.width) + "x" + std::to_string(picture.height) + "@" + std::to_string(picture.rate);
}

std::string getRect(Tv& tv, const Parts& parts) {
  return textOfRect(tv.state()[windowNamed(parts[0])].plane.rect);
}
template <auto member>
std::string getCrop(Tv& tv, const Parts& parts) {
  const auto crop = cropOn(tv, windowNamed(parts[0]));
  return crop ? textOfRect((*crop).*member) : "none";
}
std::string getActive(Tv& tv, const Parts& parts) {
  const WindowId window = windowNamed(parts[0]);
  const auto picture = pictureOn(tv, window);
  return picture ? textOfRect(activeArea(tv.state()[window].plane, *picture)) : "none";
}
std::string getOrder(Tv& tv, const Parts& parts) {
  return std::to_string(tv.state()[windowNamed(parts[0])].plane.order);
}
std::string getMuted(Tv& tv, const Parts& parts) {
  return onOff(tv.state()[windowNamed(parts[0])].plane.muted);
}
std::string getPicture(Tv& tv, const Parts& parts) {
  const auto picture = pictureOn(tv, windowNamed(parts[0]));
  return picture ? textOfPicture(*picture) : "none";
}

std::string getResolution(Tv& tv, const Parts& parts) {
  const WindowId window = windowNamed(parts[0]);
  if (const auto told = tv.state()[window].resolution) return std::to_string(*told);
  return "auto";
}
void setResolution(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  std::optional<int> wanted;
  if (value != "auto") wanted = text::requireNumber<int>(value, text::rangeOf<int>(), " or auto");
  tv.adjust([&](TvState& state) { state[window].resolution = wanted; });
}

const Input& inputNamed(Tv& tv, const std::string& source) {
  for (const Input& input : tv.state().inputs) {
    if (std::to_string(input.source) == source) return input;
  }
  refuse("the set has no input " + source);
}

std::string getPlugged(Tv& tv, const Parts& parts) {
  return onOff(inputNamed(tv, parts[0]).plugged);
}
void setPlugged(Tv& tv, const Parts& parts, const std::string& value) {
  tv.plug(inputNamed(tv, parts[0]).source, onOrOff(value));
}

std::string getInputName(Tv& tv, const Parts& parts) {
  return inputNamed(tv, parts[0]).name;
}

std::string getInputPicture(Tv& tv, const Parts& parts) {
  return textOfPicture(inputNamed(tv, parts[0]).picture);
}
void setInputPicture(Tv& tv, const Parts& parts, const std::string& value) {
  const Input& named = inputNamed(tv, parts[0]);
  Picture wanted = named.picture;
  const auto lengths = lengthsIn<3>(value, {'x', '@'}, "WIDTHxHEIGHT@RATE");
  wanted.width = lengths[0];
  wanted.height = lengths[1];
  wanted.rate = lengths[2];
  tv.adjust([&, source = named.source](TvState& state) {
    for (Input& input : state.inputs) {
      if (input.source == source) input.picture = wanted;
    }
  });
}

constexpr std::array pictureTable{
    Knob{"WINDOW.picture", "", "the picture of the window's source, WIDTHxHEIGHT@RATE", getPicture, nullptr},
    Knob{"WINDOW.resolution", "number or auto",
         "code of the resolution that the set reports; auto: that of the picture", getResolution, setResolution},
    Knob{"WINDOW.rect", "", "place of the window's picture on the base screen of 1920x1080: X,Y,WIDTH,HEIGHT", getRect,
         nullptr},
    Knob{"WINDOW.crop", "", "the part of the picture that is shown, in its pixels: X,Y,WIDTH,HEIGHT",
         getCrop<&Crop::crop>, nullptr},
    Knob{"WINDOW.display", "", "where that part is shown: X,Y,WIDTH,HEIGHT", getCrop<&Crop::display>, nullptr},
    Knob{"WINDOW.active", "", "the part of the screen that the picture's content fills: X,Y,WIDTH,HEIGHT", getActive,
         nullptr},
    Knob{"WINDOW.order", "", "order of the window's plane: higher planes cover lower ones, graphics have 1", getOrder,
         nullptr},
    Knob{"WINDOW.muted", "", "whether the window's picture is hidden", getMuted, nullptr},
    Knob{"input.SOURCE.picture", "WIDTHxHEIGHT@RATE",
         "the picture at an input; SOURCE is the TV service's number of it", getInputPicture, setInputPicture},
    Knob{"input.SOURCE.plugged", "on or off",
         "whether something is plugged into an input; SOURCE is the TV service's number of it", getPlugged, setPlugged},
    Knob{"input.SOURCE.name", "", "name of an input; SOURCE is the TV service's number of it", getInputName, nullptr},
};

}  // namespace

std::span<const Knob> pictureKnobs() {
  return pictureTable;
}

}  // namespace virtualtv::knobparts
