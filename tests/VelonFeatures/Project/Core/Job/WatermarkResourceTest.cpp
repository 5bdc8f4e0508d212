// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/WatermarkResource.h"

#include "VelonFeatures/Project/Core/ZUBWatermark.h"
#include "tests/VelonFeatures/Project/Core/Job/JobFixture.h"

namespace {

constexpr char kRecord[] = "100,20,255,128,0,-,0,-,450,-,-,48,Helvetica-Bold,Copy";
// That record on a portrait page in English. Most lines end with a blank, as they must.
std::string const kResource = ReadFile(WATERMARK_RESOURCE);
constexpr char kLatinFont[] =
    " /Encoding ISOLatin1EncodingCopy def currentdict \n"
    " end /Helvetica-Bold-ISOLatin1 exch definefont pop \n"
    " /Font /Helvetica-Bold-ISOLatin1 def \n";
constexpr char kOwnFont[] =
    "                                                    end                               "
    "    \n"
    " /Font /Helvetica-Bold           def \n";

using Changes = std::vector<std::pair<std::string, std::string>>;

std::string With(std::string text, Changes const& changes) {
    for (auto const& [from, to] : changes) {
        std::size_t at = text.find(from);
        EXPECT_NE(text.npos, at) << from;
        for (; at != text.npos; at = text.find(from, at + to.size())) {
            text.replace(at, from.size(), to);
        }
    }
    return text;
}

std::string ResourceOf(std::string const& record, std::int32_t orientation = 1,
                       char const* language = "English") {
    ZUBWatermark mark(record.c_str());
    return WatermarkResource(mark, orientation, language);
}

Changes Landscape(std::string const& name, std::string const& x, std::string const& y) {
    return {{"/" + name + " false", "/" + name + " true"},
            {"/XOffset 100", "/XOffset " + x},
            {"/YOffset 20", "/YOffset " + y}};
}

TEST(WatermarkResourceTest, EachOrientationTurnsTheMarkWithItsPage) {
    struct {
        std::int32_t orientation;
        Changes changes;
    } const cases[] = {
        {0, {}},
        {1, {}},
        {2, Landscape("landscapeDoc", "-20", "100")},
        {3, {}},
        {4, Landscape("invLandscapeDoc", "20", "-100")},
        {5, {}},
    };
    for (auto const& [orientation, changes] : cases) {
        EXPECT_EQ(With(kResource, changes), ResourceOf(kRecord, orientation)) << orientation;
    }
    // The least number has no opposite in 32 bits.
    EXPECT_EQ(With(kResource, Landscape("landscapeDoc", "2147483648", "100")),
              ResourceOf(With(kRecord, {{",20,", ",-2147483648,"}}), 2));
}

TEST(WatermarkResourceTest, TheLanguageDecidesOnTheFontsEncoding) {
    Changes const own = {{kLatinFont, kOwnFont}};
    EXPECT_EQ(With(kResource, own), ResourceOf(kRecord, 1, "Japanese"));
    EXPECT_EQ(With(kResource, own), ResourceOf(kRecord, 1, "Chinese"));
    for (char const* language :
         {"ChineseSimp", "japanese", "", static_cast<char const*>(nullptr)}) {
        EXPECT_EQ(kResource, ResourceOf(kRecord, 1, language));
    }
    EXPECT_EQ(With(kResource, {{kLatinFont, kOwnFont}, {"<436F7079>", "<93FA967B>"}}),
              ResourceOf(With(kRecord, {{"Copy", "\u65E5\u672C"}}), 1, "Japanese"));
}

class WatermarkJobTest : public JobFixture {
  protected:
    // Of what a job has behind its other features; empty for none.
    std::string MarkIn(Texts const& features) const {
        auto const found = std::find_if(features.begin(), features.end(), [](auto const& text) {
            return text.find("Watermark") != text.npos;
        });
        return found == features.end() ? "" : *found;
    }
};

TEST_F(WatermarkJobTest, TheSelectedOneStandsAheadOfTheScale) {
    Open(TestSession::Head() + Range("ZUScale", "0;400;1;85") + TestSession::Popup("ZUOutProfile"));
    SetWatermarks(*mData, {"1", kRecord});
    mData->Watermarks().Select(1);
    Texts const features = Features();
    ASSERT_EQ(3U, features.size());
    EXPECT_EQ(OptionA("ZUOutProfile"), features[0]);
    EXPECT_EQ(kResource, features[1]);
    // The orientation is that of the commit.
    mSession.SetOrientation(4);
    EXPECT_EQ(With(kResource, Landscape("invLandscapeDoc", "20", "-100")), MarkIn(Features()));
}

TEST_F(WatermarkJobTest, OneThatAJobCantHaveIsLeftOutAndToldOnce) {
    Open(TestSession::Head());
    SetWatermarks(*mData,
                  {With(kRecord, {{"Helvetica-Bold", "a b"}}), With(kRecord, {{",48,", ",0,"}})});
    for (std::int32_t const selected : {-1, 0, 1, 2, INT32_MAX}) {
        mData->Watermarks().Select(selected);
        testing::internal::CaptureStderr();
        EXPECT_EQ("", MarkIn(Features()));
        EXPECT_EQ("", MarkIn(Features()));
        std::string const said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(selected < 0 ? 0 : 1, std::count(said.begin(), said.end(), '\n')) << said;
        std::string const number = "watermark " + std::to_string(selected);
        EXPECT_EQ(selected >= 0, said.find((selected > 1 ? "no " : "") + number) != said.npos);
    }
}

TEST_F(WatermarkJobTest, TheServersLimitIsABytesBorder) {
    for (std::size_t const length : {5119U, 5120U}) {
        ZUBJobTicket ticket(&mSettings, CFSTR("job"));
        AddWatermarkResource(ticket, std::string(length, ' '));
        EXPECT_EQ(length == 5119 ? 1U : 0U, TestSession::PairsOf(ticket.List()).size());
    }
}

}  // namespace
