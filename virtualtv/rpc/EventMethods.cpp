// SPDX-License-Identifier: MIT
// Subscriptions to events.
#include <array>
#include <string>

#include "rpc/Core.h"
#include "rpc/Method.h"
#include "rpc/Schemas.h"
#include "set/StateDocument.h"

namespace virtualtv::rpc {

namespace {

constexpr std::string_view topicList = R"({"type": "array", "items": {"type": "string"}})";

/// The topics that a call names. The name * means all of them.
TopicNames topicsIn(const Context& context) {
  return context.params.read("topics", [](const JsonPart& list) {
    TopicNames names;
    list.eachItem([&](const JsonPart& item) {
      const std::string name = item.text();
      bool known = false;
      for (const Topic& topic : topics()) {
        if (name != "*" && name != topic.name) continue;
        names.insert(topic.name);
        known = true;
      }
      if (!known) item.refuse("there is no topic '" + nameShown(name) + "'");
    });
    return names;
  });
}

void requireConnection(const Context& context) {
  if (context.seat.outlet == nullptr) throw Failure(Code::badValue, "events need a connection: WebSocket");
}

/// Once the reply was sent, sends the kept events after a number, then every new event of the topics. Events of
/// requests in the same batch are sent after the reply too, since they are among the kept events.
void beginBehind(const Context& context, std::uint64_t after, const TopicNames& topics) {
  context.behind.emplace_back([&core = context.core, after, topics, id = context.seat.id] {
    const auto found = core.seats().find(id);
    if (found == core.seats().end()) return;
    Seat& seat = *found->second;
    core.events().replay(after, [&](Event& event) {
      if (topics.contains(event.topic) && !seat.topics.contains(event.topic)) core.send(seat, event);
    });
    seat.topics.insert(topics.begin(), topics.end());
  });
}

Json::Value subscribe(const Context& context) {
  requireConnection(context);
  Core& core = context.core;
  const TopicNames topics = topicsIn(context);
  const bool goesOn = context.params.has("after");
  const auto after = static_cast<std::uint64_t>(context.params.number("after", notNegative, 0));
  const bool isThisServer = context.params.text("server", core.id()) == core.id();
  core.events().hear(topics);
  core.events().tell(core.events().collect());
  Json::Value answer;
  answer["server"] = core.id();
  answer["number"] = Json::UInt64{core.events().number()};
  answer["state"] = stateDocument(core.device().tv());
  const bool resync = !isThisServer || (goesOn && !core.events().holdsAfter(after));
  if (resync) answer["resync"] = true;
  beginBehind(context, goesOn && !resync ? after : core.events().number(), topics);
  return answer;
}

Json::Value unsubscribe(const Context& context) {
  requireConnection(context);
  for (const std::string& topic : topicsIn(context)) context.seat.topics.erase(topic);
  return Json::objectValue;
}

const std::array eventRows{
    Method{"events.subscribe",
           "subscribe to topics; events arrive as notifications `event`",
           {{"topics", topicList, "names of topics, or *", true},
            {"after", R"({"type": "integer", "minimum": 0})", "number of the last event that the client has"},
            {"server", R"({"type": "string"})", "the server that sent that event"}},
           R"({"type": "object", "required": ["server", "number", "state"], "properties": {
               "server": {"type": "string", "description": "id of this run of the server, to which the numbers belong"},
               "number": {"type": "integer", "description": "number of the last event; the state is as of that event"},
               "state": {"$ref": "#/components/schemas/State"},
               "resync": {"const": true, "description": "the events after `after` are no longer available"}},
               "additionalProperties": false})",
           subscribe},
    Method{"events.unsubscribe",
           "unsubscribe from topics",
           {{"topics", topicList, "names of topics, as in events.subscribe", true}},
           anObject,
           unsubscribe},
};

}  // namespace

std::span<const Method> eventMethods() {
  return eventRows;
}

}  // namespace virtualtv::rpc
