// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

/// The satellite manager. Made by `TVServiceAPI::CreateSatellite`; owned by the library.
class ISatellite {
 public:
  virtual ~ISatellite();

  /// Hands a transponder to the manager, which looks it up among those it knows.
  /// @param result  receives the transponder's id; left as it is when the transponder is not known.
  /// @return greater than 0 on success.
  virtual int LookupTransponder(const TSTransponder& transponder, unsigned short& result) = 0;
};
