// SPDX-License-Identifier: MIT
#include "virtualtv/shell/Support.h"

#include <cstdlib>
#include <stdexcept>

#include "kel/CKELDebug.h"
#include "settings/vconf.h"
#include "text/Units.h"

namespace virtualtv::shell {

namespace {

int numberFrom(const std::string& text) {
  return std::atoi(text.c_str());
}

class TestEngine : public kel::CEmpEngineBase {
 public:
  TestEngine() {
    int value = 0;
    vconf_get_int("opened", &value);
  }

  void Destroy() override {
    int value = 0;
    vconf_get_int("closed", &value);
  }

  bool Execute(std::string& ret, const std::string& cmd, const std::string& p1, const std::string& p2,
               const std::string& p3, const std::string& p4) override {
    ++commands_;
    if (cmd == "refuse" && p1.empty()) return false;
    if (cmd == "throw") throw std::runtime_error("thrown on purpose");
    if (cmd == "int" || cmd == "refuse") SetReturnValueInteger(ret, numberFrom(p1));
    if (cmd == "count") SetReturnValueInteger(ret, commands_);
    if (cmd == "ascii") SetReturnValueASCII(ret, p1.c_str());
    if (cmd == "lines") SetReturnValueASCII(ret, (p1 + "\n" + p2).c_str());
    if (cmd == "echo") SetReturnValueASCII(ret, ("[" + p1 + "][" + p2 + "][" + p3 + "][" + p4 + "]").c_str());
    if (cmd == "app") SetReturnValueASCII(ret, GetAppInfo(kel::eAPP_INFO_APP_ID).c_str());
    if (cmd == "widget") SetReturnValueASCII(ret, GetAppInfo(kel::eAPP_INFO_WIDGET_ID).c_str());
    if (cmd == "unicode") unicode(ret, p1);
    if (cmd == "read") read(ret, p1);
    if (cmd == "write") SetReturnValueInteger(ret, vconf_set_int(p1.c_str(), numberFrom(p2)));
    if (cmd == "log") log(numberFrom(p1), p2);
    return cmd != "refuse";
  }

  bool ExecuteWithParamList(std::string& ret, const std::string& cmd, const kel::ParamList& params) override {
    std::string text = cmd;
    for (std::size_t at = 0; at < params.Size(); ++at) text += "," + params.At(at);
    SetReturnValueASCII(ret, text);
    return true;
  }

 private:
  void unicode(std::string& ret, const std::string& text) {
    std::vector<unsigned short> units;
    for (const char16_t unit : text::toUnits(text)) units.push_back(unit);
    units.push_back(0);
    SetReturnValueUNICODE(ret, units.data());
  }

  void read(std::string& ret, const std::string& key) {
    int value = -7;
    vconf_get_int(key.c_str(), &value);
    SetReturnValueInteger(ret, value);
  }

  void log(int level, const std::string& text) {
    kel::CKELDebug::PrintLog(2, level, "[KEL][%s(%d)] ", "Log", 1);
    kel::CKELDebug::PrintLog(2, level, "%s at %p\n", text.c_str(), static_cast<void*>(this));
  }

  int commands_ = 0;
};

}  // namespace

TestApp::TestApp() {
  m_name = "Test";
  m_id = "0001";
  m_version = "1.0";
}

kel::CEmpEngineBase* TestApp::CreateEmpEngine() {
  return opens ? new TestEngine : nullptr;
}

std::string SessionTest::run(std::string_view input) {
  std::string text;
  for (const std::string& line : session->run(input)) text += (text.empty() ? "" : "\n") + line;
  return text;
}

Lines SessionTest::findings() {
  Lines texts;
  for (const Session::Finding& finding : session->takeRemarks().findings) texts.push_back(finding.text);
  return texts;
}

}  // namespace virtualtv::shell
