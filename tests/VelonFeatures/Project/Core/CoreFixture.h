// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "platform/Testing.h"
#include "tests/Surroundings.h"
#include "tests/VelonFeatures/Project/Core/TestSession.h"
#include "twoway/ZUBTolvanePrinterPList.h"

// A session, the built bundle, a home folder without anything in it, and a process that is as it
// was before the first dialog.
class CoreFixture : public testing::Test {
  protected:
    using Texts = std::vector<std::string>;
    struct ReleasePPD {
        void operator()(ZUBPPD* ppd) const { ppd->Release(); }
    };
    using PPDPtr = std::unique_ptr<ZUBPPD, ReleasePPD>;

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
    static PPDXControl* ControlOf(ZUBPPD& ppd, char const* keyword) {
        return FindAnyControl(&ppd, keyword);
    }
    // "(null)" without such a control, and for one without a value.
    static std::string ValueOf(ZUBPPD& ppd, char const* keyword) {
        PPDXControl* const control = ControlOf(ppd, keyword);
        CFRef<CFStringRef> const value(
            control == nullptr ? nullptr : control->CopyCurrentControlValueString());
        return Text(value);
    }
    // Gives the printer a record with this block.
    static void SetBlock(std::int32_t block, Texts const& texts) {
        ZUBTolvanePrinterPList records;
        auto const items = std::make_unique<ZUBTolvanePrinterPList::DataItem[]>(texts.size() + 1);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            texts[i].copy(items[i], sizeof(items[i]) - 1);
        }
        EXPECT_TRUE(records.Add(Str("Demo"), Str("address"), true));
        EXPECT_TRUE(records.AddDataBlob(Str("Demo"), static_cast<std::int32_t>(texts.size()), block,
                                        items.get()));
        EXPECT_TRUE(records.Save());
    }
    static Texts Block(std::int32_t block) {
        CFRef<CFMutableArrayRef> const items(CFArrayCreateMutable(nullptr, 0));
        ZUBTolvanePrinterPList().GetDataBlob(CFSTR("Demo"), block, items);
        Texts texts;
        for (CFIndex i = 0; i < CFArrayGetCount(items); ++i) {
            texts.push_back(Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(items, i))));
        }
        return texts;
    }
    static void SetWatermarks(PDEData& data, Texts const& records) {
        data.Watermarks().Replace(records);
    }
    std::unique_ptr<PDEData> MakeData(ZUBPPD* ppd = nullptr) const {
        return std::make_unique<PDEData>(mSession.Get(), ppd, nullptr);
    }
    PPDPtr Parse() const {
        return PPDPtr(new ZUBPPD(FileURL(mSession.PPDPath()), kParseAll, nullptr));
    }
    // Session data over a PPD of the test's own.
    void Open(std::string const& ppd) {
        mData.reset();
        mSession.SetPPD(ppd);
        mPPD = Parse();
        mData = std::make_unique<PDEData>(mSession.Get(), mPPD.get(), nullptr);
        ASSERT_TRUE(mData->IsValid());
    }

    TestSession mSession;
    ScopedVariable const mHome{"HOME", mSession.Path("home").c_str()};
    CFRef<CFBundleRef> mBundle{CFBundleCreate(nullptr, FileURL(ZUB_PLUGIN_DIR, true))};
    PrintSettingsTicket mSettings{mSession.Get()};
    PPDPtr mPPD;
    std::unique_ptr<PDEData> mData;
};
