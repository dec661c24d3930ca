// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "seam/Seam.h"

/// The calls that a plug-in makes to the set, as the model makes them: each is noted, and any can be told to fail. How
/// calls and faults are written, and what of them a set offers, is that of the seam; what a fault does is worked out
/// here.
namespace model {

namespace seam = virtualtv::seam;
using seam::args;
using seam::Fault;
using seam::in;
using seam::op;
using seam::Operation;
using seam::out;

/// Records as the set hands them over; one that is none is a null pointer in its place.
using Records = std::vector<std::optional<TCServiceData>>;

/// What the set made for an engine: of which window it is, and its number among its kind. None without a number.
struct Interface {
  std::string_view profile{};  ///< "main", "pip" or "set"
  int number = 0;

  explicit operator bool() const { return number != 0; }
  bool operator==(const Interface&) const = default;
};

/// A call as a trace shows it.
struct Made {
  const Operation* operation = nullptr;
  std::string handle;     ///< as in "main#2", empty for a plain function
  std::string arguments;  ///< as in "source=1, appId=\"an.app\""
  std::string result;     ///< "throws" for a call that an exception left
  bool fault = false;     ///< a fault decided what it came to
  std::string outputs;    ///< what it wrote, as in "mode=0,1", where that is noted
};

/// The exception that leaves a call by a fault.
struct Thrown {};

/// The calls made so far, and those that are to fail.
struct Calls {
  std::vector<Made> made;
  std::vector<Fault> faults;
  std::map<const Operation*, int> interfaces;  ///< how many each factory has made
  bool notesOutputs = false;                   ///< of the calls made, which takes time
};

namespace detail {

/// Notes a call. @return the fault that hits it, null for none. @throws Thrown when that is what the fault does.
const Fault* begin(Calls& calls, const Operation& operation, const Interface& interface, std::string arguments);

/// Whether the set does what it is called for: unless a fault hits the call, and also then if its outputs alone are
/// other ones, or its answer another success.
bool carriedOut(const Operation& operation, const Fault* fault);

template <typename Value>
void describe(std::string& text, const seam::In<Value>& value) {
  if (!text.empty()) text += ", ";
  if (*value.name != '\0') text += std::string(value.name) + "=";
  text += seam::print(value.value);
}
template <typename Value>
void describe(std::string&, const seam::Out<Value>&) {}

template <typename Value>
void describeOutput(std::string&, const seam::In<Value>&) {}
template <typename Value>
void describeOutput(std::string& text, const seam::Out<Value>& output) {
  if (!text.empty()) text += " ";
  text += std::string(output.name) + "=" + seam::print(output.value);
}
void describeOutput(std::string& text, const seam::Out<Records>& output);

template <typename Value>
void choose(const Fault&, const seam::In<Value>&) {}
template <typename Value>
void choose(const Fault& fault, const seam::Out<Value>& output) {
  const auto chosen = fault.outputs.find(output.name);
  if (chosen != fault.outputs.end()) seam::parse(chosen->second, output.value);
}
/// Criteria can't be chosen.
inline void choose(const Fault&, const seam::Out<TCCriteriaHelper>&) {}
void choose(const Fault& fault, const seam::Out<Records>& output);

}  // namespace detail

/// Makes a call that answers a number. @param values  made by `args`; @param body  what the set does, which answers the
/// result. @throws Thrown when a fault has it do so.
template <typename Values, typename Body>
int call(Calls& calls, const Operation& operation, const Interface& interface, const Values& values, Body body) {
  std::string arguments;
  std::apply([&](const auto&... value) { (detail::describe(arguments, value), ...); }, values);
  const Fault* const fault = detail::begin(calls, operation, interface, std::move(arguments));
  int result = operation.success();
  if (detail::carriedOut(operation, fault)) result = body();
  if (fault != nullptr) {
    if (fault->way == Fault::Way::result) result = std::stoi(fault->result);
    std::apply([&](const auto&... value) { (detail::choose(*fault, value), ...); }, values);
  }
  Made& made = calls.made.back();
  made.result = std::to_string(result);
  if (calls.notesOutputs) {
    std::apply([&](const auto&... value) { (detail::describeOutput(made.outputs, value), ...); }, values);
  }
  return result;
}

/// Makes a call of a factory. @param profile  1 for the main window, 101 for picture-in-picture; none for a factory
/// that takes none. @return what it made, none when it failed.
Interface make(Calls& calls, const Operation& factory, std::optional<int> profile = std::nullopt);

}  // namespace model
