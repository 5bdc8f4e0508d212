// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "PPDX/PPDObjects/DisplayOptions.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/ProjectPDE.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "platform/Testing.h"
#include "tests/VelonFeatures/Project/Core/TestSession.h"

// A session, the built bundle, and a process that is as it was before the first dialog.
class CoreFixture : public testing::Test {
  protected:
    // The first bundle of the process stays its bundle for texts.
    CoreFixture() { PDEBundle::InitBundle(mBundle); }
    ~CoreFixture() override {
        FailCreationAfter(-1);
        ForgetDialog();
        gUseCommonPresets = false;
    }

    // What a dialog leaves behind in the process.
    static void ForgetDialog() {
        delete gPDEData;
        gPDEData = nullptr;
        gFactoryBusy = false;
        MyFreeBundle();
        DisplayOptions::Options(kDisplayPlacedAndVisible);
    }
    OSStatus Initialize(ProjectPDE& project) {
        std::uint32_t flags = 0;
        return project.Initialize(&flags, 0, nullptr, mSession.Get());
    }
    // The pairs that a commit gives for this PPD.
    TestSession::Pairs Commit(std::string const& ppd) {
        mSession.SetPPD(ppd);
        ProjectPDE project;
        EXPECT_EQ(noErr, Initialize(project));
        EXPECT_EQ(noErr, project.Sync(mSession.Get(), false));
        return mSession.TakeJob();
    }

    TestSession mSession;
    CFRef<CFBundleRef> mBundle{CFBundleCreate(nullptr, FileURL(ZUB_PLUGIN_DIR, true))};
};
