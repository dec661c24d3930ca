// SPDX-License-Identifier: MIT
#include "Sweep.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>

#include "framework/Log.h"
#include "support/Channels.h"
#include "support/Commands.h"

namespace proof {

namespace {

using support::Outcome;
using virtualtv::WindowId;
using virtualtv::seam::Fault;
using virtualtv::seam::Operation;
using virtualtv::seam::Seam;

constexpr const char* untouched = "nobody wrote this";
constexpr const char* description =
    R"({"TYPE":1,"ProgNum":1,"ModulationType":16,"SymbolRate":27500,"PTC":34,"ProgramNumber":300,"SatelliteId":"0x13"})";

std::string nameOf(const Command& command, Stack stack) {
  std::string text = command.name;
  for (const std::string& parameter : command.parameters) text += " " + parameter;
  return text + (stack == Stack::isp ? " (ISP)" : "");
}

/// Why an answer is wrong whatever allocation failed; empty when it is not.
std::string wrongWith(const Command& command, const Outcome& outcome) {
  if (!command.list) return support::undocumented(command.name, outcome);
  return outcome.accepted && outcome.reply ? "" : "answers " + outcome.shown();
}

}  // namespace

std::vector<Command> everyCommand() {
  std::vector<Command> commands;
  for (const engine::Command& command : engine::everyCommand()) commands.push_back({command.name, command.parameters});
  commands.push_back({"SetDVBSIChannelDirectEx", {description, "0"}});
  commands.push_back({"NoSuchCommand", {"1"}});
  commands.push_back({"SetScreenCropRect", {"10", "20", "300", "200", "0", "0", "960", "540", "0"}, true});
  return commands;
}

Sweep::Sweep(std::size_t every) : bench_(channels::threeServices()), every_(every) {
  bench_.logNoMore();  // the log belongs to the framework, and would allocate too
}

void Sweep::commandOutsideCalls(const Command& command, Stack stack, bool fromThenOn) {
  loop(nameOf(command, stack), [&](std::size_t nth) {
    prepare(stack);
    const Run run = runFailing(command, {.nth = nth, .fromThenOn = fromThenOn}, false);
    if (std::string wrong = wrongWith(command, run.outcome); !wrong.empty()) return wrong;
    return bench_.unhealthy();
  });
}

void Sweep::commandInsideCalls(const Command& command, Stack stack) {
  prepare(stack);
  Run healthy;
  carryOut(command, healthy, {});
  std::map<std::size_t, std::string> expected;
  loop(nameOf(command, stack) + " (inside calls)", [&](std::size_t nth) -> std::string {
    prepare(stack);
    const Run run = runFailing(command, {.nth = nth}, true);
    if (support::failedAllocations() == 0) return {};
    std::string health = bench_.unhealthy();
    if (!health.empty() || !run.hit) return health;
    std::string& wanted = expected[*run.hit];
    if (wanted.empty()) wanted = answerToException(command, stack, run);
    const std::string answer = run.outcome.shown();
    if (answer == (support::wasDispensable() ? healthy.outcome.shown() : wanted)) return {};
    return std::string(run.calls[*run.hit]->name) + " fails, and the answer is " + answer + ", not " + wanted;
  });
}

void Sweep::commandInsideCallsFromThenOn(const Command& command, Stack stack) {
  loopInside(command, stack, " (inside calls, from then on)", {.fromThenOn = true});
}

void Sweep::commandInsideStore(const Command& command, Stack stack, bool fromThenOn) {
  loopInside(command, stack, fromThenOn ? " (inside the store, from then on)" : " (inside the store)",
             {.fromThenOn = fromThenOn, .allocator = support::Allocator::other});
}

void Sweep::loopInside(const Command& command, Stack stack, const std::string& where,
                       const support::AllocationPlan& plan) {
  loop(nameOf(command, stack) + where, [&](std::size_t nth) -> std::string {
    prepare(stack);
    support::AllocationPlan planned = plan;
    planned.nth = nth;
    const Run run = runFailing(command, planned, true);
    if (std::string wrong = wrongWith(command, run.outcome); !wrong.empty()) return wrong;
    if (!bench_.isKept()) return "the set is not what it keeps";
    return bench_.unhealthy();
  });
}

void Sweep::makingAnEngine(bool fromThenOn) {
  loop("making an engine", [&](std::size_t nth) -> std::string {
    bench_.renew();
    Run run;
    noteCalls(run, false);
    std::unique_ptr<kel::CEmpEngineBase> engine;
    {
      const support::FailingAllocations failing({.nth = nth, .fromThenOn = fromThenOn});
      engine.reset(bench_.app().CreateEmpEngine());
    }
    Seam::instance().onPassage({});
    if (engine == nullptr) return {};
    std::string ret = untouched;
    const bool accepted = engine->Execute(ret, "GetSourceState", "", "", "", "");
    const auto reply = virtualtv::framework::decode(ret);
    const bool right = reply && reply->number == bench_.tv().state()[WindowId::main].sourceState;
    return accepted ? (right ? "" : "it answers " + ret) : (ret == untouched ? "" : "it refuses with a reply");
  });
}

void Sweep::endingAnEngine(bool fromThenOn) {
  loop("ending an engine", [&](std::size_t nth) -> std::string {
    prepare(Stack::tv);
    std::unique_ptr<kel::CEmpEngineBase> engine(bench_.app().CreateEmpEngine());
    if (engine == nullptr) return "there is none";
    std::string ret;
    engine->Execute(ret, "FindChannel", "0", "1", "", "");
    Run run;
    noteCalls(run, false);
    {
      const support::FailingAllocations failing({.nth = nth, .fromThenOn = fromThenOn});
      engine->Destroy();
      engine.reset();
    }
    Seam::instance().onPassage({});
    return bench_.unhealthy();
  });
}

/// Prepares three services, the first on screen and the second before it, and an engine that has found them.
void Sweep::prepare(Stack stack) {
  bench_.renew();
  virtualtv::Tv& tv = bench_.tv();
  tv.tune(WindowId::main, 2);
  tv.tune(WindowId::main, 1);
  if (stack == Stack::isp) bench_.showIsp();
  bench_.open();
  bench_.execute("FindChannel", {"0", "1"});
}

/// Records the calls of a run, and counts allocations between the calls or within them.
void Sweep::noteCalls(Run& run, bool inside) {
  Seam::instance().onPassage([&run, inside](const Operation* begun) {
    support::countAllocations(false);
    if (begun != nullptr) run.calls.push_back(begun);
    if (begun == nullptr && !run.hit && support::failedAllocations() > 0) run.hit = run.calls.size() - 1;
    support::countAllocations((begun != nullptr) == inside);
  });
}

void Sweep::carryOut(const Command& command, Run& run, const support::Bench::Around& around) {
  run.outcome = command.list ? bench_.executeWithParamList(command.name, command.parameters, around)
                             : bench_.execute(command.name, command.parameters, around);
}

Sweep::Run Sweep::runFailing(const Command& command, const support::AllocationPlan& plan, bool inside) {
  Run run;
  noteCalls(run, inside);
  carryOut(command, run, [&](const std::function<bool()>& own) {
    const support::FailingAllocations failing(plan);
    support::countAllocations(!inside);
    return own();
  });
  Seam::instance().onPassage({});
  return run;
}

/// The command's answer when the call with the failed allocation throws instead.
std::string Sweep::answerToException(const Command& command, Stack stack, const Run& failed) {
  prepare(stack);
  Fault fault;
  fault.operation = failed.calls[*failed.hit];
  fault.way = Fault::Way::throwing;
  const auto end = failed.calls.begin() + static_cast<std::ptrdiff_t>(*failed.hit) + 1;
  fault.nth = static_cast<std::uint64_t>(std::count(failed.calls.begin(), end, fault.operation));
  Seam::instance().add(fault);
  Run run;
  carryOut(command, run, {});
  Seam::instance().clearFaults();
  return run.outcome.shown();
}

void Sweep::loop(const std::string& what, const std::function<std::string(std::size_t nth)>& attempt) {
  for (std::size_t nth = 1;; nth += every_) {
    try {
      const std::string wrong = attempt(nth);
      if (!wrong.empty()) tell(what, nth, wrong);
    } catch (const std::exception& exception) {
      Seam::instance().onPassage({});
      return tell(what, nth, std::string("an exception leaves it: ") + exception.what());
    }
    if (support::failedAllocations() == 0) return;
    failed_ += support::failedAllocations();
    ++runs_;
  }
}

void Sweep::tell(const std::string& what, std::size_t nth, const std::string& wrong) {
  ++deviations_;
  std::cout << what << ", allocation " << nth << ": " << wrong << "\n";
}

}  // namespace proof
