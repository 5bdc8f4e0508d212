// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/Settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CollectionManager.h"
#include "platform/Testing.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"
#include "tests/ZUBUtils/PPDUtils/PlatformText.h"

namespace {

constexpr unsigned long kKeyword = 0x4B795764;  // KyWd
constexpr unsigned long kCountTag = 3000;
constexpr long kCountId = 3002;
constexpr OSErr kMissing = collectionItemNotFoundErr;

using Bytes = std::vector<std::uint8_t>;

class SettingsTest : public testing::Test {
  protected:
    void TearDown() override {
        FailCreationAfter(-1);
        FailNewAfter(-1);
        EXPECT_EQ(LiveObjectCount(), mLiveBefore);
    }
    long mLiveBefore = LiveObjectCount();
};

void AddText(Settings& settings, unsigned long tag, long id, std::string const& text) {
    ASSERT_EQ(settings.Add(tag, id, text.data(), static_cast<long>(text.size())), 0);
}

void AddNumber(Settings& settings, unsigned long tag, long id, std::int32_t number) {
    ASSERT_EQ(settings.Add(tag, id, &number, sizeof number), 0);
}

std::string TextOf(Settings& settings, unsigned long tag, long id) {
    std::unique_ptr<CString> const text(GetSettingsString(settings, tag, id));
    return text != nullptr ? text->GetCharData() : "(null)";
}

// A small archive as a compiled PPD would begin, for `pages` property pages.
void Fill(Settings& settings, std::int32_t pages) {
    AddNumber(settings, kCountTag, kCountId, pages);
    AddText(settings, kKeyword, 3001, "*Duplex");
    AddText(settings, kKeyword, -7, "*ZUResolution");
    AddNumber(settings, 1000, 1, 77);
}

Bytes FlatFormOf(Settings& settings) {
    CFDataStream stream;
    EXPECT_EQ(settings.Save(&stream), 0);
    std::uint8_t const* const bytes = CFDataGetBytePtr(stream.Data());
    return Bytes(bytes, bytes + stream.dataSize());
}

long ReadFlatForm(Settings& settings, Bytes const& flat) {
    CFRef<CFDataRef> const data(
        CFDataCreate(nullptr, flat.data(), static_cast<CFIndex>(flat.size())));
    CFDataStream stream(data.Get());
    return settings.Read(&stream, 0);
}

struct Entry {
    unsigned long tag = 9;
    long id = 9;
    long size = 9;
    long attributes = 9;
};

std::vector<Entry> EntriesOf(Settings& settings) {
    std::vector<Entry> entries;
    Entry entry;
    long status = settings.First(entry.tag, entry.id, entry.size, entry.attributes);
    while (status == 0) {
        entries.push_back(entry);
        status = settings.Next(entry.tag, entry.id, entry.size, entry.attributes);
    }
    return entries;
}

TEST_F(SettingsTest, ValuesAreFoundByTagAndIdTogether) {
    Settings settings;
    Fill(settings, 3);
    long size = 9;
    EXPECT_EQ(settings.Get(kKeyword, 1, nullptr, size, false), kMissing);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(settings.LastError(), kMissing);
    EXPECT_EQ(settings.Get(kKeyword, 3001, nullptr, size, false), 0);
    EXPECT_EQ(size, 7);
    EXPECT_EQ(settings.LastError(), 0);
    EXPECT_EQ(TextOf(settings, kKeyword, -7), "*ZUResolution");
    EXPECT_EQ(settings.Set(kKeyword, 1, "x", 1), kMissing);
    EXPECT_EQ(settings.Set(kKeyword, 3001, "*A", 2), 0);
    EXPECT_EQ(TextOf(settings, kKeyword, 3001), "*A");
    EXPECT_EQ(settings.Add(kKeyword, 3001, nullptr, 0), 0);
    EXPECT_EQ(TextOf(settings, kKeyword, 3001), "(null)");
    EXPECT_EQ(settings.Add(kKeyword, 3001, nullptr, 4), paramErr);
}

TEST_F(SettingsTest, ALockedEntryKeepsItsValueUntilItIsUnlocked) {
    Settings settings;
    Fill(settings, 3);
    EXPECT_EQ(settings.SetAttribute(kKeyword, 3001, 3, true), 0);
    EXPECT_EQ(settings.Lock(kKeyword, 3001), 0);
    EXPECT_EQ(settings.Set(kKeyword, 3001, "x", 1), collectionItemLockedErr);
    EXPECT_EQ(settings.Remove(kKeyword, 3001), collectionItemLockedErr);
    EXPECT_EQ(EntriesOf(settings)[1].attributes, 0x80000003L);
    EXPECT_EQ(settings.Unlock(kKeyword, 3001), 0);
    EXPECT_EQ(settings.SetAttribute(kKeyword, 3001, 1, false), 0);
    EXPECT_EQ(EntriesOf(settings)[1].attributes, 2);
    EXPECT_EQ(settings.Remove(kKeyword, 3001), 0);
}

TEST_F(SettingsTest, AWalkSeesEveryEntryOnceAndEndsCleanly) {
    Settings settings;
    Entry entry;
    EXPECT_EQ(settings.First(entry.tag, entry.id, entry.size, entry.attributes), 1001);
    Fill(settings, 3);
    settings.Remove(kKeyword, 3001);
    std::vector<Entry> const entries = EntriesOf(settings);
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].tag, kCountTag);
    EXPECT_EQ(entries[1].id, -7);
    EXPECT_EQ(entries[1].size, 13);
    EXPECT_EQ(entries[2].tag, 1000UL);
    entry = Entry();
    EXPECT_EQ(settings.Next(entry.tag, entry.id, entry.size, entry.attributes), 1002);
    EXPECT_EQ(entry.tag, 0UL);
    EXPECT_EQ(entry.id + entry.size + entry.attributes, 0);
}

TEST_F(SettingsTest, AnArchiveReadsBackAndReplacesWhatWasThere) {
    Settings source;
    Fill(source, 3);
    source.Lock(1000, 1);
    Settings settings;
    AddText(settings, kKeyword, 1, "old");
    EXPECT_EQ(ReadFlatForm(settings, FlatFormOf(source)), 0);
    char** flat = nullptr;
    ASSERT_EQ(source.GetSettingsHandle(&flat), 0);
    Settings fromHandle(flat);
    DisposeHandle(flat);
    for (Settings* const copy : {&settings, &fromHandle}) {
        EXPECT_EQ(copy->Count(), 4);
        EXPECT_EQ(TextOf(*copy, kKeyword, -7), "*ZUResolution");
        EXPECT_EQ(EntriesOf(*copy)[3].attributes, 0x80000000L);
    }
}

TEST_F(SettingsTest, ACutOrDamagedArchiveLeavesTheEntriesAlone) {
    Settings source;
    Fill(source, 3);
    Bytes const flat = FlatFormOf(source);
    Settings settings;
    AddText(settings, kKeyword, 1, "old");
    for (Bytes cut(flat.begin(), flat.end() - 1); !cut.empty(); cut.pop_back()) {
        EXPECT_NE(ReadFlatForm(settings, cut), 0) << cut.size();
        EXPECT_EQ(TextOf(settings, kKeyword, 1), "old") << cut.size();
    }
    for (std::size_t bit = 0; bit < flat.size() * 8; ++bit) {
        Bytes damaged = flat;
        damaged[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
        Settings reader;
        AddText(reader, kKeyword, 1, "old");
        long const status = ReadFlatForm(reader, damaged);
        // A flip inside a value, a tag or an id can't be seen; its archive still has to be whole.
        EXPECT_EQ(reader.Count(), status == 0 ? 4 : 1) << bit;
        EXPECT_EQ(EntriesOf(reader).size(), status == 0 ? 4U : 1U) << bit;
    }
}

TEST_F(SettingsTest, StreamsThatCannotServeAreReported) {
    Settings settings;
    AddText(settings, kKeyword, 1, "old");
    CFDataStream empty;
    CFDataStream none(static_cast<CFDataRef>(nullptr));
    EXPECT_EQ(settings.Save(nullptr), 201);
    EXPECT_EQ(settings.Read(&none, 0), 201);
    EXPECT_EQ(settings.Read(&empty, 0), 0);
    EXPECT_EQ(settings.Save(&empty), 0);
    EXPECT_NE(settings.Read(&empty, ~0UL), 0);
    EXPECT_EQ(TextOf(settings, kKeyword, 1), "old");
}

Bytes FileReference(Bytes bytes) {
    bytes.resize(70, 'x');
    return bytes;
}

TEST_F(SettingsTest, NumbersOfTheOtherByteOrderAreTurnedRound) {
    struct {
        std::int32_t stored;  // as this machine reads what was written
        bool isForeign;
        std::int32_t pages;
    } const archives[] = {
        {3, false, 3},
        {0, false, 0},
        {10000, false, 10000},
        {-1, false, -1},
        {__builtin_bswap32(1), true, 1},
        {__builtin_bswap32(127), true, 127},
    };
    std::pair<Bytes, Bytes> const values[] = {
        {{1, 2, 3, 4}, {4, 3, 2, 1}},
        {{1, 2}, {2, 1}},
        {FileReference({1, 2, 3, 4, 5, 6, 7}), FileReference({2, 1, 6, 5, 4, 3, 7})},
    };
    for (auto const& archive : archives) {
        Settings settings;
        Fill(settings, archive.stored);
        for (auto const& [bytes, swapped] : values) {
            Bytes read(bytes.size());
            long size = static_cast<long>(bytes.size());
            settings.Add(5, 1, bytes.data(), size);
            EXPECT_EQ(settings.Get(5, 1, read.data(), size, true), 0);
            EXPECT_EQ(read, archive.isForeign ? swapped : bytes);
            EXPECT_EQ(settings.Get(5, 1, read.data(), size, false), 0);
            EXPECT_EQ(read, bytes);
        }
        std::int32_t pages = 0;
        EXPECT_TRUE(GetSettingsField(settings, kCountTag, kCountId, &pages, sizeof pages));
        EXPECT_EQ(pages, archive.pages);
        EXPECT_EQ(TextOf(settings, kKeyword, 3001), "*Duplex");
    }
}

TEST_F(SettingsTest, OtherSizesAreReportedThoughTheBytesWereCopied) {
    Settings settings;
    Fill(settings, __builtin_bswap32(3));
    AddText(settings, 5, 1, "abc");
    char text[4] = "";
    long size = 0;
    EXPECT_EQ(settings.Get(5, 1, text, size, true), 1000);
    EXPECT_STREQ(text, "abc");
    EXPECT_TRUE(GetSettingsField(settings, 5, 1, text, 3));
    std::int32_t number = 5;
    EXPECT_FALSE(GetSettingsField(settings, kKeyword, 3001, &number, sizeof number));
    EXPECT_EQ(number, 5);
}

TEST_F(SettingsTest, StringsComeBackFromTheirExternalFormInEitherByteOrder) {
    Settings settings;
    long size = 0;
    std::unique_ptr<unsigned char[]> const form(
        CFStringToExternal(StringOf("日本 ä").Get(), &size));
    ASSERT_EQ(size, 10);
    settings.Add(5, 1, form.get(), size);
    settings.Add(5, 2, "\xFE\xFF\x65\xE5", 4);
    settings.Add(5, 3, "\xFF\xFE\xE5\x65", 4);
    settings.Add(5, 4, "", 0);
    EXPECT_EQ(UTF8Of(StringRef(GetSettingsCFString(settings, 5, 1))), "日本 ä");
    EXPECT_EQ(UTF8Of(StringRef(GetSettingsCFString(settings, 5, 2))), "日");
    EXPECT_EQ(UTF8Of(StringRef(GetSettingsCFString(settings, 5, 3))), "日");
    EXPECT_EQ(GetSettingsCFString(settings, 5, 4), nullptr);
    EXPECT_EQ(CFStringToExternal(nullptr, &size), nullptr);
}

TEST_F(SettingsTest, WithoutACollectionEveryCallSaysSo) {
    OpaqueCollection* none = nullptr;
    Settings settings(none);
    std::int32_t number = 1 << 24;
    CFDataStream stream;
    EXPECT_EQ(settings.Add(1, 1, "x", 1), 1000);
    EXPECT_EQ(TextOf(settings, 1, 1), "(null)");
    EXPECT_EQ(settings.Save(&stream), 1000);
    EXPECT_EQ(settings.FixEndianness(&number, sizeof number, true), 0);
    EXPECT_TRUE(EntriesOf(settings).empty());
    EXPECT_FALSE(Settings(settings).Valid());
    EXPECT_EQ(Settings(static_cast<char**>(nullptr)).LastError(), -50);
    settings = Settings();
    EXPECT_EQ(settings.Add(1, 1, "x", 1), 0);
}

TEST_F(SettingsTest, CopiesAreIndependent) {
    Settings source;
    Fill(source, 3);
    Settings copy(source);
    Settings assigned;
    AddText(assigned, kKeyword, 1, "old");
    assigned = source;
    source.Set(kKeyword, 3001, "*A", 2);
    for (Settings* const settings : {&copy, &assigned}) {
        EXPECT_EQ(settings->Count(), 4);
        EXPECT_EQ(TextOf(*settings, kKeyword, 3001), "*Duplex");
    }
    OpaqueCollection* none = nullptr;
    assigned = Settings(none);
    EXPECT_FALSE(assigned.Valid());
    EXPECT_TRUE(assigned.Empty());
}

TEST_F(SettingsTest, LackOfMemoryIsReported) {
    FailCreationAfter(0);
    Settings none;
    EXPECT_FALSE(none.Valid());
    EXPECT_EQ(none.LastError(), memFullErr);

    Settings settings;
    Fill(settings, 3);
    char** flat = nullptr;
    FailCreationAfter(0);
    EXPECT_EQ(settings.GetSettingsHandle(&flat), memFullErr);
    EXPECT_EQ(flat, nullptr);
    CFDataStream stream;
    EXPECT_EQ(settings.Save(&stream), 0);
    FailCreationAfter(0);
    EXPECT_EQ(settings.Read(&stream, 0), memFullErr);
    EXPECT_EQ(settings.Count(), 4);
    FailNewAfter(0);
    EXPECT_EQ(TextOf(settings, kKeyword, 3001), "(null)");
    FailNewAfter(1);
    EXPECT_EQ(TextOf(settings, kKeyword, 3001), "(null)");
}

TEST(CFDataStreamTest, ReadsOnFromWhereItStoppedAndGivesZerosBeyondTheEnd) {
    CFDataStream stream;
    char text[] = "abcdef";
    EXPECT_TRUE(stream.out(text, 4));
    EXPECT_TRUE(stream.out(text + 4, 2));
    EXPECT_EQ(stream.dataSize(), 6UL);
    char buffer[9] = "????????";
    unsigned long count = 0;
    short error = 1;
    EXPECT_TRUE(stream.in(buffer, 2, &count, &error));
    EXPECT_EQ(std::string(buffer), "ab??????");
    EXPECT_EQ(error, 0);
    EXPECT_TRUE(stream.in(buffer, 8, &count, nullptr));
    EXPECT_EQ(count, 8UL);
    EXPECT_EQ(std::string(buffer, 8), std::string("cdef\0\0\0\0", 8));
    EXPECT_TRUE(stream.in(buffer, 1, nullptr, nullptr));
    EXPECT_FALSE(stream.out(text, 0xFFFFFFFFUL));
    EXPECT_EQ(stream.LastError(), memFullErr);
}

TEST(CFDataStreamTest, KeepsAPrivateCopyOfItsData) {
    CFRef<CFMutableDataRef> data(CFDataCreateMutable(nullptr, 0));
    std::uint8_t const bytes[] = {'a', 'b'};
    EXPECT_FALSE(CFDataStream(data.Get()).valid());
    CFDataAppendBytes(data, bytes, 1);
    CFDataStream stream(data.Get());
    CFDataAppendBytes(data, bytes, 2);
    EXPECT_TRUE(stream.valid());
    EXPECT_EQ(stream.dataSize(), 1UL);
    FailCreationAfter(0);
    CFDataStream failed;
    EXPECT_FALSE(failed.valid());
    EXPECT_EQ(failed.LastError(), memFullErr);
    char buffer[1];
    EXPECT_FALSE(failed.in(buffer, 1, nullptr, nullptr));
    EXPECT_FALSE(failed.out(buffer, 1));
}

}  // namespace
