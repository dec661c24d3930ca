// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "seam/Operations.h"

namespace virtualtv::seam {

/// How a call is made to fail. Whatever a fault leaves open stays as in the normal call.
struct Fault {
  enum class Way {
    outputs,    ///< the call is carried out, then the given outputs are overwritten
    result,     ///< the call returns `result`; it is carried out only if that means success
    null,       ///< the output is a null pointer, the result the default success
    unwritten,  ///< the result is the default success, but nothing is carried out and no output is written
    throwing,   ///< the call throws an exception
  };

  std::uint64_t id = 0;  ///< assigned by the seam, never reused
  const Operation* operation = nullptr;
  std::string window;  ///< name of the interface's window; empty for any, and for plain functions
  std::string engine;  ///< the key of the calling engine; empty for any
  Way way = Way::outputs;
  std::string result;                          ///< a number, or a text if the operation returns one
  std::map<std::string, std::string> outputs;  ///< the outputs to overwrite, as texts by name
  std::uint64_t nth = 1;                       ///< the first call to hit, counted from when the fault was set
  std::optional<std::uint64_t> times = 1;      ///< number of calls to hit; empty for all
  std::uint64_t seen = 0;                      ///< matching calls since the fault was set
  std::uint64_t hits = 0;                      ///< calls hit so far
  std::size_t input = 0;                       ///< number of the input that set the fault, for reports
};

/// Reads a fault from its words, as in `{"IService::FindService", "nth=2", "times=always", "result=0"}`.
/// @throws std::invalid_argument with a line for a person when the words do not describe a valid fault of that
/// operation.
Fault parseFault(const std::vector<std::string>& words);

/// The words of a fault as `parseFault` reads them, quoted as for a shell.
std::string describe(const Fault& fault);

}  // namespace virtualtv::seam
