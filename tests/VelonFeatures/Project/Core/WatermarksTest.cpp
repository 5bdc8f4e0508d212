// SPDX-License-Identifier: Apache-2.0
// A printer's watermarks: their records, the list, and what is kept of them.
#include <climits>
#include <fstream>

#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

namespace {

std::string RecordWith(std::string const& font, std::string const& text) {
    return "1,2,3,4,5,-,0,-,6,-,-,7," + font + "," + text;
}

std::vector<std::int32_t> NumbersOf(ZUBWatermark const& mark) {
    return {mark.XOffset(), mark.YOffset(),       mark.Red(),   mark.Green(),
            mark.Blue(),    mark.FirstPageOnly(), mark.Angle(), mark.FontSize()};
}

TEST(ZUBWatermarkTest, ARecordIsReadFieldByField) {
    using Numbers = std::vector<std::int32_t>;
    struct {
        char const* record;
        Numbers numbers;  // both offsets, three colours, first page, angle, size
        char const* font;
        char const* text;
    } const cases[] = {
        {"-100,20,255,128,0,x,1,x,450,x,x,48,Courier,Copy",
         {-100, 20, 255, 128, 0, 1, 450, 48},
         "Courier",
         "Copy"},
        {"1,2,3,4,5,,1,x,6,7,8,9,10,11,12,13", {1, 2, 3, 4, 5, 0, 7, 10}, "11", "12,13"},
        {",1,2,3,4,5,x,0,x,6,x,x,7,F,,a,,b,", {1, 2, 3, 4, 5, 0, 6, 7}, "F", ",a,,b,"},
        {"1,2,3,4,5,x,true,x,6,x,x,7,F,", {1, 2, 3, 4, 5, 0, 6, 7}, "F", ""},
        {"1,2,3,4,5,x, 1,x,6,x,x,7,F", {1, 2, 3, 4, 5, 0, 6, 7}, "F", ""},
        {" 1,+2,3x,x,,4,5,1,7,8,9", {1, 2, 3, 0, 4, 1, 8, 0}, "", ""},
        {"99999999999,-99999999999", {INT_MAX, INT_MIN, 0, 0, 0, 0, 0, 0}, "", ""},
        {"7", {7, 0, 0, 0, 0, 0, 0, 0}, "", ""},
        {",,,", Numbers(8), "", ""},
        {"", Numbers(8), "", ""},
        {nullptr, Numbers(8), "", ""},
    };
    for (auto const& [record, numbers, font, text] : cases) {
        SCOPED_TRACE(record == nullptr ? "null" : record);
        ZUBWatermark const mark(record);
        EXPECT_EQ(numbers, NumbersOf(mark));
        EXPECT_EQ(font, mark.Font());
        EXPECT_EQ(text, mark.Text());
        EXPECT_STREQ(record == nullptr ? "" : record, mark.Record());
    }
}

TEST(ZUBWatermarkTest, WhatIsTooLongIsCutAtACharactersBorder) {
    auto const text = [](std::string const& given) {
        return ZUBWatermark(RecordWith("F", given).c_str()).Text();
    };
    EXPECT_EQ(std::string(255, 't'), text(std::string(255, 't')));
    for (std::string const character : {"t", "\u00E9", "\u20AC", "\U0001F600"}) {
        for (std::size_t fill = 250; fill < 256; ++fill) {
            std::string const given = std::string(fill, 't') + character + "tttt";
            bool const fits = fill + character.size() <= 255;
            EXPECT_EQ(given.substr(0, fits ? 255 : fill), text(given));
        }
    }
    EXPECT_EQ(std::string(255, '\x80'), text(std::string(300, '\x80'))) << "no character";
    for (std::size_t const length : {63U, 64U}) {
        ZUBWatermark const mark(RecordWith(std::string(length, 'f'), "t").c_str());
        EXPECT_EQ(std::string(63, 'f'), mark.Font());
        EXPECT_EQ(length == 64, mark.IsFontCut());
        EXPECT_EQ("t", mark.Text());
    }
    EXPECT_EQ(std::string(5119, 'r'), ZUBWatermark(std::string(5120, 'r').c_str()).Record());
}

TEST(ZUBWatermarkTest, TheTextBecomesDigitsInTheLanguagesEncodingAndLossesAreTold) {
    struct {
        std::string text;
        char const* language;
        std::string digits;
        char const* warning;  // "" for none
    } const cases[] = {
        {"Copy", "English", "436F7079", ""},
        {"\u00E9\u20AC", "French", "E980", ""},
        {"\u20AC", nullptr, "80", ""},
        {"\u20AC", "ChineseSimp", "80", ""},
        {"\u4E2D\u6587\u20AC\u00A4", "Chinese", "D6D0CEC480A1E8", ""},
        {"\u3042", "Chinese", "80A2", "has a character of whose"},
        {"\u5DE5", "Chinese", "B980", "has a character of whose"},
        {"\u0080\u009F", "English", "809F", "has one of"},
        {"\u65E5\u672C A\uFF71", "Japanese", "93FA967B2041B1", ""},
        {"", "English", "", ""},
        {"\u0160\u0161\u017D\u017E\u0152\u0153\u0178", "Czech", "A6A8B4B8BCBDBE", "has one of"},
        {"a\t\x01z", "English", "61917A", "has a tab"},
        {"ab\u65E5c", "English", "6162", "ends where"},
    };
    for (auto const& [text, language, digits, warning] : cases) {
        testing::internal::CaptureStderr();
        ZUBWatermark mark(RecordWith("F", text).c_str());
        EXPECT_EQ(digits, mark.GetWMTextInHex(language)) << text;
        EXPECT_EQ(digits, mark.GetWMTextInHex("Japanese")) << "made once: " << text;
        std::string const said = testing::internal::GetCapturedStderr();
        std::string const opening = "zubprint: warning: the watermark's text ";
        EXPECT_EQ(*warning == '\0' ? "" : opening + warning,
                  said.substr(0, opening.size() + std::string_view(warning).size()));
        EXPECT_GE(1, std::count(said.begin(), said.end(), '\n')) << said;
    }
}

TEST(WatermarkListTest, WhatARecordLacksIsToldWithItsNumber) {
    struct {
        char const* record;
        char const* told;
    } const cases[] = {
        {"-1,2,0,0,255,-,0,-,-450,-,-,7,~!$&*,t", ""},
        {" 1,+2,3,4,5,-,-,-,6,-,-,7,F,,t", ""},
        {"0,0,0,0,256,-,1,-,0,-,-,9,F,t", "watermark 0: field 4, blue,"},
        {"0,0,0,0,0,-,1,-,4.5,-,-,-9,F,t", "; field 11, the size"},
        {"0,0,0,0,0,-,0,-,0,-,-,0,F,t", "watermark 0 is left out: field 11, the size"},
        {"x,0,0,0,0,-,11,-,0,-,-,9,a b,t",
         "; field 6, the first page alone, isn't 0, 1 or -: '11'; its font"},
        {"0,0,0,0,0,-,0,-,0,-,-,9,F", "watermark 0: it has no text"},
        {"0,0,0,0,0,-,0,-,0,-,-,9,F,  ", "watermark 0: its text is nothing but blanks"},
        {"0,0,,0,0,0,-,0,-,0,-,9", "watermark 0 is left out: it has 11 of the 13 fields"},
        {"", "watermark 0 is left out: it has 0 of the 13"},
    };
    WatermarkList list;
    for (auto const& [record, told] : cases) {
        list.Replace({record});
        std::string const doubts = list.DoubtsOf(0);
        EXPECT_EQ(*told == '\0', doubts.empty()) << doubts;
        EXPECT_NE(doubts.npos, doubts.find(told)) << record << ": " << doubts;
    }
    for (std::size_t const length : {255U, 256U}) {
        list.Replace({RecordWith("F", std::string(length, 't'))});
        EXPECT_EQ(length == 255 ? "" : "watermark 0: its text is cut: it takes 255 bytes",
                  list.DoubtsOf(0));
    }
}

class PrintersWatermarksTest : public CoreFixture {
  protected:
    PrintersWatermarksTest() { mSession.SetPrinter("Demo", nullptr); }

    static Texts Numbered(int count) {
        Texts texts;
        for (int i = 0; i < count; ++i) {
            texts.push_back(std::to_string(i) + ",\u20AC");
        }
        return texts;
    }
    static Texts RecordsOf(PDEData& data) {
        Texts texts;
        for (std::int32_t i = 0; i < data.Watermarks().Count(); ++i) {
            texts.push_back(data.Watermarks().At(i)->Record());
        }
        return texts;
    }
};

TEST_F(PrintersWatermarksTest, TheListIsTheRecordsFirst99AndSavingItLosesNothing) {
    for (int const count : {99, 100}) {
        Texts const records = Numbered(count);
        SetBlock(0, {"*Duplex", "*Sort"});
        SetBlock(1, records);
        auto const data = MakeData();
        EXPECT_TRUE(data->GetWatermarksFromPreferences());
        EXPECT_EQ(Texts(records.begin(), records.begin() + 99), RecordsOf(*data));
        EXPECT_TRUE(data->SaveWatermarksToPreferences());
        EXPECT_EQ(records, Block(1));
        EXPECT_EQ(count == 100, data->WhyNoWatermark(99).find("first 99") != std::string::npos);
        EXPECT_EQ("the printer has no watermark 100", data->WhyNoWatermark(100));
        EXPECT_EQ((Texts{"*Duplex", "*Sort"}), Block(0));
    }
}

TEST_F(PrintersWatermarksTest, NoWatermarksLeaveListAndRecordAsTheyAre) {
    auto const data = MakeData();
    EXPECT_FALSE(data->SaveWatermarksToPreferences());
    SetWatermarks(*data, {"7"});
    EXPECT_TRUE(data->SaveWatermarksToPreferences()) << "a printer without a record";
    EXPECT_EQ(Texts(), Block(1));
    EXPECT_TRUE(data->GetWatermarksFromPreferences());
    EXPECT_EQ(Texts{"7"}, RecordsOf(*data));
    mSession.RemovePrinter();
    EXPECT_FALSE(MakeData()->GetWatermarksFromPreferences());
    EXPECT_FALSE(MakeData()->SaveWatermarksToPreferences());
}

TEST_F(PrintersWatermarksTest, WhatARecordHasNoPlaceForIsCutOrLeftOutWithAWarning) {
    std::string const longRecord = RecordWith("F", std::string(996, 't') + "\u20AC and more");
    std::string const fitting = longRecord.substr(0, 1022);
    SetBlock(1, {"x"});
    auto const data = MakeData();
    SetWatermarks(*data, {longRecord, "1:2", "z"});
    testing::internal::CaptureStderr();
    EXPECT_TRUE(data->SaveWatermarksToPreferences());
    EXPECT_EQ(0U, testing::internal::GetCapturedStderr().find("zubprint: warning: a watermark"));
    EXPECT_EQ((Texts{fitting, "", "z"}), Block(1)) << "each in its place";
    // A file may hold more than anybody writes.
    std::string const path = mSession.Path("home/Library/Preferences/ZUB.TolvanePrinterV2.plist");
    std::string const file = ReadFile(path);
    std::size_t const at = file.find(fitting);
    std::ofstream(path, std::ios::binary)
        << file.substr(0, at) << longRecord << file.substr(at + fitting.size());
    auto const next = MakeData();
    EXPECT_TRUE(next->GetWatermarksFromPreferences());
    EXPECT_EQ((Texts{fitting, "", "z"}), RecordsOf(*next));
}

}  // namespace
