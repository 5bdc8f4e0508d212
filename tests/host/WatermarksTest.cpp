// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <fstream>

#include "host/JsonText.h"
#include "platform/CFRef.h"
#include "tests/host/HostFixture.h"
#include "twoway/ZUBTolvanePrinterPList.h"

using nlohmann::json;

namespace {

constexpr char kList[] = "Library/Preferences/ZUB.TolvanePrinterV2.plist";
std::string const kFirst = "-100,20,0,0,255,-,0,-,450,-,-,48,Courier,DRAFT, again";
std::string const kSecond = "0,0,255,0,0,-,1,-,0,-,-,20,Helvetica,Kopie \u20AC";

// Dialogs with a printer's watermarks, the list of printers and the tickets in the test's folder.
class HostWatermarksTest : public HostFixture {
  protected:
    using Texts = std::vector<std::string>;

    Result Print(Texts arguments) const {
        arguments.insert(arguments.begin(), {"print", "--ppd", mPPD, "--pairs"});
        return Run(arguments);
    }
    // And what the plug-in itself says.
    std::string WarningsOf(Texts const& arguments) const {
        testing::internal::CaptureStderr();
        Result const result = Print(arguments);
        return testing::internal::GetCapturedStderr() + result.err;
    }
    // The text of the mark in the job, as hexadecimal digits; empty for no mark.
    static std::string MarkIn(Result const& result) {
        EXPECT_EQ(0, result.status) << result.err;
        std::string const opening = "/Watermark <";
        std::string found;
        for (json const& pair : json::parse(result.out)) {
            std::string const text = pair["text"];
            if (std::size_t const at = text.find(opening); at != text.npos) {
                EXPECT_EQ("", found) << "two of them";
                std::size_t const start = at + opening.size();
                found = text.substr(start, text.find('>', start) - start);
            }
        }
        return found;
    }
    static Texts Block(std::int32_t number) {
        CFRef<CFMutableArrayRef> const items(CFArrayCreateMutable(nullptr, 0));
        ZUBTolvanePrinterPList().GetDataBlob(CFSTR("Demo"), number, items);
        Texts texts;
        for (CFIndex i = 0; i < CFArrayGetCount(items); ++i) {
            texts.push_back(
                JsonText::ToUTF8(static_cast<CFStringRef>(CFArrayGetValueAtIndex(items, i))));
        }
        return texts;
    }
    std::string const mPPD = Write(UniqueName("watermarks-test") + ".ppd", Head() + Duplex());
    std::string const mTickets = PathOf("tickets.plist");
};

TEST_F(HostWatermarksTest, TheRecordTakesWhatIsGivenInThePlaceOfWhatItHas) {
    Print({"--watermark", kFirst, "--watermark", kSecond});
    EXPECT_EQ((Texts{kFirst, kSecond}), Block(1));
    EXPECT_FALSE(ZUBTolvanePrinterPList().getIPEnabled(CFSTR("Demo"))) << "a new record";
    EXPECT_EQ("", MarkIn(Print({"--address", "host.invalid"})));
    EXPECT_EQ("4B6F7069652080", MarkIn(Print({"--select-watermark", "1"})));
    EXPECT_EQ((Texts{kFirst, kSecond}), Block(1));
    EXPECT_EQ("", MarkIn(Print({"--watermark=" + kSecond})));
    EXPECT_EQ(Texts{kSecond}, Block(1));
    EXPECT_TRUE(ZUBTolvanePrinterPList().getIPEnabled(CFSTR("Demo"))) << "the address stays";
}

TEST_F(HostWatermarksTest, AChoiceStaysInTheTicketsAlsoWhileTheRecordLacksIt) {
    auto const print = [this](Texts arguments) {
        arguments.insert(arguments.end(), {"--tickets", mTickets, "--set", "*Duplex=On"});
        Result const result = Print(arguments);
        std::ifstream file(mTickets);
        std::string const tickets{std::istreambuf_iterator<char>(file), {}};
        if (std::size_t const at = tickets.find("/tmp/Velon.temp"); at != tickets.npos) {
            std::filesystem::remove(tickets.substr(at, tickets.find('<', at) - at));
        }
        return result;
    };
    auto const isOnAllPages = [](Result const& result) {
        return result.out.find("waterMarkAllPages true") != result.out.npos;
    };
    std::string const draft = "44524146542C20616761696E";
    std::string const copy = "4B6F7069652080";
    EXPECT_EQ(draft, MarkIn(print({"--watermark", kFirst, "--select-watermark", "0"})));
    EXPECT_EQ(draft, MarkIn(print({})));
    EXPECT_EQ(
        copy,
        MarkIn(print({"--watermark", kFirst, "--watermark", kSecond, "--select-watermark", "1"})));
    EXPECT_EQ("", MarkIn(print({"--watermark", kFirst})));
    EXPECT_EQ("zubprint: warning: the printer has no watermark 1\n",
              WarningsOf({"--tickets", mTickets}));
    EXPECT_EQ(1, print({"--strict"}).status);
    Result const back = print({"--watermark", kFirst, "--watermark", kSecond});
    EXPECT_EQ(copy, MarkIn(back));
    // That one is for the first page alone, the other one and its next record are for all.
    EXPECT_FALSE(isOnAllPages(back));
    EXPECT_FALSE(isOnAllPages(print({"--select-watermark", "9"}))) << "refused";
    EXPECT_TRUE(isOnAllPages(print({"--select-watermark", "0"})));
    EXPECT_EQ("", MarkIn(print({"--select-watermark", "-1"})));
    EXPECT_EQ("", MarkIn(print({})));
}

TEST_F(HostWatermarksTest, WhatAJobCannotHaveIsSaidAndStrictlyRefused) {
    Print({"--watermark", kFirst});
    Result const result = Print({"--select-watermark", "1"});
    EXPECT_EQ("zubprint: warning: the printer has no watermark 1\n", result.err);
    EXPECT_EQ("", MarkIn(result));
    std::string const noFont = "0,0,0,0,0,-,0,-,0,-,-,9,No font,text";
    std::string const strange = "0,0,0,0,0,-,0,-,0,-,-,9,Courier,\u65E5";
    for (Texts const& arguments :
         {Texts{"--select-watermark", "1"},
          Texts{"--select-watermark", "2", "--watermark", kFirst, "--watermark", kSecond},
          Texts{"--select-watermark", "0", "--watermark", noFont},
          Texts{"--select-watermark", "0", "--watermark", strange}}) {
        Texts strictly = arguments;
        strictly.push_back("--strict");
        EXPECT_EQ(1, Print(strictly).status) << arguments.back();
    }
    EXPECT_EQ(Texts{kFirst}, Block(1)) << "nothing is written";
    EXPECT_NE("", MarkIn(Print({"--select-watermark", "1", "--strict", "--watermark", kFirst,
                                "--watermark", kSecond})));
    EXPECT_EQ(2, Print({"--select-watermark", "-2"}).status);
}

TEST_F(HostWatermarksTest, ARecordIsRefusedForWhatCannotBeKeptAndToldForTheRest) {
    std::string const longest = kFirst + std::string(1023 - kFirst.size(), 'x');
    EXPECT_EQ(0, Print({"--watermark", longest}).status);
    EXPECT_EQ(Texts{longest}, Block(1));
    struct {
        std::string record;
        int status;
        char const* said;
    } const cases[] = {
        {longest + "x", 2, "longer than 1023"},
        {"1,2,\xFF", 2, "UTF-8"},
        {"0,0,0,0,0,-,0,-,0,-,-,9,Courier,a\u0085b", 2, "a control character"},
        {"0,0,0,0,0,-,0,-,0,-,-,9,Courier,\uFFFE", 2, "can hold"},
        {"1:2", 2, "can hold"},
        {"0,0,0,0,0,-,0,-,x,-,-,9,Courier,t", 2, "field 8, the angle,"},
        {"0,0,,,300,0,0,-,11,-,0,-,-,9", 0,
         "warning: watermark 1 is left out: it has 12 of the 13"},
        {"0,0,0,0,0,-,0,-,0,-,-,-9,Courier, ", 0, "warning: watermark 1: field 11"},
    };
    for (auto const& [record, status, said] : cases) {
        Result const result = Print({"--watermark", kFirst, "--watermark", record});
        EXPECT_EQ(status, result.status) << record;
        EXPECT_NE(result.err.npos, result.err.find(said)) << result.err;
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
    }
    EXPECT_EQ((Texts{kFirst, std::string(std::rbegin(cases)->record)}), Block(1));
    // One that stands there is told as well, where it is used.
    EXPECT_EQ("", WarningsOf({}));
    std::string const stored = WarningsOf({"--select-watermark", "1"});
    EXPECT_NE(stored.npos, stored.find("warning: watermark 1: field 11")) << stored;
    EXPECT_EQ(1, CountLines(stored)) << stored;
}

TEST_F(HostWatermarksTest, AFileOfRecordsThatIsNoListIsToldAsThat) {
    std::filesystem::create_directories(PathOf("Library/Preferences"));
    Write(kList, "no list");
    std::string const said = WarningsOf({"--select-watermark", "0"});
    EXPECT_NE(said.npos, said.find("can't be read")) << said;
    std::string const written = WarningsOf({"--watermark", kFirst});
    EXPECT_NE(written.npos, written.find(".unread\n")) << written;
}

}  // namespace
