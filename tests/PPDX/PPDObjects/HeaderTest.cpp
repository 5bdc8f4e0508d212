// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"

namespace {

using Errors = std::vector<std::string>;

CFRef<CFMutableArrayRef> Names(std::vector<char const*> const& texts) {
    CFRef<CFMutableArrayRef> names(CFArrayCreateMutable(nullptr, 0));
    for (char const* text : texts) {
        CFArrayAppendValue(names, CFStringConstant(text));
    }
    return names;
}

}  // namespace

TEST(HeaderTest, OnlyVersion43IsAccepted) {
    struct Case {
        char const* text;
        bool valid;
    };
    for (Case const& row : std::vector<Case>{{"*PPD-Adobe: \"4.3\"\n", true},
                                             {"*PPD-Adobe:\r\n\"4.3\"\r\n", true},
                                             {"*PPD-Adobe: \"4.2\"\n", false},
                                             {"*PPD-Adobe: \"4.3.1\"\n", false},
                                             {"*PPD-Adobe: 4.3\n", false},
                                             {"*PPD-adobe: \"4.3\"\n", false},
                                             {"%PDF-1.4\n", false}}) {
        PPDPtr const ppd = ParseBytes(row.text);
        EXPECT_EQ(ppd->IsValidPPD(), row.valid) << row.text;
        Errors expected{"28!", "25", "26", "27"};
        EXPECT_EQ(ErrorsOf(*ppd), Errors(expected.begin() + row.valid, expected.end()));
    }
}

TEST(HeaderTest, FileThatCannotBeReadIsError18) {
    CFRef<CFURLRef> const missing(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<std::uint8_t const*>("/nowhere/x.ppd"), 14, false));
    PPDPtr const absent(new ZUBPPD(missing, kParseAll, nullptr));
    EXPECT_EQ(ErrorsOf(*absent).front(), "18!");
    EXPECT_FALSE(absent->IsValidPPD());
    EXPECT_EQ(ErrorsOf(*ParseBytes("")).front(), "18!");
}

TEST(HeaderTest, TextsAreStoredAndRepeatedKeywordsReplace) {
    PPDPtr const ppd = ParseBytes(
        "*PPD-Adobe: \"4.3\"\n*PCFileName: \"A.PPD\"\n*FormatVersion: \"4.3\"\n"
        "*FileVersion: \"1.0\"\n*FileVersion: \"2.0\"\n*FileVersion: \"\"\n"
        "*LanguageVersion:  English \n*LanguageEncoding: ISOLatin1\n*ModelName: \"M 1\"\n"
        "*APDialogExtension: \"/x\"\n*%ZUFileVersion: 7 \n*%ZUVersion:\t4.4\n *ModelName: "
        "\"no\"\n");
    EXPECT_STREQ(ppd->PCFileName(), "A.PPD");
    EXPECT_STREQ(ppd->FileVersion(), "2.0");
    EXPECT_STREQ(ppd->LanguageVersion(), "English");
    EXPECT_STREQ(ppd->LanguageEncoding(), "ISOLatin1");
    EXPECT_STREQ(ppd->ModelName(), "M 1");
    EXPECT_STREQ(ppd->PathToPDE(), "/x");
    EXPECT_STREQ(ppd->ZUFileVersion(), "7");
    EXPECT_STREQ(ppd->ZUVersion(), "4.4");
    EXPECT_TRUE(ppd->IsValidPPD());
}

TEST(HeaderTest, PCFileNameDecidesWhetherAFileIsParsed) {
    struct Case {
        std::string text;
        std::vector<char const*> names;
        bool accepted;
    };
    std::string const padding(4100, '#');
    std::vector<Case> const cases = {
        {"*PCFileName: \t\"ZUBX.PPD\"\n", {"OTHER", "ZUB"}, true},
        {"*PCFileName: \"ZUBX.PPD\"\n", {"\"ZUB"}, true},
        {"*PCFileName: \"zubx.ppd\"\n", {"ZUB"}, false},
        {"*PCFileName: \"ZUBX.PPD\"\n", {}, false},
        {"*FileVersion: \"ZUB\"\n", {"ZUB"}, false},
        {"*PCFileName:" + std::string(20, ' ') + "\"" + std::string(28, 'x') + "ZUB\"",
         {"ZUB"},
         true},
        {"*PCFileName: \"" + std::string(29, 'x') + "ZUB\"", {"ZUB"}, false},
        {padding + "\n*PCFileName: \"ZUB\"\n", {"ZUB"}, false},
        {std::string(4055, ' ') + "*PCFileName:", {"ZUB"}, false},
    };
    for (Case const& row : cases) {
        PPDPtr const ppd =
            ParseBytes("*PPD-Adobe: \"4.3\"\n" + row.text, kParseAll, Names(row.names));
        EXPECT_EQ(ppd->IsValidPrinterName(), row.accepted) << row.text;
        EXPECT_EQ(ppd->GetControls() != nullptr, row.accepted);
    }
    EXPECT_TRUE(ParseBytes("*PPD-Adobe: \"4.3\"\n")->IsValidPrinterName());
}

TEST(HeaderTest, FirstErrorOfAnyKindEndsAParseThatAllowsNone) {
    TemporaryFile const file(std::string(kHeader) + "*%ZUBPropPage\n*%ZUBGroupName\n");
    PPDPtr const ppd(new ZUBPPD(file.URL(), kParseAll, nullptr));
    EXPECT_TRUE(ppd->IsValidPPD());
    ppd->AllErrorsFatal(true);
    EXPECT_FALSE(ppd->IsValidPPD());
    ppd->Parse();
    EXPECT_EQ(ErrorsOf(*ppd), (Errors{"4", "12", "25", "26", "27", "4"}));

    // Also one that the reader adds in the middle of a block.
    TemporaryFile const skipped(std::string(kHeader) +
                                "*%ZUBFlags *S:\n*OpenUIZUB *S/S: PickOne\n*CloseUIZUB: *S\n"
                                "*%ZUBPropPage\n");
    PPDPtr const strict(new ZUBPPD(skipped.URL(), kParseAll, nullptr));
    strict->AllErrorsFatal(true);
    strict->Parse();
    EXPECT_EQ(ErrorsOf(*strict), (Errors{"34 *S", "4", "25", "26", "27", "34 *S"}));
}

TEST(HeaderTest, LineThatIsTooLongOrHoldsFFEndsTheFileQuietly) {
    for (std::string const& stop : {std::string(255, 'x') + "\n", std::string("a\xFF\n")}) {
        PPDPtr const ppd = ParseBody(stop + "*%ZUBPropPage\n");
        EXPECT_EQ(ErrorsOf(*ppd), (Errors{"25", "26", "27"}));
        EXPECT_TRUE(ppd->IsValidPPD());
    }
    EXPECT_EQ(ErrorsOf(*ParseBody(std::string(254, 'x') + "\n*%ZUBPropPage\n")).front(), "4");
}

TEST(HeaderTest, ReferencesCountFromNone) {
    auto* const ppd = new ZUBPPD(kParseAll);
    ppd->Retain();
    ppd->Retain();
    EXPECT_FALSE(ppd->Release());
    EXPECT_TRUE(ppd->Release());
    EXPECT_TRUE((new ZUBPPD(kParseAll))->Release());
}

TEST(HeaderTest, ConstructionPutsTheDisplayOptionBack) {
    DisplayOptionsScope const all(kDisplayAll);
    PPDPtr const ppd(new ZUBPPD(kParseAll));
    EXPECT_EQ(ZUBPPD::Options(), kDisplayPlacedAndVisible);
}
