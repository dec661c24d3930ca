#include "rpc/ReplyJson.h"

#include <algorithm>
#include <optional>
#include <string>

#include "framework/Reply.h"
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

void putUnits(Json::Value& result, std::u16string_view units) {
  const std::string utf8 = text::toUtf8(units);
  result["value"] = utf8;
  if (text::toUnits(utf8) == units) return;
  Json::Value& all = result["units"] = Json::arrayValue;
  for (const char16_t unit : units) all.append(static_cast<unsigned>(unit));
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

const char* nameOf(Reply::Kind kind) {
  switch (kind) {
    case Reply::Kind::integer:
      return "int";
    case Reply::Kind::ascii:
      return "ascii";
    case Reply::Kind::unicode:
      break;
  }
  return "unicode";
}

}  // namespace

Json::Value resultOf(bool accepted, std::string_view encoded, std::size_t longest) {
  Json::Value result;
  result["accepted"] = accepted;
  std::optional<Reply> reply = framework::decode(encoded);
  result["kind"] = reply ? nameOf(reply->kind) : "empty";
  if (!reply) return result;
  if (const auto length = cut(*reply, longest)) result["length"] = Json::UInt64{*length};
  if (reply->kind == Reply::Kind::integer) result["value"] = reply->number;
  if (reply->kind == Reply::Kind::ascii) putBytes(result, "value", reply->text);
  if (reply->kind == Reply::Kind::unicode) putUnits(result, reply->units);
  return result;
}

void putBytes(Json::Value& object, const char* name, std::string_view bytes) {
  if (text::isUtf8(bytes)) {
    object[name] = Json::Value(bytes.data(), bytes.data() + bytes.size());
    return;
  }
  object[name] = text::toUtf8(text::toUnits(bytes));
  object["bytes"] = base64(bytes);
}

}  // namespace virtualtv::rpc
