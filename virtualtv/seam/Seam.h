// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "seam/Fault.h"
#include "seam/Operations.h"
#include "seam/Values.h"
#include "text/Shared.h"

/// All calls from the plug-in to the set pass here, where they can be recorded, delayed and made to fail. When all of
/// this is off, a call costs one test of a flag.
namespace virtualtv::seam {

/// The caller: the engine's key (see `framework::engineKey`), and the number of its command, counted from 1 since the
/// engine was opened (0 outside a command).
struct Caller {
  text::Shared engine;
  std::uint64_t command = 0;
};

/// The interface that a call goes to: its window, and its number among interfaces of its kind. Empty for plain
/// functions.
struct Handle {
  std::string_view window;  ///< "main" or "pip"; "set" for interfaces without a window; empty for a plain function
  int number = 0;
};

/// One recorded call.
struct Call {
  std::uint64_t sequence = 0;  ///< counted from 1 since `Seam::reset`, over all observed calls
  Caller caller;
  const Operation* operation = nullptr;
  std::string handle;     ///< as in "main#2", empty for a plain function
  std::string arguments;  ///< as in "where 12=5, fetch 16, count=1"
  std::string outputs;    ///< as in "mode=0,1"
  std::string result;     ///< as in "1", "null", "throws"; empty if there is none
  bool fault = false;     ///< a fault decided the outcome
  std::uint64_t faultId = 0;
};

/// A call in one line: `IServiceNavigation[main#2]::GetTvMode() mode=0,1 -> 1`.
std::string line(const Call& call);

/// The exception that a fault makes a call throw.
class Thrown : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The state of the seam, one per process. Used by the shell and by tests. The calls themselves use `pass`.
class Seam {
 public:
  static Seam& instance();

  /// Swaps the state with another one.
  void exchange(Seam& other);
  /// Resets: no recorded calls, no faults, no latency, no listeners, sequence 0, no caller. The function set by
  /// `onDelay` stays.
  void reset();

  /// Calls `heard` at the end of each call, before the call returns, so `heard` must not throw. Pass an empty function
  /// to stop recording calls.
  void onCall(std::function<void(const Call&)> heard);

  /// @return the number of the fault.
  std::uint64_t add(Fault fault);
  /// @return false when there is no fault with that number.
  bool remove(std::uint64_t id);
  void clearFaults();
  const std::vector<Fault>& faults() const { return faults_; }

  /// Delays every call of the operation by this time; 0 for no delay.
  void setLatency(const Operation& operation, std::uint64_t milliseconds);
  std::uint64_t latency(const Operation& operation) const;
  /// Sets the function that carries out a delay: the set advances its clock.
  void onDelay(std::function<void(std::uint64_t milliseconds)> delay) { delay_ = std::move(delay); }

  /// Calls `told` with the operation at the start of each call, before anything else, and with null at the end of the
  /// call, even after an exception. Pass an empty function to stop this.
  void onPassage(std::function<void(const Operation* begun)> told);

  /// The current caller. Set by the framework around each call into an engine.
  const Caller& caller() const { return caller_; }
  void setCaller(Caller caller) { caller_ = std::move(caller); }

  // For `pass`.
  static bool observed() { return observed_; }
  void passing(const Operation* begun) const {
    if (passage_) passage_(begun);
  }
  Call begin(const Operation& operation, const Handle& handle);
  const Fault* hit(const Operation& operation, const Handle& handle);
  void end(const Call& call);

 private:
  void refresh();

  static inline bool observed_ = false;
  std::function<void(const Call&)> heard_;
  std::uint64_t sequence_ = 0;
  std::uint64_t lastFault_ = 0;
  std::vector<Fault> faults_;
  std::map<const Operation*, std::uint64_t> latencies_;
  std::function<void(std::uint64_t)> delay_;
  std::function<void(const Operation*)> passage_;
  Caller caller_;
};

/// Replaces the seam by a fresh one for the lifetime of this object, then restores it. Must not be created inside a
/// call.
class SeamAside {
 public:
  SeamAside() { Seam::instance().exchange(aside_); }
  SeamAside(const SeamAside&) = delete;
  SeamAside& operator=(const SeamAside&) = delete;
  ~SeamAside() { Seam::instance().exchange(aside_); }

 private:
  Seam aside_;
};

/// Sets the caller for the lifetime of this object.
class CallerScope {
 public:
  explicit CallerScope(Caller caller) : before_(Seam::instance().caller()) {
    Seam::instance().setCaller(std::move(caller));
  }
  CallerScope(const CallerScope&) = delete;
  CallerScope& operator=(const CallerScope&) = delete;
  ~CallerScope() { Seam::instance().setCaller(std::move(before_)); }

 private:
  Caller before_;
};

namespace detail {

void append(std::string& list, std::string_view separator, const char* name, const std::string& value);

template <typename Value>
void describe(Call& call, const In<Value>& argument) {
  append(call.arguments, ", ", argument.name, print(argument.value));
}
template <typename Value>
void describe(Call&, const Out<Value>&) {}

template <typename Value>
void describeOutput(Call&, const In<Value>&) {}
template <typename Value>
void describeOutput(Call& call, const Out<Value>& output) {
  if constexpr (!std::is_pointer_v<Value>) append(call.outputs, " ", output.name, print(output.value));
}

template <typename Value>
void assign(const Fault&, const In<Value>&) {}
template <typename Value>
void assign(const Fault& fault, const Out<Value>& output) {
  if constexpr (std::is_pointer_v<Value>) {
    if (fault.way == Fault::Way::null) output.value = nullptr;
  } else if constexpr (!std::is_same_v<Value, TCCriteriaHelper>) {
    const auto chosen = fault.outputs.find(output.name);
    if (chosen != fault.outputs.end()) parse(chosen->second, output.value);
  }
}

/// The result that a fault specifies.
template <typename Result>
Result failed(const Operation& operation, const Fault& fault) {
  if constexpr (std::is_same_v<Result, int>) {
    return fault.way == Fault::Way::result ? std::atoi(fault.result.c_str()) : operation.success();
  } else if constexpr (std::is_same_v<Result, std::string>) {
    return fault.result;
  } else if constexpr (std::is_same_v<Result, char*>) {  // a text that the caller frees
    return fault.way == Fault::Way::result ? ::strdup(fault.result.c_str()) : nullptr;
  } else {
    return Result();
  }
}

/// True when the call is carried out despite the fault.
bool carriedOut(const Operation& operation, const Fault& fault);

template <typename Result>
std::string printResult(const Result& result) {
  if constexpr (std::is_same_v<Result, char*>) {
    return result == nullptr ? "null" : print(static_cast<const char*>(result));
  } else if constexpr (std::is_pointer_v<Result>) {
    return result == nullptr ? "null" : "made";
  } else {
    return print(result);
  }
}

/// Records the call at its end, even after an exception.
class Ending {
 public:
  explicit Ending(Call& call) : call_(call) {}
  Ending(const Ending&) = delete;
  Ending& operator=(const Ending&) = delete;
  ~Ending() { Seam::instance().end(call_); }

 private:
  Call& call_;
};

/// Reports the start and the end of a call.
class Passage {
 public:
  explicit Passage(const Operation& operation) { Seam::instance().passing(&operation); }
  Passage(const Passage&) = delete;
  Passage& operator=(const Passage&) = delete;
  ~Passage() { Seam::instance().passing(nullptr); }
};

// Not inlined: otherwise every caller would save registers for this rare path. It takes copies, so that the caller's
// values and closure can stay in registers, as nothing takes their addresses.
template <typename Values, typename Body>
[[gnu::noinline, gnu::cold]] auto observe(const Operation& operation, const Handle& handle, const Values values,
                                          Body body) -> decltype(body()) {
  using Result = decltype(body());
  const Passage passage(operation);
  Seam& seam = Seam::instance();
  Call call = seam.begin(operation, handle);
  std::apply([&](const auto&... value) { (describe(call, value), ...); }, values);
  call.result = "throws";
  const Ending ending(call);
  std::optional<Fault> fault;
  if (const Fault* found = seam.hit(operation, handle)) fault = *found;
  call.fault = fault.has_value();
  if (fault) call.faultId = fault->id;
  if (fault && fault->way == Fault::Way::throwing) throw Thrown("fault in " + std::string(operation.name));

  const bool run = !fault || carriedOut(operation, *fault);
  const auto finish = [&] {
    if (fault) std::apply([&](const auto&... value) { (assign(*fault, value), ...); }, values);
    std::apply([&](const auto&... value) { (describeOutput(call, value), ...); }, values);
  };
  if constexpr (std::is_void_v<Result>) {
    if (run) body();
    finish();
    call.result.clear();
  } else {
    Result result = run ? body() : failed<Result>(operation, *fault);
    if (run && fault && fault->way == Fault::Way::result) result = failed<Result>(operation, *fault);
    std::unique_ptr<char, decltype(&std::free)> text(nullptr, &std::free);  // freed by the caller after it is returned
    if constexpr (std::is_same_v<Result, char*>) text.reset(result);
    finish();
    call.result = printResult(result);
    static_cast<void>(text.release());
    return result;
  }
}

}  // namespace detail

/// Arguments and outputs of a call: `args(in("key", key), out("value", *value))`.
template <typename... Values>
std::tuple<Values...> args(Values... values) {
  return {values...};
}

/// Carries out a platform call: `body` performs it and returns its result.
/// @param handle  the interface called, `{}` for a plain function.
/// @param values  created by `args`.
template <typename Values, typename Body>
auto pass([[maybe_unused]] const Operation& operation, [[maybe_unused]] const Handle& handle,
          [[maybe_unused]] const Values& values, Body&& body) -> decltype(body()) {
#ifdef VIRTUALTV_WITHOUT_SEAM  // the reference for measuring the cost of the seam
  return body();
#else
  if (!Seam::observed()) [[likely]] {
    return body();
  }
  return detail::observe(operation, handle, Values(values), std::remove_reference_t<Body>(body));
#endif
}

}  // namespace virtualtv::seam
