// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TVServiceTypes.h"

/// Fills criteria with the conditions of a navigation. Each operation returns non-zero on success; on failure the
/// criteria are unchanged.
class TCNavigationModeHelper {
 public:
  /// Selects the services of a navigation mode in a TV mode.
  /// @param serviceId  all bits set here, which means no service.
  static int GetNavigationCriteria(ENavigationMode navigationMode, TSTvMode tvMode, TCCriteriaHelper& criteria,
                                   unsigned long long serviceId);
  /// The same with the TV mode as the first argument.
  static int GetNavigationCriteria(TSTvMode tvMode, ENavigationMode navigationMode, TCCriteriaHelper& criteria,
                                   unsigned long long serviceId);

  /// Selects the best service for a major and a minor number, for `IServiceNavigation::GetOptimumService`.
  static int GetOptimumCriteria(unsigned short major, unsigned short minor, TCCriteriaHelper& criteria,
                                ENavigationMode navigationMode);
};
