// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <string>
#include <vector>

namespace virtualtv::rpc {

/// A call of a method and its result: from docs/examples.txt for commands, from docs/examples.methods.txt for other
/// methods.
struct Example {
  std::vector<std::string> before;  ///< lines of the shell, or calls, that run first on the built-in set
  Json::Value parameters;           ///< as an array, or by name
  Json::Value result;
};

/// The example of a method; null when there is none. Lives as long as the program.
const Example* exampleOf(const std::string& method);

/// A call in docs/examples.methods.txt.
struct ExampleCall {
  std::string line;  ///< the line in the file: the method, then its parameters as JSON
  std::string method;
  Json::Value parameters;
  Json::Value result;

  /// True for the first call of a sequence, which runs on a server just started.
  bool isFirst() const { return method == "session.open"; }
};
/// All calls, in order. @throws std::invalid_argument for an invalid one.
std::vector<ExampleCall> exampleCalls();

}  // namespace virtualtv::rpc
