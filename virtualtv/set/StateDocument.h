// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <cstdint>

#include "set/Past.h"
#include "set/Tv.h"

namespace virtualtv {

/// The whole set as one document for clients: its windows, inputs, region and so on, and its revision. Members have the
/// names used in the description of the built-in set. Absent values are null. Service ids are strings, since they have
/// 64 bits.
///
/// Each rectangle of a plane appears twice: on the base screen, and in the 960 x 540 space of applications, rounded as
/// the plug-in rounds it. @throws StoreError when the services can't be read.
Json::Value stateDocument(const Tv& tv);

/// The same for an earlier state of the set. @param revision  the revision at that time.
Json::Value stateDocument(const Past& past, std::uint64_t revision);

}  // namespace virtualtv
