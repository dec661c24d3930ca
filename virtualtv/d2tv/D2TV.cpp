// The secondary TV stack. This set has none yet: there is no manager, and no ISP source to switch to.
#include "d2tv/CD2tvMgrProxy.h"
#include "d2tv/D2TVCAPI.h"
#include "seam/Seam.h"

using virtualtv::seam::args;
using virtualtv::seam::in;
using virtualtv::seam::op;

CD2tvMgrProxy::~CD2tvMgrProxy() = default;

CD2tvMgrProxy* CD2tvMgrProxy::GetInstance(const char* client) {
  return virtualtv::seam::pass(op("CD2tvMgrProxy::GetInstance"), {}, args(in("client", client)),
                               []() -> CD2tvMgrProxy* { return nullptr; });
}

void CD2tvMgrProxy::DestroyInstance() {
  virtualtv::seam::pass(op("CD2tvMgrProxy::DestroyInstance"), {}, args(), [] {});
}

int D2TVCAPI_setSourceISP() {
  return virtualtv::seam::pass(op("D2TVCAPI_setSourceISP"), {}, args(), [] { return 0; });
}
