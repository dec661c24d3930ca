// SPDX-License-Identifier: MIT
// Methods for testers: faults of the set, and transcripts, which run on a set of their own.
#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "device/Device.h"
#include "rpc/Core.h"
#include "rpc/Method.h"
#include "rpc/Schemas.h"
#include "shell/Check.h"
#include "text/Units.h"

namespace virtualtv::rpc {

namespace {

Json::Value operations(const Context&) {
  Json::Value answer;
  answer["operations"] = Json::arrayValue;
  for (const seam::Operation& operation : seam::operations) {
    Json::Value& row = answer["operations"].append(Json::objectValue);
    row["name"] = std::string(operation.name);
    row["outputs"] = Json::arrayValue;
    for (const seam::Output& output : operation.written()) row["outputs"].append(std::string(output.name));
  }
  return answer;
}

/// A part of a fault as `.fault` takes it.
std::string faultWord(const Json::Value& value, const std::string& name) {
  if (value.isString()) return value.asString();
  if (value.isNull()) return "null";
  if (value.isIntegral()) return value.asString();
  throw Failure(Code::badParameters, name + ": a text, a whole number or null is wanted");
}

std::vector<std::string> faultWords(const Context& context) {
  const Params& params = context.params;
  std::vector<std::string> words{params.text("operation")};
  const auto add = [&](const std::string& name, const std::string& value) { words.push_back(name + "=" + value); };
  constexpr text::Range count{1, std::numeric_limits<std::int64_t>::max()};
  if (params.has("nth")) add("nth", std::to_string(params.number("nth", count)));
  if (params.has("times")) add("times", faultWord(params.value("times"), "times"));
  if (params.has("window")) add("window", params.text("window"));
  if (params.isGiven("result")) add("result", faultWord(params.value("result"), "result"));
  const Json::Value& outputs = params.value("outputs");
  if (!outputs.isNull() && !outputs.isObject()) throw Failure(Code::badParameters, "outputs: an object is wanted");
  if (!params.isGiven("result") && outputs.empty()) throw std::invalid_argument("a result or outputs are wanted");
  for (const std::string& name : outputs.getMemberNames()) {
    words.push_back("out." + name + "=" + faultWord(outputs[name], "outputs." + name));
  }
  return words;
}

Json::Value fault(const Context& context) {
  seam::Fault fault = seam::parseFault(faultWords(context));
  if (context.params.has("session")) {
    const device::Session& client = context.core.seat(context.params.text("session")).shell.client();
    fault.engine = client.key(client.engine());
  }
  Json::Value answer;
  answer["id"] = Json::UInt64{context.core.device().addFault(std::move(fault))};
  return answer;
}

Json::Value faults(const Context& context) {
  Json::Value answer;
  answer["faults"] = Json::arrayValue;
  for (const seam::Fault& fault : context.core.device().faults()) {
    Json::Value& row = answer["faults"].append(Json::objectValue);
    row["id"] = Json::UInt64{fault.id};
    row["operation"] = std::string(fault.operation->name);
    row["fault"] = text::wellFormed(seam::describe(fault));
    row["hits"] = Json::UInt64{fault.hits};
  }
  return answer;
}

Json::Value clearFaults(const Context& context) {
  if (!context.params.has("id")) {
    context.core.device().clearFaults();
    return Json::objectValue;
  }
  const auto id = static_cast<std::uint64_t>(context.params.number("id", notNegative));
  if (!context.core.device().removeFault(id)) throw std::invalid_argument("there is no fault " + std::to_string(id));
  return Json::objectValue;
}

/// Meanwhile the served set, its engines and their listeners are put aside.
Json::Value check(const Context& context) {
  constexpr shell::CheckBounds bounds{.inputs = 10'000, .time = std::chrono::seconds(5)};
  const std::string transcript = context.params.content("transcript");
  kel::CEmpAppBase& app = context.core.device().app();
  const device::DeviceAside aside(app);
  const shell::CheckedFile checked = shell::checkText(app, "transcript", transcript, context.core.files(), bounds);
  if (!checked.error.empty()) throw std::invalid_argument(checked.error);
  std::string diff = checked.diff;
  for (const std::string& finding : checked.findings) diff += finding + "\n";
  Json::Value answer;
  answer["passed"] = checked.passed();
  answer["diff"] = diff;
  return answer;
}

const std::array testRows{
    Method{"tv.operations",
           "list the calls from the plug-in to the set; each can be made to fail",
           {},
           R"({"type": "object", "required": ["operations"], "properties": {
               "operations": {"type": "array", "items": {"$ref": "#/components/schemas/Operation"}}},
               "additionalProperties": false})",
           operations},
    Method{"tv.fault",
           "make calls to the set fail",
           {{"operation", textSchema, "the call", true},
            {"nth", R"({"type": "integer", "minimum": 1})", "the first call that it hits, counted from now"},
            {"times", R"({"type": ["integer", "string"]})", "how many calls it hits, or always; 1 by default"},
            {"result", R"({"type": ["integer", "string", "null"]})",
             "result of the call: a number or a text, null, unwritten or throw"},
            {"outputs", anObject, "values of outputs, by name"},
            {"window", R"({"enum": ["main", "pip"]})", "only calls for this window"},
            {"session", textSchema, "only calls of the engine in use of this session"}},
           R"({"type": "object", "required": ["id"], "properties": {"id": {"type": "integer"}}})",
           fault},
    Method{"tv.faults",
           "list the faults, with the number of calls that each has hit",
           {},
           R"({"type": "object", "required": ["faults"], "properties": {
               "faults": {"type": "array", "items": {"$ref": "#/components/schemas/Fault"}}},
               "additionalProperties": false})",
           faults},
    Method{"tv.clearFaults",
           "remove a fault, or all",
           {{"id", R"({"type": "integer", "minimum": 0})", "number of the fault; by default all"}},
           anObject,
           clearFaults},
    Method{"tv.check",
           "run a transcript on a separate set in memory, and compare its output; limited to 5 seconds and to 10,000 "
           "inputs, including those of files that it runs",
           {{"transcript", textSchema, "its text", true}},
           R"({"type": "object", "required": ["passed", "diff"], "properties": {
               "passed": {"type": "boolean"}, "diff": {"type": "string"}}})",
           check},
};

}  // namespace

std::span<const Method> testMethods() {
  return testRows;
}

}  // namespace virtualtv::rpc
