#pragma once

#include <json/json.h>

#include <cstdint>

#include "set/Past.h"
#include "set/Tv.h"

namespace virtualtv {

/// The whole set as one document for clients: its windows, inputs, region and so on, and the revision that it has.
/// Members are named as in the description of the built-in set; what is not there is null; ids of services are texts,
/// since they have 64 bits.
///
/// Rectangles of a plane are told twice: on the base screen, and in the space of 960 x 540 that applications use,
/// rounded as the plug-in rounds them. @throws StoreError when the services can't be read.
Json::Value stateDocument(const Tv& tv);

/// The same of a set as it was. @param revision  that it had then.
Json::Value stateDocument(const Past& past, std::uint64_t revision);

}  // namespace virtualtv
