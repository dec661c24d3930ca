// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "set/State.h"

/// The numbers of web applications ("PL") and those of the TV service ("TC"), as the model knows them.
namespace model {

/// Converts an application's source to the TV service's: -1 if it has no counterpart, 0 if it is unknown.
int sourceToTc(int pl);
/// Converts a source of the TV service to an application's: 1 for -1, 0 for an unknown source.
int sourceToPl(int tc);

int channelTypeToTc(int pl);
int channelTypeToPl(int tc);
/// Converts the TV service's modulation to the applications' tune mode.
int modulationToPl(int tc);

/// Converts a TV mode from one number. @param serviceMode  called if the number names only an antenna.
virtualtv::TvMode modeToTc(int pl, const std::function<int()>& serviceMode);
int modeToPl(virtualtv::TvMode mode);
/// The service mode of a country.
int serviceModeOf(int country);

}  // namespace model
