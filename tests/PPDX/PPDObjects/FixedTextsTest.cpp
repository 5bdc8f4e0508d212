// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "ZUBUtils/PPDUtils/HexLanguageExceptions.h"

TEST(FixedTextsTest, EveryErrorOfTheReaderHasItsText) {
    std::map<short, std::string> const texts = {
        {1, "There is not enough memory for the options of this printer."},
        {4, "A property page has no name."},
        {5, "A group has no keyword, or no option block follows it."},
        {6, "A job note has no keyword, or its keyword is not the announced one."},
        {7, "A range of values is not well-formed."},
        {8, "An option block opens without a keyword."},
        {9, "A state of a switch is neither True nor False."},
        {10, "The file ends inside an extended option block."},
        {11, "An option list has two defaults, or the file ends inside it."},
        {12, "A group name is missing."},
        {14, "An element names a parent that does not exist."},
        {15, "An element lacks its name or the name of its parent."},
        {16, "An option is announced without a keyword, or no option block follows it."},
        {18, "The printer description file can't be opened or read."},
        {19, "A shortcut has no valid keyword, or leads to no option."},
        {21, "An option belongs to no group."},
        {23, "An option, group name or property page is there twice."},
        {25, "The printer description has no property page."},
        {26, "The printer description has no group."},
        {27, "The printer description has no option."},
        {28, "The file is not a printer description of format version 4.3."},
        {29, "An option has no place on a property page."},
        {31, "An option block is of no known type."},
        {32, "A job note uses a flag that is not available."},
        {33, "An option has no default."},
        {34, "An extended option block was passed over."},
        {35, "A range of values has no PostScript code."},
        {36, "A constraint names only one option."},
    };
    for (short code = -1; code < 40; ++code) {
        PPDXErrorObj error(code, false);
        char const* const text = error.Description();
        auto const expected = texts.find(code);
        EXPECT_EQ(text != nullptr, expected != texts.end()) << code;
        EXPECT_TRUE(text == nullptr || text == expected->second) << code << text;
    }
}

TEST(FixedTextsTest, ShortcutsMayNameAllButThirtyKeywords) {
    std::string const reserved =
        "*ZUChromVale *ZU_PROP_COLORMODE *ZU_PROP_CV_PURE_BLACK *ZU_PROP_CV_OVER_PRINT "
        "*ZU_PROP_CV_RGB_SEPARATION *ZU_PROP_CV_SOURCE_PROFILES *ZU_PROP_CV_SIMULATION "
        "*ZU_PROP_CV_SPOTCOLORS *ZU_PROP_CV_OUTPUT_PROFILE *ZU_PROP_CV_SIM_SPEED "
        "*ZU_PROP_CV_COLOR_SMART *ZU_PROP_CV_GAMMA *ZU_PROP_CV_WHITEPOINT *ZU_PROP_CV_PHOSPHORS "
        "*ZU_PROP_CV_CRD *ZU_PROP_CV_CRD_IMAGES *ZU_PROP_CV_CRD_GRAPHICS *ZU_PROP_CV_CRD_TEXT "
        "*ZU_PROP_CV_CRD_IMAGES_HT *ZU_PROP_CV_CRD_GRAPHICS_HT *ZU_PROP_CV_CRD_TEXT_HT "
        "*ZU_LOCAL_PROP_FIRSTPAGESOURCE *ZU_LOCAL_PROP_FIRSTPAGEMEDIA "
        "*ZU_LOCAL_PROP_BACKPAGESOURCE *ZU_LOCAL_PROP_BACKPAGEMEDIA "
        "*ZU_PROP_WATERMARK_FIRSTPAGEONLY *ZU_PROP_WATERMARK_FOREGROUND "
        "*ZU_PROP_WATERMARK_OUTLINE *ZU_PROP_WATERMARK *ZU_PROP_LOCAL_ZULANDSCAPE ";
    int count = 0;
    for (std::size_t at = 0; at < reserved.size(); ++count) {
        std::size_t const end = reserved.find(' ', at);
        std::string const keyword = reserved.substr(at, end - at);
        at = end + 1;
        EXPECT_FALSE(PPDXControl::ValidKeyword(keyword.c_str())) << keyword;
        EXPECT_TRUE(PPDXControl::ValidKeyword((keyword + "X").c_str())) << keyword;
        EXPECT_TRUE(PPDXControl::ValidKeyword(keyword.c_str() + 1)) << keyword;
    }
    EXPECT_EQ(count, 30);
}

TEST(FixedTextsTest, TheseLanguagesKeepTheEncodingOfTheirPPD) {
    HexLanguageExceptions const languages;
    for (char const* name : {"Japanese", "ChineseTrad", "ChineseSimp", "Chinese", "Korean", "Czech",
                             "Russian", "Bulg", "Estonian", "Greek", "Hungarian", "Latvian",
                             "Lithuanian", "Polish", "Romanian", "Slovak", "Slovenian"}) {
        EXPECT_TRUE(languages.IsException(name)) << name;
        EXPECT_FALSE(languages.IsException(std::string(name) + " ")) << name;
    }
    for (char const* name : {"", "English", "German", "French", "Turkish", "Croatian", "Bulgarian",
                             "Thai", "Arabic", "Hebrew", "Norwegian", "czech"}) {
        EXPECT_FALSE(languages.IsException(name)) << name;
    }
}

TEST(ErrorsTest, AListIsWalkedInItsOrderAndAnErrorCarriesItsKeyword) {
    PPDXErrors errors;
    EXPECT_EQ(errors.Next(), nullptr);
    PPDXErrorObj first(23, false);
    PPDXErrorObj second;
    EXPECT_EQ(second.Keyword(), nullptr);
    second = PPDXErrorObj(11, "*PageSize", true);
    errors.Add(&first);
    errors.Add(&second);
    EXPECT_EQ(FirstError(&errors), &first);
    EXPECT_EQ(NextError(&errors), &second);
    EXPECT_EQ(NextError(&errors), nullptr);
    EXPECT_EQ(ErrorCount(&errors), 2);
    EXPECT_STREQ(GetErrorKeyword(&second), "*PageSize");
    EXPECT_TRUE(IsErrorFatal(&second) && !IsErrorFatal(&first));
}
