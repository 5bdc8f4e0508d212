// SPDX-License-Identifier: Apache-2.0
#include <string>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "constraints/UIConstraints.h"
#include "tests/PPDLines.h"

namespace {

std::string ValueOf(ZUBPPD& ppd, char const* keyword) {
    CFRef<CFStringRef> const value(ControlOf(ppd, keyword)->CopyCurrentControlValueString());
    char text[64] = "";
    CFStringGetCString(value, text, sizeof text, kCFStringEncodingASCII);
    return text;
}

std::string const kPrintSize =
    PPDLines::Popup("*ZUPrintSize", {"SameAsPageSize", "A4", "A3", "CustomPrintSize"});
std::string const kRules =
    "*UIConstraints: *ZUStapler On *ZUPrintSize A3\n"
    "*UIConstraints: *ZUFold Half *ZUPrintSize CustomPrintSize\n"
    "*UIConstraints: *ZUPunch On *ZUPrintSize SameAsPageSize\n";

}  // namespace

TEST(PrintSizeRuleTest, TheRealSizeStandsInForTheLengthOfAQuestion) {
    PPDPtr const ppd =
        ParseBody(kPrintSize + PPDLines::Popup("*PageSize", {"A4", "A3", "A6"}) + kRules);
    auto* const pageSize = ControlOf<PPDXPopupControl>(*ppd, "*PageSize");
    EXPECT_FALSE(ppd->IsKVConstrained("*ZUStapler", "On"));
    pageSize->SetCurrentControlWithCFString(CFSTR("A3"));
    EXPECT_TRUE(ppd->IsKVConstrained("*ZUStapler", "On"));
    EXPECT_FALSE(ppd->IsKVConstrained("*ZUFold", "Half"));
    EXPECT_FALSE(ppd->IsKVConstrained("*ZUPunch", "On"));
    EXPECT_EQ(ValueOf(*ppd, "*ZUPrintSize"), "SameAsPageSize");
    // The form by ids asks the store as it stands.
    CStringSoup const& texts = ppd->GetUIConstraints()->GetConstraintStrings();
    EXPECT_FALSE(ppd->IsKVConstrained(texts.Find("*ZUStapler"), texts.Find("On")));
    EXPECT_TRUE(ppd->IsKVConstrained(texts.Find("*ZUPunch"), texts.Find("On")));

    ppd->SetCustomPaper(true);
    EXPECT_FALSE(ppd->IsKVConstrained("*ZUStapler", "On"));
    EXPECT_TRUE(ppd->IsKVConstrained("*ZUFold", "Half"));
    EXPECT_EQ(ValueOf(*ppd, "*ZUPrintSize"), "SameAsPageSize");

    ppd->SetCustomPaper(false);
    pageSize->SetCurrentControlWithCFString(CFSTR("A6"));  // no print size of this name
    EXPECT_TRUE(ppd->IsKVConstrained("*ZUPunch", "On"));

    ControlOf(*ppd, "*ZUPrintSize")->SetCurrentControlWithCFString(CFSTR("A3"));
    EXPECT_TRUE(ppd->IsKVConstrained("*ZUStapler", "On"));
    EXPECT_EQ(ValueOf(*ppd, "*ZUPrintSize"), "A3");
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
