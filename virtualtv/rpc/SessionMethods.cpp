// SPDX-License-Identifier: MIT
// Sessions, and the description of all methods.
#include <array>
#include <string>

#include "rpc/Core.h"
#include "rpc/Method.h"
#include "rpc/Schemas.h"
#include "text/Units.h"

namespace virtualtv::rpc {

namespace {

Json::Value open(const Call& call) {
  Seat& seat = call.seat.isShared ? call.core.openWaiting() : call.seat;
  if (call.params.has("appId") || call.params.has("widgetId")) {
    seat.shell.client().setApplication({call.params.text("appId", ""), call.params.text("widgetId", "")});
  }
  Json::Value answer;
  answer["session"] = seat.id;
  answer["server"] = call.core.id();
  answer["revision"] = Json::UInt64{call.core.device().revision()};
  answer["virtual"] = true;
  if (const std::string state = call.core.state(); !state.empty()) answer["state"] = text::wellFormed(state);
  return answer;
}

Json::Value close(const Call& call) {
  const std::string id = call.params.text("session", call.seat.isShared ? "" : call.seat.id);
  if (id.empty()) throw Failure(Code::badParameters, "there is no \"session\"");
  call.core.close(call.core.seat(id).id);
  return Json::objectValue;
}

Json::Value sessions(const Call& call) {
  Json::Value answer;
  answer["sessions"] = Json::arrayValue;
  for (const auto& [id, seat] : call.core.seats()) {
    Json::Value& session = answer["sessions"].append(Json::objectValue);
    session["session"] = id;
    session["connected"] = seat->outlet != nullptr;
    session["shared"] = seat->isShared;
    session["engines"] = Json::arrayValue;
    for (const std::string& engine : seat->shell.client().openEngines()) {
      session["engines"].append(text::wellFormed(engine));
    }
  }
  return answer;
}

void discover(const Call& call, std::string& text) {
  text += call.core.openRpc();
}

const std::array sessionRows{
    Method{"session.open",
           "say which application the session is of; without a connection, open a session",
           {{"appId", textSchema, "the application"}, {"widgetId", textSchema, "its widget"}},
           R"({"type": "object", "required": ["session", "server", "revision", "virtual"], "properties": {
               "session": {"type": "string"}, "server": {"type": "string"},
               "revision": {"type": "integer"}, "virtual": {"const": true},
               "state": {"type": "string", "description": "directory that keeps the set; missing where it is in memory"}}})",
           open},
    Method{"session.close",
           "end a session and close its engines",
           {{"session", textSchema, "which; without it, the caller's own"}},
           anObject,
           close},
    Method{"tv.sessions",
           "list the sessions",
           {},
           R"({"type": "object", "required": ["sessions"], "properties": {
               "sessions": {"type": "array", "items": {"$ref": "#/components/schemas/Session"}}},
               "additionalProperties": false})",
           sessions},
    Method{"rpc.discover", "describe the methods as an OpenRPC document", {}, anObject, nullptr, discover},
};

}  // namespace

std::span<const Method> sessionMethods() {
  return sessionRows;
}

}  // namespace virtualtv::rpc
