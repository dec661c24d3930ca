// SPDX-License-Identifier: MIT
// In a program that links this and wraps the constructors below, records of the TV service start with garbage in their
// members, as records of a real set's library may. The plug-in must therefore write every value that it passes to the
// set.
#include <gtest/gtest.h>

#include "tvservice/TVServiceTypes.h"

void makeAudio(TSAudio*) asm("__real__ZN7TSAudioC1Ev");
void makeSubtitle(TSHybridSBT*) asm("__real__ZN11TSHybridSBTC1Ev");
void makeRect(TSRectInfo*) asm("__real__ZN10TSRectInfoC1Ev");
void makeResolution(TSResolution*) asm("__real__ZN12TSResolutionC1Ev");

void spoilAudio(TSAudio*) asm("__wrap__ZN7TSAudioC1Ev");
void spoilSubtitle(TSHybridSBT*) asm("__wrap__ZN11TSHybridSBTC1Ev");
void spoilRect(TSRectInfo*) asm("__wrap__ZN10TSRectInfoC1Ev");
void spoilResolution(TSResolution*) asm("__wrap__ZN12TSResolutionC1Ev");

namespace {

constexpr unsigned short garbage = 23130;

}  // namespace

void spoilAudio(TSAudio* audio) {
  makeAudio(audio);
  audio->lang = audio->decodeType = audio->audioMode = audio->audioType = garbage;
  audio->pid = garbage;
}

void spoilSubtitle(TSHybridSBT* subtitle) {
  makeSubtitle(subtitle);
  subtitle->type = garbage;
  subtitle->pid = garbage;
}

void spoilRect(TSRectInfo* rect) {
  makeRect(rect);
  rect->x = rect->y = rect->width = rect->height = garbage;
}

void spoilResolution(TSResolution* resolution) {
  makeResolution(resolution);
  resolution->horizontal = resolution->vertical = garbage;
  resolution->frequency = resolution->horizontalFrequency = garbage;
}

namespace {

TEST(Records, ComeWithGarbageFromTheirConstructors) {
  EXPECT_EQ(TSAudio().pid, garbage);
  EXPECT_EQ(TSHybridSBT().pid, garbage);
  EXPECT_EQ(TSRectInfo().height, garbage);
  EXPECT_EQ(TSResolution().horizontalFrequency, garbage);
}

}  // namespace
