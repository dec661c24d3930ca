#pragma once

#include <json/json.h>

#include <string>
#include <vector>

namespace virtualtv::rpc {

/// A command with parameters and what it answers, from docs/examples.txt.
struct Example {
  std::vector<std::string> before;      ///< the lines of the shell that run before it, on the built-in set
  std::vector<std::string> parameters;  ///< as typed
  Json::Value result;                   ///< of the method `window.COMMAND`
};

/// The example of a command; null when there is none. It lives as long as the program.
const Example* exampleOf(const std::string& command);

}  // namespace virtualtv::rpc
