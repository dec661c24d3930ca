// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <string>
#include <vector>

namespace virtualtv::rpc {

/// The subset of JSON Schema that the server's OpenRPC document uses. Keywords beyond it are reported as findings, too.
class JsonSchema {
 public:
  /// @param named  schemas that others refer to, by their names. Must outlive this object.
  explicit JsonSchema(const Json::Value& named) : named_(named) {}

  /// The places where a value violates a schema, one line each: `windows.main.service: ...`.
  std::vector<std::string> findings(const Json::Value& schema, const Json::Value& value) const;

 private:
  using Findings = std::vector<std::string>;

  void check(const Json::Value& schema, const Json::Value& value, const std::string& path, Findings& found) const;
  void checkObject(const Json::Value& schema, const Json::Value& value, const std::string& path, Findings& found) const;
  void checkNumber(const Json::Value& schema, const Json::Value& value, const std::string& path, Findings& found) const;

  const Json::Value& named_;
};

}  // namespace virtualtv::rpc
