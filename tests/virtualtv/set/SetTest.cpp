// SPDX-License-Identifier: MIT
#include "virtualtv/set/SetTest.h"

#include <stdexcept>
#include <variant>

#include "set/Knobs.h"
#include "store/SettingsStore.h"
#include "store/Statement.h"

namespace virtualtv::test {

namespace {

IServiceNavigation& navigation(WindowId window) {
  IServiceNavigation* made = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateServiceNavigation(profileOf(window), 0, &made), 0);
  return *made;
}

ISourceControl& sourceControl(WindowId window) {
  ISourceControl* made = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateSourceControl(profileOf(window), 0, &made), 0);
  return *made;
}

/// The id in a record that a call has filled; 0 when the call failed.
std::uint64_t idIn(int result, const TCServiceData& record) {
  if (result < 1) return 0;
  unsigned long long id = 0;
  EXPECT_TRUE(record.Get(TCServiceData::SERVICE_ID, id));
  return id;
}

const TSTvMode anyMode(ANTENNA_NONE, SERVICE_MODE_NONE);

using SeekOperation = int (IServiceNavigation::*)(TCCriteriaHelper&, const unsigned long long&, TCServiceData&,
                                                  TSTvMode);

std::uint64_t step(SeekOperation seek, std::uint64_t id, TSTvMode mode) {
  TCCriteriaHelper criteria;
  EXPECT_NE(TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_ALL, mode, criteria, ~0ULL), 0);
  criteria.Fetch(TCServiceData::SERVICE_ID);
  TCServiceData record;
  const int result = (navigation(WindowId::main).*seek)(criteria, id, record, anyMode);
  return idIn(result, record);
}

}  // namespace

EProfile profileOf(WindowId window) {
  return window == WindowId::main ? PROFILE_MAIN : PROFILE_PIP;
}

Service serviceOf(std::uint64_t id, int antenna, int major, std::map<int, std::uint64_t> more) {
  Service service;
  service.numbers = std::move(more);
  service.numbers.merge(std::map<int, std::uint64_t>{{TCServiceData::SERVICE_ID, id},
                                                     {TCServiceData::ANTENNA_MODE, static_cast<unsigned>(antenna)},
                                                     {TCServiceData::MAJOR, static_cast<unsigned>(major)},
                                                     {TCServiceData::MINOR, 0},
                                                     {TCServiceData::LOCK, 0},
                                                     {HIDDEN, 0},
                                                     {SERVICE_MODE, 0}});
  return service;
}

SetTest::~SetTest() {
  tv.reset();
  seam::Seam::instance().reset();
}

void SetTest::restart() {
  tv.reset();
  seam::Seam::instance().reset();
  tv.emplace(storage);
}

int SetTest::tune(std::uint64_t id, WindowId on) {
  return navigation(on).TuneService(id, 0, 0, "app");
}

int SetTest::switchTo(int source, WindowId on) {
  return sourceControl(on).SetSource(static_cast<ESource>(source), "app");
}

int SetTest::switchTo(int source, std::uint64_t service, WindowId on) {
  return sourceControl(on).SetSource(static_cast<ESource>(source), service, "app");
}

int SetTest::leaveSource(WindowId on) {
  return sourceControl(on).DeactivateSource();
}

std::uint64_t SetTest::next(std::uint64_t id, TSTvMode mode) {
  return step(&IServiceNavigation::SeekNextService, id, mode);
}

std::uint64_t SetTest::beforeThat(std::uint64_t id, TSTvMode mode) {
  return step(&IServiceNavigation::SeekPreviousService, id, mode);
}

std::uint64_t SetTest::best(int major, int minor, WindowId on) {
  TCCriteriaHelper criteria;
  criteria.Fetch(TCServiceData::SERVICE_ID);
  EXPECT_NE(TCNavigationModeHelper::GetOptimumCriteria(static_cast<unsigned short>(major),
                                                       static_cast<unsigned short>(minor), criteria, NAVIGATION_ALL),
            0);
  TCServiceData record;
  const int result = navigation(on).GetOptimumService(criteria, record, anyMode);
  return idIn(result, record);
}

std::optional<int> SetTest::signal(WindowId on, int tuner) {
  ITunerControl* control = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateTunerControl(profileOf(on), 0, &control), 0);
  unsigned char strength = 0;
  if (control->GetSignalStrength(tuner, &strength) < 1) return std::nullopt;
  return strength;
}

std::string SetTest::knob(const std::string& name) {
  return getKnob(*tv, name);
}

void SetTest::turn(const std::string& name, const std::string& value) {
  setKnob(*tv, name, value);
}

std::string SetTest::refusal(const std::string& name, const std::string& value) {
  try {
    turn(name, value);
    return "";
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

void SetTest::breakStore() {
  Statement(storage.parts().database, "PRAGMA query_only = ON", "break the store").query().next();
}

void SetTest::mendStore() {
  Statement(storage.parts().database, "PRAGMA query_only = OFF", "mend the store").query().next();
}

void SetTest::noteEvents() {
  subscription_ = tv->onEvent([this](const Event& event) { events.push_back(event); });
}

std::string SetTest::lastService() {
  const auto value = tv->settings().get("db/boot/last_service");
  return value ? std::get<std::string>(*value) : "unset";
}

std::uint64_t SetTest::idOf(ServiceKey key) {
  const auto service = tv->services().read(key);
  return service ? service->numbers.at(TCServiceData::SERVICE_ID) : 0;
}

}  // namespace virtualtv::test
