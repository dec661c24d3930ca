// SPDX-License-Identifier: MIT
#include "seam/Seam.h"

#include <algorithm>
#include <new>
#include <utility>

namespace virtualtv::seam {

std::string line(const Call& call) {
  std::string name(call.operation->name);
  if (!call.handle.empty()) name.insert(name.find("::"), "[" + call.handle + "]");
  std::string text = name + "(" + call.arguments + ")";
  if (!call.outputs.empty()) text += " " + call.outputs;
  if (!call.result.empty()) text += " -> " + call.result;
  return call.fault ? text + " [fault]" : text;
}

Seam& Seam::instance() {
  static Seam seam;
  return seam;
}

void Seam::exchange(Seam& other) {
  std::swap(*this, other);
  refresh();
}

void Seam::reset() {
  Seam fresh;
  fresh.delay_ = std::move(delay_);
  *this = std::move(fresh);
  refresh();
}

void Seam::onCall(std::function<void(const Call&)> heard) {
  heard_ = std::move(heard);
  refresh();
}

std::uint64_t Seam::add(Fault fault) {
  fault.id = ++lastFault_;
  faults_.push_back(std::move(fault));
  refresh();
  return lastFault_;
}

bool Seam::remove(std::uint64_t id) {
  const bool removed = std::erase_if(faults_, [=](const Fault& fault) { return fault.id == id; }) > 0;
  refresh();
  return removed;
}

void Seam::clearFaults() {
  faults_.clear();
  refresh();
}

void Seam::setLatency(const Operation& operation, std::uint64_t milliseconds) {
  if (milliseconds == 0) {
    latencies_.erase(&operation);
  } else {
    latencies_[&operation] = milliseconds;
  }
  refresh();
}

std::uint64_t Seam::latency(const Operation& operation) const {
  const auto found = latencies_.find(&operation);
  return found == latencies_.end() ? 0 : found->second;
}

void Seam::onPassage(std::function<void(const Operation*)> told) {
  passage_ = std::move(told);
  refresh();
}

Call Seam::begin(const Operation& operation, const Handle& handle) {
  Call call;
  call.sequence = ++sequence_;
  call.caller = caller_;
  call.operation = &operation;
  if (!handle.window.empty()) call.handle.append(handle.window).append("#").append(std::to_string(handle.number));
  if (const std::uint64_t milliseconds = latency(operation); milliseconds > 0 && delay_) delay_(milliseconds);
  return call;
}

const Fault* Seam::hit(const Operation& operation, const Handle& handle) {
  const auto isMeant = [&](const Fault& fault) {
    return fault.operation == &operation && (fault.window.empty() || fault.window == handle.window) &&
           (fault.engine.empty() || fault.engine == caller_.engine);
  };
  const Fault* first = nullptr;
  for (Fault& fault : faults_) {
    if (!isMeant(fault)) continue;
    ++fault.seen;
    const bool due = fault.seen >= fault.nth && (!fault.times || fault.hits < *fault.times);
    if (!due || first != nullptr) continue;
    ++fault.hits;
    first = &fault;
  }
  return first;
}

void Seam::end(const Call& call) {
  if (heard_) heard_(call);
}

void Seam::refresh() {
  observed_ = heard_ != nullptr || !faults_.empty() || !latencies_.empty() || passage_ != nullptr;
}

namespace detail {

void append(std::string& list, std::string_view separator, const char* name, const std::string& value) {
  if (!list.empty()) list += separator;
  if (*name != '\0') list.append(name).append("=");
  list += value;
}

bool carriedOut(const Operation& operation, const Fault& fault) {
  if (fault.way == Fault::Way::outputs) return true;
  return fault.way == Fault::Way::result && operation.returnsNumber() &&
         operation.succeeds(std::atoi(fault.result.c_str()));
}

}  // namespace detail

}  // namespace virtualtv::seam
