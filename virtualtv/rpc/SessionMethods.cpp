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

Json::Value open(const Context& context) {
  Seat& seat = context.seat.isShared ? context.core.openWaiting() : context.seat;
  if (context.params.has("appId") || context.params.has("widgetId")) {
    seat.shell.client().setApplication({context.params.text("appId", ""), context.params.text("widgetId", "")});
  }
  Json::Value answer;
  answer["session"] = seat.id;
  answer["server"] = context.core.id();
  answer["revision"] = Json::UInt64{context.core.device().revision()};
  answer["virtual"] = true;
  if (const std::string state = context.core.state(); !state.empty()) answer["state"] = text::wellFormed(state);
  return answer;
}

Json::Value close(const Context& context) {
  const std::string id = context.params.text("session", context.seat.isShared ? "" : context.seat.id);
  if (id.empty()) throw Failure(Code::badParameters, "there is no \"session\"");
  context.core.close(context.core.seat(id).id);
  return Json::objectValue;
}

Json::Value sessions(const Context& context) {
  Json::Value answer;
  answer["sessions"] = Json::arrayValue;
  for (const auto& [id, seat] : context.core.seats()) {
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

void discover(const Context& context, std::string& text) {
  text += context.core.openRpc();
}

const std::array sessionRows{
    Method{"session.open",
           "set the application of the session; without a connection, open a session",
           {{"appId", textSchema, "the application"}, {"widgetId", textSchema, "its widget"}},
           R"({"type": "object", "required": ["session", "server", "revision", "virtual"], "properties": {
               "session": {"type": "string"}, "server": {"type": "string"},
               "revision": {"type": "integer"}, "virtual": {"const": true},
               "state": {"type": "string", "description": "directory of the set's state; missing if the set is in memory"}}})",
           open},
    Method{"session.close",
           "end a session and close its engines",
           {{"session", textSchema, "name of the session; by default the caller's own"}},
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
