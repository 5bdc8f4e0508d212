// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/JobTicket.h"

#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterInfoTicket.h"
#include "tests/VelonFeatures/Project/Core/TestSession.h"

namespace {

TEST(JobTicketTest, ASessionNumberIsThereAndNotZero) {
    TestSession session;
    JobTicket ticket(session.Get());
    for (std::int32_t const number : {5, -1, 0}) {
        PMSessionSetTicket(session.Get(), CFSTR("Number"), number);
        long stored = 77;
        EXPECT_EQ(number == 0 ? -30875 : noErr, ticket.Get(CFSTR("Number"), stored));
        EXPECT_EQ(number == 0 ? 77 : number, stored);
    }
    long value = 0;
    PMSessionSetDataInSession(session.Get(), CFSTR("Number"), CFSTR("12"));
    EXPECT_EQ(-30875, ticket.Get(CFSTR("Number"), value)) << "a text";
    EXPECT_EQ(-30875, ticket.Get(CFSTR("Nothing"), value));
}

TEST(JobTicketTest, ANumberIsClampedAndOfItsOwnType) {
    TestSession session;
    JobTicket ticket(session.Get());
    EXPECT_EQ(noErr, ticket.Set(CFSTR("client"), CFSTR("N"), 3000000000L, false));
    CFStringRef text = nullptr;
    long number = 0;
    EXPECT_EQ(noErr, ticket.GetInt(CFSTR("N"), number));
    EXPECT_EQ(2147483647, number) << "numbers have 32 bits";
    EXPECT_NE(noErr, ticket.Get(CFSTR("N"), text)) << "another type";
    EXPECT_EQ(nullptr, text);
    EXPECT_EQ(noErr, ticket.Release(CFSTR("N")));
    EXPECT_NE(noErr, ticket.GetInt(CFSTR("N"), number));
    EXPECT_EQ(0, number);
}

TEST(JobTicketTest, ValidityIsEachClassesOwn) {
    EXPECT_FALSE(JobTicket(static_cast<PMPrintSession>(nullptr)).IsValid());
    EXPECT_TRUE(JobTicket(CFSTR("name")).IsValid());
    TestSession session;
    session.RemoveTicket("PMPrinterInfoTicket");
    PrinterInfoTicket info(session.Get());
    EXPECT_FALSE(info.IsValid()) << "the print settings don't stand in for it";
    EXPECT_EQ(nullptr, info.GetMakeAndModelName());
    EXPECT_TRUE(PrintSettingsTicket(session.Get()).IsValid());
    session.RemoveTicket("PMPrintSettingsTicket");
    EXPECT_FALSE(PrintSettingsTicket(session.Get()).IsValid());
    JobTicket ticket(session.Get());
    EXPECT_TRUE(ticket.IsValid());
    CFStringRef text = CFSTR("former");
    EXPECT_EQ(-30891, ticket.Get(CFSTR("S"), text));
    EXPECT_EQ(nullptr, text);
    EXPECT_EQ(-30891, ticket.Set(CFSTR("client"), CFSTR("N"), 1L, false));
    EXPECT_EQ(-30891, ticket.Release(CFSTR("N")));
}

TEST(PrinterInfoTicketTest, EachAccessorReadsItsOwnKey) {
    TestSession session;
    PrinterInfoTicket info(session.Get());
    struct {
        char const* key;
        CFStringRef (PrinterInfoTicket::*get)();
    } const texts[] = {
        {"PMMakeAndModelName", &PrinterInfoTicket::GetMakeAndModelName},
        {"PMPrinterLongName", &PrinterInfoTicket::GetFullPrinterTypeName},
        {"PMPrinterAddress", &PrinterInfoTicket::GetPrinterAddress},
        {"PMDescriptionFile", &PrinterInfoTicket::PPDFile},
        {"PMColorDeviceID", &PrinterInfoTicket::GetColorDeviceUUID},
    };
    for (auto const& row : texts) {
        session.RemoveInfo(row.key);
        EXPECT_EQ(nullptr, (info.*row.get)()) << row.key;
        EXPECT_NE(noErr, info.InfoStatus());
        session.SetInfo(row.key, row.key);
        EXPECT_EQ(row.key, Text((info.*row.get)()));
        EXPECT_EQ(noErr, info.InfoStatus());
    }
    EXPECT_FALSE(info.SupportColor());
    PMTicketSetItem(session.Info(), CFSTR("test"),
                    CFSTR("com.apple.print.PrinterInfo.PMSupportsColor"), kCFBooleanTrue, false);
    EXPECT_TRUE(info.SupportColor());
    EXPECT_FALSE(info.SupportCopies());
}

TEST(PrinterInfoTicketTest, PostscriptVersionTakesWhatIsThere) {
    TestSession session;
    PrinterInfoTicket info(session.Get());
    long level = 7;
    long revision = 7;
    CFStringRef version = nullptr;
    EXPECT_FALSE(info.PostscriptVersion(&level, &version, &revision));
    EXPECT_EQ(7, level);
    PMTicketSetSInt32(info.Ticket(), CFSTR("test"),
                      CFSTR("com.apple.print.PrinterInfo.PMPostScriptLevel"), 3, false);
    session.SetInfo("PMPSRevision", "no number");
    EXPECT_TRUE(info.PostscriptVersion(&level, nullptr, &revision));
    EXPECT_EQ(3, level);
    EXPECT_EQ(-1, revision);
    EXPECT_FALSE(info.PostscriptVersion(nullptr, &version, nullptr));
    EXPECT_EQ(0, info.MemoryInstalled());
}

}  // namespace
