// SPDX-License-Identifier: MIT
// Faults as words: reading and writing them.
#include "seam/Fault.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "services/FieldNumbers.h"
#include "text/Numbers.h"
#include "text/Units.h"
#include "text/UnknownName.h"

namespace virtualtv::seam {

namespace {

[[noreturn]] void refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

const Operation& operationNamed(const std::string& name) {
  if (const Operation* operation = findOperation(name)) return *operation;
  throw text::UnknownName("no operation '" + name + "'", "operations");
}

/// Runs `body` and prefixes the message of a std::invalid_argument with the subject.
template <typename Body>
auto check(const std::string& subject, Body body) {
  try {
    return body();
  } catch (const std::invalid_argument& reason) {
    refuse(subject + ": " + reason.what());
  }
}

std::uint64_t count(const std::string& key, const std::string& text, std::string_view others = {}) {
  constexpr text::Range range{1, std::numeric_limits<std::uint64_t>::max()};
  return check("'" + key + "'", [&] { return text::requireNumber<std::uint64_t>(text, range, others); });
}

const Output& outputNamed(const Operation& operation, const std::string& name) {
  std::string known;
  for (const Output& output : operation.written()) {
    if (output.name == name) return output;
    known += " " + std::string(output.name);
  }
  refuse(std::string(operation.name) + " has no output '" + name + "'" + (known.empty() ? "" : "; it has:" + known));
}

/// Refuses numbers that the output can't have.
void requireNumbers(const Output& output, const std::string& value) {
  std::vector<std::string> written{""};
  for (const char letter : value) {
    if (letter == ',') {
      written.emplace_back();
    } else {
      written.back() += letter;
    }
  }
  const std::size_t count = output.numbers.size();
  if (written.size() != count && count > 1)
    refuse(std::to_string(count) + " numbers with commas between are wanted, not '" + value + "'");
  if (written.size() != count) written = {value};
  for (std::size_t at = 0; at < count; ++at) text::requireNumber<std::uint64_t>(written[at], output.numbers[at]);
}

/// Refuses a value that no service can have in the field.
void checkField(const TCServiceData& before, int fieldId, std::optional<std::string_view> number) {
  const auto fields = before.Fields();
  if (std::any_of(fields.begin(), fields.end(), [=](const auto& field) { return field.id == fieldId; })) {
    refuse(describeField(fieldId) + " stands there already");
  }
  if (number) {
    fieldNumber(fieldId, *number);
  } else {
    requireText(fieldId);
  }
}

void refuseGroupAgain(int group) {
  refuse("group " + std::to_string(group) + " stands there already");
}

void requireRecord(const std::string& value) {
  TCServiceData record;
  if (!parse(value, record, checkField)) refuse("a record as in {12=281,16=\"News\"} is wanted, not '" + value + "'");
}

void requireRecords(const std::string& value) {
  std::list<TCServiceData*> records;
  const bool good = parse(value, records, checkField);
  for (TCServiceData* record : records) delete record;
  if (!good) refuse("records as in [{12=281},null] are wanted, not '" + value + "'");
}

void requireFavourites(const std::string& value) {
  std::map<unsigned char, bool> favourites;
  if (!parse(value, favourites, refuseGroupAgain))
    refuse("groups from 0 to 255 as in {1=1,12=0} are wanted, not '" + value + "'");
}

/// Refuses a text that the output can't have.
void require(const Output& output, const std::string& value) {
  switch (output.form) {
    case Form::numbers:
      return requireNumbers(output, value);
    case Form::record:
      return requireRecord(value);
    case Form::records:
      return requireRecords(value);
    case Form::favourites:
      return requireFavourites(value);
    default:
      refuse("it can't be given");
  }
}

bool hasInterface(const Operation& operation) {
  return operation.returns == Returns::pointer || operation.returns == Returns::text ||
         (!operation.written().empty() && operation.written().front().form == Form::interface);
}

void setResult(Fault& fault, const std::string& text) {
  const Operation& operation = *fault.operation;
  if (text == "throw") {
    fault.way = Fault::Way::throwing;
  } else if (text == "null" && hasInterface(operation)) {
    fault.way = Fault::Way::null;
  } else if (text == "unwritten" && !operation.written().empty()) {
    fault.way = Fault::Way::unwritten;
  } else if (operation.returns == Returns::text && text != "unwritten") {
    fault.way = Fault::Way::result;
  } else {
    constexpr text::Range range = text::rangeOf<int>();
    const std::string wanted = operation.returnsNumber() ? "; " + text::describe(range) + " is wanted" : "";
    if (wanted.empty() || !text::numberIn(text, range)) {
      refuse(std::string(operation.name) + " can't answer '" + text + "'" + wanted);
    }
    fault.way = Fault::Way::result;
  }
  fault.result = fault.way == Fault::Way::result ? text : "";
}

void setOutput(Fault& fault, const std::string& name, const std::string& value) {
  const Output& output = outputNamed(*fault.operation, name);
  check("'" + name + "' of " + std::string(fault.operation->name), [&] { require(output, value); });
  fault.outputs[name] = value;
}

void setWindow(Fault& fault, const std::string& window) {
  if (!fault.operation->isOfWindow()) refuse(std::string(fault.operation->name) + " belongs to no window");
  if (window != "main" && window != "pip") refuse("there is no window '" + window + "'; there are main and pip");
  fault.window = window;
}

void setEngine(Fault& fault, const std::string& engine) {
  if (engine.empty()) refuse("'engine=': the name of an engine is wanted");
  fault.engine = engine;
}

/// Reads one word after the operation. @param key, value  the parts before and after the equals sign.
void setFrom(Fault& fault, const std::string& word, const std::string& key, const std::string& value) {
  if (word == "always" || word == "times=always") {
    fault.times.reset();
  } else if (key == "nth") {
    fault.nth = count(key, value);
  } else if (key == "times") {
    fault.times = count(key, value, " or always");
  } else if (key == "result") {
    setResult(fault, value);
  } else if (key == "window") {
    setWindow(fault, value);
  } else if (key == "engine") {
    setEngine(fault, value);
  } else if (key.starts_with("out.") && key.size() < word.size()) {
    setOutput(fault, key.substr(4), value);
  } else {
    refuse("'" + word +
           "': [nth=N] [times=N|always] [window=W] [engine=NAME] [result=R] [out.NAME=VALUE ...] is wanted");
  }
}

}  // namespace

Fault parseFault(const std::vector<std::string>& words) {
  if (words.empty()) refuse("an operation is wanted");
  Fault fault;
  fault.operation = &operationNamed(words.front());
  std::map<std::string, std::string> options;  // each with its whole word
  for (std::size_t at = 1; at < words.size(); ++at) {
    const std::string& word = words[at];
    const std::size_t equals = word.find('=');
    const std::string key = word.substr(0, equals);
    const auto [first, isNew] = options.emplace(word == "always" ? "times" : key, word);
    if (!isNew) refuse("'" + word + "': '" + first->second + "' stands there already");
    setFrom(fault, word, key, equals == std::string::npos ? "" : word.substr(equals + 1));
  }
  if (fault.way == Fault::Way::outputs && fault.outputs.empty()) refuse("a result= or an out.NAME= is wanted");
  return fault;
}

std::string describe(const Fault& fault) {
  std::string text(fault.operation->name);
  if (fault.nth != 1) text += " nth=" + std::to_string(fault.nth);
  text += fault.times ? " times=" + std::to_string(*fault.times) : " always";
  if (!fault.window.empty()) text += " window=" + fault.window;
  if (!fault.engine.empty()) text += " engine=" + text::asWord(fault.engine);
  switch (fault.way) {
    case Fault::Way::outputs:
      break;
    case Fault::Way::result:
      text += " result=" + text::asWord(fault.result);
      break;
    case Fault::Way::null:
      text += " result=null";
      break;
    case Fault::Way::unwritten:
      text += " result=unwritten";
      break;
    case Fault::Way::throwing:
      text += " result=throw";
      break;
  }
  for (const auto& [name, value] : fault.outputs) text += " out." + name + "=" + text::asWord(value);
  return text;
}

}  // namespace virtualtv::seam
