// SPDX-License-Identifier: MIT
// Four clients on four threads share one device. They send commands, restarts and resets.
#include <atomic>
#include <random>
#include <thread>

#include "framework/Reply.h"
#include "virtualtv/device/DeviceTest.h"

namespace virtualtv::device {
namespace {

constexpr int clients = 4;
constexpr int steps = 150;

/// A client's actions, on a thread of its own.
class Client {
 public:
  Client(Device& device, int number)
      : device_(device),
        random_(static_cast<unsigned>(number)),
        session_(
            device.loop().call([&] { return std::make_unique<Session>(device, "client" + std::to_string(number)); })),
        feed_(device.loop().call([&] { return device.subscribe({.events = true, .calls = true, .logLevel = 3}); })) {}

  void run() {
    for (int step = 0; step < steps; ++step) {
      act();
      readFeed();
    }
    device_.loop().call([&] { session_.reset(); });
    feed_.reset();
  }

  int wrong = 0;      ///< replies that can't be decoded
  int backwards = 0;  ///< revisions that went back

 private:
  void act() {
    const auto choice = random_() % 100;
    if (choice == 0) return device_.loop().call([&] { device_.restart(); });
    if (choice == 1) return device_.loop().call([&] { device_.reset(); });
    if (choice < 10) return device_.loop().call([&] { session_->reopen(); });
    static const std::vector<std::vector<std::string>> commands{
        {"SetChannel", "3", "0"},  {"SetSource", "31"}, {"SetSource", "0"}, {"GetTVMode"},
        {"FindChannel", "0", "1"}, {"SetWindow", "1"},  {"SetWindow", "0"}, {"GetCurrentChannel_Major"}};
    const auto& words = commands[random_() % commands.size()];
    const std::string ret = device_.loop().call([&] {
      std::string encoded;
      session_->execute(words, false, encoded);
      return encoded;
    });
    if (!framework::decode(ret)) ++wrong;
  }

  void readFeed() {
    for (const auto& happening : feed_->take().happenings) {
      if (happening->revision < revision_) ++backwards;
      revision_ = happening->revision;
    }
  }

  Device& device_;
  std::minstd_rand random_;
  std::unique_ptr<Session> session_;
  std::shared_ptr<Feed> feed_;
  std::uint64_t revision_ = 0;
};

TEST(DeviceThreads, FourClientsShareOneDevice) {
  support::Assembly<kel::CEmpAppWindow> television;
  std::atomic<int> going = clients;
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  threads.reserve(clients);
  for (int number = 1; number <= clients; ++number) {
    threads.emplace_back([&, number] {
      Client client(television.device, number);
      client.run();
      wrong += client.wrong + client.backwards;
      if (--going == 0) television.device.loop().stop();
    });
  }
  television.device.loop().run();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_TRUE(television.device.host().engines().empty());
}

}  // namespace
}  // namespace virtualtv::device
