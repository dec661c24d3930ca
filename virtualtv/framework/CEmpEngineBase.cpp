#include "kel/CEmpEngineBase.h"

#include <string_view>
#include <utility>

#include "framework/Reply.h"
#include "seam/Seam.h"

namespace kel {

using virtualtv::framework::encode;
using virtualtv::framework::Reply;
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
  ret = encode({Reply::Kind::integer, value, {}, {}});
}

void CEmpEngineBase::SetReturnValueASCII(std::string& ret, const char* text) {
  ret = encode({Reply::Kind::ascii, 0, text == nullptr ? "" : text, {}});
}

void CEmpEngineBase::SetReturnValueASCII(std::string& ret, std::string& text) {
  ret = encode({Reply::Kind::ascii, 0, text, {}});
}

void CEmpEngineBase::SetReturnValueUNICODE(std::string& ret, unsigned short* text) {
  Reply reply{Reply::Kind::unicode, 0, {}, {}};
  for (; text != nullptr && *text != 0; ++text) reply.units += static_cast<char16_t>(*text);
  ret = encode(reply);
}

}  // namespace kel
