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

/// Factories of the TV service's interfaces. A factory with a `profile` creates an interface of that window (`index` is
/// 0 here); the others create interfaces of the whole set. Unless stated otherwise, a factory writes the pointer and
/// returns 0; on failure it returns another number. The library owns the interfaces.
class TVServiceAPI {
 public:
  /// See the class.
  /// @{
  static int CreateService(IService** service);
  static int CreateServiceNavigation(EProfile profile, int index, IServiceNavigation** navigation);
  static int CreateSourceControl(EProfile profile, int index, ISourceControl** control);
  static int CreateVideoControl(EProfile profile, int index, IVideoControl** control);
  static int CreateAVControl(EProfile profile, int index, IAVControl** control);
  static int CreateDataControl(EProfile profile, int index, IDataControl** control);
  static int CreateTunerControl(EProfile profile, int index, ITunerControl** control);
  /// @}

  /// The set's only satellite manager. A pointer that is not null means success, whatever the number.
  static int CreateSatellite(ISatellite** satellite);

  /// Returns the interface itself; null on failure.
  static ::ServiceDataAux* ServiceDataAux(EProfile profile, int index);
};
