// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <json/json.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "EmpAppWindow.h"
#include "rpc/Server.h"
#include "support/Assembly.h"

namespace virtualtv::rpc {

/// A clock that the test advances.
class ManualClock {
 public:
  void after(std::chrono::milliseconds delay, std::function<void()> task) {
    tasks_.emplace(now_ + delay, std::move(task));
  }
  void advance(std::chrono::milliseconds time);
  bool isIdle() const { return tasks_.empty(); }

 private:
  std::chrono::milliseconds now_{0};
  std::multimap<std::chrono::milliseconds, std::function<void()>> tasks_;
};

/// A connected client, which stores the messages sent to it.
class Connected : public Outlet {
 public:
  explicit Connected(Server& server, const std::optional<std::string>& session = std::nullopt)
      : client_(server.connect(*this, session)) {}

  void send(std::shared_ptr<const std::string> message) override { messages_.push_back(*message); }
  std::size_t unsent() const override { return unsentBytes; }
  void cutOff() override { isCutOff = true; }

  /// Sends a message unchanged.
  void say(const std::string& message);
  /// Sends a message. @return the only message sent in reply.
  Json::Value replyTo(const std::string& message);
  /// Sends a request. @return its whole response; null when there is none yet.
  Json::Value call(const std::string& method, const Json::Value& params = Json::nullValue);
  /// Sends a request. @return its result; the test fails if it has none.
  Json::Value result(const std::string& method, const Json::Value& params = Json::nullValue);
  /// Runs a command. @return the value of its reply.
  Json::Value run(const std::string& command, const Json::Value& params = Json::nullValue);
  /// Takes the messages received since the last time, as text or parsed.
  std::vector<std::string> takeTexts() { return std::exchange(messages_, {}); }
  std::vector<Json::Value> take();
  /// Takes them, too. @return only the events.
  std::vector<Json::Value> events();

  void end() { client_.reset(); }

  std::size_t unsentBytes = 0;
  bool isCutOff = false;
  int done = 0;  ///< number of messages handled

 private:
  std::vector<std::string> messages_;
  std::unique_ptr<Client> client_;
  int lastId_ = 0;
};

/// A server on a set in memory.
class RpcTest : public ::testing::Test {
 protected:
  explicit RpcTest(Options options = {});

  device::Device& device() { return television.device; }
  Tv& tv() { return television.tv(); }
  /// Answers a POST. @return null while there is no reply, or when it is refused for lack of a session.
  std::optional<std::string> post(const std::string& body, const std::optional<std::string>& session = std::nullopt);
  Json::Value posted(const std::string& method, const Json::Value& params = Json::nullValue,
                     const std::optional<std::string>& session = std::nullopt);

  support::Assembly<kel::CEmpAppWindow> television;
  ManualClock clock;
  std::vector<std::string> complaints;
  int refusals = 0;  ///< POSTs that were refused for lack of a session
  Server server;

 private:
  Options completed(Options options);
};

/// Parses a text as JSON; fails the test if it is not JSON.
Json::Value json(const std::string& text);
/// The error code of a response, 0 if it has a result.
int codeOf(const Json::Value& response);
std::string reasonOf(const Json::Value& response);

}  // namespace virtualtv::rpc
