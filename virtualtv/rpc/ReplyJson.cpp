#include "rpc/ReplyJson.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "framework/Reply.h"
#include "json/Write.h"
#include "text/Units.h"

namespace virtualtv::rpc {

namespace {

using framework::Reply;

std::string base64(std::string_view bytes) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const auto byte = [&](std::size_t offset) -> unsigned {
      return at + offset < bytes.size() ? static_cast<unsigned char>(bytes[at + offset]) : 0U;
    };
    const unsigned three = byte(0) << 16U | byte(1) << 8U | byte(2);
    for (unsigned shift = 18; shift <= 18; shift -= 6) text += digits[three >> shift & 63U];
  }
  for (std::size_t missing = (3 - bytes.size() % 3) % 3; missing > 0; --missing) text[text.size() - missing] = '=';
  return text;
}

/// The reply's front, and how long it was where that is not all of it.
std::optional<std::size_t> cut(Reply& reply, std::size_t longest) {
  const std::size_t length = reply.kind == Reply::Kind::unicode ? reply.units.size() : reply.text.size();
  const std::size_t most = reply.kind == Reply::Kind::unicode ? longest / 2 : longest;
  if (length <= most) return std::nullopt;
  reply.units.resize(std::min(reply.units.size(), most));
  reply.text.resize(std::min(reply.text.size(), most));
  while (!reply.text.empty() && (static_cast<unsigned char>(reply.text.back()) & 0xC0U) == 0x80U) reply.text.pop_back();
  if (!reply.text.empty() && static_cast<unsigned char>(reply.text.back()) >= 0xC0U) reply.text.pop_back();
  return length;
}

Json::Value listOf(std::u16string_view units) {
  Json::Value list(Json::arrayValue);
  for (const char16_t unit : units) list.append(static_cast<unsigned>(unit));
  return list;
}

/// Puts the members in the order of their names.
template <typename Object>
void putAscii(Object& object, std::string_view text, const std::optional<std::size_t>& length) {
  const bool isUtf8 = text::isUtf8(text);
  if (!isUtf8) object.put("bytes", base64(text));
  object.put("kind", "ascii");
  if (length) object.put("length", static_cast<std::int64_t>(*length));
  if (isUtf8) {
    object.put("value", text);
  } else {
    object.put("value", text::wellFormed(text));
  }
}

template <typename Object>
void putUnicode(Object& object, std::u16string_view units, const std::optional<std::size_t>& length) {
  const std::string utf8 = text::toUtf8(units);
  object.put("kind", "unicode");
  if (length) object.put("length", static_cast<std::int64_t>(*length));
  if (text::toUnits(utf8) != units) object.put("units", listOf(units));
  object.put("value", utf8);
}

template <typename Object>
void putResult(Object& object, bool accepted, std::string_view encoded, std::size_t longest) {
  object.put("accepted", accepted);
  std::optional<Reply> reply = framework::decode(encoded);
  if (!reply) return object.put("kind", "empty");
  const auto length = cut(*reply, longest);
  switch (reply->kind) {
    case Reply::Kind::integer:
      object.put("kind", "int");
      return object.put("value", std::int64_t{reply->number});
    case Reply::Kind::ascii:
      return putAscii(object, reply->text, length);
    case Reply::Kind::unicode:
      return putUnicode(object, reply->units, length);
  }
}

/// An object that is made rather than written.
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
  object["bytes"] = base64(bytes);
}

}  // namespace virtualtv::rpc
