// Faults as words: reading and writing them.
#include <charconv>
#include <limits>

#include "seam/Seam.h"
#include "text/Units.h"

namespace virtualtv::seam {

namespace {

[[noreturn]] void refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

const Operation& operationNamed(const std::string& name) {
  if (const Operation* operation = findOperation(name)) return *operation;
  refuse("no operation '" + name + "'; '.help operations' lists them");
}

std::uint64_t count(const std::string& word, const std::string& text) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value == 0) {
    refuse("'" + word + "': a number from 1 is wanted");
  }
  return value;
}

const Output& outputNamed(const Operation& operation, const std::string& name) {
  std::string known;
  for (const Output& output : operation.written()) {
    if (output.name == name) return output;
    known += " " + std::string(output.name);
  }
  refuse(std::string(operation.name) + " has no output '" + name + "'" + (known.empty() ? "" : "; it has:" + known));
}

bool fits(const Output& output, const std::string& value) {
  switch (output.form) {
    case Form::numbers: {
      std::array<long long, 8> numbers{};
      return parseNumbers(value, static_cast<std::size_t>(output.count), numbers.data());
    }
    case Form::record: {
      TCServiceData record;
      return parse(value, record);
    }
    case Form::records: {
      std::list<TCServiceData*> records;
      const bool good = parse(value, records);
      for (TCServiceData* record : records) delete record;
      return good;
    }
    case Form::favourites: {
      std::map<unsigned char, bool> favourites;
      return parse(value, favourites);
    }
    default:
      return false;
  }
}

std::string wanted(const Output& output) {
  switch (output.form) {
    case Form::numbers:
      return output.count == 1 ? "a number" : std::to_string(output.count) + " numbers with commas between";
    case Form::record:
      return "a record as in {12=281,16=\"News\"}";
    case Form::records:
      return "records as in [{12=281},null]";
    case Form::favourites:
      return "groups as in {1=1,12=0}";
    default:
      return "nothing that can be given";
  }
}

bool hasInterface(const Operation& operation) {
  return operation.answer == Answer::pointer || operation.answer == Answer::text ||
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
  } else if (operation.answer == Answer::text && text != "unwritten") {
    fault.way = Fault::Way::result;
  } else {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (!operation.answersNumber() || error != std::errc() || end != text.data() + text.size()) {
      refuse(std::string(operation.name) + " can't answer '" + text + "'");
    }
    fault.way = Fault::Way::result;
  }
  fault.result = fault.way == Fault::Way::result ? text : "";
}

void setOutput(Fault& fault, const std::string& name, const std::string& value) {
  const Output& output = outputNamed(*fault.operation, name);
  if (!fits(output, value))
    refuse("'" + name + "' of " + std::string(fault.operation->name) + ": " + wanted(output) + " is wanted, not '" +
           value + "'");
  fault.outputs[name] = value;
}

}  // namespace

Fault parseFault(const std::vector<std::string>& words) {
  if (words.empty()) refuse("an operation is wanted");
  Fault fault;
  fault.operation = &operationNamed(words.front());
  for (std::size_t at = 1; at < words.size(); ++at) {
    const std::string& word = words[at];
    const std::size_t equals = word.find('=');
    const std::string key = word.substr(0, equals);
    const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
    if (word == "always" || word == "times=always") {
      fault.times.reset();
    } else if (key == "nth") {
      fault.nth = count(word, value);
    } else if (key == "times") {
      fault.times = count(word, value);
    } else if (key == "result") {
      setResult(fault, value);
    } else if (key.rfind("out.", 0) == 0 && equals != std::string::npos) {
      setOutput(fault, key.substr(4), value);
    } else {
      refuse("'" + word + "': [nth=N] [times=N|always] [result=R] [out.NAME=VALUE ...] is wanted");
    }
  }
  if (fault.way == Fault::Way::outputs && fault.outputs.empty()) refuse("a result= or an out.NAME= is wanted");
  return fault;
}

std::string describe(const Fault& fault) {
  std::string text(fault.operation->name);
  if (fault.nth != 1) text += " nth=" + std::to_string(fault.nth);
  text += fault.times ? " times=" + std::to_string(*fault.times) : " always";
  switch (fault.way) {
    case Fault::Way::outputs:
      break;
    case Fault::Way::result:
      text += " result=" + fault.result;
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
  for (const auto& [name, value] : fault.outputs) text += " out." + name + "=" + value;
  return text;
}

}  // namespace virtualtv::seam
