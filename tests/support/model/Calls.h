// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "seam/Seam.h"

/// The calls from the plug-in to the set, as the model makes them. Each is recorded, and each can be made to fail. The
/// text form of calls and faults, and the list of operations, come from the seam; the effect of a fault is implemented
/// here.
namespace model {

namespace seam = virtualtv::seam;
using seam::args;
using seam::Fault;
using seam::in;
using seam::op;
using seam::Operation;
using seam::out;

/// Records from the set; null stands for a null pointer.
using Records = std::vector<std::optional<TCServiceData>>;

/// An interface that the set created for an engine: its window, and its number among interfaces of its kind. A number
/// of 0 stands for no interface.
struct Interface {
  std::string_view window{};  ///< "main", "pip" or "set"
  int number = 0;

  explicit operator bool() const { return number != 0; }
  bool operator==(const Interface&) const = default;
};

/// A call as a trace shows it.
struct Made {
  const Operation* operation = nullptr;
  std::string handle;     ///< as in "main#2", empty for a plain function
  std::string arguments;  ///< as in "source=1, appId=\"an.app\""
  std::string result;     ///< "throws" for a call that threw an exception
  bool fault = false;     ///< a fault determined the outcome
  std::string outputs;    ///< its outputs, as in "mode=0,1", if noted
};

/// The exception that a fault makes a call throw.
struct Thrown {};

/// The calls made so far, and the faults.
struct Calls {
  std::vector<Made> made;
  std::vector<Fault> faults;
  std::map<const Operation*, int> interfaces;  ///< number of interfaces created by each factory
  bool notesOutputs = false;                   ///< note the outputs of calls, which takes time
};

namespace detail {

/// Records a call. @return the fault that hits it, null for none. @throws Thrown when the fault says so.
const Fault* begin(Calls& calls, const Operation& operation, const Interface& interface, std::string arguments);

/// True when the set carries out the call: when no fault hits it, or when the fault changes only the outputs, or only
/// the result to another success.
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
/// A fault can't set criteria.
inline void choose(const Fault&, const seam::Out<TCCriteriaHelper>&) {}
void choose(const Fault& fault, const seam::Out<Records>& output);

}  // namespace detail

/// Makes a call that returns a number. @param values  created by `args`; @param body  carries out the call and returns
/// the result. @throws Thrown when a fault says so.
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
/// that takes none. @return the created interface; none on failure.
Interface make(Calls& calls, const Operation& factory, std::optional<int> profile = std::nullopt);

}  // namespace model
