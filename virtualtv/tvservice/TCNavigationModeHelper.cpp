// SPDX-License-Identifier: MIT
// The conditions of navigations.
#include "tvservice/TCNavigationModeHelper.h"

#include "seam/Seam.h"
#include "services/Service.h"

namespace {

using virtualtv::seam::args;
using virtualtv::seam::in;
using virtualtv::seam::op;
using virtualtv::seam::out;

constexpr unsigned short anyMinor = 65535;

/// True for the service modes that name an operator's list. Other modes mean the whole antenna.
bool isOperatorList(EServiceMode mode) {
  return (mode >= 3 && mode <= 18) || (mode >= 21 && mode <= 27);
}

bool selectList(ENavigationMode navigationMode, const TSTvMode& mode, TCCriteriaHelper& criteria) {
  if (navigationMode != NAVIGATION_ALL) return false;
  if (mode.antennaMode < ANTENNA_TERRESTRIAL || mode.antennaMode > ANTENNA_SATELLITE) return false;
  criteria.Where(TCServiceData::ANTENNA_MODE, mode.antennaMode);
  if (isOperatorList(mode.serviceMode)) criteria.Where(virtualtv::SERVICE_MODE, mode.serviceMode);
  criteria.Where(virtualtv::HIDDEN, 0);
  return true;
}

}  // namespace

int TCNavigationModeHelper::GetNavigationCriteria(ENavigationMode navigationMode, TSTvMode tvMode,
                                                  TCCriteriaHelper& criteria, unsigned long long serviceId) {
  return virtualtv::seam::pass(
      op("TCNavigationModeHelper::GetNavigationCriteria"), {},
      args(in("navigation", navigationMode), in("mode", tvMode), in("service", serviceId), out("criteria", criteria)),
      [&] { return selectList(navigationMode, tvMode, criteria) ? 1 : 0; });
}

int TCNavigationModeHelper::GetNavigationCriteria(TSTvMode tvMode, ENavigationMode navigationMode,
                                                  TCCriteriaHelper& criteria, unsigned long long serviceId) {
  return virtualtv::seam::pass(
      op("TCNavigationModeHelper::GetNavigationCriteria"), {},
      args(in("mode", tvMode), in("navigation", navigationMode), in("service", serviceId), out("criteria", criteria)),
      [&] { return selectList(navigationMode, tvMode, criteria) ? 1 : 0; });
}

int TCNavigationModeHelper::GetOptimumCriteria(unsigned short major, unsigned short minor, TCCriteriaHelper& criteria,
                                               ENavigationMode navigationMode) {
  return virtualtv::seam::pass(
      op("TCNavigationModeHelper::GetOptimumCriteria"), {},
      args(in("major", major), in("minor", minor), in("navigation", navigationMode), out("criteria", criteria)), [&] {
        if (navigationMode != NAVIGATION_ALL) return 0;
        criteria.Where(TCServiceData::MAJOR, major);
        if (minor != anyMinor) criteria.Where(TCServiceData::MINOR, minor);
        return 1;
      });
}
