// SPDX-License-Identifier: MIT
// The plug-in answers as the catalogue says, even when the set fails.
#include <gtest/gtest.h>

#include <algorithm>

#include "catalogue/Catalogue.h"
#include "support/TvTest.h"

namespace {

using support::Answer;
using support::Lines;
using virtualtv::catalogue;
using virtualtv::CatalogueCommand;
using virtualtv::framework::Reply;
using virtualtv::seam::Operation;

std::string nameOf(Reply::Kind kind) {
  switch (kind) {
    case Reply::Kind::integer:
      return "int";
    case Reply::Kind::ascii:
      return "ascii";
    case Reply::Kind::unicode:
      return "unicode";
  }
  return "";
}

bool isFailure(const CatalogueCommand& command, int code) {
  return std::any_of(command.failures.begin(), command.failures.end(),
                     [&](const auto& failure) { return failure.code == code; });
}

/// True where the catalogue names this number as an answer, or does not restrict the answers.
bool isAnswer(const CatalogueCommand& command, int number) {
  if (command.answerKind == "code") return number == 1;
  if (command.preset == number) return true;
  const auto* const type = catalogue().findType(command.answerType);
  if (type == nullptr) return number >= 0;
  return std::any_of(type->values.begin(), type->values.end(),
                     [&](const auto& value) { return value.from <= number && number <= value.to; });
}

/// A command in one of its forms.
struct Form {
  const CatalogueCommand* command = nullptr;
  bool takesList = false;
};

class TruthTest : public support::TvTest, public ::testing::WithParamInterface<Form> {
 protected:
  const CatalogueCommand& command() const { return *GetParam().command; }

  Answer run(const Lines& parameters) {
    return GetParam().takesList ? askWithParamList(command().name, parameters) : ask(command().name, parameters);
  }

  /// Parameters with which to try each command. The parameter-list form repeats them up to its length.
  std::vector<Lines> trials() const {
    std::vector<Lines> all;
    const std::vector<Lines> known{{"0", "1", "0", "0"}, {"1", "0", "28", "7"}, {"30000", "0", "0", "0"}};
    const std::size_t count = command().parameters.size();
    for (const Lines& parameters : known) {
      Lines trial;
      for (std::size_t at = 0; at < count; ++at) trial.push_back(parameters[at % parameters.size()]);
      if (std::find(all.begin(), all.end(), trial) == all.end()) all.push_back(trial);
    }
    if (!GetParam().takesList && count > 0) all.emplace_back(count);
    return all;
  }

  /// Opens an engine that has found channels, unless the set can't report them. Drops the calls so far.
  void prepare() {
    close();
    open();
    ask("FindChannel", {"0", "1"});
    forget();
  }

  void expectTruth(const Lines& parameters) {
    const Answer answer = run(parameters);
    ASSERT_TRUE(answer.accepted && answer.reply) << answer.shown();
    const Reply& reply = *answer.reply;
    const bool number = reply.kind == Reply::Kind::integer;
    const bool known = number && (isFailure(command(), reply.number) || isAnswer(command(), reply.number));
    if (number && command().reply != "int") {
      EXPECT_TRUE(isFailure(command(), reply.number)) << answer.shown();
    } else if (number) {
      EXPECT_TRUE(known) << answer.shown() << " is neither an answer nor a failure";
    } else {
      EXPECT_EQ(nameOf(reply.kind), command().reply);
    }
  }
};

TEST_P(TruthTest, OnAHealthySet) {
  for (const Lines& parameters : trials()) {
    prepare();
    expectTruth(parameters);
  }
}

TEST_P(TruthTest, OnASetWithoutInterfaces) {
  for (const Operation& operation : virtualtv::seam::operations) {
    if (operation.name.starts_with("TVServiceAPI::")) fault(std::string(operation.name) + " times=always result=null");
  }
  for (const Lines& parameters : trials()) {
    prepare();
    expectTruth(parameters);
  }
}

TEST_P(TruthTest, WithEachCallToTheSetFailing) {
  for (const Lines& parameters : trials()) {
    prepare();
    run(parameters);
    for (const virtualtv::seam::Call& call : takeCalls()) {
      if (!call.operation->returnsNumber()) continue;
      const std::string words = std::string(call.operation->name) + " times=always result=";
      SCOPED_TRACE(words);
      prepare();
      fault(words + std::to_string(call.operation->failure()));
      expectTruth(parameters);
      clearFaults();
    }
  }
}

TEST_P(TruthTest, ARequiredParameterThatIsNoNumberIsAnsweredAsToldBeforeTheSetIsAsked) {
  for (std::size_t at = 0; at < command().parameters.size(); ++at) {
    if (!command().parameters[at].required) continue;
    prepare();
    Lines parameters(command().parameters.size(), "0");
    parameters[at] = "x";
    const Answer answer = run(parameters);
    ASSERT_TRUE(answer.accepted) << answer.shown();
    std::string told = "gets no answer";
    if (answer.reply) {
      ASSERT_EQ(answer.reply->kind, Reply::Kind::integer) << answer.shown();
      EXPECT_TRUE(isFailure(command(), answer.reply->number)) << answer.shown();
      told = "answers " + std::to_string(answer.reply->number);
    }
    EXPECT_EQ(command().parameters[at].unparsed, told + " and does nothing");
    EXPECT_EQ(calls(), Lines{});
  }
}

std::vector<Form> forms() {
  std::vector<Form> all;
  for (const CatalogueCommand& command : catalogue()) all.push_back({&command, false});
  for (const CatalogueCommand& command : catalogue().listCommands()) all.push_back({&command, true});
  return all;
}

std::string formOf(const ::testing::TestParamInfo<Form>& info) {
  return info.param.command->name + (info.param.takesList ? "_with_list" : "");
}

INSTANTIATE_TEST_SUITE_P(Each, TruthTest, ::testing::ValuesIn(forms()), formOf);

class ListTruthTest : public support::EngineTest {};

TEST_F(ListTruthTest, OnlyTheCommandsToldOfTakeAParameterList) {
  for (const CatalogueCommand& command : catalogue()) {
    const std::string answer = executeWithParamList(command.name, Lines(command.parameters.size(), "0"));
    EXPECT_EQ(answer == "refused int -1", catalogue().findList(command.name) == nullptr) << command.name << answer;
  }
  EXPECT_EQ(executeWithParamList("NoSuchCommand", {}), "refused int -1");
}

TEST_F(ListTruthTest, AListThatLacksARequiredParameterGetsNoAnswerAndOneThatLacksAnotherReadsItsPreset) {
  for (const CatalogueCommand& command : catalogue().listCommands()) {
    Lines parameters(command.parameters.size(), "1");
    for (std::size_t at = command.parameters.size(); at-- > 0;) {
      parameters.pop_back();
      forget();
      const Answer answer = askWithParamList(command.name, parameters);
      EXPECT_TRUE(answer.accepted) << command.name;
      EXPECT_EQ(answer.reply.has_value(), !command.parameters[at].required) << command.name << ' ' << at;
    }
  }
}

}  // namespace
