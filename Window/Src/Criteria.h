// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>

#include "tvservice/TCCriteriaHelper.h"

namespace kel {

/// Fetches the fields in the given order.
inline void FetchAll(TCCriteriaHelper& criteria, std::initializer_list<int> fieldIds) {
  for (const int fieldId : fieldIds) criteria.Fetch(fieldId);
}

/// The TV mode that means "any" or "not known yet".
inline TSTvMode AnyMode() {
  return TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE);
}

}  // namespace kel
