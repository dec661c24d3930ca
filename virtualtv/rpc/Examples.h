#pragma once

#include <json/json.h>

#include <string>
#include <vector>

namespace virtualtv::rpc {

/// A call of a method and what it answers: from docs/examples.txt for commands, else from docs/examples.methods.txt.
struct Example {
  std::vector<std::string> before;  ///< what runs before it, on the built-in set: lines of the shell, or calls
  Json::Value parameters;           ///< in an array, or by their names
  Json::Value result;
};

/// The example of a method; null when there is none. It lives as long as the program.
const Example* exampleOf(const std::string& method);

/// A call in docs/examples.methods.txt.
struct ExampleCall {
  std::string line;  ///< as it stands there: the method, then its parameters as JSON
  std::string method;
  Json::Value parameters;
  Json::Value result;

  /// True for the first of several that run one after another, on a server that has just started.
  bool isFirst() const { return method == "session.open"; }
};
/// All of them, in order. @throws std::invalid_argument for one that can't be read.
std::vector<ExampleCall> exampleCalls();

}  // namespace virtualtv::rpc
