// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"

#include <algorithm>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

void FailNewAfter(long count);  // as in FailingNew.h, whose fixture would meet this one's helpers

namespace {

// Emits `length` bytes.
class FixedControl : public PPDXControl {
  public:
    explicit FixedControl(long length) : mLength(length) {}

    void ResetToDefaultValue() override {}
    long PostScript(unsigned char* out) override {
        if (out != nullptr) {
            std::fill_n(out, mLength, static_cast<unsigned char>('x'));
        }
        return mLength;
    }
    short Restore(Settings&, long) override { return 0; }
    CFStringRef CopyCurrentControlValueString() override { return nullptr; }
    void SetCurrentControlWithCFString(CFStringRef) override {}

  private:
    long mLength;
};

class ZUBJobTicketTest : public CoreFixture {
  protected:
    TestSession::Pairs Added() const { return TestSession::PairsOf(mTicket.List()); }

    CFRef<CFStringRef> mKey{CreatePostscriptDataFileKey()};
    ZUBJobTicket mTicket{&mSettings, mKey};
};

TEST_F(ZUBJobTicketTest, AddKeepsOrderAndPassesOverNothing) {
    EXPECT_TRUE(mTicket.AddText(kFeatureSite, ""));
    EXPECT_EQ(0U, mTicket.Count());
    EXPECT_TRUE(mTicket.AddText(kSuppressedKeywordSite, "*Key"));
    unsigned char const bytes[] = {0, 0xFF, '\n'};
    EXPECT_TRUE(mTicket.Add(kFeatureSite, bytes, sizeof(bytes)));
    EXPECT_FALSE(mTicket.Add(kFeatureSite, nullptr));
    EXPECT_EQ(2U, mTicket.Count());
    EXPECT_EQ((TestSession::Pairs{{-9, "*Key"}, {81, std::string("\0\xFF\n", 3)}}), Added());
}

TEST_F(ZUBJobTicketTest, AControlsTextComesWholeWhateverItsLength) {
    for (long const length : {0L, 1L, 1024L, 1025L, 100000L}) {
        FixedControl control(length);
        std::uint32_t const before = mTicket.Count();
        EXPECT_TRUE(mTicket.Add(kFeatureSite, &control)) << length;
        ASSERT_EQ(before + (length > 0 ? 1 : 0), mTicket.Count());
        if (length > 0) {
            EXPECT_EQ(std::string(static_cast<std::size_t>(length), 'x'), Added().back().second);
        }
    }
}

TEST_F(ZUBJobTicketTest, TheListHasWhatWasAddedWheneverItIsAskedFor) {
    std::string const large(100000, 'x');  // more than lies together with others
    TestSession::Pairs expected;
    for (int i = 0; i < 3000; ++i) {
        std::string const text = i % 1000 == 500 ? large : "entry " + std::to_string(i);
        PostScriptInjectionSite const site = i % 2 == 0 ? kFeatureSite : kSuppressedKeywordSite;
        EXPECT_TRUE(mTicket.AddText(site, text.c_str()));
        expected.emplace_back(site, text);
        if (i % 700 == 0) {
            EXPECT_EQ(expected, Added()) << i;
        }
    }
    EXPECT_EQ(expected, Added());
    ASSERT_TRUE(mTicket.Save(CFSTR("client")));
    EXPECT_EQ(expected, mSession.TakeJob());
    EXPECT_TRUE(mTicket.Create());
    EXPECT_EQ(0U, mTicket.Count());
    EXPECT_TRUE(Added().empty());
}

TEST_F(ZUBJobTicketTest, ALackOfMemoryKeepsWhatWasThere) {
    mTicket.AddText(kFeatureSite, "first");
    std::string const large(100000, 'x');
    FailNewAfter(0);
    EXPECT_FALSE(mTicket.AddText(kSuppressedKeywordSite, large.c_str()));
    EXPECT_EQ(-108, mTicket.LastStatus());
    FixedControl control(100000);
    FailNewAfter(0);
    EXPECT_FALSE(mTicket.Add(kSuppressedKeywordSite, &control));
    EXPECT_EQ(-108, mTicket.LastStatus());
    for (long const creation : {0L, 1L}) {  // of the site's number, of the data
        FailCreationAfter(creation);
        EXPECT_EQ(nullptr, mTicket.List()) << creation;
    }
    EXPECT_EQ((TestSession::Pairs{{81, "first"}}), Added());
    EXPECT_TRUE(mTicket.AddText(kFeatureSite, "third"));
    EXPECT_EQ(noErr, mTicket.LastStatus());
    EXPECT_EQ((TestSession::Pairs{{81, "first"}, {81, "third"}}), Added());
}

TEST_F(ZUBJobTicketTest, WithoutAListATicketIsRefused) {
    PDEData data(mSession.Get(), nullptr, nullptr);
    int unusable = 0;
    for (long n = 0; n < 8; ++n) {
        FailCreationAfter(n);
        ZUBJobTicket ticket(&mSettings, mKey);
        FailCreationAfter(-1);
        unusable += ticket.List() == nullptr ? 1 : 0;
        EXPECT_EQ(ticket.List() == nullptr ? -50 : noErr, data.OutPostscriptData(ticket));
    }
    EXPECT_EQ(1, unusable);
}

TEST_F(ZUBJobTicketTest, SaveNamesAFileOnlyWhenItIsWhole) {
    EXPECT_TRUE(mTicket.Save(CFSTR("client"))) << "nothing to write";
    EXPECT_EQ("", mSession.JobFile());
    mTicket.AddText(kFeatureSite, "first");
    EXPECT_FALSE(mTicket.Save(nullptr));
    ASSERT_TRUE(mTicket.Save(CFSTR("client")));
    std::string const first = mSession.JobFile();
    EXPECT_EQ(std::string("/tmp/Velon.temp").size() + 36, first.size()) << first;
    EXPECT_TRUE(mTicket.Save(CFSTR("client"))) << "unchanged";
    EXPECT_EQ(first, mSession.JobFile());

    mTicket.AddText(kFeatureSite, "second");
    for (long n = 0; n < 4; ++n) {
        FailCreationAfter(n);
        EXPECT_FALSE(mTicket.Save(CFSTR("client"))) << n;
        FailCreationAfter(-1);
        EXPECT_EQ(-108, mTicket.LastStatus());
        EXPECT_EQ(first, mSession.JobFile());
    }
    EXPECT_EQ((TestSession::Pairs{{81, "first"}}), mSession.TakeJob());
    EXPECT_TRUE(mTicket.Save(CFSTR("client"))) << "still to be written";
    EXPECT_EQ((TestSession::Pairs{{81, "first"}, {81, "second"}}), mSession.TakeJob());
    EXPECT_TRUE(mTicket.Invalidate(CFSTR("client")));
    EXPECT_EQ("", mSession.JobFile());
    EXPECT_FALSE(ZUBJobTicket(nullptr, mKey).Save(CFSTR("client")));
}

}  // namespace
