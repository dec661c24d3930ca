// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

/// The satellite manager. Created by `TVServiceAPI::CreateSatellite`; owned by the library.
class ISatellite {
 public:
  virtual ~ISatellite();

  /// Looks up a transponder among the known ones.
  /// @param result  receives the transponder's id; unchanged when the transponder is unknown.
  /// @return greater than 0 on success.
  virtual int LookupTransponder(const TSTransponder& transponder, unsigned short& result) = 0;
};
