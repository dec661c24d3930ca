// What the catalogue says of a command is what the plug-in answers, also when the set fails.
#include <gtest/gtest.h>

#include <algorithm>

#include "shell/Catalogue.h"
#include "support/TvTest.h"

namespace {

using support::Answer;
using support::Lines;
using virtualtv::framework::Reply;
using virtualtv::seam::Operation;
using virtualtv::seam::Seam;
using virtualtv::shell::catalogue;
using virtualtv::shell::CatalogueCommand;

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

/// True where the catalogue leaves open which numbers are answered, or names this one.
bool isAnswer(const CatalogueCommand& command, int number) {
  if (command.answerKind == "code") return number == 1;
  if (command.preset == number) return true;
  const auto* const type = catalogue().findType(command.answerType);
  if (type == nullptr) return number >= 0;
  return std::any_of(type->values.begin(), type->values.end(),
                     [&](const auto& value) { return value.from <= number && number <= value.to; });
}

class TruthTest : public support::TvTest, public ::testing::WithParamInterface<std::size_t> {
 protected:
  const CatalogueCommand& command() const { return catalogue().commands()[GetParam()]; }

  /// Sets of parameters that each command is tried with.
  std::vector<Lines> trials() const {
    std::vector<Lines> all;
    const std::vector<Lines> known{
        {"0", "1", "0", "0"}, {"1", "0", "28", "0"}, {"30000", "0", "0", "0"}, {"", "", "", ""}};
    for (const Lines& parameters : known) {
      const Lines trial(parameters.begin(), parameters.begin() + static_cast<int>(command().parameters.size()));
      if (std::find(all.begin(), all.end(), trial) == all.end()) all.push_back(trial);
    }
    return all;
  }

  /// An engine that has found channels, unless the set can't tell them; calls so far are dropped.
  void prepare() {
    close();
    open();
    ask("FindChannel", {"0", "1"});
    forget();
  }

  void expectTruth(const Lines& parameters) {
    const Answer answer = ask(command().name, parameters);
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
    ask(command().name, parameters);
    for (const virtualtv::seam::Call& call : Seam::instance().take()) {
      if (!call.operation->answersNumber()) continue;
      const std::string words = std::string(call.operation->name) + " times=always result=";
      SCOPED_TRACE(words);
      prepare();
      fault(words + std::to_string(call.operation->failure()));
      expectTruth(parameters);
      clearFaults();
    }
  }
}

TEST_P(TruthTest, ARequiredParameterThatIsNoNumberFailsBeforeTheSetIsAsked) {
  for (std::size_t at = 0; at < command().parameters.size(); ++at) {
    if (!command().parameters[at].required) continue;
    prepare();
    Lines parameters(command().parameters.size(), "0");
    parameters[at] = "x";
    const Answer answer = ask(command().name, parameters);
    ASSERT_TRUE(answer.accepted && answer.reply && answer.reply->kind == Reply::Kind::integer) << answer.shown();
    EXPECT_TRUE(isFailure(command(), answer.reply->number)) << answer.shown();
    EXPECT_EQ(calls(), Lines{});
  }
}

std::string commandOf(const ::testing::TestParamInfo<std::size_t>& info) {
  return catalogue().commands()[info.param].name;
}

INSTANTIATE_TEST_SUITE_P(Each, TruthTest, ::testing::Range(std::size_t{0}, catalogue().commands().size()), commandOf);

}  // namespace
