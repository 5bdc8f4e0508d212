// SPDX-License-Identifier: Apache-2.0
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "constraints/UIConstraints.h"
#include "tests/PPDLines.h"

namespace {

std::string const kPrintSize = PPDLines::Popup("*ZUPrintSize", {"SameAsPageSize", "A3"});
std::string const kRules =
    "*UIConstraints: *ZUStapler On *ZUPrintSize A3\n"
    "*UIConstraints: *ZUPunch On *ZUPrintSize SameAsPageSize\n";

}  // namespace

TEST(ValueByKeyTest, FindsExactlyThisKeywordOfAtMostFortyASCIICharacters) {
    std::string const longest = "*" + std::string(39, 'k');
    std::string const tooLong = longest + "k";
    PPDPtr const ppd = ParseBody(
        PPDLines::Popup("*Duplex", {"None", "Long"}) + PPDLines::Popup(longest, {"a", "b"}) +
        PPDLines::Popup(tooLong, {"a", "b"}) + PPDLines::Popup("*H\xF6he", {"a", "b"}));
    ASSERT_NE(ControlOf(*ppd, tooLong.c_str()), nullptr);
    ASSERT_NE(ControlOf(*ppd, "*H\xF6he"), nullptr);
    EXPECT_EQ(ppd->GetPPDXControlForKey(CFSTR("*Duplex")), ControlOf(*ppd, "*Duplex"));
    EXPECT_EQ(ppd->GetPPDXControlForKey(Str(longest)), ControlOf(*ppd, longest.c_str()));
    std::string const umlaut = "*H\u00F6he";
    for (std::string const& key : {tooLong, umlaut, std::string("*Dup"), std::string("*duplex"),
                                   std::string("*Duplex "), std::string()}) {
        CFRef<CFStringRef> const string = Str(key);
        EXPECT_EQ(ppd->GetPPDXControlForKey(string), nullptr) << key;
        EXPECT_EQ(ppd->CopyValueForKey(string), nullptr) << key;
        ppd->SetValueForKey(string, CFSTR("b"));
    }
    EXPECT_EQ(ppd->GetPPDXControlForKey(nullptr), nullptr);
    EXPECT_EQ(ValueOf(*ppd, tooLong.c_str()), "a");
    EXPECT_EQ(ValueOf(*ppd, "*H\xF6he"), "a");

    ppd->SetValueForKey(CFSTR("*Duplex"), CFSTR("Long"));
    ppd->SetValueForKey(CFSTR("*Duplex"), nullptr);
    CFRef<CFStringRef> const value(ppd->CopyValueForKey(CFSTR("*Duplex")));
    EXPECT_EQ(Text(value), "Long");
}

TEST(AllValuesTest, GoThroughADictionaryAndLeaveWhatIsInstalledAlone) {
    std::string installed = PPDLines::Popup("*Tray", {"None", "Two"});
    installed.insert(installed.find('\n') + 1,
                     "*%ZUBGroup *Tray: ZUPPInstallableOptions/Installed\n");
    std::string const ppdText =
        std::string(kTree) +
        "*%ZUBGroupName ZUPPInstallableOptions/Installed: True\n"
        "*%ZUBParent ZUPPInstallableOptions/Pane1: True|Rolldown\n" +
        installed + PPDLines::Popup("*Duplex", {"None", "Long"}) +
        PPDLines::Popup("*H\xF6he", {"a", "b"}) + PPDLines::Boolean("*Fold") +
        "*%ZUBFlags *Void:\n*OpenUI *Void/V: PickOne\n*Void a/A: \"\"\n*CloseUI\n";
    PPDPtr const source = ParseBody(ppdText);
    PPDPtr const target = ParseBody(ppdText);
    char const* const keywords[] = {"*Tray", "*Duplex", "*H\xF6he", "*Fold"};
    CFStringRef const values[] = {CFSTR("Two"), CFSTR("Long"), CFSTR("b"), CFSTR("True")};
    for (std::size_t i = 0; i < std::size(keywords); ++i) {
        ControlOf(*source, keywords[i])->SetCurrentControlWithCFString(values[i]);
    }
    ASSERT_TRUE(ControlOf(*source, "*Tray")->IsInstallableOption());
    DisplayOptionsScope const all(kDisplayAll);
    CFRef<CFDictionaryRef> const choices(source->CopyAllValues());
    EXPECT_EQ(CFDictionaryGetCount(choices), 4);  // *Void has no value
    CFTypeRef const tray = CFDictionaryGetValue(choices, CFSTR("*Tray"));
    EXPECT_EQ(Text(static_cast<CFStringRef>(tray)), "Two");
    target->SetAllValues(nullptr);
    target->SetAllValues(choices);
    EXPECT_EQ(ValueOf(*target, "*Tray"), "None");
    for (std::size_t i = 1; i < std::size(keywords); ++i) {
        EXPECT_EQ(ValueOf(*target, keywords[i]), Text(values[i])) << keywords[i];
    }
}

TEST(AllValuesTest, ComeFromWhatAWalkShowsAndOnlyTextsAreTaken) {
    PPDPtr const ppd = ParseBody(PPDLines::Popup("*Duplex", {"None", "Long"}));
    CFRef<CFDictionaryRef> const shown(ppd->CopyAllValues());
    EXPECT_EQ(CFDictionaryGetCount(shown), 0);  // an orphan
    DisplayOptionsScope const all(kDisplayAll);
    CFRef<CFMutableDictionaryRef> const values(CFDictionaryCreateMutable(nullptr, 0));
    CFDictionarySetValue(values, CFSTR("*Duplex"), shown);
    CFDictionarySetValue(values, CFSTR("*Unknown"), CFSTR("Long"));
    ppd->SetAllValues(values);
    EXPECT_EQ(ValueOf(*ppd, "*Duplex"), "None");
    PPDPtr const empty(new ZUBPPD(kParseAll));
    empty->SetAllValues(values);
    EXPECT_EQ(CFDictionaryGetCount(CFRef<CFDictionaryRef>(empty->CopyAllValues())), 0);
}

TEST(PrintSizeRuleTest, TheRealSizeStandsInForTheLengthOfAQuestionByTexts) {
    PPDPtr const ppd = ParseBody(kPrintSize + PPDLines::Popup("*PageSize", {"A3", "A6"}) + kRules);
    EXPECT_TRUE(ppd->IsKVConstrained("*ZUStapler", "On"));
    EXPECT_FALSE(ppd->IsKVConstrained("*ZUPunch", "On"));
    EXPECT_EQ(ValueOf(*ppd, "*ZUPrintSize"), "SameAsPageSize");
    // The form by ids asks the store as it stands.
    CStringSoup const& texts = ppd->GetUIConstraints()->GetConstraintStrings();
    EXPECT_FALSE(ppd->IsKVConstrained(texts.Find("*ZUStapler"), texts.Find("On")));
    EXPECT_TRUE(ppd->IsKVConstrained(texts.Find("*ZUPunch"), texts.Find("On")));
}

TEST(PrintSizeRuleTest, WithoutAPageSizeTheQuestionStandsAsItIs) {
    for (std::string const& pageSize :
         {std::string(),
          std::string("*%ZUBFlags *PageSize:\n*OpenUI *PageSize/P: PickOne\n*PageSize A3/A3: "
                      "\"\"\n*CloseUI\n")}) {
        PPDPtr const ppd = ParseBody(kPrintSize + pageSize + kRules);
        EXPECT_TRUE(ppd->IsKVConstrained("*ZUPunch", "On"));
        EXPECT_FALSE(ppd->IsKVConstrained("*ZUStapler", "On"));
    }
}
