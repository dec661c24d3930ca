// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "store/SettingsStore.h"
#include "virtualtv/services/Support.h"

namespace virtualtv::test {
namespace {

const char* const settingsOnly[] = {settingsTables};
const char* const settingsAndServices[] = {settingsTables, serviceTables, listEntries, footageTables};

std::vector<Service> manyServices(int count) {
  std::vector<Service> services;
  for (int number = 0; number < count; ++number) {
    services.push_back(serviceOf(static_cast<std::uint64_t>(number), number));
    services.back().audio = {{.pid = number}};
    services.back().numbers[200] = static_cast<std::uint64_t>(number);
  }
  return services;
}

std::vector<Service> allOf(Database& database) {
  ServiceStore store(database);
  std::vector<Service> services;
  for (const ServiceKey key : store.keys()) services.push_back(store.read(key).value());
  return services;
}

class ServiceFile : public testing::Test {
 public:
  void keep(const std::vector<Service>& services) {
    Database database(file, serviceSchema);
    ServiceStore(database).replaceAll(services);
  }

  TemporaryDirectory directory;
  const std::filesystem::path file = directory / "a.db";
};

TEST_F(ServiceFile, KeepsItsServices) {
  keep(manyServices(50));
  Database database(file, serviceSchema);
  EXPECT_EQ(allOf(database), manyServices(50));
}

TEST_F(ServiceFile, KeepsEveryWriteWhenTheProcessDies) {
  const std::string end = inChild([&]() -> std::string {
    Database database(file, serviceSchema);
    ServiceStore store(database);
    store.replaceAll(manyServices(3));
    store.merge({serviceOf(1, 77), serviceOf(9, 78)});
    store.setFavourite(2, 5, true);
    store.set(1, 200, std::uint64_t{12});
    store.setAudio(1, {});
    std::_Exit(0);
  });
  ASSERT_EQ(end, "");
  Database database(file, serviceSchema);
  ServiceStore store(database);
  std::vector<Service> expected = manyServices(3);
  expected[0].numbers[200] = 12;
  expected[0].audio.clear();
  expected[1] = serviceOf(1, 77);
  expected[1].numbers[200] = 1;  // the merged list does not have this field
  expected[2].favourites[5] = true;
  EXPECT_EQ(store.read(1), expected[0]);
  EXPECT_EQ(store.read(2), expected[1]);
  EXPECT_EQ(store.read(3), expected[2]);
  EXPECT_EQ(store.read(4), serviceOf(9, 78));
}

TEST_F(ServiceFile, KeepsWhatItHadWhenTheDiskFillsUpInTheMiddle) {
  keep(manyServices(10));
  const std::string text = inChild([&] {
    Database database(file, serviceSchema);
    ServiceStore store(database);
    limitFileSize(200'000);
    const std::string failure = failureOf([&] { store.replaceAll(manyServices(5000)); });
    return allOf(database) == manyServices(10) ? failure : "lost services";
  });
  EXPECT_TRUE(text.starts_with(file.string() + ": cannot ")) << text;
  EXPECT_TRUE(text.ends_with(": writing to the disk failed")) << text;
  Database database(file, serviceSchema);
  EXPECT_EQ(allOf(database), manyServices(10));
}

TEST_F(ServiceFile, WithADamagedPageFailsInTheQueryThatMeetsIt) {
  std::vector<Service> services = manyServices(2000);
  services.back().texts[16] = u"the last";
  keep(services);
  const std::string whole = contentOf(file);
  const std::string name("\0 \0l\0a\0s\0t", 10);
  ASSERT_NE(whole.find(name), std::string::npos);
  overwrite(file, whole.find(name) / 4096 * 4096, std::string(4096, '\x5a'));
  const std::string damaged = contentOf(file);
  {
    Database database(file, serviceSchema);
    ServiceStore store(database);
    EXPECT_EQ(firstOf(store, Criteria().fetch({12}).where(12, 0)), "12=0");
    EXPECT_EQ(failureOf([&] { allOf(database); }), file.string() + ": cannot read a service: the file is damaged");
  }
  EXPECT_EQ(contentOf(file), damaged);
}

TEST_F(ServiceFile, OfTheVersionBeforeListEntriesAndRecordingsHasNoneAndKeepsNewOnes) {
  {
    const Database database(file, std::span(settingsAndServices).first(2), [](Database& made) {
      made.execute("INSERT INTO service(service_id, group_name) VALUES(7, 'G')", "add a service");
    });
  }
  Database database(file, settingsAndServices);
  ServiceStore services(database);
  Service service = services.all().begin()->second;
  EXPECT_EQ(service.group, "G");
  EXPECT_EQ(service.listEntry, "");
  EXPECT_EQ(service.footage, std::nullopt);
  service.listEntry = std::string("vdr\n\xFF\0", 6);
  service.footage = Footage{std::string("/a\0\xFF", 4), 256, streamOfH264, true};
  services.replaceAll({service});
  EXPECT_EQ(services.read(1), service);
}

TEST_F(ServiceFile, OfTheVersionWithListEntriesInAColumnKeepsNewOnes) {
  {
    const std::array steps{settingsTables, serviceTables, "ALTER TABLE service ADD COLUMN list_entry BLOB"};
    const Database database(file, steps, [](Database& made) {
      made.execute("INSERT INTO service(service_id, group_name) VALUES(7, 'G')", "add a service");
    });
  }
  Database database(file, settingsAndServices);
  ServiceStore services(database);
  Service service = services.all().begin()->second;
  EXPECT_EQ(service.group, "G");
  service.listEntry = "vdr\nA";
  services.replaceAll({service});
  EXPECT_EQ(services.read(1), service);
}

TEST_F(ServiceFile, OfAnOlderVersionGetsItsTablesBesideWhatItHas) {
  {
    Database database(file, settingsOnly);
    SettingsStore(database).set("key", 7);
  }
  Database database(file, settingsAndServices);
  EXPECT_EQ(SettingsStore(database).get("key"), Setting(7));
  ServiceStore(database).replaceAll(manyServices(2));
  EXPECT_EQ(allOf(database), manyServices(2));
}

}  // namespace
}  // namespace virtualtv::test
