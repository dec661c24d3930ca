#include "set/Knobs.h"

#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <stdexcept>

#include "seam/Seam.h"
#include "services/ServiceStore.h"
#include "set/Picture.h"
#include "text/Units.h"

namespace virtualtv {

namespace {

using Parts = std::vector<std::string>;

[[noreturn]] void refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

template <typename Number>
std::optional<Number> numberIn(const std::string& text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

template <typename Number>
Number number(const std::string& text) {
  const auto value = numberIn<Number>(text);
  if (!value) refuse("'" + text + "': a number is wanted");
  return *value;
}

bool onOrOff(const std::string& text) {
  if (text != "on" && text != "off") refuse("'" + text + "': on or off is wanted");
  return text == "on";
}

// Services by the id that clients use, or by their key.

ServiceKey keyNamed(Tv& tv, const std::string& text) {
  if (text.rfind('#', 0) == 0) return number<ServiceKey>(text.substr(1));
  const auto key = tv.services().keyOf(number<std::uint64_t>(text));
  if (!key) refuse("there is no service " + text);
  return *key;
}

ServiceKey existingService(Tv& tv, const std::string& text) {
  const ServiceKey key = keyNamed(tv, text);
  if (!tv.services().read(key)) refuse("there is no service " + text);
  return key;
}

/// A service as `keyNamed` reads it: its id, `#KEY` where it has none, 0 for no service.
std::string nameOfService(Tv& tv, ServiceKey key) {
  if (key == 0) return "0";
  if (const auto service = tv.services().read(key)) {
    const auto id = service->numbers.find(TCServiceData::SERVICE_ID);
    if (id != service->numbers.end()) return std::to_string(id->second);
  }
  return "#" + std::to_string(key);
}

// The set.

template <auto member>
std::string getNumber(Tv& tv, const Parts&) {
  return std::to_string(tv.state().*member);
}
template <auto member>
void setNumber(Tv& tv, const Parts&, const std::string& value) {
  using Number = std::remove_cvref_t<decltype(tv.state().*member)>;
  const auto wanted = number<Number>(value);
  tv.adjust(WindowId::main, [&](TvState& state) { state.*member = wanted; });
}

template <auto member>
std::string getSwitch(Tv& tv, const Parts&) {
  return tv.state().*member ? "on" : "off";
}

void setIspPresent(Tv& tv, const Parts&, const std::string& value) {
  const bool present = onOrOff(value);
  tv.adjust(WindowId::main, [=](TvState& state) { state.ispPresent = present; });
}

void setFade(Tv& tv, const Parts&, const std::string& value) {
  const int fade = number<int>(value);
  if (fade < 0 || fade > 255) refuse("'" + value + "': a number from 0 to 255 is wanted");
  tv.adjust(WindowId::main, [=](TvState& state) { state.fade = fade; });
}

std::string getServiceCount(Tv& tv, const Parts&) {
  return std::to_string(tv.services().size());
}

// The windows.

WindowId windowNamed(const std::string& name) {
  for (const WindowId window : windowIds) {
    if (name == nameOf(window)) return window;
  }
  refuse("there is no window '" + name + "'; there are main and pip");
}

template <auto member>
std::string getOfWindow(Tv& tv, const Parts& parts) {
  return std::to_string(tv.state()[windowNamed(parts[0])].*member);
}
template <auto member>
void setOfWindow(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const int wanted = number<int>(value);
  tv.adjust(window, [&](TvState& state) { state[window].*member = wanted; });
}

std::string getMode(Tv& tv, const Parts& parts) {
  const TvMode mode = tv.state()[windowNamed(parts[0])].mode;
  return std::to_string(mode.antenna) + "," + std::to_string(mode.service);
}
void setMode(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const std::size_t comma = value.find(',');
  if (comma == std::string::npos) refuse("'" + value + "': ANTENNA,SERVICE is wanted");
  tv.setMode(window, {number<int>(value.substr(0, comma)), number<int>(value.substr(comma + 1))});
}

template <auto member>
std::string getServiceOfWindow(Tv& tv, const Parts& parts) {
  return nameOfService(tv, tv.state()[windowNamed(parts[0])].*member);
}
template <auto member>
void setServiceOfWindow(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const ServiceKey key = value == "0" ? 0 : existingService(tv, value);
  tv.adjust(window, [&](TvState& state) { state[window].*member = key; });
}

// The pictures.

std::string textOf(const Rect& rect) {
  return std::to_string(rect.x) + "," + std::to_string(rect.y) + "," + std::to_string(rect.width) + "," +
         std::to_string(rect.height);
}

std::string textOf(const Picture& picture) {
  return std::to_string(picture.width) + "x" + std::to_string(picture.height) + "@" + std::to_string(picture.rate);
}

/// Reads numbers from 1 on that have marks between them, as in 720x576@25, whose marks are x and @.
/// @param wanted  what to write, for a person who wrote something else.
template <std::size_t count>
std::array<int, count> lengthsIn(const std::string& text, const std::array<char, count - 1>& marks,
                                 const std::string& wanted) {
  std::array<int, count> lengths{};
  std::size_t start = 0;
  for (std::size_t index = 0; index < count; ++index) {
    const std::size_t end = index < marks.size() ? text.find(marks[index], start) : text.size();
    const auto length = end == text.npos ? std::nullopt : numberIn<int>(text.substr(start, end - start));
    if (length.value_or(0) < 1) refuse("'" + text + "': " + wanted + " is wanted, numbers from 1 on");
    lengths[index] = *length;
    start = end + 1;
  }
  return lengths;
}

std::string getRect(Tv& tv, const Parts& parts) {
  return textOf(tv.state()[windowNamed(parts[0])].plane.rect);
}
template <auto member>
std::string getCrop(Tv& tv, const Parts& parts) {
  const auto crop = cropOn(tv, windowNamed(parts[0]));
  return crop ? textOf((*crop).*member) : "none";
}
std::string getActive(Tv& tv, const Parts& parts) {
  const WindowId window = windowNamed(parts[0]);
  const auto picture = pictureOn(tv, window);
  return picture ? textOf(activeArea(tv.state()[window].plane, *picture)) : "none";
}
std::string getOrder(Tv& tv, const Parts& parts) {
  return std::to_string(tv.state()[windowNamed(parts[0])].plane.order);
}
std::string getMuted(Tv& tv, const Parts& parts) {
  return tv.state()[windowNamed(parts[0])].plane.muted ? "on" : "off";
}
std::string getPicture(Tv& tv, const Parts& parts) {
  const auto picture = pictureOn(tv, windowNamed(parts[0]));
  return picture ? textOf(*picture) : "none";
}

std::string getResolution(Tv& tv, const Parts& parts) {
  const WindowId window = windowNamed(parts[0]);
  if (const auto told = tv.state()[window].resolution) return std::to_string(*told);
  return "auto";
}
void setResolution(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  std::optional<int> wanted;
  if (value != "auto") wanted = number<int>(value);
  tv.adjust(window, [&](TvState& state) { state[window].resolution = wanted; });
}

std::string getIspPicture(Tv& tv, const Parts&) {
  return std::to_string(tv.state().ispWidth) + "x" + std::to_string(tv.state().ispHeight);
}
void setIspPicture(Tv& tv, const Parts&, const std::string& value) {
  const auto size = lengthsIn<2>(value, {'x'}, "WIDTHxHEIGHT");
  tv.adjust(WindowId::main, [&](TvState& state) {
    state.ispWidth = size[0];
    state.ispHeight = size[1];
  });
}

// The inputs.

const Input& inputNamed(Tv& tv, const std::string& source) {
  for (const Input& input : tv.state().inputs) {
    if (std::to_string(input.source) == source) return input;
  }
  refuse("the set has no input " + source);
}

std::string getPlugged(Tv& tv, const Parts& parts) {
  return inputNamed(tv, parts[0]).plugged ? "on" : "off";
}
void setPlugged(Tv& tv, const Parts& parts, const std::string& value) {
  tv.plug(inputNamed(tv, parts[0]).source, onOrOff(value));
}

std::string getInputName(Tv& tv, const Parts& parts) {
  return inputNamed(tv, parts[0]).name;
}

std::string getInputPicture(Tv& tv, const Parts& parts) {
  return textOf(inputNamed(tv, parts[0]).picture);
}
void setInputPicture(Tv& tv, const Parts& parts, const std::string& value) {
  const Input& named = inputNamed(tv, parts[0]);
  Picture wanted = named.picture;
  const auto lengths = lengthsIn<3>(value, {'x', '@'}, "WIDTHxHEIGHT@RATE");
  wanted.width = lengths[0];
  wanted.height = lengths[1];
  wanted.rate = lengths[2];
  tv.adjust(WindowId::main, [&, source = named.source](TvState& state) {
    for (Input& input : state.inputs) {
      if (input.source == source) input.picture = wanted;
    }
  });
}

// The fields of a service.

struct FieldName {
  std::string_view name;
  int fieldId;
};

constexpr std::array fieldNames{
    FieldName{"type", TCServiceData::CHANNEL_TYPE},
    FieldName{"ptc", TCServiceData::PTC},
    FieldName{"frequency", TCServiceData::FREQUENCY},
    FieldName{"modulation", TCServiceData::MODULATION},
    FieldName{"symbol_rate", TCServiceData::SYMBOL_RATE},
    FieldName{"id", TCServiceData::SERVICE_ID},
    FieldName{"major", TCServiceData::MAJOR},
    FieldName{"minor", TCServiceData::MINOR},
    FieldName{"program_number", TCServiceData::PROGRAM_NUMBER},
    FieldName{"name", TCServiceData::CHANNEL_NAME},
    FieldName{"transport_stream_id", TCServiceData::TRANSPORT_STREAM_ID},
    FieldName{"lock", TCServiceData::LOCK},
    FieldName{"source_id", TCServiceData::SOURCE_ID},
    FieldName{"original_network_id", TCServiceData::ORIGINAL_NETWORK_ID},
    FieldName{"attached", TCServiceData::SERVICE_FIELD_110},
    FieldName{"antenna", TCServiceData::ANTENNA_MODE},
    FieldName{"hidden", HIDDEN},
    FieldName{"service_mode", SERVICE_MODE},
    FieldName{"picture_width", PICTURE_WIDTH},
    FieldName{"picture_height", PICTURE_HEIGHT},
    FieldName{"frame_rate", FRAME_RATE},
    FieldName{"picture_shape", PICTURE_SHAPE},
    FieldName{"active_format", ACTIVE_FORMAT},
};

int fieldNamed(const std::string& name) {
  for (const FieldName& field : fieldNames) {
    if (field.name == name) return field.fieldId;
  }
  const auto fieldId = numberIn<int>(name);
  if (!fieldId || *fieldId < 0) refuse("there is no field '" + name + "'");
  return *fieldId;
}

bool isText(int fieldId) {
  return fieldId == TCServiceData::CHANNEL_NAME || fieldId == TCServiceData::SERVICE_FIELD_110;
}

std::string getField(Tv& tv, const Parts& parts) {
  const auto service = tv.services().read(existingService(tv, parts[0]));
  const int fieldId = fieldNamed(parts[1]);
  if (const auto text = service->texts.find(fieldId); text != service->texts.end()) return text::quoted(text->second);
  const auto value = service->numbers.find(fieldId);
  return value == service->numbers.end() ? "unset" : seam::printNumber(fieldId, value->second);
}

/// A text as `.set` takes it: between double quotes with \uNNNN for odd units, or plain.
std::optional<std::u16string> textIn(const std::string& value, int fieldId) {
  std::string_view rest = value;
  if (auto units = text::parseQuoted(rest); units && rest.empty()) return units;
  if (isText(fieldId)) return text::toUnits(value);
  return std::nullopt;
}

void setField(Tv& tv, const Parts& parts, const std::string& value) {
  const ServiceKey key = existingService(tv, parts[0]);
  const int fieldId = fieldNamed(parts[1]);
  if (value == "unset") {
    tv.services().unset(key, fieldId);
  } else if (const auto units = textIn(value, fieldId)) {
    tv.services().set(key, fieldId, *units);
  } else {
    const auto positive = numberIn<std::uint64_t>(value);
    const std::uint64_t wanted = positive ? *positive : static_cast<std::uint64_t>(number<std::int64_t>(value));
    requireNumber(fieldId, wanted, value);
    tv.services().set(key, fieldId, wanted);
  }
  tv.adjust(WindowId::main, [](TvState&) {});
}

// Latency.

const seam::Operation& operationNamed(const std::string& name) {
  if (const seam::Operation* operation = seam::findOperation(name)) return *operation;
  refuse("there is no operation '" + name + "'");
}

std::string getLatency(Tv&, const Parts& parts) {
  return std::to_string(seam::Seam::instance().latency(operationNamed(parts[0])));
}
void setLatency(Tv&, const Parts& parts, const std::string& value) {
  seam::Seam::instance().setLatency(operationNamed(parts[0]), number<std::uint64_t>(value));
}

constexpr std::array table{
    Knob{"region", "number", "region kind that the set was built for", getNumber<&TvState::region>,
         setNumber<&TvState::region>},
    Knob{"country", "number", "country that the user chose", getNumber<&TvState::country>,
         setNumber<&TvState::country>},
    Knob{"start.service", "service id", "the service that the set starts with", getNumber<&TvState::startServiceId>,
         setNumber<&TvState::startServiceId>},
    Knob{"start.source", "number", "the TV service's number of the source that the set starts with",
         getNumber<&TvState::startSource>, setNumber<&TvState::startSource>},
    Knob{"isp.present", "on or off", "whether the secondary TV stack can be reached", getSwitch<&TvState::ispPresent>,
         setIspPresent},
    Knob{"isp.shown", "", "whether the secondary TV stack shows the ISP source", getSwitch<&TvState::ispShown>,
         nullptr},
    Knob{"isp.picture", "WIDTHxHEIGHT", "size of the ISP source's picture, pixels", getIspPicture, setIspPicture},
    Knob{"tuner.fade", "0 to 255", "how much of the tuner's signal is lost", getNumber<&TvState::fade>, setFade},
    Knob{"clock", "", "milliseconds since the set was switched on", getNumber<&TvState::clock>, nullptr},
    Knob{"services", "", "number of services", getServiceCount, nullptr},
    Knob{"WINDOW.source_state", "number", "state of the window's source: -1 none, 1 no signal, 2 shown",
         getOfWindow<&WindowState::sourceState>, setOfWindow<&WindowState::sourceState>},
    Knob{"WINDOW.source", "number", "the TV service's number of the window's source, -1 for none",
         getOfWindow<&WindowState::source>, setOfWindow<&WindowState::source>},
    Knob{"WINDOW.previous_source", "number", "the TV service's number of the source before, -1 for none",
         getOfWindow<&WindowState::previousSource>, setOfWindow<&WindowState::previousSource>},
    Knob{"WINDOW.mode", "ANTENNA,SERVICE",
         "the TV service's numbers of the TV mode: antenna 0 terrestrial, 1 cable, 2 satellite, and service list",
         getMode, setMode},
    Knob{"WINDOW.service", "service id, #KEY or 0", "the service on screen", getServiceOfWindow<&WindowState::service>,
         setServiceOfWindow<&WindowState::service>},
    Knob{"WINDOW.previous_service", "service id, #KEY or 0", "the service on screen before",
         getServiceOfWindow<&WindowState::previousService>, setServiceOfWindow<&WindowState::previousService>},
    Knob{"WINDOW.picture", "", "the picture that the window's source gives, WIDTHxHEIGHT@RATE", getPicture, nullptr},
    Knob{"WINDOW.resolution", "number or auto", "code of the resolution that the set tells; auto: that of the picture",
         getResolution, setResolution},
    Knob{"WINDOW.rect", "", "where the window's picture stands on the base screen of 1920x1080: X,Y,WIDTH,HEIGHT",
         getRect, nullptr},
    Knob{"WINDOW.crop", "", "the part of the picture that is shown, in its pixels: X,Y,WIDTH,HEIGHT",
         getCrop<&Crop::crop>, nullptr},
    Knob{"WINDOW.display", "", "where that part is shown: X,Y,WIDTH,HEIGHT", getCrop<&Crop::display>, nullptr},
    Knob{"WINDOW.active", "", "the part of the screen that the picture's content fills: X,Y,WIDTH,HEIGHT", getActive,
         nullptr},
    Knob{"WINDOW.order", "", "order of the window's plane: higher ones lie over lower ones, graphics have 1", getOrder,
         nullptr},
    Knob{"WINDOW.muted", "", "whether the window's picture is hidden", getMuted, nullptr},
    Knob{"input.SOURCE.picture", "WIDTHxHEIGHT@RATE",
         "what comes into an input; SOURCE is the TV service's number of it", getInputPicture, setInputPicture},
    Knob{"input.SOURCE.plugged", "on or off",
         "whether something is plugged into an input; SOURCE is the TV service's number of it", getPlugged, setPlugged},
    Knob{"input.SOURCE.name", "", "name of an input; SOURCE is the TV service's number of it", getInputName, nullptr},
    Knob{"service.ID.FIELD", "number, text or unset",
         "a field of a service, by name or number; ID is a service id, or #KEY as .services shows it; the type is the "
         "TV service's number of it",
         getField, setField},
    Knob{"latency.OPERATION", "milliseconds", "how long each call of a platform operation takes", getLatency,
         setLatency},
};

bool isPlace(std::string_view part) {
  return part.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == part.npos;
}

/// Takes the text before the next full stop off the front.
std::string_view takePart(std::string_view& text) {
  const std::size_t stop = text.find('.');
  const std::string_view part = text.substr(0, stop);
  text = stop == text.npos ? std::string_view() : text.substr(stop + 1);
  return part;
}

/// What stands in the places of a knob's name; nothing when `name` is another knob's.
std::optional<Parts> match(std::string_view knob, std::string_view name) {
  Parts parts;
  while (!knob.empty() && !name.empty()) {
    const std::string_view wanted = takePart(knob);
    const std::string_view given = takePart(name);
    if (isPlace(wanted) && !given.empty()) {
      parts.emplace_back(given);
    } else if (wanted != given) {
      return std::nullopt;
    }
  }
  if (!knob.empty() || !name.empty()) return std::nullopt;
  return parts;
}

template <typename Use>
auto withKnob(const std::string& name, Use use) {
  for (const Knob& knob : table) {
    if (const auto parts = match(knob.name, name)) return use(knob, *parts);
  }
  refuse("there is no knob '" + name + "'; '.help knobs' lists them");
}

}  // namespace

std::span<const Knob> knobs() {
  return table;
}

std::vector<std::string> knobNames(Tv& tv) {
  std::vector<std::string> names;
  for (const Knob& knob : table) {
    std::string_view rest = knob.name;
    const std::string_view first = takePart(rest);
    if (first == "WINDOW") {
      for (const WindowId window : windowIds) names.push_back(nameOf(window) + ("." + std::string(rest)));
    } else if (first == "input") {
      takePart(rest);
      for (const Input& input : tv.state().inputs) {
        names.push_back("input." + std::to_string(input.source) + "." + std::string(rest));
      }
    } else if (rest.empty() || !isPlace(rest.substr(0, rest.find('.')))) {
      names.emplace_back(knob.name);
    }
  }
  return names;
}

std::string getKnob(Tv& tv, const std::string& name) {
  return withKnob(name, [&](const Knob& knob, const Parts& parts) { return knob.get(tv, parts); });
}

void setKnob(Tv& tv, const std::string& name, const std::string& value) {
  withKnob(name, [&](const Knob& knob, const Parts& parts) {
    if (knob.set == nullptr) refuse("'" + name + "' can only be read");
    knob.set(tv, parts, value);
  });
}

}  // namespace virtualtv
