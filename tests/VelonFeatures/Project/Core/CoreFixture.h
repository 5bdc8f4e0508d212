// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/DisplayOptions.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "platform/Testing.h"
#include "tests/VelonFeatures/Project/Core/TestSession.h"

// The environment's variable HOME for the length of a scope; null for none.
class HomeScope {
  public:
    explicit HomeScope(char const* home) {
        if (char const* const old = std::getenv("HOME"); old != nullptr) {
            mOld = old;
        }
        Set(home);
    }
    HomeScope(HomeScope const&) = delete;
    HomeScope& operator=(HomeScope const&) = delete;
    ~HomeScope() { Set(mOld ? mOld->c_str() : nullptr); }

  private:
    static void Set(char const* home) {
        home == nullptr ? unsetenv("HOME") : setenv("HOME", home, 1);
    }

    std::optional<std::string> mOld;
};

// A session, the built bundle, a home folder without anything in it, and a process that is as it
// was before the first dialog.
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
    static PPDXControl* ControlOf(ZUBPPD& ppd, char const* keyword) {
        DisplayOptionsScope const everything(kDisplayAll);
        CNTL_TYPE type = kControlType;
        return ppd.GetControls()->Find(keyword, type, true);
    }
    // "(none)" without such a control, and for one without a value.
    static std::string ValueOf(ZUBPPD& ppd, char const* keyword) {
        PPDXControl* const control = ControlOf(ppd, keyword);
        CFRef<CFStringRef> const value(
            control == nullptr ? nullptr : control->CopyCurrentControlValueString());
        return Text(value);
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
    HomeScope const mHome{mSession.Path("home").c_str()};
    CFRef<CFBundleRef> mBundle{CFBundleCreate(nullptr, FileURL(ZUB_PLUGIN_DIR, true))};
};
