// SPDX-License-Identifier: MIT
#include "Merge.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string>

namespace catalogue {

namespace {

const char* nameOf(kel::Parse parse) {
  switch (parse) {
    case kel::Parse::none:
      return "none";
    case kel::Parse::dec:
      return "dec";
    case kel::Parse::num:
      return "num";
    case kel::Parse::u64:
      return "u64";
    case kel::Parse::text:
      return "text";
  }
  return "";
}

/// A kind of answer, as the help texts name it.
struct Kind {
  std::string_view name;
  const char* reply;       ///< how the reply is encoded when the command succeeds
  bool (*lets)(int code);  ///< true for the numbers that can be failure codes of this kind
};

bool isNegative(int code) {
  return code < 0;
}

constexpr Kind kinds[] = {
    {"code", "int", [](int) { return true; }},
    {"value", "int", isNegative},
    {"name", "unicode", isNegative},
    {"ascii", "ascii", isNegative},
    {"text", "ascii", isNegative},
    {"textOrCode", "ascii", [](int code) { return code != 1; }},
    {"textOrNone", "ascii", [](int code) { return code == -1; }},
};

bool isNone(const kel::Parameter& parameter) {
  return parameter.parse == kel::Parse::none;
}
bool isRequired(const kel::Parameter& parameter) {
  return parameter.required;
}

std::vector<Form> formsOf(std::span<const kel::Command> table) {
  std::vector<Form> forms;
  for (const kel::Command& row : table) {
    const auto* const end = std::find_if(row.parameters.begin(), row.parameters.end(), isNone);
    forms.push_back({row.name, {row.parameters.begin(), end}, row.preset, row.refusal});
  }
  return forms;
}

std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

bool parsesAs(const std::string& text, int& number) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end;
}

/// Commands, and the section of the help texts that describes them.
struct Group {
  const char* section;
  const char* label;  ///< written after a command's name
  std::vector<Form> forms;
};

class Merger {
 public:
  explicit Merger(const Help& help) : help_(help) {}

  Json::Value run(const std::vector<Group>& groups);

 private:
  bool checkTypes() const;
  bool checkValues(const Json::Value& type, const std::string& what) const;
  void checkStrays(const Group& group) const;
  void checkUnused() const;
  bool checkEntry(const Form& form, const std::string& what, const Json::Value& entry) const;
  bool checkFailures(const Form& form, const Kind& kind, const std::string& what, const Json::Value& entry) const;
  /// The kind of the described answer; null, after reporting a problem, if the description is invalid.
  const Kind* kindOf(const Json::Value& described, const std::string& what) const;

  /// Marks a name of a section as used. @return false, after reporting a problem, when the section lacks the name.
  bool use(const char* section, const std::string& name, const std::string& user);
  /// Checks that not both a type and a text describe the values of a parameter or an answer; one of them must, if
  /// needed.
  void useValues(const Json::Value& part, bool needed, const std::string& what);

  Json::Value command(const Group& group, const Form& form);
  /// @param entry  the parameter's help, or the name of one that several commands share.
  Json::Value parameter(const Form& form, Json::ArrayIndex at, const std::string& command, const Json::Value& entry);
  Json::Value answer(const Form& form, const Kind& kind, const std::string& what, const Json::Value& described);
  static Json::Value failures(const Json::Value& described);

  const Help& help_;
  std::set<std::pair<std::string, std::string>> used_;  ///< section and name of each used text
};

Json::Value Merger::run(const std::vector<Group>& groups) {
  const Json::Value& texts = help_.root();
  const bool whole = help_.check(texts, "the document",
                                 {{"introduction", Json::arrayValue},
                                  {"parsing", Json::objectValue},
                                  {"answers", Json::objectValue},
                                  {"parameters", Json::objectValue},
                                  {"types", Json::objectValue},
                                  {"commands", Json::objectValue},
                                  {"listCommands", Json::objectValue}}) &&
                     help_.checkAll(texts["introduction"], "introduction", Json::stringValue) &&
                     help_.checkAll(texts["parsing"], "parsing", Json::stringValue) &&
                     help_.checkAll(texts["answers"], "answers", Json::stringValue) && checkTypes();
  if (!whole) return {};

  Json::Value catalogue = texts;
  catalogue.removeMember("parameters");
  for (const Group& group : groups) {
    Json::Value& commands = catalogue[group.section] = Json::Value(Json::arrayValue);
    for (const Form& form : group.forms) commands.append(command(group, form));
    checkStrays(group);
  }
  if (help_.isFaultless()) checkUnused();
  return catalogue;
}

bool Merger::checkTypes() const {
  const Json::Value& types = help_.root()["types"];
  bool good = true;
  for (const std::string& name : types.getMemberNames()) {
    const std::string what = "type " + quoted(name);
    const Json::Value& type = types[name];
    const bool document = type.isObject() && type.isMember("members");
    const Member held = document ? Member{"members", Json::objectValue} : Member{"values", Json::arrayValue};
    good =
        help_.check(type, what, {{"help", Json::stringValue}, held}) &&
        (document ? help_.checkAll(type["members"], what + " member", Json::stringValue) : checkValues(type, what)) &&
        good;
  }
  return good;
}

bool Merger::checkValues(const Json::Value& type, const std::string& what) const {
  return std::all_of(type["values"].begin(), type["values"].end(), [&](const Json::Value& value) {
    return help_.check(value, what + " value",
                       {{"value", Json::intValue}, {"to", Json::intValue, false}, {"means", Json::stringValue}});
  });
}

void Merger::checkStrays(const Group& group) const {
  const Json::Value& entries = help_.root()[group.section];
  for (const std::string& name : entries.getMemberNames()) {
    const auto isNamed = [&](const Form& form) { return form.name == name; };
    if (std::any_of(group.forms.begin(), group.forms.end(), isNamed)) continue;
    help_.report(entries[name], quoted(name) + group.label + " has a help text and is no command");
  }
}

void Merger::checkUnused() const {
  for (const char* section : {"parsing", "answers", "parameters", "types"}) {
    const Json::Value& texts = help_.root()[section];
    for (const std::string& name : texts.getMemberNames()) {
      if (used_.contains({section, name})) continue;
      help_.report(texts[name], "no command needs " + quoted(name) + " of '" + section + "'");
    }
  }
}

bool Merger::checkEntry(const Form& form, const std::string& what, const Json::Value& entry) const {
  if (!help_.check(entry, what,
                   {{"help", Json::stringValue},
                    {"parameters", Json::arrayValue, false},
                    {"answer", Json::objectValue},
                    {"failures", Json::objectValue, false}})) {
    return false;
  }
  const std::size_t described = entry["parameters"].size();
  const std::size_t stated = form.parameters.size();
  if (described != stated) {
    help_.report(entry, what + " has " + std::to_string(stated) + " parameters, its help describes " +
                            std::to_string(described));
    return false;
  }
  return true;
}

const Kind* Merger::kindOf(const Json::Value& described, const std::string& what) const {
  if (!help_.check(described, what,
                   {{"kind", Json::stringValue},
                    {"help", Json::stringValue},
                    {"type", Json::stringValue, false},
                    {"values", Json::stringValue, false},
                    {"presetMeans", Json::stringValue, described["kind"] == "value"}})) {
    return nullptr;
  }
  const std::string name = described["kind"].asString();
  const auto* const found =
      std::find_if(std::begin(kinds), std::end(kinds), [&](const Kind& kind) { return kind.name == name; });
  if (found != std::end(kinds)) return found;
  help_.report(described["kind"], what + " is of no kind that there is: " + quoted(name));
  return nullptr;
}

bool Merger::checkFailures(const Form& form, const Kind& kind, const std::string& what,
                           const Json::Value& entry) const {
  const Json::Value& failures = entry["failures"];
  if (!help_.checkAll(failures, what + " failure", Json::stringValue)) return false;
  bool good = true;
  for (const std::string& code : failures.getMemberNames()) {
    int number = 0;
    if (parsesAs(code, number) && kind.lets(number)) continue;
    help_.report(failures[code], what + " can't fail with " + quoted(code));
    good = false;
  }
  const std::string refusal = form.refusal ? std::to_string(*form.refusal) : "";
  const bool refuses = form.refusal && std::any_of(form.parameters.begin(), form.parameters.end(), isRequired);
  if (refuses && !failures.isMember(refusal)) {
    help_.report(entry, what + " lacks the failure " + quoted(refusal) + ", for a parameter that is no number");
    good = false;
  }
  return good;
}

bool Merger::use(const char* section, const std::string& name, const std::string& user) {
  used_.insert({section, name});
  const Json::Value& texts = help_.root()[section];
  if (texts.isMember(name)) return true;
  help_.report(texts, user + " needs " + quoted(name) + " of '" + section + "', where there is none");
  return false;
}

void Merger::useValues(const Json::Value& part, bool needed, const std::string& what) {
  const bool typed = part.isMember("type");
  const bool told = part.isMember("values");
  if (typed && told) help_.report(part, what + " has both 'type' and 'values'");
  if (!typed && !told && needed) help_.report(part, what + " lacks 'type' or 'values'");
  if (typed) use("types", part["type"].asString(), what);
}

Json::Value Merger::command(const Group& group, const Form& form) {
  const std::string name(form.name);
  const std::string what = quoted(name) + group.label;
  const Json::Value& entries = help_.root()[group.section];
  if (!entries.isMember(name)) {
    help_.report(entries, what + " is a command and has no help text");
    return {};
  }
  const Json::Value& entry = entries[name];
  if (!checkEntry(form, what, entry)) return {};
  const Kind* const kind = kindOf(entry["answer"], what + " answer");
  if (kind == nullptr || !checkFailures(form, *kind, what, entry)) return {};
  Json::Value merged;
  merged["name"] = name;
  merged["help"] = entry["help"];
  merged["parameters"] = Json::Value(Json::arrayValue);
  for (const Json::Value& described : entry["parameters"]) {
    merged["parameters"].append(parameter(form, merged["parameters"].size(), what, described));
  }
  merged["answer"] = answer(form, *kind, what + " answer", entry["answer"]);
  merged["failures"] = failures(entry["failures"]);
  return merged;
}

Json::Value Merger::parameter(const Form& form, Json::ArrayIndex at, const std::string& command,
                              const Json::Value& entry) {
  const kel::Parameter& parameter = form.parameters[at];
  const std::string what = command + " parameter " + std::to_string(at + 1);
  if (entry.isString() && !use("parameters", entry.asString(), what)) return {};
  const Json::Value& described = entry.isString() ? help_.root()["parameters"][entry.asString()] : entry;
  if (!help_.check(described, what,
                   {{"name", Json::stringValue},
                    {"help", Json::stringValue},
                    {"type", Json::stringValue, false},
                    {"values", Json::stringValue, false},
                    {"unparsed", Json::stringValue, false}})) {
    return {};
  }
  useValues(described, true, what);
  use("parsing", nameOf(parameter.parse), what);
  Json::Value merged = described;
  merged["parse"] = nameOf(parameter.parse);
  merged["required"] = parameter.required;
  if (described.isMember("unparsed")) return merged;
  if (parameter.required) {
    const std::string answered = form.refusal ? "answers " + std::to_string(*form.refusal) : "gets no answer";
    merged["unparsed"] = answered + " and does nothing";
  } else {
    merged["unparsed"] = "reads as " + std::to_string(parameter.preset);
    merged["preset"] = parameter.preset;
  }
  return merged;
}

Json::Value Merger::answer(const Form& form, const Kind& kind, const std::string& what, const Json::Value& described) {
  const bool isValue = kind.name == "value";
  if (described.isMember("presetMeans") && !isValue) help_.report(described, what + " has no preset");
  useValues(described, isValue, what);
  use("answers", std::string(kind.name), what);
  Json::Value merged = described;
  merged["reply"] = kind.reply;
  if (isValue) merged["preset"] = form.preset;
  return merged;
}

Json::Value Merger::failures(const Json::Value& described) {
  Json::Value merged(Json::arrayValue);
  for (const std::string& code : described.getMemberNames()) {
    Json::Value failure;
    failure["code"] = std::stoi(code);
    failure["means"] = described[code];
    merged.append(failure);
  }
  return merged;
}

}  // namespace

const std::vector<Form>& listForms() {
  constexpr kel::Parameter required{kel::Parse::num, 0, true};
  constexpr kel::Parameter plane{kel::Parse::num, 0, false};
  static const std::vector<Form> forms{
      {"SetScreenCropRect",
       {required, required, required, required, required, required, required, required, plane},
       0,
       std::nullopt},
  };
  return forms;
}

Json::Value merge(std::span<const kel::Command> table, const std::vector<Form>& lists, const Help& help) {
  return Merger(help).run({{"commands", "", formsOf(table)}, {"listCommands", " with a parameter list", lists}});
}

}  // namespace catalogue
