// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "tests/platform/WindowTestSupport.h"

// A shown window on a headless face, beside the bundle that was built.
class DialogFixture : public WindowTest {
  protected:
    // The bundle and its tables stay for good and are no test's.
    static void SetUpTestSuite() {
        PDEBundle::InitBundle(
            CFRef<CFBundleRef>(CFBundleCreate(nullptr, FileURL(ZUB_PLUGIN_DIR, true))));
        for (char const* const language : {"en_US.UTF-8", "ja_JP.UTF-8"}) {
            ScopedVariable const locale("LC_ALL", language);
            CFRelease(PDEBundle::CopyLocalizedCFStringFromFile(CFSTR("OK"), CFSTR("Dialogs")));
        }
    }

    static ControlRef ControlIn(WindowRef window, OSType signature, std::int32_t id = 0) {
        ControlID const identifier = {signature, id};
        ControlRef control = nullptr;
        GetControlByID(window, &identifier, &control);
        return control;
    }
    static ControlView ViewOf(ControlRef control) {
        ControlView view;
        EXPECT_TRUE(DescribeControl(control, &view));
        return view;
    }
    static WindowView ViewOf(WindowRef window) {
        WindowView view;
        EXPECT_TRUE(DescribeWindow(window, &view));
        return view;
    }
};
