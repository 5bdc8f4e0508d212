// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/SessionGlobals.h"

char const* gCommonPresetsPath = "/CommonPresets.txt";
bool gUseCommonPresets = false;
bool gMayEndApplications = true;
bool gFactoryBusy = false;
bool gNeedShrink = true;
bool gAppIsAdobe = false;
bool gMacOSx105 = false;
bool gMacOSx105plus = false;
bool gBackFromJP = false;

PDEData* gPDEData = nullptr;
IBNibRef gSharedNib = nullptr;
CFBundleRef gCachedBundle = nullptr;
