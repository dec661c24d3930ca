// SPDX-License-Identifier: MIT
#include "rpc/Request.h"

#include <optional>

#include "json/Parts.h"
#include "json/Read.h"

namespace virtualtv::rpc {

namespace {

/// The known members of a request, as JSON; empty for missing ones.
struct Members {
  std::string_view version;
  std::string_view method;
  std::string_view params;
  std::string_view id;
};

/// The name of a member. Returns nothing for a name that UTF-8 can't hold, which can't be a known member.
std::optional<std::string> nameOf(const json::Parts& parts) {
  try {
    return parts.name();
  } catch (const json::NotJson&) {
    return std::nullopt;
  }
}

/// If several members have the same name, the last one counts.
Members membersOf(json::Parts& parts) {
  Members members;
  while (parts.next()) {
    const std::optional<std::string> name = nameOf(parts);
    if (name == "jsonrpc") members.version = parts.value();
    if (name == "method") members.method = parts.value();
    if (name == "params") members.params = parts.value();
    if (name == "id") members.id = parts.value();
  }
  return members;
}

bool isList(std::string_view value) {
  return value.starts_with('[') || value.starts_with('{');
}

bool isId(std::string_view value) {
  return value != "true" && value != "false" && !isList(value);
}

/// The text of a JSON string. Returns nothing for any other value, and for a text that UTF-8 can't hold.
std::optional<std::string> textOf(std::string_view value) {
  try {
    return json::textOf(value);
  } catch (const json::NotJson&) {
    return std::nullopt;
  }
}

}  // namespace

Request requestIn(std::string_view text) {
  json::Parts parts(text);
  if (!parts.isObject()) throw NotARequest("a request is an object", {});
  const Members members = membersOf(parts);
  if (!isId(members.id)) throw NotARequest("\"id\": a text, a number or null is wanted", {});
  const auto refuse = [&](const char* reason) { throw NotARequest(reason, members.id); };
  if (textOf(members.version) != "2.0") refuse("\"jsonrpc\": \"2.0\" is wanted");
  std::optional<std::string> method = textOf(members.method);
  if (!method) refuse("\"method\": a text is wanted");
  if (!members.params.empty() && !isList(members.params)) refuse("\"params\": an array or an object is wanted");
  return {std::move(*method), members.params, members.id};
}

}  // namespace virtualtv::rpc
