// SPDX-License-Identifier: MIT
#include "virtualtv/rpc/RpcTest.h"

#include "json/Read.h"

namespace virtualtv::rpc {

namespace {

std::string request(const std::string& method, const Json::Value& params, int id) {
  Json::Value request;
  request["jsonrpc"] = "2.0";
  request["id"] = id;
  request["method"] = method;
  if (!params.isNull()) request["params"] = params;
  return request.toStyledString();
}

}  // namespace

Json::Value json(const std::string& text) {
  try {
    return virtualtv::json::read(text);
  } catch (const virtualtv::json::NotJson& error) {
    ADD_FAILURE() << error.what() << " in " << text;
    return {};
  }
}

int codeOf(const Json::Value& response) {
  EXPECT_EQ(response["jsonrpc"], "2.0");
  EXPECT_NE(response.isMember("result"), response.isMember("error")) << response.toStyledString();
  return response["error"]["code"].asInt();
}

std::string reasonOf(const Json::Value& response) {
  EXPECT_TRUE(response["error"]["message"].isString());
  return response["error"]["data"]["reason"].asString();
}

void ManualClock::advance(std::chrono::milliseconds time) {
  const std::chrono::milliseconds end = now_ + time;
  while (!tasks_.empty() && tasks_.begin()->first <= end) {
    const auto task = tasks_.extract(tasks_.begin());
    now_ = task.key();
    task.mapped()();
  }
  now_ = end;
}

void Connected::say(const std::string& message) {
  client_->take(message, [this] { ++done; });
}

Json::Value Connected::replyTo(const std::string& message) {
  say(message);
  const std::vector<Json::Value> replies = take();
  EXPECT_EQ(replies.size(), 1U) << message;
  return replies.empty() ? Json::Value() : replies.front();
}

Json::Value Connected::call(const std::string& method, const Json::Value& params) {
  const int id = ++lastId_;
  say(request(method, params, id));
  for (auto message = messages_.begin(); message != messages_.end(); ++message) {
    Json::Value response = json(*message);
    if (response["id"] != id || !response.isMember("id")) continue;
    messages_.erase(message);
    return response;
  }
  return {};
}

Json::Value Connected::result(const std::string& method, const Json::Value& params) {
  const Json::Value response = call(method, params);
  EXPECT_TRUE(response.isMember("result")) << method << ": " << response.toStyledString();
  return response["result"];
}

Json::Value Connected::run(const std::string& command, const Json::Value& params) {
  return result("window." + command, params)["value"];
}

std::vector<Json::Value> Connected::take() {
  std::vector<Json::Value> read;
  for (const std::string& text : takeTexts()) read.push_back(json(text));
  return read;
}

std::vector<Json::Value> Connected::events() {
  std::vector<Json::Value> events;
  for (const Json::Value& message : take()) {
    EXPECT_EQ(message["method"], "event");
    EXPECT_FALSE(message.isMember("id"));
    events.push_back(message["params"]);
  }
  return events;
}

RpcTest::RpcTest(Options options) : server(television.device, completed(std::move(options))) {}

Options RpcTest::completed(Options options) {
  options.after = [this](std::chrono::milliseconds delay, std::function<void()> task) {
    clock.after(delay, std::move(task));
  };
  options.complain = [this](const std::string& complaint) { complaints.push_back(complaint); };
  return options;
}

std::optional<std::string> RpcTest::post(const std::string& body, const std::optional<std::string>& session) {
  const auto reply = std::make_shared<std::optional<std::string>>();
  server.post(body, session, [this, reply](std::optional<std::string> text) {
    EXPECT_FALSE(reply->has_value()) << "answered twice";
    if (!text) ++refusals;
    *reply = std::move(text);
  });
  return *reply;
}

Json::Value RpcTest::posted(const std::string& method, const Json::Value& params,
                            const std::optional<std::string>& session) {
  const auto reply = post(request(method, params, 1), session);
  return reply ? json(*reply) : Json::Value();
}

}  // namespace virtualtv::rpc
