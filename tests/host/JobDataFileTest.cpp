// SPDX-License-Identifier: Apache-2.0
#include "host/JobDataFile.h"

#include "tests/host/HostFixture.h"

namespace {

class JobDataFileTest : public HostFixture {
  protected:
    std::string WriteList(std::string const& body) const {
        return Write("job.plist",
                     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body +
                         "</plist>\n");
    }
};

TEST_F(JobDataFileTest, PairsComeBackInOrderWithEveryByte) {
    JobDataFile file;
    // 0x00 0x41 0xFF, and no bytes at all.
    ASSERT_TRUE(ReadJob(WriteList("<array><integer>-9</integer><data>AEH/</data>"
                                  "<integer>81</integer><data></data></array>"),
                        file)
                    .Ok());
    ASSERT_EQ(2U, file.Pairs().size());
    EXPECT_EQ(-9, file.Pairs()[0].site);
    EXPECT_EQ(JobText("\0A\xFF", 3), file.Pairs()[0].text);
    nlohmann::json const expected = {{{"site", -9}, {"text", std::string("\0A\u00FF", 4)}},
                                     {{"site", 81}, {"text", ""}}};
    EXPECT_EQ(expected, nlohmann::json::parse(file.JSON()));
}

TEST_F(JobDataFileTest, AnythingButPairsIsRefused) {
    char const* const cases[] = {
        "<dict/>",
        "<array><integer>81</integer></array>",
        "<array><data>QQ==</data><integer>81</integer></array>",
        "<array><integer>81</integer><string>A</string></array>",
        "<array><integer>99999999999</integer><data>QQ==</data></array>",
        "<array><integer>81</integer><data>QQ==</data>",
    };
    for (char const* const body : cases) {
        JobDataFile file;
        EXPECT_EQ(ExitStatus::kFailed, ReadJob(WriteList(body), file).status) << body;
        EXPECT_TRUE(file.Pairs().empty());
    }
    EXPECT_EQ(ExitStatus::kFailed, JobDataFile().Take(nullptr).status);
}

}  // namespace
