// The commands of audio tracks and of the volume through the engine: what they read as parameters, what they answer.
#include "Sound.h"

namespace {

using reports::WriterFault;
using sound::element;
using sound::threeTracks;
using support::commandLogs;
using support::join;
using support::Lines;
using tracks::document;
using virtualtv::WindowId;

const std::string listCommand = "GetMultiAudioInfo";
const std::string currentCommand = "GetCurrentAudioInfo";
const std::string pidCommand = "ChangeAudioPID";
const std::string indexCommand = "ChangeAudioByIndex";
const std::string volumeCommand = "SetSourceVolume";

const std::string listFailed = "0 Fail to get the audio information";
const std::string currentFailed = "0 Fail to get GetCurrentAudioInfo";

class SoundCommand : public tracks::TrackCommand {
 protected:
  void SetUp() override {
    TrackCommand::SetUp();
    virtualtv::Service service;
    service.audio = threeTracks;
    showTv(service);
  }

  int inUse() { return tv().state()[WindowId::main].inUse.audio; }

  /// From now on no interface of the TV service can be made.
  void loseInterfaces() {
    close();
    fault("TVServiceAPI::ServiceDataAux always result=null");
    fault("TVServiceAPI::CreateAVControl always result=null");
    ASSERT_TRUE(open());
    forget();
  }
};

// GetMultiAudioInfo: the text, whatever the result, but -1 where the ISP source left none.

TEST_F(SoundCommand, TracksAreADocument) {
  const std::string text =
      document({{"NumOfAudio", "3"}}, "items",
               {element(0, threeTracks[0]), element(1, threeTracks[1]), element(2, threeTracks[2])});
  EXPECT_EQ(ask(listCommand, {"x", "1"}).text(), text);
  const Lines made = calls();
  EXPECT_EQ(made.front(), tracks::tvTold);
  EXPECT_EQ(made.back(), tracks::tvTold) << "and once more for the answer";
  EXPECT_EQ(logs(), commandLogs(listCommand, {"x", "1"},
                                join({tracks::onTv,
                                      tracks::currentTold,
                                      {"3 sizeofAudio = 3\n", "3 GetAudio success.\n", "3 GetAudio success.\n",
                                       "3 GetAudio success.\n", "3 ix = 3",
                                       "3 CEmpTaskWindow::GetMultiAudioInfo ::jsonstr =>[" + text + "]"},
                                      tracks::onTv}),
                                1));
}

TEST_F(SoundCommand, TracksThatTheTvServiceCannotTellAreAnEmptyText) {
  const std::vector<std::pair<std::string, std::string>> ways{{"IServiceNavigation::GetTvMode result=0", "0"},
                                                              {"IServiceNavigation::GetCurrentService result=0", "0"},
                                                              {"ServiceDataAux::GetAudioSize result=throw", "-1"},
                                                              {"ServiceDataAux::GetAudio result=throw", "-1"}};
  for (const auto& [words, result] : ways) {
    EXPECT_EQ(executeUnder(words, listCommand), "ascii") << words;
    const Lines lines = ownLogs();
    EXPECT_EQ(lines[lines.size() - 2], listFailed) << words;
    EXPECT_NE(lines.back().find("Finish result[" + result + "]."), std::string::npos) << words;
  }
  const WriterFault writer;
  EXPECT_EQ(execute(listCommand), "ascii");
}

TEST_F(SoundCommand, TracksThatTheSecondaryStackCannotTellAreADocument) {
  showIsp(threeTracks, {});
  for (const std::string words : {"GetInstance result=null", "GetTotalNumOfAudio result=-1",
                                  "GetTotalNumOfAudio result=throw", "GetMultiAudioInfo result=throw"}) {
    EXPECT_EQ(executeUnder("CD2tvMgrProxy::" + words, listCommand),
              "ascii |\n| {\n|    \"NumOfAudio\" : 0,\n|    \"items\" : []\n| }")
        << words;
    const Lines lines = ownLogs();
    EXPECT_EQ(lines[lines.size() - 2], listFailed) << words;
    EXPECT_NE(lines.back().find("Finish result[0]."), std::string::npos) << words;
  }
}

TEST_F(SoundCommand, TracksAreMinusOneWhereTheIspSourceLeavesNoText) {
  showIsp(threeTracks, {});
  const WriterFault writer;
  EXPECT_EQ(execute(listCommand), "int -1");
  EXPECT_EQ(finished(), "0") << "which is the worker's result";
}

TEST_F(SoundCommand, WhetherTheSourceIsIspIsAskedAnewForTheAnswer) {
  fault("vconf_get_str nth=2 result=isp-service");
  fault("IServiceNavigation::GetTvMode result=0");
  EXPECT_EQ(execute(listCommand), "int -1") << "the worker asked the TV service, which left no text";
  EXPECT_TRUE(faultsHit());
  EXPECT_EQ(finished(), "0");
  clearFaults();
  showIsp(threeTracks, {});
  fault("vconf_get_str nth=2 result=tv-service");
  const WriterFault writer;
  EXPECT_EQ(execute(listCommand), "ascii") << "and the other way round";
  EXPECT_TRUE(faultsHit());
}

TEST_F(SoundCommand, WhetherTheSourceIsIspIsAskedAlsoAfterASuccess) {
  showIsp(threeTracks, {});
  EXPECT_EQ(ask(listCommand).text().rfind("{\n   \"NumOfAudio\" : 3,", 0), 0U);
  EXPECT_EQ(callsOf("vconf_get_str").size(), 2U);
  EXPECT_EQ(finished(), "1");
}

// GetCurrentAudioInfo: the text where the worker answers 1, else -1.

TEST_F(SoundCommand, TheTrackInUseIsADocument) {
  EXPECT_EQ(ask(currentCommand, {"x"}).text(), sound::current("0", "11", "256"));
  EXPECT_EQ(callsOf("vconf_get_str").size(), 1U);
  EXPECT_EQ(
      logs(),
      commandLogs(currentCommand, {"x"},
                  join({tracks::onTv, tracks::currentTold, {"3 GetCurrentAudioInfo =>pid:-1, index:0 lang:11"}}), 1));
}

TEST_F(SoundCommand, ATrackInUseThatCannotBeToldIsMinusOneThoughADocumentIsThere) {
  const std::vector<std::pair<std::string, std::string>> ways{{"IAVControl::GetCurrentAudioInfo result=0", "-1"},
                                                              {"IAVControl::GetCurrentAudioInfo result=throw", "-1"},
                                                              {"ServiceDataAux::GetAudio result=0", "-1"},
                                                              {"IServiceNavigation::GetTvMode result=0", "-1"}};
  for (const auto& [words, result] : ways) {
    EXPECT_EQ(executeUnder(words, currentCommand), "int -1") << words;
    const Lines lines = logs();
    EXPECT_EQ(lines[lines.size() - 2], currentFailed) << words;
    EXPECT_NE(lines.back().find("Finish result[" + result + "]."), std::string::npos) << words;
  }
}

TEST_F(SoundCommand, ATrackInUseThatTheSecondaryStackCannotTellIsMinusOne) {
  showIsp(threeTracks, {});
  EXPECT_EQ(ask(currentCommand).text(), sound::current("0", "11", "256"));
  for (const std::string words : {"GetInstance result=null", "GetCurrentAudioInfo result=1"}) {
    EXPECT_EQ(executeUnder("CD2tvMgrProxy::" + words, currentCommand), "int -1") << words;
    const Lines lines = logs();
    EXPECT_EQ(lines[lines.size() - 2], currentFailed) << words;
    EXPECT_NE(lines.back().find("Finish result[0]."), std::string::npos) << words;
  }
}

// ChangeAudioPID and ChangeAudioByIndex: 1, or 0 and a line with the number that was asked for.

TEST_F(SoundCommand, ATrackIsSelectedByItsPid) {
  EXPECT_EQ(execute(pidCommand, {"257", "x"}), "int 1");
  EXPECT_EQ(inUse(), 1);
  EXPECT_EQ(ownLogs(), commandLogs(pidCommand, {"257", "x"},
                                   join({tracks::currentTold,
                                         {"3 SizeOfAudio = 3.\n", "3 k =0,audio.pid = 256,pid = 257!",
                                          "3 k =1,audio.pid = 257,pid = 257!", "3 SetCurrentAudioByIndex begin!",
                                          "3 SetCurrentAudioByIndex success!"}}),
                                   1));
}

TEST_F(SoundCommand, APidThatNoTrackHasAnswersZeroWithResultMinusOne) {
  const std::vector<std::tuple<std::string, std::string, std::string>> pids{
      {"300", "300", "12c"},       {"-1", "-1", "ffffffff"},         {"-32768", "-32768", "ffff8000"},
      {"32768", "-32768", "8000"}, {"65535", "-1", "ffff"},          {"+0", "0", "0"},
      {"65536", "0", "10000"},     {"2147483647", "-1", "7fffffff"}, {"-2147483648", "0", "80000000"}};
  for (const auto& [text, pid, shown] : pids) {
    EXPECT_EQ(execute(pidCommand, {text}), "int 0") << text;
    const Lines lines = ownLogs();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[lines.size() - 3], "0 Don't find pid = " + pid + " in curCh = 281!") << text;
    EXPECT_EQ(lines[lines.size() - 2], "0 Fail to ChangeAudioPID [0x" + shown + "]") << "as it was parsed";
    EXPECT_NE(lines.back().find("Finish result[-1]."), std::string::npos) << text;
  }
}

TEST_F(SoundCommand, OfAPidTheLowSixteenBitsCount) {
  EXPECT_EQ(execute(pidCommand, {"65793"}), "int 1");
  EXPECT_EQ(inUse(), 1) << "257, and 65536 beyond";
}

TEST_F(SoundCommand, APidThatTheSetRefusesAnswersZero) {
  for (const std::string way : {"result=0", "result=throw"}) {
    EXPECT_EQ(executeUnder("IAVControl::SetCurrentAudioByIndex " + way, pidCommand, {"257"}), "int 0") << way;
    const Lines lines = logs();
    EXPECT_EQ(lines[lines.size() - 2], "0 Fail to ChangeAudioPID [0x101]") << way;
    EXPECT_NE(lines.back().find("Finish result[0]."), std::string::npos) << way;
  }
}

TEST_F(SoundCommand, ATrackIsSelectedByItsPosition) {
  EXPECT_EQ(execute(indexCommand, {"2", "x"}), "int 1");
  EXPECT_EQ(inUse(), 2);
  EXPECT_EQ(ownLogs(), commandLogs(indexCommand, {"2", "x"}, {"3 SetAudioByIndex =>[2]"}, 1));
}

TEST_F(SoundCommand, APositionThatHasNoTrackAnswersZero) {
  const std::vector<std::pair<std::string, std::string>> positions{
      {"3", "3"}, {"-1", "ffffffff"}, {"2147483647", "7fffffff"}, {"-2147483648", "80000000"}};
  for (const auto& [text, shown] : positions) {
    EXPECT_EQ(execute(indexCommand, {text}), "int 0") << text;
    EXPECT_EQ(ownLogs(),
              commandLogs(indexCommand, {text},
                          {"3 SetAudioByIndex =>[" + text + "]", "0 Fail to ChangeAudioByIndex [0x" + shown + "]"}, 0));
  }
  EXPECT_EQ(inUse(), 0);
}

TEST_F(SoundCommand, AChangeThatIsNoNumberAnswersZeroWithoutACall) {
  for (const std::string& command : {pidCommand, indexCommand}) {
    for (const std::string& text : support::noNumbers) {
      EXPECT_EQ(execute(command, {text, "1"}), "int 0") << command << " '" << text << '\'';
      EXPECT_EQ(calls(), Lines());
      EXPECT_EQ(logs(), commandLogs(command, {text, "1"}, {}, 0));
    }
  }
}

TEST_F(SoundCommand, OnTheIspSourceAChangeAnswersZeroForEveryFailureButOne) {
  showIsp(threeTracks, {});
  EXPECT_EQ(execute(pidCommand, {"258"}), "int 1");
  EXPECT_EQ(execute(indexCommand, {"1"}), "int 1");
  EXPECT_EQ(tv().state().isp.inUse.audio, 1);
  for (const auto& [command, call] : std::vector<std::pair<std::string, std::string>>{
           {pidCommand, "CD2tvMgrProxy::ChangeAudioByPID"}, {indexCommand, "CD2tvMgrProxy::ChangeAudioByIndex"}}) {
    for (const std::string way : {"result=2", "result=-5", "result=throw"}) {
      EXPECT_EQ(executeUnder(call + " " + way, command, {"1"}), "int 0") << call << way;
      const Lines lines = logs();
      EXPECT_EQ(lines[lines.size() - 2], "0 Fail to " + command + " [0x1]");
      EXPECT_NE(lines.back().find("Finish result[0]."), std::string::npos) << call << way;
    }
    EXPECT_EQ(executeUnder(call + " result=1", command, {"1"}), "int 1") << "which reads as a success";
    EXPECT_EQ(finished(), "1");
  }
}

TEST_F(SoundCommand, WithoutInterfacesNothingIsTold) {
  loseInterfaces();
  EXPECT_EQ(execute(listCommand), "ascii");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(execute(currentCommand), "int -1");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(execute(pidCommand, {"257"}), "int 0");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(execute(indexCommand, {"1"}), "int 0");
  EXPECT_EQ(finished(), "0");
}

// SetSourceVolume: nothing, whatever the number.

TEST_F(SoundCommand, TheVolumeIsAlwaysAnsweredZeroAndNobodyIsAsked) {
  const virtualtv::TvState before = tv().state();
  for (const std::string& text :
       join({{"0", "1", "255", "256", "300", "2147483647", "-1", "-2147483648", "+5", "007"}, support::noNumbers})) {
    EXPECT_EQ(execute(volumeCommand, {text, "1"}), "int 0") << '\'' << text << '\'';
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs(volumeCommand, {text, "1"}, {}, 0));
  }
  EXPECT_TRUE(tv().state() == before);
}

}  // namespace
