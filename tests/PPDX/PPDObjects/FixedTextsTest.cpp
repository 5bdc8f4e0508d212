// SPDX-License-Identifier: Apache-2.0
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "ZUBUtils/PPDUtils/HexLanguageExceptions.h"

TEST(FixedTextsTest, EveryErrorOfTheReaderHasATextOfItsOwn) {
    std::set<short> const unused = {2, 3, 13, 17, 20, 22, 24, 30};
    std::set<std::string> texts;
    for (short code = -1; code < 40; ++code) {
        PPDXErrorObj error(code, false);
        char const* const text = error.Description();
        EXPECT_EQ(text != nullptr, code > 0 && code < 37 && !unused.contains(code)) << code;
        EXPECT_TRUE(text == nullptr || texts.insert(text).second) << code << text;
    }
    EXPECT_STREQ(PPDXErrorObj(28, true).Description(),
                 "The file is not a printer description of format version 4.3.");
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
    EXPECT_TRUE(PPDXControl::ValidKeyword("*ZUCHROMVALE") && PPDXControl::ValidKeyword(""));
    EXPECT_FALSE(PPDXControl::ValidKeyword(nullptr));
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
