#pragma once

#include "tvservice/TVServiceTypes.h"

/// The satellite manager. Made by `TVServiceAPI::CreateSatellite`; owned by the library.
class ISatellite {
 public:
  virtual ~ISatellite();

  /// Hands a transponder to the manager, which looks it up among those it knows.
  /// @param result  the transponder's id, 65535 when it is not known.
  /// @return greater than 0 on success.
  virtual int LookupTransponder(const TSTransponder& transponder, unsigned short& result) = 0;
};
