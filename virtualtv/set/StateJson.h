// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <optional>
#include <vector>

#include "services/Service.h"
#include "set/State.h"

// Parts of the set as JSON for clients. Service ids are strings, since they have 64 bits. Absent values are null.

namespace virtualtv {

/// The JSON that `write` makes of a value; null when there is no value.
template <typename Value, typename Write>
Json::Value orNull(const std::optional<Value>& value, Write write) {
  return value ? Json::Value(write(*value)) : Json::Value();
}

Json::Value jsonOf(const Picture& picture);
Json::Value jsonOf(const Rect& rect);
Json::Value jsonOf(const TvMode& mode);
Json::Value jsonOf(const Input& input);
Json::Value jsonOf(const std::vector<Input>& inputs);
Json::Value jsonOf(const std::vector<AudioTrack>& tracks);
Json::Value jsonOf(const std::vector<SubtitleTrack>& tracks);
Json::Value jsonOf(const SecondaryStack& isp);
/// What identifies a service: key, id, name and numbers.
Json::Value jsonOf(ServiceKey key, const Service& service);
Json::Value tracksOf(const std::vector<AudioTrack>& audio, const std::vector<SubtitleTrack>& subtitles,
                     const TracksInUse& inUse);
/// A plane in both spaces. @param picture  the picture that it shows, used to compute the part that the content fills.
Json::Value planeOf(const Plane& plane, const std::optional<Picture>& picture);

}  // namespace virtualtv
