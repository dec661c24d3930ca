#include "rpc/Request.h"

#include <optional>

#include "json/Parts.h"

namespace virtualtv::rpc {

namespace {

/// The members of a request that count, as JSON; empty for those that are missing.
struct Members {
  std::string_view version;
  std::string_view method;
  std::string_view params;
  std::string_view id;
};

/// Of several members of one name the last counts.
Members membersOf(json::Parts& parts) {
  Members members;
  while (parts.next()) {
    const std::string name = parts.name();
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

[[noreturn]] void refuse(const char* reason) {
  throw Failure(Code::notARequest, reason);
}

}  // namespace

Request requestIn(std::string_view text) {
  json::Parts parts(text);
  if (!parts.isObject()) refuse("a request is an object");
  const Members members = membersOf(parts);
  if (json::textOf(members.version) != "2.0") refuse("\"jsonrpc\": \"2.0\" is wanted");
  std::optional<std::string> method = json::textOf(members.method);
  if (!method) refuse("\"method\": a text is wanted");
  if (!members.params.empty() && !isList(members.params)) refuse("\"params\": an array or an object is wanted");
  if (!isId(members.id)) refuse("\"id\": a text, a number or null is wanted");
  return {std::move(*method), members.params, members.id};
}

}  // namespace virtualtv::rpc
