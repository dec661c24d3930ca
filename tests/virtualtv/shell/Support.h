// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kel/CEmpAppBase.h"
#include "kel/CEmpEngineBase.h"
#include "shell/Session.h"
#include "support/Assembly.h"
#include "virtualtv/shell/SmallList.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::shell {

using test::TemporaryDirectory;

/// A plug-in with commands for tests of the shell. Opening an engine reads the key "opened", closing it the key
/// "closed".
///
/// `int N`, `ascii TEXT`, `unicode TEXT`, `lines A B` (a text of two lines), `empty`, `refuse`, `refuse N`, `throw`,
/// `echo p1..p4`, `app` and `widget` (who calls), `read KEY` and `write KEY N` (settings keys), `log LEVEL TEXT`,
/// `count` (commands of this engine so far).
class TestApp : public kel::CEmpAppBase {
 public:
  TestApp();
  kel::CEmpEngineBase* CreateEmpEngine() override;

  bool opens = true;  ///< false: engines can't be created
};

/// A session on a set in memory.
class SessionTest : public ::testing::Test {
 protected:
  SessionTest() { session.emplace(television.device, folder.path()); }
  ~SessionTest() override { session.reset(); }

  /// The output of an input, with line breaks between the lines.
  std::string run(std::string_view input);
  /// The same, as separate lines.
  Lines lines(std::string_view input) { return session->run(input); }
  Tv& tv() { return television.tv(); }
  /// The findings since the last time. They would make a transcript fail.
  Lines findings();

  TemporaryDirectory folder;
  support::Assembly<TestApp> television;
  TestApp& app = television.app;
  std::optional<Session> session;
};

}  // namespace virtualtv::shell
