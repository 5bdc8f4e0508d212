// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/PlugInHost.h"
#include "platform/ProcessManager.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

// The jobs that session data puts together. The application that prints is an editor's Preview.
class JobFixture : public CoreFixture {
  protected:
    JobFixture() {
        SetCurrentProcessName("Preview");
        SetMainBundleIdentifier(CFSTR("com.example.editor"));
    }

    // The way to the printer and back.
    void SetTwoWay(bool isOn) {
        EXPECT_TRUE(mData->SetTolvanePrinterCFAddress(nullptr, CFSTR("host"), isOn));
    }
    // What a commit adds.
    TestSession::Pairs Job() {
        ZUBJobTicket ticket(&mSettings, CFSTR("job"));
        EXPECT_EQ(noErr, mData->OutPostscriptData(ticket));
        return TestSession::PairsOf(ticket.List());
    }
    static Texts At(TestSession::Pairs const& pairs, int site) {
        Texts texts;
        for (auto const& [where, text] : pairs) {
            if (where == site) {
                texts.push_back(text);
            }
        }
        return texts;
    }
    // The feature code of a commit behind the name of the application.
    Texts Features() {
        Texts const texts = At(Job(), 81);
        auto const found = std::find(texts.begin(), texts.end(), SourceApplication("PREVIEW"));
        EXPECT_NE(texts.end(), found);
        return found == texts.end() ? Texts() : Texts(found + 1, texts.end());
    }
    // Gives a popup the value, as one more item without code.
    void Give(char const* keyword, std::string const& value) {
        auto* const popup = dynamic_cast<PPDXPopupControl*>(ControlOf(*mPPD, keyword));
        ASSERT_NE(nullptr, popup) << keyword;
        auto item = std::make_unique<_PopupItem>();
        item->mKeyword = new CString(value.c_str());
        popup->AppendPopupItem(item.release());
        EXPECT_TRUE(popup->SetKeywordSelect(value.c_str(), true));
    }

    static std::string SourceApplication(std::string const& name) {
        return "%%BeginFeature: *ZUSourceAppType " + name + "\n\n%%EndFeature\n";
    }
    // The text without code, which ends as soon as the line does.
    static std::string Plain(std::string const& keyword, std::string const& value) {
        return "%%BeginFeature: " + keyword + " " + value + "\n%%EndFeature\n";
    }
    // Option A of a popup, as TestSession makes it.
    static std::string OptionA(std::string const& keyword) {
        return "%%BeginFeature: *" + keyword + " A\n" + keyword + " A\n%%EndFeature\n";
    }
    static std::string Range(std::string const& keyword, std::string const& numbers) {
        return "*%ZUBFlags *" + keyword + ": Dynamic\n*%ZUBGroup *" + keyword +
               ": Finish/Group\n*%ZUBRange *" + keyword + "/Range: (" + numbers + ") \"<*" +
               keyword + ">\"\n";
    }
    static std::string SpecialOption(std::string const& keyword, std::string const& value) {
        return "*%ZUBSpecialOption *" + keyword + ": " + value + "\n";
    }
};
