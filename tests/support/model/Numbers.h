#pragma once

#include "set/State.h"

/// The numbers of web applications ("PL") and those of the TV service ("TC"), as the model knows them.
namespace model {

/// A web application's source to the TV service's: -1 for one that has no counterpart, 0 for an unknown one.
int sourceToTc(int pl);
/// The other way round. Both -1 and a source that the TV service does not know have none: 1 and 0.
int sourceToPl(int tc);

int channelTypeToTc(int pl);
int channelTypeToPl(int tc);

/// A TV mode as one number; those that name an antenna alone get the service mode of region and country.
virtualtv::TvMode modeToTc(int pl, int region, int country);
int modeToPl(virtualtv::TvMode mode);

}  // namespace model
