// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "device/Device.h"
#include "rpc/Events.h"

namespace virtualtv::rpc {

/// Limits: the log messages reported for a command, and the bytes of each message and of a reply.
inline constexpr std::size_t mostMessages = 200;
inline constexpr std::size_t longestMessage = 4096;
inline constexpr std::size_t longestReply = 65536;

/// The topic of a happening.
std::string_view topicOf(const device::Happening& happening);

/// True when the events of a topic have a time. Calls and log messages do not, since there are too many.
bool haveTime(std::string_view topic);

/// The JSON of an event for clients.
Json::Value jsonOf(device::Device& device, const Event& event);

/// The number of the command that a happening belongs to; 0 for none, and for happenings while the engine of the
/// command is opened.
std::uint64_t commandOf(const device::Happening& happening);

/// An empty record of what a command caused, with the parts `calls`, `keys` and `log`.
Json::Value emptyCause();
/// Adds a happening to the record of the command that was running. The last happening of a command is the `CommandRun`:
/// it adds the members of the event for that run, with the whole reply. Happenings while the engine was opened are
/// added to a member `opening` with the same parts.
void putCause(device::Device& device, const device::Happening& happening, Json::Value& why);

}  // namespace virtualtv::rpc
