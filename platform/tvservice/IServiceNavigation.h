// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <string>

#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceTypes.h"

/// Navigation among the services of one window: what is on screen, what comes next, tuning. Created by
/// `TVServiceAPI::CreateServiceNavigation`; owned by the library. Unless stated otherwise, an operation returns a
/// number greater than 0 on success, and outputs must not be read after a failure.
class IServiceNavigation {
 public:
  virtual ~IServiceNavigation();

  /// Tunes the window to a service. @param appId  the calling application. The middle arguments are 0 here.
  virtual int TuneService(const unsigned long long& serviceId, int, int, const std::string& appId) = 0;
  /// The window's TV mode. @return 1 on success.
  virtual int GetTvMode(TSTvMode& mode) = 0;
  /// Changes the window's TV mode.
  virtual int SetTVMode(TSTvMode mode, const std::string& appId) = 0;
  /// The service on screen, with the fields that the criteria fetch. Conditions of the criteria are ignored.
  virtual int GetCurrentService(TSTvMode mode, TCCriteriaHelper& criteria, TCServiceData& service) = 0;
  /// Id of the service watched before the current one.
  virtual int GetPreviousServiceId(TSTvMode mode, unsigned long long& serviceId) = 0;
  /// The service after `currentId` among those that the criteria select.
  /// @param mode  limits the services; (-1, -1) for any.
  virtual int SeekNextService(TCCriteriaHelper& criteria, const unsigned long long& currentId, TCServiceData& service,
                              TSTvMode mode) = 0;
  /// The service before `currentId`, likewise.
  virtual int SeekPreviousService(TCCriteriaHelper& criteria, const unsigned long long& currentId,
                                  TCServiceData& service, TSTvMode mode) = 0;
  /// The service selected by criteria of `TCNavigationModeHelper::GetOptimumCriteria`.
  virtual int GetOptimumService(TCCriteriaHelper& criteria, TCServiceData& service, TSTvMode mode) = 0;
  /// Appends a new record for each service that meets the criteria; the caller deletes them, even after a failure.
  /// @param mode  limits the services; (-1, -1) for any. The trailing arguments are 0 here.
  /// @return greater than 0 on success, such as the number of services.
  virtual int GetServiceList(TCCriteriaHelper& criteria, std::list<TCServiceData*>& services, TSTvMode mode, int,
                             int) = 0;
  /// The service and the source with which the set starts.
  virtual int GetStartService(unsigned long long& serviceId, int& source) = 0;
  /// The same as `GetCurrentService`.
  virtual int GetCurrentServiceInfo(TSTvMode mode, TCCriteriaHelper& criteria, TCServiceData& service) = 0;
};
