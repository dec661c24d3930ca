// SPDX-License-Identifier: MIT
// The history of commands: all about a command, and the set as it was after it.
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

constexpr std::string_view numberSchema = R"({"type": "integer", "minimum": 1})";
const Parameter wantedCommand{"command", numberSchema, "number of the command, as in its events", true};
const Parameter anyCommand{"command", numberSchema,
                           "number of the command, as in its events; by default the last one of the session"};

std::uint64_t commandIn(const Context& context) {
  return static_cast<std::uint64_t>(context.params.number("command", notNegative));
}

/// The command that the call names, or the last command of the session.
std::uint64_t commandOrLast(const Context& context) {
  if (context.params.has("command")) return commandIn(context);
  const std::uint64_t last = context.seat.shell.client().lastCommand();
  if (last == 0) throw std::invalid_argument("no command has run yet");
  return last;
}

Json::Value why(const Context& context) {
  device::Device& device = context.core.device();
  const std::uint64_t command = commandOrLast(context);
  Json::Value answer = emptyCause();
  const auto put = [&](const device::Happening& happening) { putCause(device, happening, answer); };
  if (!device.history()->replay(command, put)) throw device::notHeld(command);
  answer["command"] = Json::UInt64{command};
  return answer;
}

Json::Value history(const Context& context) {
  device::Device& device = context.core.device();
  const auto [set, revision] = device.history()->behind(commandOrLast(context), device.tv());
  return stateDocument(set, revision);
}

Json::Value goBack(const Context& context) {
  context.core.device().goBack(commandIn(context));
  return context.core.revision();
}

const std::array historyRows{
    Method{"tv.why",
           "return everything about a command in the history, which holds the last 1,000 commands, up to 64 MiB: its "
           "reply, "
           "its calls to the set, changed settings keys and log messages; and the effects of opening its engine, if it "
           "was "
           "the first command on it",
           {anyCommand},
           R"({"$ref": "#/components/schemas/Why"})",
           why},
    Method{"tv.history",
           "return the whole set, as tv.state does, as it was right after a command in the history",
           {anyCommand},
           stateSchema,
           history},
    Method{"tv.goBack",
           "restore what the set had persisted right after a command in the history, as tv.restore does",
           {wantedCommand},
           revisionResult,
           goBack},
};

}  // namespace

std::span<const Method> historyMethods() {
  return historyRows;
}

}  // namespace virtualtv::rpc
