// SPDX-License-Identifier: MIT
#include "json/Texts.h"

#include <type_traits>

#include "text/Units.h"

namespace virtualtv::json {

namespace {

template <typename Text>
Json::Value numbersOf(const char* name, const Text& text) {
  Json::Value json;
  Json::Value& numbers = json[name] = Json::arrayValue;
  for (const auto unit : text) numbers.append(static_cast<std::make_unsigned_t<decltype(unit)>>(unit));
  return json;
}

template <typename Text>
Text textOfNumbers(const char* name, const JsonPart& part) {
  using Unit = std::make_unsigned_t<typename Text::value_type>;
  Text text;
  part.requireOnly({name});
  const JsonPart numbers = part.at(name);
  numbers.eachItem([&](const JsonPart& number) {
    text += static_cast<typename Text::value_type>(number.number(text::rangeOf<Unit>()));
  });
  return text;
}

}  // namespace

Json::Value ofBytes(const std::string& bytes) {
  return text::isUtf8(bytes) ? Json::Value(bytes) : numbersOf("bytes", bytes);
}
Json::Value ofUnits(const std::u16string& units) {
  const std::string utf8 = text::toUtf8(units);
  return text::toUnits(utf8) == units ? Json::Value(utf8) : numbersOf("units", units);
}

std::string bytesIn(const JsonPart& part) {
  return part.isObject() ? textOfNumbers<std::string>("bytes", part) : part.text();
}
std::u16string unitsIn(const JsonPart& part) {
  return part.isObject() ? textOfNumbers<std::u16string>("units", part) : text::toUnits(part.text());
}

}  // namespace virtualtv::json
