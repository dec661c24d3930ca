// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "set/State.h"

/// The numbers of web applications ("PL") and those of the TV service ("TC"), as the model knows them.
namespace model {

/// A web application's source to the TV service's: -1 for one that has no counterpart, 0 for an unknown one.
int sourceToTc(int pl);
/// The other way round. Both -1 and a source that the TV service does not know have none: 1 and 0.
int sourceToPl(int tc);

int channelTypeToTc(int pl);
int channelTypeToPl(int tc);
/// The TV service's modulation to the web applications' tune mode.
int modulationToPl(int tc);

/// A TV mode as one number. @param serviceMode  asked where the number names an antenna alone.
virtualtv::TvMode modeToTc(int pl, const std::function<int()>& serviceMode);
int modeToPl(virtualtv::TvMode mode);
/// The service mode that a country has.
int serviceModeOf(int country);

}  // namespace model
