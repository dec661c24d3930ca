// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <string>

#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceTypes.h"

/// Navigation among the services of one window: what is on screen, what comes next, tuning. Made by
/// `TVServiceAPI::CreateServiceNavigation`; owned by the library. Unless an operation says otherwise it answers a
/// number greater than 0 on success, and outputs are not to be read after a failure.
class IServiceNavigation {
 public:
  virtual ~IServiceNavigation();

  /// Tunes the window to a service. @param appId  the application that asks. The middle arguments are 0 here.
  virtual int TuneService(const unsigned long long& serviceId, int, int, const std::string& appId) = 0;
  /// The window's TV mode. @return 1 on success.
  virtual int GetTvMode(TSTvMode& mode) = 0;
  /// Changes the window's TV mode.
  virtual int SetTVMode(TSTvMode mode, const std::string& appId) = 0;
  /// The service on screen, with the fields that the criteria fetch, whether or not their conditions select it.
  virtual int GetCurrentService(TSTvMode mode, TCCriteriaHelper& criteria, TCServiceData& service) = 0;
  /// Id of the service watched before the current one.
  virtual int GetPreviousServiceId(TSTvMode mode, unsigned long long& serviceId) = 0;
  /// The service one step after `currentId` among those that the criteria select.
  /// @param mode  limits the services; (-1, -1) for any.
  virtual int SeekNextService(TCCriteriaHelper& criteria, const unsigned long long& currentId, TCServiceData& service,
                              TSTvMode mode) = 0;
  /// The same one step before.
  virtual int SeekPreviousService(TCCriteriaHelper& criteria, const unsigned long long& currentId,
                                  TCServiceData& service, TSTvMode mode) = 0;
  /// The service that criteria of `TCNavigationModeHelper::GetOptimumCriteria` select.
  virtual int GetOptimumService(TCCriteriaHelper& criteria, TCServiceData& service, TSTvMode mode) = 0;
  /// Appends a new record for each service that meets the criteria; the caller deletes them, also after a failure.
  /// @param mode  limits the services; (-1, -1) for any. The trailing arguments are 0 here.
  /// @return greater than 0 on success, such as the number of services.
  virtual int GetServiceList(TCCriteriaHelper& criteria, std::list<TCServiceData*>& services, TSTvMode mode, int,
                             int) = 0;
  /// The service, and the source, that the set starts with.
  virtual int GetStartService(unsigned long long& serviceId, int& source) = 0;
  /// The same as `GetCurrentService`.
  virtual int GetCurrentServiceInfo(TSTvMode mode, TCCriteriaHelper& criteria, TCServiceData& service) = 0;
};
