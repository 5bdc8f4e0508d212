// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PrinterAccess.h"

#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

namespace {

class PrinterAccessTest : public CoreFixture {};

TEST_F(PrinterAccessTest, AConnectionIsToldByItsSchemeAlone) {
    using Connection = bool (*)(PMPrintSession);
    Connection const tests[] = {isUSBPrinterConnection, isAppleTalkPrinterConnection,
                                isBonjourPrinterConnection, isIPPrinterConnection};
    struct {
        char const* uri;
        int kind;
    } const cases[] = {{"usb://ZUB/Demo", 0}, {"pap://zone/Demo", 1}, {"mdns://Demo._ipp/", 2},
                       {"ipp://host/q", 3},   {"ipps://host/q", -1},  {"socket://host", -1}};
    for (auto const& row : cases) {
        mSession.SetPrinter("Demo", nullptr, row.uri);
        for (int kind = 0; kind < 4; ++kind) {
            EXPECT_EQ(kind == row.kind, tests[kind](mSession.Get())) << row.uri << kind;
        }
    }
    mSession.RemovePrinter();
    EXPECT_FALSE(isIPPrinterConnection(mSession.Get()));
    EXPECT_EQ(nullptr, GetCurrentPrinterName(mSession.Get()));
}

TEST_F(PrinterAccessTest, ATicketIsANumberInTheSession) {
    PMTicketRef ticket = 0;
    EXPECT_EQ(noErr, MyGetTicket(mSession.Get(), CFSTR("PMPageFormatTicket"), &ticket));
    EXPECT_EQ(mSession.PageFormat(), ticket);
    PMSessionSetDataInSession(mSession.Get(), CFSTR("Text"), CFSTR("12"));
    EXPECT_EQ(-30889, MyGetTicket(mSession.Get(), CFSTR("Text"), &ticket));
    EXPECT_EQ(0, ticket);
    EXPECT_NE(noErr, MyGetTicket(mSession.Get(), CFSTR("None"), &ticket));
}

TEST_F(PrinterAccessTest, TheFirstBundleFoundServesAllIdentifiers) {
    EXPECT_EQ(nullptr, MyGetBundle(CFSTR("com.example.none")));
    EXPECT_EQ(mBundle.Get(), MyGetBundle(GetBundleID()));
    EXPECT_EQ(mBundle.Get(), MyGetBundle(CFSTR("com.example.none")));
    CFRef<CFURLRef> const contents(CreatePDEContentsURL(CFSTR("com.example.none")));
    std::uint8_t path[512];
    ASSERT_TRUE(CFURLGetFileSystemRepresentation(contents, true, path, sizeof(path)));
    EXPECT_TRUE(std::filesystem::exists(reinterpret_cast<char const*>(path) +
                                        std::string("/PrinterList.plist")));
}

TEST_F(PrinterAccessTest, LocalizedTextsFitOrAreEmpty) {
    char text[17] = "former";
    EXPECT_EQ(16, PDEBundle::GetLocalizedString(CFSTR("PDE Panel Title"), text, 17, mBundle));
    EXPECT_STREQ("Printer Features", text);
    EXPECT_EQ(0, PDEBundle::GetLocalizedString(CFSTR("PDE Panel Title"), text, 16, mBundle));
    EXPECT_STREQ("", text);
    CFRef<CFStringRef> const unknown(
        PDEBundle::CopyLocalizedCFStringFromFile(CFSTR("Key"), CFSTR("None"), mBundle));
    EXPECT_EQ("Key", Text(unknown));
}

}  // namespace
