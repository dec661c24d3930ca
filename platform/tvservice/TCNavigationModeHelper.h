// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TVServiceTypes.h"

/// Fills criteria with the conditions of a navigation. Each operation answers non-zero on success; on failure the
/// criteria are as they were.
class TCNavigationModeHelper {
 public:
  /// The services that a navigation mode goes through in a TV mode.
  /// @param serviceId  all ones here, which stands for none.
  static int GetNavigationCriteria(ENavigationMode navigationMode, TSTvMode tvMode, TCCriteriaHelper& criteria,
                                   unsigned long long serviceId);
  /// The same with the TV mode first.
  static int GetNavigationCriteria(TSTvMode tvMode, ENavigationMode navigationMode, TCCriteriaHelper& criteria,
                                   unsigned long long serviceId);

  /// The best service for a major and a minor number, for `IServiceNavigation::GetOptimumService`.
  static int GetOptimumCriteria(unsigned short major, unsigned short minor, TCCriteriaHelper& criteria,
                                ENavigationMode navigationMode);
};
