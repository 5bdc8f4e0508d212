// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"

namespace {

TEST(ErrorsTest, EveryCodeOfTheReaderHasATextOfItsOwn) {
    short const codes[] = {1,  4,  5,  6,  7,  8,  9,  10, 11, 12, 14, 15, 16, 18,
                           19, 21, 23, 25, 26, 27, 28, 29, 31, 32, 33, 34, 35, 36};
    std::set<std::string> texts;
    for (short code : codes) {
        PPDXErrorObj error(code, false);
        ASSERT_NE(error.Description(), nullptr) << code;
        EXPECT_TRUE(texts.insert(error.Description()).second) << code;
    }
    for (short code : {short{0}, short{2}, short{37}, short{-1}}) {
        EXPECT_EQ(PPDXErrorObj(code, true).Description(), nullptr) << code;
    }
}

TEST(ErrorsTest, AnErrorCarriesItsKeywordAndFatalFlagThroughACopy) {
    PPDXErrorObj copy;
    EXPECT_EQ(copy.Keyword(), nullptr);
    {
        PPDXErrorObj const error(11, "*PageSize", true);
        copy = error;
    }
    EXPECT_STREQ(GetErrorKeyword(&copy), "*PageSize");
    EXPECT_STREQ(GetErrorDescription(&copy), PPDXErrorObj(11, false).Description());
    EXPECT_TRUE(IsErrorFatal(&copy));
    EXPECT_TRUE(copy == 11);
    EXPECT_EQ(PPDXErrorObj(11, "", false).Keyword(), nullptr);
    EXPECT_FALSE(IsErrorFatal(nullptr));
}

TEST(ErrorsTest, AListIsWalkedInTheOrderOfAdding) {
    PPDXErrors errors;
    EXPECT_TRUE(errors.Empty());
    EXPECT_EQ(errors.Next(), nullptr);
    PPDXErrorObj first(23, false);
    PPDXErrorObj second(23, false);
    errors.Add(&first);
    errors.Add(&second);
    EXPECT_EQ(FirstError(&errors), &first);
    EXPECT_EQ(NextError(&errors), &second);
    EXPECT_EQ(NextError(&errors), nullptr);
    EXPECT_EQ(NextError(&errors), nullptr);
    EXPECT_EQ(ErrorCount(&errors), 2);
    EXPECT_FALSE(ErrorListIsEmpty(&errors));
}

}  // namespace
