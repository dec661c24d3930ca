// SPDX-License-Identifier: MIT
// The fields of a service, its tracks and its favourites.
#include "set/KnobParts.h"

#include "seam/Values.h"
#include "services/FieldNames.h"
#include "services/FieldNumbers.h"
#include "services/ListText.h"
#include "services/ServiceStore.h"
#include "text/Units.h"

namespace virtualtv::knobparts {

namespace {

bool isNumber(std::string_view text) {
  text.remove_prefix(text.starts_with('-') ? 1 : 0);
  return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

int existingField(const std::string& name) {
  const auto fieldId = fieldNamed(name);
  if (!fieldId && isNumber(name)) requireFieldId(name);
  if (!fieldId) refuse("there is no field '" + name + "'");
  return *fieldId;
}

std::string getField(Tv& tv, const Parts& parts) {
  const auto service = tv.services().read(existingService(tv, parts[0]));
  const int fieldId = existingField(parts[1]);
  if (const auto text = service->texts.find(fieldId); text != service->texts.end()) return text::quoted(text->second);
  const auto value = service->numbers.find(fieldId);
  return value == service->numbers.end() ? "unset" : seam::printNumber(fieldId, value->second);
}

/// Reads a text as `.set` takes it: plain, or between double quotes with \uNNNN for odd units. A plain text must not
/// start with a double quote.
std::optional<std::u16string> textIn(const std::string& value, int fieldId) {
  std::string_view rest = value;
  if (auto units = text::parseQuoted(rest); units && rest.empty()) return units;
  if (!takesNumber(fieldId) && !value.starts_with('"')) return text::toUnits(value);
  return std::nullopt;
}

void setField(Tv& tv, const Parts& parts, const std::string& value) {
  const ServiceKey key = existingService(tv, parts[0]);
  const int fieldId = existingField(parts[1]);
  if (value == "unset") {
    tv.setField(key, fieldId, {});
  } else if (const auto units = textIn(value, fieldId)) {
    tv.setField(key, fieldId, *units);
  } else {
    tv.setField(key, fieldId, fieldNumber(fieldId, value));
  }
}

// The lists. Parse before writing, so that an invalid text leaves the service unchanged.

template <auto list>
std::string getList(Tv& tv, const Parts& parts) {
  const auto service = tv.services().read(existingService(tv, parts[0]));
  return textOf((*service).*list);
}
template <auto read, auto keep>
void setList(Tv& tv, const Parts& parts, const std::string& value) {
  const ServiceKey key = existingService(tv, parts[0]);
  (tv.*keep)(key, read(value));
}

constexpr std::array serviceTable{
    Knob{"service.ID.audio", "tracks or none",
         "audio tracks of a service, PID:LANG:CODING:MODE:TYPE with commas between, ! before one that can't be read",
         getList<&Service::audio>, setList<readAudioTracks, &Tv::setAudioTracks>},
    Knob{"service.ID.subtitles", "tracks or none",
         "subtitles of a service, PID:LANG:KIND, written likewise; KIND is dvb or teletext",
         getList<&Service::subtitles>, setList<readSubtitleTracks, &Tv::setSubtitleTracks>},
    Knob{"service.ID.favourites", "groups or none",
         "favourite groups of a service, GROUP=1 where it is a member, else GROUP=0", getList<&Service::favourites>,
         setList<readFavourites, &Tv::setFavouritesOf>},
    Knob{"service.ID.FIELD", "number, text or unset",
         "a field of a service, by name or number; ID is a service id, or #KEY as .services shows it; the type is the "
         "TV service's number of it",
         getField, setField},
};

}  // namespace

std::span<const Knob> serviceKnobs() {
  return serviceTable;
}

std::vector<std::string> partsOfService(Tv& tv, const std::string& id) {
  const auto service = tv.services().read(existingService(tv, id));
  std::vector<std::string> parts;
  for (const FieldName& field : fieldNames()) parts.emplace_back(field.name);
  const auto addNameless = [&](const auto& fields) {
    for (const auto& [fieldId, value] : fields) {
      const std::string number = std::to_string(fieldId);
      if (nameOfField(fieldId) == number) parts.push_back(number);
    }
  };
  addNameless(service->numbers);
  addNameless(service->texts);
  for (const char* list : {"audio", "subtitles", "favourites"}) parts.emplace_back(list);
  return parts;
}

}  // namespace virtualtv::knobparts
