// SPDX-License-Identifier: MIT
#pragma once

#include "EmpTaskWindow.h"

namespace support {

/// The worker, with its protected operations and data accessible to tests.
class WorkerProbe : public kel::CEmpTaskWindow {
 public:
  using CEmpTaskWindow::t_CheckAVControlproxy;
  using CEmpTaskWindow::t_CheckDataControlproxy;
  using CEmpTaskWindow::t_CheckServiceDataAuxproxy;
  using CEmpTaskWindow::t_CheckServiceNavigationproxy;
  using CEmpTaskWindow::t_CheckServiceproxy;
  using CEmpTaskWindow::t_CheckSourceControlproxy;
  using CEmpTaskWindow::t_CheckTunerControlproxy;
  using CEmpTaskWindow::t_CheckVideoControlproxy;

  using CEmpTaskWindow::t_GetCurrentSourceInfo;
  using CEmpTaskWindow::t_GetPreviousSourceInfo;
  using CEmpTaskWindow::t_InitSourceVconf;
  using CEmpTaskWindow::t_IsConvertable;
  using CEmpTaskWindow::t_IsTVServiceSource;
  using CEmpTaskWindow::t_SetSource;
  using CEmpTaskWindow::t_SetTVMWMainSourcevconf;
  using CEmpTaskWindow::t_UpdateSourceVconf;

  using CEmpTaskWindow::CreateD2TVManagerInstance;
  using CEmpTaskWindow::DestroyD2TVManagerInstance;
  using CEmpTaskWindow::IsSourceISP;
  using CEmpTaskWindow::SetSource_D2TV;

  using CEmpTaskWindow::ChangeAudioByIndex_D2TV;
  using CEmpTaskWindow::ChangeAudioPID_D2TV;
  using CEmpTaskWindow::GetCurrentAudioInfo_D2TV;
  using CEmpTaskWindow::GetMultiAudioInfo_D2TV;

  using CEmpTaskWindow::GetResolutionDetail_D2TV;
  using CEmpTaskWindow::t_getPLResolution;

  using CEmpTaskWindow::t_GetChannelSeek;
  using CEmpTaskWindow::t_GetCurrentChannel;
  using CEmpTaskWindow::t_GetPreviousChannel;
  using CEmpTaskWindow::t_GetStartService;

  using CEmpTaskWindow::t_GetChannelInfo;
  using CEmpTaskWindow::t_GetServiceJsonText;

  using CEmpTaskWindow::av_ctrl_proxy;
  using CEmpTaskWindow::av_ctrl_proxy_main;
  using CEmpTaskWindow::av_ctrl_proxy_pip;
  using CEmpTaskWindow::m_baseScrH;
  using CEmpTaskWindow::m_baseScrW;
  using CEmpTaskWindow::m_ChannelList;
  using CEmpTaskWindow::m_pEngine;
  using CEmpTaskWindow::m_PreviousSourceVconf;
  using CEmpTaskWindow::m_SourceVconf;
  using CEmpTaskWindow::servicedata_aux_proxy;
  using CEmpTaskWindow::servicedata_aux_proxy_main;
  using CEmpTaskWindow::servicedata_aux_proxy_pip;
  using CEmpTaskWindow::src_ctrl_proxy;
  using CEmpTaskWindow::src_ctrl_proxy_main;
  using CEmpTaskWindow::src_ctrl_proxy_pip;
  using CEmpTaskWindow::svc_datacontrol_proxy;
  using CEmpTaskWindow::svc_datacontrol_proxy_main;
  using CEmpTaskWindow::svc_datacontrol_proxy_pip;
  using CEmpTaskWindow::svc_navi_proxy;
  using CEmpTaskWindow::svc_navi_proxy_main;
  using CEmpTaskWindow::svc_navi_proxy_pip;
  using CEmpTaskWindow::svc_proxy;
  using CEmpTaskWindow::t_eWindow;
  using CEmpTaskWindow::tuner_ctrl_proxy;
  using CEmpTaskWindow::video_ctrl_proxy;
  using CEmpTaskWindow::video_ctrl_proxy_main;
  using CEmpTaskWindow::video_ctrl_proxy_pip;
};

}  // namespace support
