// SPDX-License-Identifier: Apache-2.0
#include "platform/PrintManager.h"

#include "tests/platform/TestSupport.h"

namespace {

class PrintManagerTest : public OwnershipTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(PMCreateSession(&mSession), noErr);
        ASSERT_EQ(PMTicketCreate(CFSTR("com.apple.print.PrintSettingsTicket"), &mTicket), noErr);
        ASSERT_NE(mTicket, 0);
    }
    void TearDown() override {
        PMDisposeSession(mSession);
        PMTicketReleaseAndClear(&mTicket);
        EXPECT_EQ(mTicket, 0);
        OwnershipTest::TearDown();
    }

    PMPrintSession mSession = nullptr;
    PMTicketRef mTicket = 0;
};

TEST_F(PrintManagerTest, PrinterTellsItsNameAndItsURLs) {
    PMPrinter printer = nullptr;
    CFURLRef url = nullptr;
    EXPECT_EQ(PMSessionGetCurrentPrinter(mSession, &printer), kPMNoSuchPrinter);

    auto const ppd = FileURL("/tmp/a.ppd");
    ASSERT_EQ(PMSessionSetCurrentPrinter(mSession, CFSTR("Tolvane 1"), ppd, nullptr), noErr);
    ASSERT_EQ(PMSessionGetCurrentPrinter(mSession, &printer), noErr);
    EXPECT_EQ(Text(PMPrinterGetName(printer)), "Tolvane 1");
    EXPECT_EQ(PMPrinterCopyDescriptionURL(printer, CFSTR("PMPPDDescriptionType"), &url), noErr);
    EXPECT_EQ(url, ppd.Get());
    CFRelease(url);
    EXPECT_NE(PMPrinterCopyDeviceURI(printer, &url), noErr);
    EXPECT_EQ(url, nullptr);
    EXPECT_EQ(PMSessionSetCurrentPrinter(mSession, nullptr, nullptr, nullptr), noErr);
    EXPECT_EQ(PMSessionGetCurrentPrinter(mSession, &printer), kPMNoSuchPrinter);
    EXPECT_EQ(printer, nullptr);
}

TEST_F(PrintManagerTest, TicketKeepsItsOwnCopyOfWhatIsSet) {
    CFRef<CFMutableStringRef> const text(CFStringCreateMutableCopy(nullptr, 0, CFSTR("A4")));
    CFRef<CFMutableArrayRef> const inner(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(inner, text);
    CFRef<CFMutableDictionaryRef> const outer(CFDictionaryCreateMutable(nullptr, 0));
    CFDictionarySetValue(outer, CFSTR("list"), inner);
    ASSERT_EQ(PMTicketSetCFDictionary(mTicket, CFSTR("me"), CFSTR("key"), outer, false), noErr);

    CFStringAppend(text, CFSTR("R"));
    CFArrayAppendValue(inner, kCFBooleanTrue);
    CFDictionaryRemoveValue(outer, CFSTR("list"));

    CFDictionaryRef kept = nullptr;
    ASSERT_EQ(PMTicketGetCFDictionary(mTicket, 0, 0, CFSTR("key"), &kept), noErr);
    auto const* list = static_cast<CFArrayRef>(CFDictionaryGetValue(kept, CFSTR("list")));
    ASSERT_EQ(CFArrayGetCount(list), 1);
    EXPECT_EQ(Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(list, 0))), "A4");
}

TEST_F(PrintManagerTest, TypedReadersRefuseItemsOfAnotherType) {
    auto const client = CFSTR("me");
    CFRef<CFMutableArrayRef> const array(CFArrayCreateMutable(nullptr, 0));
    PMTicketSetSInt32(mTicket, client, CFSTR("number"), -4, false);
    PMTicketSetCFString(mTicket, client, CFSTR("text"), CFSTR("x"), false);
    PMTicketSetCFData(mTicket, client, CFSTR("data"), Data("x"), false);
    PMTicketSetCFArray(mTicket, client, CFSTR("array"), array, false);
    PMTicketSetItem(mTicket, client, CFSTR("truth"), kCFBooleanTrue, false);

    CFStringRef const keys[] = {CFSTR("number"), CFSTR("text"),  CFSTR("data"),
                                CFSTR("array"),  CFSTR("truth"), CFSTR("absent")};
    for (auto const key : keys) {
        auto const expected = [&](CFStringRef own) {
            return key == keys[5] ? kPMKeyNotFound : key == own ? noErr : kPMDataFormatError;
        };
        std::int32_t number = 77;
        EXPECT_EQ(PMTicketGetSInt32(mTicket, 0, 0, key, &number), expected(keys[0]));
        EXPECT_EQ(number, key == keys[0] ? -4 : 0);
        CFStringRef text = key;
        EXPECT_EQ(PMTicketGetCFString(mTicket, 0, 0, key, &text), expected(keys[1]));
        EXPECT_EQ(text != nullptr, key == keys[1]);
        CFDataRef data = nullptr;
        EXPECT_EQ(PMTicketGetCFData(mTicket, 0, 0, key, &data), expected(keys[2]));
        CFArrayRef list = nullptr;
        EXPECT_EQ(PMTicketGetCFArray(mTicket, 0, 0, key, &list), expected(keys[3]));
        EXPECT_EQ(PMTicketGetItem(mTicket, key, 0, 0, nullptr),
                  key == keys[5] ? kPMKeyNotFound : noErr);
    }
    double const large = 1e12;
    CFRef<CFNumberRef> const real(CFNumberCreate(nullptr, kCFNumberFloat64Type, &large));
    PMTicketSetItem(mTicket, client, CFSTR("large"), real, false);
    std::int32_t number = 77;
    EXPECT_EQ(PMTicketGetSInt32(mTicket, 0, 0, CFSTR("large"), &number), kPMDataFormatError);
    EXPECT_EQ(number, 0);
}

TEST_F(PrintManagerTest, LockedItemsCanNeitherBeSetNorReleased) {
    auto const key = CFSTR("copies");
    EXPECT_EQ(PMTicketSetSInt32(mTicket, CFSTR("me"), key, 1, false), noErr);
    EXPECT_EQ(PMTicketSetSInt32(mTicket, CFSTR("me"), key, 2, true), noErr);
    EXPECT_EQ(PMTicketSetSInt32(mTicket, CFSTR("me"), key, 3, false), kPMItemIsLocked);
    EXPECT_EQ(PMTicketReleaseItem(mTicket, key), kPMItemIsLocked);
    std::int32_t value = 0;
    EXPECT_EQ(PMTicketGetSInt32(mTicket, 0, 0, key, &value), noErr);
    EXPECT_EQ(value, 2);

    PMTicketSetSInt32(mTicket, CFSTR("me"), CFSTR("other"), 5, false);
    CFDictionaryRef items = nullptr;
    EXPECT_EQ(PMTicketCopyItems(mTicket, &items), noErr);
    EXPECT_EQ(PMTicketReleaseItem(mTicket, CFSTR("other")), noErr);
    EXPECT_EQ(CFDictionaryGetCount(items), 2);
    CFRelease(items);
}

TEST_F(PrintManagerTest, AReleasedTicketIsUnknown) {
    PMTicketRef other = 0;
    ASSERT_EQ(PMTicketCreate(CFSTR("t"), &other), noErr);
    PMTicketRef const number = other;
    EXPECT_EQ(PMTicketReleaseAndClear(&other), noErr);
    EXPECT_EQ(other, 0);
    EXPECT_EQ(PMTicketReleaseAndClear(&other), kPMInvalidTicket);
    EXPECT_EQ(PMTicketGetItem(number, CFSTR("a"), 0, 0, nullptr), kPMInvalidTicket);
    EXPECT_EQ(PMTicketSetSInt32(number, CFSTR("me"), CFSTR("a"), 1, false), kPMInvalidTicket);
    EXPECT_EQ(PMTicketReleaseItem(number, CFSTR("a")), kPMInvalidTicket);
    CFDictionaryRef items = nullptr;
    EXPECT_EQ(PMTicketCopyItems(number, &items), kPMInvalidTicket);
}

}  // namespace
