// SPDX-License-Identifier: MIT
// The set as a whole: its state, services, knobs, settings and snapshots.
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "broadcast/FoundJson.h"
#include "broadcast/Scanner.h"
#include "channels/ExportList.h"
#include "channels/ImportList.h"
#include "channels/Search.h"
#include "rpc/Core.h"
#include "rpc/Failure.h"
#include "rpc/Method.h"
#include "rpc/ReplyJson.h"
#include "rpc/Schemas.h"
#include "rpc/ServiceJson.h"
#include "services/AntennaNames.h"
#include "services/KindNames.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "set/SnapshotJson.h"
#include "set/StateDocument.h"
#include "shell/Scan.h"
#include "shell/Transcript.h"
#include "store/StoreError.h"
#include "text/Base64.h"
#include "text/Units.h"

namespace virtualtv::rpc {

namespace {

constexpr std::string_view countSchema = R"({"type": "integer", "minimum": 0})";
constexpr std::string_view truthSchema = R"({"type": "boolean"})";
constexpr std::string_view importResult =
    R"({"type": "object", "required": ["imported", "added", "changed", "gone", "problems", "total"],
               "properties": {"imported": {"type": "integer"}, "added": {"type": "integer"},
               "changed": {"type": "integer"}, "gone": {"type": "integer"}, "total": {"type": "integer"},
               "problems": {"type": "array", "items": {"type": "object", "required": ["at", "reason"], "properties": {
               "line": {"type": "integer"}, "at": {"type": "string"}, "reason": {"type": "string"}}}}}})";

// Lines of the shell.

Json::Value runLine(const Context& context) {
  const std::string line = context.params.text("line");
  const std::string flaw = shell::flawOf(line);
  if (!flaw.empty() || line.find_first_of("\r\n") != line.npos) {
    throw Failure(Code::badParameters, "line: " + (flaw.empty() ? "one line is wanted" : flaw));
  }
  Json::Value answer;
  answer["lines"] = Json::arrayValue;
  if (shell::isRemark(line)) return answer;
  for (const std::string& printed : context.seat.shell.run(line)) answer["lines"].append(printed);
  context.seat.shell.ended = false;  // `.quit` ends the input of a person, not a client
  context.core.complain(context.seat.shell.takeRemarks().complaints);
  return answer;
}

// The set.

Json::Value state(const Context& context) {
  return stateDocument(context.core.device().tv());
}

Json::Value snapshot(const Context& context) {
  device::Device& device = context.core.device();
  Json::Value answer;
  if (context.params.has("before")) {
    const auto command = static_cast<std::uint64_t>(context.params.number("before", notNegative));
    answer["snapshot"] = documentOf(device.history()->before(command, device.tv()).snapshot());
  } else {
    answer["snapshot"] = documentOf(device.tv().snapshot());
  }
  return answer;
}

Json::Value restore(const Context& context) {
  context.core.device().restore(snapshotIn(context.params.value("snapshot")));
  return context.core.revision();
}

Json::Value restart(const Context& context) {
  context.core.device().restart();
  return context.core.revision();
}

Json::Value reset(const Context& context) {
  context.seat.shell.reset();
  return context.core.revision();
}

// Services.

template <typename Names>
auto oneOf(const Context& context, std::string_view parameter, const Names& named) {
  const std::string given = context.params.text(parameter);
  std::string names;
  for (const auto& [name, value] : named) {
    if (given == name) return value;
    names.append(names.empty() ? "" : ", ").append(name);
  }
  throw Failure(Code::badParameters, std::string(parameter) + ": one of " + names + " is wanted, not '" + given + "'");
}

ServiceQuery queryOf(const Context& context) {
  ServiceQuery query;
  query.text = context.params.text("text", "");
  if (context.params.has("antenna")) query.antenna = oneOf(context, "antenna", antennaNames);
  if (context.params.has("kind")) query.kind = oneOf(context, "kind", kindNames);
  if (context.params.has("major")) {
    query.major = static_cast<std::uint16_t>(context.params.number("major", text::rangeOf<std::uint16_t>()));
  }
  if (context.params.has("key")) query.key = static_cast<ServiceKey>(context.params.number("key", notNegative));
  if (context.params.has("group")) query.group = context.params.text("group");
  if (context.params.has("favourite")) {
    query.favourite = static_cast<std::uint8_t>(context.params.number("favourite", text::rangeOf<std::uint8_t>()));
  }
  query.offset = static_cast<std::size_t>(context.params.number("offset", notNegative, 0));
  if (context.params.has("limit")) query.limit = static_cast<std::size_t>(context.params.number("limit", notNegative));
  return query;
}

Json::Value services(const Context& context) {
  const ServicePage page = findServices(context.core.device().tv().services(), queryOf(context));
  Json::Value answer = context.core.revision();
  answer["total"] = Json::UInt64{page.total};
  answer["groups"] = Json::arrayValue;
  for (const std::string& group : page.groups) answer["groups"].append(text::wellFormed(group));
  answer["services"] = Json::arrayValue;
  for (const auto& [key, service] : page.services) answer["services"].append(serviceDocument(key, service));
  return answer;
}

Json::Value editService(const Context& context) {
  const Json::Value none("");
  const Json::Value& value = context.params.has("value") ? context.params.value("value") : none;
  if (!value.isString() && !value.isInt64())
    throw Failure(Code::badParameters, "value: a text or a whole number is wanted");
  context.core.device().editService(context.params.text("service"), context.params.text("change"), value.asString());
  return context.core.revision();
}

Json::Value problemOf(const import::Problem& problem) {
  Json::Value json;
  if (problem.line) json["line"] = *problem.line;
  json["at"] = text::printable(problem.at);
  json["reason"] = text::asLine(problem.reason);
  return json;
}

/// Adds the problems of a list to an object.
void appendProblems(Json::Value& document, const ImportReport& report) {
  document["problems"] = Json::arrayValue;
  for (const import::Problem& problem : report.problems.kept()) document["problems"].append(problemOf(problem));
  document["total"] = Json::UInt64{report.problems.count()};
}

/// Adds the changes of an import to an object.
void appendChanges(Json::Value& document, const ImportReport& report) {
  document["imported"] = Json::UInt64{report.imported};
  document["added"] = Json::UInt64{report.changes.added};
  document["changed"] = Json::UInt64{report.changes.changed};
  document["gone"] = Json::UInt64{report.changes.gone};
}

Json::Value import(const Context& context) {
  ImportOptions options;
  options.add = context.params.truth("add", false);
  options.encoding = context.params.text("encoding", "");
  if (context.params.has("format")) {
    const std::string format = context.params.text("format");
    options.format = import::formatNamed(format);
    if (options.format == nullptr) throw std::invalid_argument("format: there is none of the name '" + format + "'");
  }
  const std::string content = context.params.content("content");
  const std::string name = context.params.text("name", "list");
  ImportReport report;
  try {
    report = context.core.device().import(name, content, options);
  } catch (const StoreError&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw std::invalid_argument(error.what());  // unknown format
  }
  Json::Value answer;
  appendProblems(answer, report);
  if (!report.error().empty()) throw Failure(Code::badValue, report.error(), answer);
  appendChanges(answer, report);
  return answer;
}

Json::Value exportList(const Context& context) {
  const import::Format* format = &defaultExportFormat();
  if (context.params.has("format")) {
    const std::string name = context.params.text("format");
    format = import::formatNamed(name);
    if (format == nullptr || !import::isWritten(*format))
      throw std::invalid_argument("format: no list is written in one of the name '" + name + "'");
  }
  const ExportReport report = exportServices(context.core.device().tv().services(), *format);
  Json::Value answer;
  answer["content"] = report.exported.content;
  answer["services"] = Json::UInt64{report.exported.services};
  answer["leftOut"] = Json::UInt64{report.exported.leftOut};
  answer["lost"] = Json::arrayValue;
  for (const auto& [what, services] : report.exported.lost) {
    Json::Value& loss = answer["lost"].append(Json::objectValue);
    loss["what"] = what;
    loss["services"] = Json::UInt64{services};
  }
  return answer;
}

broadcast::Scan scanOfFile(const Context& context, const std::string& path) {
  try {
    return shell::scanFiles({path}, [&](const std::string& file, const shell::TakeBlock& take) {
      context.seat.shell.readBlocks(file, take);
    });
  } catch (const std::runtime_error& error) {
    throw Failure(Code::badValue, error.what());  // can't be read
  }
}

std::string contentOf(const Context& context) {
  auto bytes = text::fromBase64(context.params.content("content"));
  if (!bytes) throw Failure(Code::badParameters, "content: base64 is wanted");
  return *std::move(bytes);
}

void feed(broadcast::Scanner& scanner, const std::string& bytes) {
  scanner.feed({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

/// The session's recording that the next part belongs to.
broadcast::Scanner& partial(const Context& context, bool isFirst) {
  const std::string& session = context.seat.id;
  broadcast::Scanner* const scanner =
      isFirst ? &context.core.scans().begin(session) : context.core.scans().underWay(session);
  if (scanner == nullptr) throw std::invalid_argument("part: no recording is under way here; send its first part");
  return *scanner;
}

/// The result for a part of a recording that is not complete yet.
Json::Value readSoFar(const broadcast::Scanner& scanner) {
  broadcast::Scan scan;
  scan.packets = scanner.packets();
  return broadcast::documentOf(scan);
}

Json::Value keptScan(const Context& context, Scans::Found found) {
  const Scans::Found& kept = context.core.scans().keep(context.seat.id, std::move(found));
  if (context.params.truth("import", false)) {
    context.core.device().import(kept.files, kept.scan, context.params.truth("add", false),
                                 context.seat.shell.recordings(kept.files));
  }
  return broadcast::documentOf(kept.scan);
}

Json::Value scanPart(const Context& context) {
  const std::string part = context.params.text("part");
  if (part != "first" && part != "next" && part != "last") {
    throw Failure(Code::badParameters, "part: one of first, next, last is wanted, not '" + part + "'");
  }
  const std::string bytes = contentOf(context);
  broadcast::Scanner& scanner = partial(context, part == "first");
  feed(scanner, bytes);
  if (part != "last") return readSoFar(scanner);
  scanner.endStream();
  return keptScan(context, {{}, scanner.finish()});
}

Json::Value scan(const Context& context) {
  if (context.params.has("path") == context.params.has("content")) {
    throw Failure(Code::badParameters, "one of path and content is wanted");
  }
  if (context.params.has("path")) {
    const std::string path = context.params.text("path");
    return keptScan(context, {{path}, scanOfFile(context, path)});
  }
  if (context.params.has("part")) return scanPart(context);
  broadcast::Scanner scanner;
  feed(scanner, contentOf(context));
  scanner.endStream();
  return keptScan(context, {{}, scanner.finish()});
}

Json::Value importScan(const Context& context) {
  const Scans::Found* const found = context.core.scans().found(context.seat.id);
  if (found == nullptr) throw std::invalid_argument("this session has scanned no recording of late; scan it again");
  const ImportReport report = context.core.device().import(
      found->files, found->scan, context.params.truth("add", false), context.seat.shell.recordings(found->files));
  Json::Value answer;
  appendProblems(answer, report);
  appendChanges(answer, report);
  return answer;
}

// Knobs.

Json::Value listKnobs(const Context& context) {
  Tv& tv = context.core.device().tv();
  Json::Value answer;
  answer["knobs"] = Json::arrayValue;
  for (const std::string& name : knobNames(tv)) {
    Json::Value& knob = answer["knobs"].append(Json::objectValue);
    knob["name"] = name;
    knob["value"] = getKnob(tv, name);
    knob["canBeSet"] = canBeSet(name);
  }
  answer["kinds"] = Json::arrayValue;
  for (const Knob& row : knobs()) {
    Json::Value& kind = answer["kinds"].append(Json::objectValue);
    kind["name"] = std::string(row.name);
    kind["takes"] = std::string(row.value);
    kind["help"] = std::string(row.help);
    kind["canBeSet"] = row.set != nullptr;
  }
  return answer;
}

Json::Value get(const Context& context) {
  Json::Value answer;
  putBytes(answer, "value", getKnob(context.core.device().tv(), context.params.text("name")));
  return answer;
}

Json::Value set(const Context& context) {
  const Json::Value& value = context.params.value("value");
  const bool isWord = value.isString() || value.isInt64();
  if (!isWord) throw Failure(Code::badParameters, "value: a text or a whole number is wanted");
  context.core.device().setKnob(context.params.text("name"), value.asString());
  return context.core.revision();
}

// Settings keys.

Json::Value settings(const Context& context) {
  Json::Value answer;
  answer["settings"] = Json::arrayValue;
  for (const auto& [key, value] : context.core.device().tv().settings().list()) {
    Json::Value& setting = answer["settings"].append(Json::objectValue);
    setting["key"] = text::wellFormed(key);
    if (const int* number = std::get_if<int>(&value)) {
      setting["value"] = *number;
    } else {
      putBytes(setting, "value", std::get<std::string>(value));
    }
  }
  return answer;
}

Json::Value setSetting(const Context& context) {
  const std::string key = context.params.text("key");
  const Json::Value& value = context.params.value("value");
  const Setting setting = value.isString()
                              ? Setting(context.params.text("value"))
                              : Setting(static_cast<int>(context.params.number("value", text::rangeOf<int>())));
  context.core.device().setSetting(key, setting);
  return context.core.revision();
}

Json::Value removeSetting(const Context& context) {
  const std::string key = context.params.text("key");
  if (!context.core.device().removeSetting(key)) throw std::invalid_argument("the key " + key + " is not set");
  return context.core.revision();
}

const std::array setRows{
    Method{"tv.run",
           "run a line of the shell on the session's engine",
           {{"line", textSchema, "as a person types it", true}},
           R"({"type": "object", "required": ["lines"],
               "properties": {"lines": {"type": "array", "items": {"type": "string"}}}})",
           runLine},
    Method{"tv.state", "return the whole set as one document", {}, stateSchema, state},
    Method{"tv.snapshot",
           "return everything that the set persists",
           {{"before", R"({"type": "integer", "minimum": 1})",
             "number of a command in the history: the state right before it; by default the current state"}},
           R"({"type": "object", "required": ["snapshot"], "properties": {"snapshot": {"type": "object"}}})",
           snapshot},
    Method{"tv.restore",
           "restore a snapshot, as if the set had been switched on with it",
           {{"snapshot", anObject, "a result of tv.snapshot", true}},
           revisionResult,
           restore},
    Method{"tv.restart", "switch the set off and on; removes faults and latencies", {}, revisionResult, restart},
    Method{"tv.reset", "go back to the built-in set and a fresh session", {}, revisionResult, reset},
    Method{"tv.services",
           "list the services that meet all conditions",
           {{"offset", countSchema, "how many to skip at the start"},
            {"limit", countSchema, "how many to list at most"},
            {"text", textSchema, "text contained in the name"},
            {"antenna", R"({"enum": ["terrestrial", "cable", "satellite"]})", "antenna that receives them"},
            {"kind", R"({"enum": ["television", "radio", "data"]})", "kind of the services"},
            {"group", textSchema, "section of the imported list"},
            {"favourite", R"({"type": "integer", "minimum": 0, "maximum": 255})", "number of their favourite group"},
            {"major", R"({"type": "integer", "minimum": 0, "maximum": 65535})", "their major number"},
            {"key", countSchema, "only the service with this key"}},
           R"({"type": "object", "required": ["revision", "total", "groups", "services"], "properties": {
               "revision": {"type": "integer"}, "total": {"type": "integer"},
               "groups": {"type": "array", "items": {"type": "string"},
               "description": "all groups of the set, including those of omitted services"},
               "services": {"type": "array", "items": {"$ref": "#/components/schemas/Service"}}},
               "additionalProperties": false})",
           services},
    Method{"tv.editService",
           "rename, renumber, move, hide, lock or remove a service of the list",
           {{"service", textSchema, "its id, or #KEY", true},
            {"change", R"({"enum": ["rename", "renumber", "move", "hide", "lock", "remove"]})", "what to do with it",
             true},
            {"value", textOrNumber, "the name, the number, on or off; not for remove"}},
           revisionResult,
           editService},
    Method{"tv.import",
           "replace the services by those of a channel list, or add to them",
           {{"content", textSchema, "the list", true},
            {"name", textSchema, "name of the list in messages"},
            {"format", textSchema, "format of the list; recognised by default"},
            {"add", truthSchema, "add to the services of the set"},
            {"encoding", textSchema, "encoding of names that do not specify their own"}},
           importResult,
           import},
    Method{"tv.export",
           "return the services as a channel list",
           {{"format", R"({"enum": ["vdr", "dvbv5", "m3u", "json"]})",
             "format of the list; by default json, which holds everything"}},
           R"({"type": "object", "required": ["content", "services", "leftOut", "lost"], "properties": {
               "content": {"type": "string"}, "services": {"type": "integer", "description": "number of services in the list"},
               "leftOut": {"type": "integer", "description": "number of services that the format can't hold at all"},
               "lost": {"type": "array", "description": "data that the format can't hold, and the number of services concerned",
               "items": {"type": "object", "required": ["what", "services"], "properties": {
               "what": {"type": "string"}, "services": {"type": "integer"}}}}}, "additionalProperties": false})",
           exportList},
    Method{
        "tv.scan",
        "find the services in a recording of a broadcast, and optionally import them",
        {{"path", textSchema, "path of a file beneath the directory of --files"},
         {"content", R"({"type": "string", "contentEncoding": "base64"})", "the recording itself, instead of a file"},
         {"import", truthSchema, "replace the set's services by the found ones, if any were found"},
         {"add", truthSchema, "when importing, add to the services of the set"},
         {"part", R"({"enum": ["first", "next", "last"]})",
          "place of this content in a recording sent in several calls; the last call returns the services"}},
        R"({"$ref": "#/components/schemas/Scan"})",
        scan},
    Method{"tv.importScan",
           "replace the set's services by those of this session's last scan",
           {{"add", truthSchema, "add to the services of the set"}},
           importResult,
           importScan},
    Method{"tv.knobs",
           "list the knobs, which can be read and set from outside",
           {},
           R"({"type": "object", "required": ["knobs", "kinds"], "properties": {
               "knobs": {"type": "array", "items": {"$ref": "#/components/schemas/Knob"}},
               "kinds": {"type": "array", "items": {"$ref": "#/components/schemas/KnobKind"}}},
               "additionalProperties": false})",
           listKnobs},
    Method{"tv.get",
           "return the value of a knob",
           {{"name", textSchema, "of the knob", true}},
           R"({"type": "object", "required": ["value"], "properties": {"value": {"type": "string"}}})",
           get},
    Method{"tv.set",
           "set a knob",
           {{"name", textSchema, "of the knob", true}, {"value", textOrNumber, "new value", true}},
           revisionResult,
           set},
    Method{"tv.settings",
           "list the settings keys",
           {},
           R"({"type": "object", "required": ["settings"], "properties": {
               "settings": {"type": "array", "items": {"$ref": "#/components/schemas/Setting"}}},
               "additionalProperties": false})",
           settings},
    Method{"tv.setSetting",
           "set a settings key",
           {{"key", textSchema, "its name", true}, {"value", textOrNumber, "a text or a 32-bit number", true}},
           revisionResult,
           setSetting},
    Method{"tv.removeSetting",
           "remove a settings key",
           {{"key", textSchema, "its name", true}},
           revisionResult,
           removeSetting},
};

}  // namespace

std::span<const Method> setMethods() {
  return setRows;
}

}  // namespace virtualtv::rpc
