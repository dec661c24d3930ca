// SPDX-License-Identifier: MIT
#include "channels/EditList.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "channels/ImportList.h"
#include "services/ServiceStore.h"

namespace virtualtv::test {
namespace {

class Edit : public ::testing::Test {
 protected:
  Edit() {
    std::string list;
    for (const char* name : {"A", "B", "C", "D"})
      list += std::string(name) + ":578:M64B8:T:0:1:2:0:0:" + std::to_string(++count) + ":1:1:0\n";
    importServices(tv, "list", list, {});
  }
  std::string names() const {
    std::string text;
    for (const ServiceKey key : tv.services().keys()) {
      const auto service = tv.services().read(key);
      for (const char16_t unit : service->texts.at(TCServiceData::CHANNEL_NAME)) text += static_cast<char>(unit);
      text += std::to_string(service->numbers.at(TCServiceData::MAJOR)) + " ";
    }
    return text;
  }
  std::string refusal(const std::string& service, const std::string& edit, const std::string& value) {
    try {
      editService(tv, service, edit, value);
      return "";
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
  }

  int count = 0;
  Storage storage;
  Tv tv{storage};
};

TEST_F(Edit, RenamesHidesAndLocks) {
  editService(tv, "#2", "rename", "New");
  editService(tv, "#2", "hide", "on");
  editService(tv, "#2", "lock", "on");
  EXPECT_EQ(names(), "A1 New2 C3 D4 ");
  EXPECT_EQ(tv.services().read(2)->numbers.at(HIDDEN), 1U);
  EXPECT_EQ(tv.services().read(2)->numbers.at(TCServiceData::LOCK), 1U);
  editService(tv, "#2", "lock", "off");
  EXPECT_EQ(tv.services().read(2)->numbers.at(TCServiceData::LOCK), 0U);
}

TEST_F(Edit, MovesAServiceToTheNumberOfAnother) {
  editService(tv, "#1", "move", "3");
  EXPECT_EQ(names(), "B1 C2 A3 D4 ");
  editService(tv, "#4", "move", "1");
  EXPECT_EQ(names(), "D1 B2 C3 A4 ");
  const std::uint64_t revision = tv.revision();
  editService(tv, "#4", "move", "1");
  EXPECT_EQ(tv.revision(), revision);
}

TEST_F(Edit, GivesANumberThatNoOtherHas) {
  editService(tv, "#1", "renumber", "9");
  EXPECT_EQ(names(), "B2 C3 D4 A9 ");
  EXPECT_EQ(refusal("#1", "renumber", "3"), "another service has the number 3; move puts this one there");
  EXPECT_EQ(refusal("#1", "move", "5"), "no service has the number 5; renumber gives it to this one");
}

TEST_F(Edit, RemovesAServiceAndShowsTheFirstOfTheOthers) {
  tv.tune(WindowId::main, 2);
  tv.tune(WindowId::main, 1);
  editService(tv, "#1", "remove", "");
  EXPECT_EQ(names(), "B2 C3 D4 ");
  EXPECT_EQ(tv.state()[WindowId::main].service, 2);
  EXPECT_EQ(tv.services().keyOf(tv.state().startServiceId), 2);
  for (const char* key : {"#2", "#3", "#4"}) editService(tv, key, "remove", "");
  EXPECT_EQ(tv.state()[WindowId::main].service, 0);
}

TEST_F(Edit, GivesTheWindowOfARemovedServiceTheModeOfTheOneItShowsThen) {
  Service second = *tv.services().read(2);
  second.numbers[TCServiceData::ANTENNA_MODE] = 1;
  tv.import({second}, true);
  tv.tune(WindowId::main, 3);
  tv.tune(WindowId::main, 1);
  ASSERT_EQ(tv.state()[WindowId::main].mode.antenna, 0);
  editService(tv, "#1", "remove", "");
  EXPECT_EQ(tv.state()[WindowId::main].service, 2);
  EXPECT_EQ(tv.state()[WindowId::main].mode, (TvMode{1, 0}));
  EXPECT_EQ(tv.state()[WindowId::main].previousService, 3);
}

TEST_F(Edit, RefusesWhatCantBeDone) {
  EXPECT_EQ(refusal("#9", "remove", ""), "there is no service #9");
  EXPECT_EQ(refusal("#1", "paint", "red"), "one of rename, renumber, move, hide, lock, remove is wanted, not 'paint'");
  EXPECT_EQ(refusal("#1", "rename", ""), "rename takes NAME");
  EXPECT_EQ(refusal("#1", "remove", "now"), "remove takes no value");
  EXPECT_NE(refusal("#1", "hide", "maybe"), "");
  EXPECT_NE(refusal("#1", "renumber", "65535"), "");
  EXPECT_EQ(names(), "A1 B2 C3 D4 ");
}

}  // namespace
}  // namespace virtualtv::test
