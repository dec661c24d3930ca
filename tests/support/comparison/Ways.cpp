// SPDX-License-Identifier: MIT
#include "support/comparison/Ways.h"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "seam/Seam.h"
#include "support/Numbers.h"

namespace comparison {

namespace {

using support::within;
using virtualtv::seam::Form;
using virtualtv::seam::Operation;
using virtualtv::seam::Output;
using virtualtv::text::Range;
using Words = std::vector<std::string>;

/// Results for any operation; results that an operation can't return are left out.
const Words results{"result=throw", "result=0", "result=-1",   "result=-2147483648", "result=1",
                    "result=2",     "result=7", "result=null", "result=unwritten"};

const Words texts{"result=", "result=isp-service", "result=isp-service ", "result=\xff\xfe\x80", "result=a\"b\\c"};

/// The plug-in trusts the reported length of a list, so these numbers stay small.
bool isLength(const Output& output) {
  return output.name == "size" || output.name == "count" || output.name == "subtitles" || output.name == "teletext" ||
         output.name == "teletextSubtitles";
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (; times > 0; --times) all += text;
  return all;
}

Words numbers(const Output& output) {
  if (isLength(output)) return {"0", "1", "3", "300"};
  Words values;
  for (const char* const number : {"-1", "0", "1", "2147483647", "-2147483648", "4294967297"}) {
    std::string value;
    for (const Range& range : output.numbers) value += (value.empty() ? "" : ",") + within(range, number);
    if (std::find(values.begin(), values.end(), value) == values.end()) values.push_back(value);
  }
  return values;
}

/// Records with a name longer than every buffer, a name that is not valid text, attached texts that are broken, nested
/// too deep or not an object, the smallest and the greatest numbers, and no fields at all.
Words records() {
  return {"{}",
          "{12=282}",
          "{12=18446744073709551615,13=65535,14=0,1=99,2=65535,15=300,22=65535,6=-19,4=-2147483648}",
          "{12=1,13=32768,1=-2147483648,15=255,18=65535,41=0,115=2147483647}",
          "{12=281,16=\"" + repeated("wide \u00e9\u6771 ", 60) + "\"}",
          "{12=281,16=\"up to \\ud800 here\"}",
          "{12=281,110=\"{\\\"open\\\": [\"}",
          "{12=281,110=\"[1]\"}",
          "{12=281,110=\"" + repeated("[", 1200) + "\"}"};
}

Words valuesOf(const Output& output) {
  switch (output.form) {
    case Form::numbers:
      return numbers(output);
    case Form::record:
      return records();
    case Form::records: {
      Words lists{"[]", "[{},{12=282}]", "[null]", "[null,{12=281},null,{12=282}]"};
      for (const std::string& record : records()) lists.push_back("[" + record + "]");
      lists.push_back("[" + repeated("{12=1,16=\"x\"},", 299) + "{}]");
      return lists;
    }
    case Form::favourites:
      return {"{}", "{0=1,1=0,12=1,255=1}"};
    default:
      return {};
  }
}

bool canFail(const Operation& operation, const std::string& words) {
  try {
    virtualtv::seam::parseFault({std::string(operation.name), words});
    return true;
  } catch (const std::invalid_argument&) {
    return false;
  }
}

Words makeWays(const Operation& operation) {
  Words ways;
  for (const std::string& words : results) {
    if (canFail(operation, words)) ways.push_back(words);
  }
  if (operation.returns == virtualtv::seam::Returns::text) {
    ways.insert(ways.end(), texts.begin(), texts.end());
    ways.push_back("result=" + repeated("long ", 1000));
  }
  for (const Output& output : operation.written()) {
    for (const std::string& value : valuesOf(output)) ways.push_back("out." + std::string(output.name) + "=" + value);
  }
  return ways;
}

const Words& remembered(std::map<const Operation*, Words>& known, const Operation& operation,
                        Words (*make)(const Operation&)) {
  const auto found = known.find(&operation);
  return found != known.end() ? found->second : known.emplace(&operation, make(operation)).first->second;
}

Words makeSomeWays(const Operation& operation) {
  Words ways{"result=throw"};
  const std::string failure = "result=" + std::to_string(operation.failure());
  for (const std::string& words : {failure, std::string("result=null"), std::string("result=unwritten")}) {
    if (canFail(operation, words)) ways.push_back(words);
  }
  return ways;
}

}  // namespace

const Words& waysOf(const Operation& operation) {
  static std::map<const Operation*, Words> known;
  return remembered(known, operation, makeWays);
}

const Words& someWaysOf(const Operation& operation) {
  static std::map<const Operation*, Words> known;
  return remembered(known, operation, makeSomeWays);
}

const std::vector<const Operation*>& commonOperations() {
  using virtualtv::seam::op;
  static const std::vector<const Operation*> common{
      &op("CEmpEngineBase::GetAppInfo"),
      &op("ISourceControl::GetSourceState"),
      &op("ISourceControl::GetCurrentSourceInfo"),
      &op("ISourceControl::SetSource"),
      &op("ISourceControl::DeactivateSource"),
      &op("IServiceNavigation::GetTvMode"),
      &op("IServiceNavigation::GetCurrentService"),
      &op("IServiceNavigation::GetServiceList"),
      &op("IServiceNavigation::TuneService"),
      &op("IService::FindService"),
      &op("TCNavigationModeHelper::GetNavigationCriteria"),
      &op("TVServiceAPI::CreateSourceControl"),
      &op("TVServiceAPI::CreateServiceNavigation"),
      &op("TVServiceAPI::CreateVideoControl"),
      &op("ServiceDataAux::GetAudio"),
      &op("CD2tvMgrProxy::GetInstance"),
      &op("vconf_get_int"),
      &op("vconf_get_str"),
      &op("vconf_set_int"),
      &op("vconf_set_str"),
  };
  return common;
}

std::string faultLine(const Operation& operation, std::uint64_t nth, const std::string& lasting,
                      const std::string& words) {
  return ".fault " + std::string(operation.name) + " nth=" + std::to_string(nth) + " " + lasting + " '" + words + "'";
}

}  // namespace comparison
