#pragma once

#include <initializer_list>

#include "tvservice/TCCriteriaHelper.h"

namespace kel {

/// Asks for the fields in their order.
inline void FetchAll(TCCriteriaHelper& criteria, std::initializer_list<int> fieldIds) {
  for (const int fieldId : fieldIds) criteria.Fetch(fieldId);
}

/// The TV mode that stands for "any", and for one that is not known yet.
inline TSTvMode AnyMode() {
  return TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE);
}

}  // namespace kel
