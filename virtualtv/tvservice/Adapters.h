// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "tvservice/Adapter.h"
#include "tvservice/IAVControl.h"
#include "tvservice/IDataControl.h"
#include "tvservice/ISatellite.h"
#include "tvservice/IService.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/ISourceControl.h"
#include "tvservice/ITunerControl.h"
#include "tvservice/IVideoControl.h"
#include "tvservice/ServiceDataAux.h"

// Each function creates an interface of the TV service that acts on the set of the process. Used by the factories.

namespace virtualtv::tvservice {

std::shared_ptr<IService> makeService(const Identity& identity);
std::shared_ptr<IServiceNavigation> makeServiceNavigation(const Identity& identity);
std::shared_ptr<ISourceControl> makeSourceControl(const Identity& identity);
std::shared_ptr<IVideoControl> makeVideoControl(const Identity& identity);
std::shared_ptr<IAVControl> makeAVControl(const Identity& identity);
std::shared_ptr<::ServiceDataAux> makeServiceDataAux(const Identity& identity);
std::shared_ptr<IDataControl> makeDataControl(const Identity& identity);
std::shared_ptr<ITunerControl> makeTunerControl(const Identity& identity);
std::shared_ptr<ISatellite> makeSatellite(const Identity& identity);

}  // namespace virtualtv::tvservice
