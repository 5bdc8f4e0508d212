// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/Settings.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CollectionManager.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"

namespace {

constexpr unsigned long kKeyword = 0x4B795764;  // KyWd
constexpr unsigned long kCountTag = 3000;
constexpr long kCountId = 3002;
constexpr OSErr kMissing = collectionItemNotFoundErr;

using SettingsTest = MacRomanTest;

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

std::string FlatFormOf(Settings& settings) {
    CFDataStream stream;
    EXPECT_EQ(settings.Save(&stream), 0);
    return Text(stream.Data());
}

long ReadFlatForm(Settings& settings, std::string const& flat) {
    CFDataStream stream(Data(flat).Get());
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
    EXPECT_EQ(TextOf(settings, kKeyword, -7), "*ZUResolution");
    EXPECT_EQ(settings.Set(kKeyword, 1, "x", 1), kMissing);
    EXPECT_EQ(settings.Set(kKeyword, 3001, "*A", 2), 0);
    EXPECT_EQ(TextOf(settings, kKeyword, 3001), "*A");
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
    std::vector<Entry> const entries = EntriesOf(settings);
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[0].tag, kCountTag);
    EXPECT_EQ(entries[2].id, -7);
    EXPECT_EQ(entries[2].size, 13);
    entry = Entry();
    EXPECT_EQ(settings.Next(entry.tag, entry.id, entry.size, entry.attributes), 1002);
    EXPECT_EQ(entry.tag + static_cast<unsigned long>(entry.id + entry.size), 0UL);
}

TEST_F(SettingsTest, CopiesAndArchivesHoldTheSameAndReplaceWhatWasThere) {
    Settings source;
    Fill(source, 3);
    source.Lock(1000, 1);
    Settings read;
    Settings assigned;
    for (Settings* const target : {&read, &assigned}) {
        AddText(*target, kKeyword, 1, "old");
    }
    EXPECT_EQ(ReadFlatForm(read, FlatFormOf(source)), 0);
    char** flat = nullptr;
    ASSERT_EQ(source.GetSettingsHandle(&flat), 0);
    Settings fromHandle(flat);
    DisposeHandle(flat);
    Settings copy(source);
    assigned = source;
    source.Set(kKeyword, 3001, "*A", 2);
    for (Settings* const settings : {&read, &fromHandle, &copy, &assigned}) {
        EXPECT_EQ(settings->Count(), 4);
        EXPECT_EQ(TextOf(*settings, kKeyword, 3001), "*Duplex");
        EXPECT_EQ(EntriesOf(*settings)[3].attributes, 0x80000000L);
    }
    std::string const whole = FlatFormOf(source);
    EXPECT_NE(ReadFlatForm(read, whole.substr(0, whole.size() - 1)), 0);
    EXPECT_EQ(read.Count(), 4);
    OpaqueCollection* none = nullptr;
    assigned = Settings(none);
    EXPECT_FALSE(assigned.Valid());
    EXPECT_TRUE(assigned.Empty());
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

TEST_F(SettingsTest, NumbersOfTheOtherByteOrderAreTurnedRound) {
    std::string const reference = "1234567" + std::string(63, 'x');
    std::string const swappedReference = "2165437" + std::string(63, 'x');
    std::pair<std::string, std::string> const values[] = {
        {"1234", "4321"}, {"12", "21"}, {reference, swappedReference}};
    // As this machine reads what was written.
    for (std::int32_t const stored : {3, 10000, -1, 1 << 24, 127 << 24}) {
        Settings settings;
        Fill(settings, stored);
        bool const isForeign = stored > 10000;
        for (auto const& [bytes, swapped] : values) {
            std::string read(bytes.size(), '\0');
            long size = 0;
            AddText(settings, 5, 1, bytes);
            EXPECT_EQ(settings.Get(5, 1, read.data(), size, true), 0);
            EXPECT_EQ(read, isForeign ? swapped : bytes);
            EXPECT_EQ(settings.Get(5, 1, read.data(), size, false), 0);
            EXPECT_EQ(read, bytes);
        }
        std::int32_t pages = 0;
        EXPECT_TRUE(GetSettingsField(settings, kCountTag, kCountId, &pages, sizeof pages));
        EXPECT_EQ(pages, isForeign ? stored >> 24 : stored);
    }
}

TEST_F(SettingsTest, OtherSizesAreReportedThoughTheBytesWereCopied) {
    Settings settings;
    Fill(settings, __builtin_bswap32(3));
    AddText(settings, 5, 1, "abc");
    char text[4] = "";
    long size = 0;
    EXPECT_EQ(settings.Get(5, 1, text, size, true), 1000);
    std::int32_t number = 5;
    EXPECT_FALSE(GetSettingsField(settings, kKeyword, 3001, &number, sizeof number));
    EXPECT_EQ(number, 5);
}

TEST_F(SettingsTest, StringsComeBackFromTheirExternalFormInEitherByteOrder) {
    Settings settings;
    long size = 0;
    std::unique_ptr<unsigned char[]> const form(CFStringToExternal(Str("日本 ä").Get(), &size));
    ASSERT_EQ(size, 10);
    settings.Add(5, 1, form.get(), size);
    settings.Add(5, 2, "\xFE\xFF\x65\xE5", 4);
    settings.Add(5, 3, "\xFF\xFE\xE5\x65", 4);
    EXPECT_EQ(Text(CFRef<CFStringRef>(GetSettingsCFString(settings, 5, 1))), "日本 ä");
    EXPECT_EQ(Text(CFRef<CFStringRef>(GetSettingsCFString(settings, 5, 2))), "日");
    EXPECT_EQ(Text(CFRef<CFStringRef>(GetSettingsCFString(settings, 5, 3))), "日");
}

TEST_F(SettingsTest, WithoutACollectionEveryCallSaysSo) {
    OpaqueCollection* none = nullptr;
    Settings settings(none);
    CFDataStream stream;
    EXPECT_EQ(settings.Add(1, 1, "x", 1), 1000);
    EXPECT_EQ(TextOf(settings, 1, 1), "(null)");
    EXPECT_EQ(settings.Save(&stream), 1000);
    EXPECT_TRUE(EntriesOf(settings).empty());
    EXPECT_FALSE(Settings(settings).Valid());
    EXPECT_EQ(Settings(static_cast<char**>(nullptr)).LastError(), -50);
    settings = Settings();
    EXPECT_EQ(settings.Add(1, 1, "x", 1), 0);
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
    EXPECT_EQ(stream.dataSize(), 1UL);
    FailCreationAfter(0);
    CFDataStream failed;
    EXPECT_EQ(failed.LastError(), memFullErr);
}

TEST(CFDataStreamTest, WhatCannotBeWrittenBehindItsDataLeavesThatReadable) {
    CFDataStream stream(Data("abc").Get());
    char text[4] = "???";
    long failures = -1;
    for (bool written = false; !written; ++failures) {
        FailAnyNewAfter(failures + 1);
        written = stream.out(text, 3);
        FailAnyNewAfter(-1);
        ASSERT_EQ(stream.dataSize(), written ? 6UL : 3UL);
    }
    EXPECT_GE(failures, 1);
    EXPECT_TRUE(stream.in(text, 3, nullptr, nullptr));
    EXPECT_STREQ(text, "abc");
}

}  // namespace
