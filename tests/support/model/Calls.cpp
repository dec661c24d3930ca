// SPDX-License-Identifier: MIT
#include "support/model/Calls.h"

#include <list>
#include <memory>
#include <utility>

namespace model {

namespace {

/// The only interface that is shared by all callers.
constexpr Interface satellite{"set", 1};

Interface handOut(Calls& calls, const Operation& factory, std::optional<int> profile) {
  if (&factory == seam::findOperation("TVServiceAPI::CreateSatellite")) return satellite;
  return {!profile ? "set" : *profile == PROFILE_MAIN ? "main" : "pip", ++calls.interfaces[&factory]};
}

const Fault* hit(Calls& calls, const Operation& operation) {
  const Fault* first = nullptr;
  for (Fault& fault : calls.faults) {
    if (fault.operation != &operation) continue;
    ++fault.seen;
    const bool over = fault.times && fault.hits == *fault.times;
    if (fault.seen < fault.nth || over || first != nullptr) continue;
    ++fault.hits;
    first = &fault;
  }
  return first;
}

}  // namespace

Interface make(Calls& calls, const Operation& factory, std::optional<int> profile) {
  std::string arguments = profile ? "profile=" + std::to_string(*profile) + ", index=0" : "";
  const Fault* const fault = detail::begin(calls, factory, {}, std::move(arguments));
  const bool made = detail::carriedOut(factory, fault);
  std::string& result = calls.made.back().result;
  if (factory.returns == seam::Returns::pointer) {
    result = made ? "made" : "null";
  } else {
    result = fault != nullptr && fault->way == Fault::Way::result ? fault->result : "0";
  }
  return made ? handOut(calls, factory, profile) : Interface();
}

namespace detail {

const Fault* begin(Calls& calls, const Operation& operation, const Interface& interface, std::string arguments) {
  std::string handle = interface ? std::string(interface.window) + "#" + std::to_string(interface.number) : "";
  const Fault* const fault = hit(calls, operation);
  calls.made.push_back({&operation, std::move(handle), std::move(arguments), "throws", fault != nullptr, {}});
  if (fault != nullptr && fault->way == Fault::Way::throwing) throw Thrown();
  return fault;
}

bool carriedOut(const Operation& operation, const Fault* fault) {
  if (fault == nullptr || fault->way == Fault::Way::outputs) return true;
  return fault->way == Fault::Way::result && operation.returnsNumber() && operation.succeeds(std::stoi(fault->result));
}

void describeOutput(std::string& text, const seam::Out<Records>& output) {
  std::list<TCServiceData*> records;
  for (auto& record : output.value) records.push_back(record ? &*record : nullptr);
  text += std::string(output.name) + "=" + seam::print(records);
}

void choose(const Fault& fault, const seam::Out<Records>& output) {
  const auto chosen = fault.outputs.find(output.name);
  std::list<TCServiceData*> records;
  if (chosen == fault.outputs.end() || !seam::parse(chosen->second, records)) return;
  output.value.clear();
  for (TCServiceData* const record : records) {
    output.value.push_back(record == nullptr ? std::nullopt : std::optional(*record));
    delete record;
  }
}

}  // namespace detail

}  // namespace model
