// SPDX-License-Identifier: MIT
#include "rpc/ReplyJson.h"

#include <cstdint>
#include <optional>
#include <type_traits>

#include "framework/Reply.h"
#include "json/Write.h"
#include "text/Base64.h"
#include "text/Units.h"

namespace virtualtv::rpc {

namespace {

using framework::Reply;

/// A prefix of a text that ends with a whole character.
std::string_view front(std::string_view text, std::size_t longest) {
  text = text.substr(0, longest);
  while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U) text.remove_suffix(1);
  if (!text.empty() && static_cast<unsigned char>(text.back()) >= 0xC0U) text.remove_suffix(1);
  return text;
}

Json::Value listOf(std::u16string_view units) {
  Json::Value list(Json::arrayValue);
  for (const char16_t unit : units) list.append(static_cast<unsigned>(unit));
  return list;
}

// The members are sorted by name, as in all objects.

template <typename Object>
void putAscii(Object& object, std::string_view whole, std::size_t longest) {
  const std::string_view text = whole.size() > longest ? front(whole, longest) : whole;
  const bool isUtf8 = text::isUtf8(text);
  if (!isUtf8) object.put("bytes", text::toBase64(text));
  object.put("kind", "ascii");
  if (whole.size() > longest) object.put("length", static_cast<std::int64_t>(whole.size()));
  if (isUtf8) return object.put("value", text);
  object.put("value", text::wellFormed(text));
}

template <typename Object>
void putUnicode(Object& object, std::u16string_view whole, std::size_t longest) {
  const std::u16string_view units = whole.substr(0, longest);
  const std::string utf8 = text::toUtf8(units);
  object.put("kind", "unicode");
  if (whole.size() > longest) object.put("length", static_cast<std::int64_t>(whole.size()));
  if (text::toUnits(utf8) != units) object.put("units", listOf(units));
  object.put("value", utf8);
}

template <typename Object>
void putResult(Object& object, bool accepted, std::string_view encoded, std::size_t longest) {
  object.put("accepted", accepted);
  if (const auto text = framework::asciiIn(encoded)) return putAscii(object, *text, longest);
  const std::optional<Reply> reply = framework::decode(encoded);
  if (!reply) return object.put("kind", "empty");
  if (reply->kind == Reply::Kind::unicode) return putUnicode(object, reply->units, longest / 2);
  object.put("kind", "int");
  object.put("value", std::int64_t{reply->number});
}

/// Collects the members in a Json::Value instead of writing them.
struct Made {
  Json::Value json{Json::objectValue};

  template <typename Value>
  void put(const char* name, const Value& value) {
    if constexpr (std::is_convertible_v<const Value&, std::string_view>) {
      const std::string_view text = value;
      json[name] = Json::Value(text.data(), text.data() + text.size());
    } else {
      json[name] = Json::Value(value);
    }
  }
};

}  // namespace

Json::Value resultOf(bool accepted, std::string_view encoded, std::size_t longest) {
  Made made;
  putResult(made, accepted, encoded, longest);
  return made.json;
}

void appendResult(std::string& text, bool accepted, std::string_view encoded) {
  json::Object object(text);
  putResult(object, accepted, encoded, std::numeric_limits<std::size_t>::max());
  object.end();
}

void putBytes(Json::Value& object, const char* name, std::string_view bytes) {
  if (text::isUtf8(bytes)) {
    object[name] = Json::Value(bytes.data(), bytes.data() + bytes.size());
    return;
  }
  object[name] = text::wellFormed(bytes);
  object["bytes"] = text::toBase64(bytes);
}

}  // namespace virtualtv::rpc
