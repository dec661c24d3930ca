// SPDX-License-Identifier: MIT
#include "kel/CEmpEngineBase.h"

#include <string_view>
#include <utility>

#include "framework/Reply.h"
#include "seam/Seam.h"

namespace kel {

using namespace virtualtv::framework;
using namespace virtualtv::seam;

CEmpEngineBase::CEmpEngineBase() = default;

CEmpEngineBase::~CEmpEngineBase() = default;

void CEmpEngineBase::Destroy() {}

void CEmpEngineBase::SetAppInfo(int, std::string appId, std::string widgetId, std::string) {
  m_appId = std::move(appId);
  m_widgetId = std::move(widgetId);
}

std::string CEmpEngineBase::GetAppInfo(eAPP_INFO_TYPE type) {
  return pass(op("CEmpEngineBase::GetAppInfo"), {}, args(in("type", type)), [&]() -> std::string {
    if (type == eAPP_INFO_APP_ID) return m_appId;
    if (type == eAPP_INFO_WIDGET_ID) return m_widgetId;
    return {};
  });
}

void CEmpEngineBase::SetReturnValueInteger(std::string& ret, int value) {
  encodeInteger(ret, value);
}

void CEmpEngineBase::SetReturnValueASCII(std::string& ret, const char* text) {
  encodeAscii(ret, text == nullptr ? "" : text);
}

void CEmpEngineBase::SetReturnValueASCII(std::string& ret, std::string& text) {
  encodeAscii(ret, text);
}

void CEmpEngineBase::SetReturnValueUNICODE(std::string& ret, unsigned short* text) {
  std::u16string units;
  for (; text != nullptr && *text != 0; ++text) units += static_cast<char16_t>(*text);
  encodeUnicode(ret, units);
}

}  // namespace kel
