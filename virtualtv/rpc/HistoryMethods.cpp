// Commands that have run: all about them, and the set as it was behind them.
#include <array>
#include <stdexcept>
#include <string>

#include "rpc/Core.h"
#include "rpc/EventJson.h"
#include "rpc/Method.h"
#include "rpc/Schemas.h"
#include "set/StateDocument.h"

namespace virtualtv::rpc {

namespace {

const Parameter commandParameter{"command", R"({"type": "integer", "minimum": 1})", "its number, as its events have it",
                                 true};

std::uint64_t commandIn(const Call& call) {
  return static_cast<std::uint64_t>(call.params.number("command", notNegative));
}

Json::Value why(const Call& call) {
  device::Device& device = call.core.device();
  const std::uint64_t command = commandIn(call);
  Json::Value answer = emptyCause();
  const auto put = [&](const device::Happening& happening) { putCause(device, happening, answer); };
  if (!device.history()->replay(command, put)) throw device::notHeld(command);
  answer["command"] = Json::UInt64{command};
  return answer;
}

Json::Value history(const Call& call) {
  device::Device& device = call.core.device();
  const auto [set, revision] = device.history()->behind(commandIn(call), device.tv());
  return stateDocument(set, revision);
}

Json::Value goBack(const Call& call) {
  call.core.device().goBack(commandIn(call));
  return call.core.revision();
}

const std::array rows{
    Method{
        "tv.why",
        "tell all about a command, one of the last 1,000, of which at most 64 MiB are held: its reply, the calls that "
        "it made to the set, settings keys that changed, log messages",
        {commandParameter},
        R"({"type": "object", "required": ["command", "session", "engine", "name", "parameters", "list", "reply",
               "duration", "delay", "calls", "keys", "log"], "properties": {
               "command": {"type": "integer"}, "session": {"type": "string"}, "engine": {"type": "string"},
               "name": {"type": "string"}, "parameters": {"type": "array", "items": {"type": "string"}},
               "list": {"type": "boolean"}, "reply": {"type": ["object", "null"]}, "duration": {"type": "number"},
               "delay": {"type": "integer"}, "calls": {"type": "array", "items": {"type": "string"}},
               "keys": {"type": "array", "items": {"type": "object"}},
               "log": {"type": "array", "items": {"type": "object"}}}})",
        why},
    Method{"tv.history",
           "tell the whole set, as tv.state does, as it was right behind a command; held as for tv.why",
           {commandParameter},
           anObject,
           history},
    Method{"tv.goBack",
           "make the set what it persisted right behind a command, as tv.restore does; held as for tv.why",
           {commandParameter},
           revisionResult,
           goBack},
};

}  // namespace

std::span<const Method> historyMethods() {
  return rows;
}

}  // namespace virtualtv::rpc
