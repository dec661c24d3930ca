// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

class IAVControl;
class IDataControl;
class ISatellite;
class IService;
class IServiceNavigation;
class ISourceControl;
class ITunerControl;
class IVideoControl;
class ServiceDataAux;

/// Factories of the TV service's interfaces. Each makes an interface, of a window where it takes a `profile` (`index`
/// is 0 here), and of the whole set otherwise. Unless it says otherwise it writes the pointer and answers 0; on failure
/// it answers another number. The library owns what it makes.
class TVServiceAPI {
 public:
  /// As the class says.
  /// @{
  static int CreateService(IService** service);
  static int CreateServiceNavigation(EProfile profile, int index, IServiceNavigation** navigation);
  static int CreateSourceControl(EProfile profile, int index, ISourceControl** control);
  static int CreateVideoControl(EProfile profile, int index, IVideoControl** control);
  static int CreateAVControl(EProfile profile, int index, IAVControl** control);
  static int CreateDataControl(EProfile profile, int index, IDataControl** control);
  static int CreateTunerControl(EProfile profile, int index, ITunerControl** control);
  /// @}

  /// The set's one satellite manager. Success is a pointer that is not null, whatever the number.
  static int CreateSatellite(ISatellite** satellite);

  /// Answers the interface itself; null on failure.
  static ::ServiceDataAux* ServiceDataAux(EProfile profile, int index);
};
