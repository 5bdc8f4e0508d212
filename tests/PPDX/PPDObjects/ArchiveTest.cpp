// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "constraints/UIConstraints.h"
#include "platform/Testing.h"
#include "tests/PPDLines.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// A page, a group of every kind and an option of every kind.
std::string Sample() {
    std::string const place = "*%ZUBGroup *K: R/R\n";
    std::string const grouped = "*%ZUBFlags *K: A|B\n" + place;
    auto const option = [&grouped](std::string const& keyword, std::string const& line) {
        std::string lines = grouped + line;
        for (std::size_t at = 0; (at = lines.find("*K", at)) != std::string::npos;) {
            lines.replace(at, 2, keyword);
        }
        return lines;
    };
    return std::string(kHeader) +
           "*FormatVersion: \"4.3\"\n*FileVersion: \"1.2\"\n*ModelName: \"M\"\n"
           "*APDialogExtension: \"/X.plugin\"\n*%ZUFileVersion: 7\n*%ZUBPropPage P/p: "
           "True|App\n*%ZUBGroupName S/s: True\n"
           "*%ZUBGroupName R/r: True\n*%ZUBGroupName G/\xE9: False\n"
           "*%ZUBParent S/P: True|Scrollpane\n*%ZUBParent R/S: True|Rolldown\n" +
           option("*L",
                  "*OpenUI *K/l: PickMany\n*DefaultL: b\n*K a/A: \"x\"\n*K b/B: \"\"\n"
                  "*CloseUI: *K\n") +
           option("*B",
                  "*OpenUI *K/b: Boolean\n*DefaultB: True\n*K True/Y: \"on\"\n"
                  "*K False/N: \"off\"\n*CloseUI: *K\n") +
           option("*I", "*%ZUBRange *K/i: (1;9;2;3) \"c\"\n") +
           option("*F", "*%ZUBFloatRange *K/f: (0.5;2;.25;1.5) \"c\"\n") +
           "*%ZUBSpecialOption *O: v\n"
           "*%ZUShortcut *L\n*%ZUShortcut *B\n*UIConstraints: *L b *B False\n";
}

Bytes Flat(Settings& settings) {
    CFDataStream stream;
    EXPECT_EQ(settings.Save(&stream), noErr);
    std::uint8_t const* const bytes = CFDataGetBytePtr(stream.Data());
    return Bytes(bytes, bytes + stream.dataSize());
}

bool ReadFlat(Settings& settings, Bytes const& flat) {
    CFRef<CFDataRef> const data(
        CFDataCreate(nullptr, flat.data(), static_cast<CFIndex>(flat.size())));
    CFDataStream stream(data.Get());
    return settings.Read(&stream, 0) == noErr;
}

Bytes ArchiveOf(ZUBPPD& ppd) {
    Settings settings;
    EXPECT_TRUE(ppd.Save(settings));
    return Flat(settings);
}

PPDPtr Rebuild(Settings& settings, CFURLRef url, CFArrayRef acceptedNames = nullptr) {
    return PPDPtr(new ZUBPPD(settings, url, acceptedNames));
}

PPDPtr Parse(TemporaryFile const& file) {
    return PPDPtr(new ZUBPPD(file.URL(), kParseAll, nullptr));
}

struct EntryName {
    unsigned long tag;
    long id;
};

std::vector<EntryName> EntriesOf(Settings& settings) {
    std::vector<EntryName> names;
    unsigned long tag = 0;
    long id = 0;
    long size = 0;
    long attributes = 0;
    for (long status = settings.First(tag, id, size, attributes); status == noErr;
         status = settings.Next(tag, id, size, attributes)) {
        names.push_back({tag, id});
    }
    return names;
}

Bytes ValueOf(Settings& settings, unsigned long tag, long id) {
    long size = 0;
    settings.Get(tag, id, nullptr, size, false);
    Bytes value(static_cast<std::size_t>(size));
    settings.Get(tag, id, value.data(), size, false);
    return value;
}

std::string TagText(unsigned long tag) {
    if (tag < 10000) {
        return std::to_string(tag);
    }
    std::string code;
    for (int shift = 24; shift >= 0; shift -= 8) {
        code += static_cast<char>(tag >> shift);
    }
    return code;
}

bool IsAmong(std::string const& codes, unsigned long tag) {
    return codes.find(TagText(tag)) != std::string::npos;
}

bool IsNumber(unsigned long tag, long id) {
    return tag == 3000 || tag == 4000 || tag == 5000 || id == 1001 || id == 6000 ||
           IsAmong(
               "isVs SPPg SApp Ordr PCMS PCIC PCIS BCcV BCdV RCVl RCMn RCMx RCIn RCDf FCVl "
               "FCMn FCMx FCIn FCDf",
               tag);
}

// The archive as a machine of the other byte order would have written it.
void SwapNumbers(Settings& settings) {
    for (auto const& [tag, id] : EntriesOf(settings)) {
        Bytes value = ValueOf(settings, tag, id);
        if (IsNumber(tag, id)) {
            std::reverse(value.begin(), value.end());
        } else if (IsAmong("LcCF PCFN", tag)) {
            for (std::size_t at = 0; at + 1 < value.size(); at += 2) {
                std::swap(value[at], value[at + 1]);
            }
        } else if (tag == 1000 && id == 1002) {
            std::reverse(value.begin(), value.begin() + 2);
            std::reverse(value.begin() + 2, value.begin() + 6);
        }
        settings.Set(tag, id, value.data(), static_cast<long>(value.size()));
    }
}

// ---- Bytes ----

std::string BytesText(Bytes const& bytes) {
    std::string text;
    for (std::uint8_t const byte : bytes) {
        char hex[4];
        std::snprintf(hex, sizeof hex, byte > ' ' && byte < 127 ? "%c" : "\\%02X", byte);
        text += hex;
    }
    return text;
}

// All entries in their order, those that share an id behind it; lines end at 90 columns.
std::string Listing(Settings& settings) {
    std::string listing;
    std::string line;
    long lastID = 0;
    for (auto const& [tag, id] : EntriesOf(settings)) {
        std::string const entry = " " + TagText(tag) + "=" + BytesText(ValueOf(settings, tag, id));
        bool const isNew = id != lastID;
        if (isNew || line.size() + entry.size() > 90) {
            listing += line + "\n";
            line = isNew ? std::to_string(id) : "";
        }
        line += entry;
        lastID = id;
    }
    return listing + line + "\n";
}

char const kListing[] = R"(
1001 1000=\00\04\00\00
1002 1000=-
1003 1000=4.3
1004 1000=1.2
1005 1000=ZUBTEST.PPD
1006 1000=English
1007 1000=ISOLatin1
1008 1000=M
2001 2000=7
2002 2000=4.4
3002 3000=\01\00\00\00
3001 KyWd=P LcNm=p LcCF=\FF\FEp\00 isVs=\01\00\00\00 SPPg=\00\00\00\00 SApp=\01\00\00\00
4002 4000=\03\00\00\00
4001 KyWd=S LcNm=s LcCF=\FF\FEs\00 isVs=\01\00\00\00 PrNm=P ScPn=\01
4002 KyWd=R LcNm=r LcCF=\FF\FEr\00 isVs=\01\00\00\00 PrNm=S RlDn=\01
4003 KyWd=G LcNm=\8E LcCF=\FF\FE\E9\00 isVs=\00\00\00\00 gGrp=\01
5002 5000=\05\00\00\00
5001 KyWd=*L LcNm=l LcCF=\FF\FEl\00 isVs=\01\00\00\00 PrNm=R Ordr=\00\00 CFlg=A|B|
 PopC=\01 PCMS=\01\00\00\00 PCDK=b PCIC=\02\00\00\00
500100 PCIK=a PCFN=\FF\FEA\00 PCIP=x\0A PCIS=\01\00\00\00
500101 PCIK=b PCFN=\FF\FEB\00 PCIS=\00\00\00\00
5002 KyWd=*B LcNm=b LcCF=\FF\FEb\00 isVs=\01\00\00\00 PrNm=R Ordr=\00\00 CFlg=A|B|
 BlnC=\01 BCcV=\00\00\00\00 BCdV=\01\00\00\00 BCtT=Y BCfT=N BtPT=on\0A BfPT=off\0A
5003 KyWd=*I LcNm=i LcCF=\FF\FEi\00 isVs=\01\00\00\00 PrNm=R Ordr=\00\00 PSDt=c\0A
 CFlg=A|B| RngC=\01 RCVl=\08\00\00\00 RCMn=\01\00\00\00 RCMx=\09\00\00\00
 RCIn=\02\00\00\00 RCDf=\03\00\00\00
5004 KyWd=*F LcNm=f LcCF=\FF\FEf\00 isVs=\01\00\00\00 PrNm=R Ordr=\00\00 PSDt=c\0A
 CFlg=A|B| FrgC=\01 FCVl=\00\00@? FCMn=\00\00\00? FCMx=\00\00\00@ FCIn=\00\00\80>
 FCDf=\00\00\C0?
5005 KyWd=*O LcNm=*O LcCF=\FF\FE*\00O\00 isVs=\00\00\00\00 Ordr=\00\00 soCN=\01 soVl=v
6000 StCt=\02\00\00\00
6001 StCt=*L
6002 StCt=*B
)";

// ---- Round trips ----

// Every option is at another value than its default.
class ArchiveTest : public testing::Test {
  protected:
    ArchiveTest() {
        for (auto const& [keyword, value] :
             {std::pair("*L", CFSTR("a")), std::pair("*B", CFSTR("False")),
              std::pair("*I", CFSTR("9")), std::pair("*F", CFSTR("0.75"))}) {
            ControlOf(*mPPD, keyword)->SetCurrentControlWithCFString(value);
        }
        EXPECT_TRUE(mPPD->Save(mSettings));
    }
    ~ArchiveTest() override { DisplayOptions::Options(kDisplayPlacedAndVisible); }

    TemporaryFile mFile{Sample()};
    PPDPtr mPPD = Parse(mFile);
    Settings mSettings;  // what the PPD is saved in
    CFRef<CFMutableArrayRef> mNames = Names("ZUBTEST");
    CFRef<CFMutableArrayRef> mOtherNames = Names("OTHER");
};

TEST_F(ArchiveTest, EveryEntryHasItsPlaceTagAndBytes) {
    FSSpec place = {};
    ASSERT_TRUE(mPPD->GetFileSpec(place));
    auto const* const bytes = reinterpret_cast<std::uint8_t const*>(&place);
    EXPECT_EQ(ValueOf(mSettings, 1000, 1002), Bytes(bytes, bytes + 70));
    mSettings.Set(1000, 1002, "-", 1);
    EXPECT_EQ(Listing(mSettings), kListing);
    // The custom page size counts, but has no record.
    Settings sized;
    ASSERT_TRUE(ParseBody("*%ParamCustomPrintSize Width: 1 points 36 1000\n")->Save(sized));
    EXPECT_TRUE(Listing(sized).ends_with("\n5002 5000=\\01\\00\\00\\00\n"));
}

TEST_F(ArchiveTest, ATreeComesBackWithAllThatTheArchiveHolds) {
    Bytes const flat = ArchiveOf(*mPPD);
    Settings settings;
    ASSERT_TRUE(ReadFlat(settings, flat));
    PPDPtr const rebuilt = Rebuild(settings, mFile.URL(), mNames);
    EXPECT_EQ(ArchiveOf(*rebuilt), flat);
    auto* const range = ControlOf(*rebuilt, "*I");
    ASSERT_TRUE(IsRollDown(range->GetParent()));
    EXPECT_EQ(Keyword(range->GetParent()->GetParent()->GetParent()), std::string("P"));
    EXPECT_EQ(PostScriptOf(*range), PostScriptOf(*ControlOf(*mPPD, "*I")));
    EXPECT_EQ(GetShortcutCount(rebuilt->GetShortcuts()), 2);
    EXPECT_TRUE(rebuilt->IsValidPPD());
    EXPECT_TRUE(rebuilt->IsValidPrinterName());
    EXPECT_TRUE(rebuilt->GetErrors()->Empty());
    EXPECT_STREQ(mPPD->PathToPDE(), "/X.plugin");
    EXPECT_EQ(rebuilt->PathToPDE(), nullptr);
    EXPECT_EQ(rebuilt->GetStringTextEncoding(), mPPD->GetStringTextEncoding());
    EXPECT_NE(rebuilt->GetTextConverter(), nullptr);
    // The rules are gone; their keys are known by the values.
    EXPECT_TRUE(mPPD->IsKVConstrained("*L", "b"));
    EXPECT_FALSE(rebuilt->IsKVConstrained("*L", "b"));
    EXPECT_GE(rebuilt->GetUIConstraints()->GetConstraintStrings().Find("*L"), 0);
}

TEST_F(ArchiveTest, AnArchiveOfTheOtherByteOrderReadsBack) {
    Settings swapped(mSettings);
    SwapNumbers(swapped);
    EXPECT_EQ(ArchiveOf(*Rebuild(swapped, mFile.URL(), mNames)), Flat(mSettings));
    PPDPtr const other = Parse(mFile);
    EXPECT_TRUE(other->Restore(swapped));
    EXPECT_EQ(ArchiveOf(*other), Flat(mSettings));
}

TEST_F(ArchiveTest, AFileThatIsNotAcceptedLeavesNoTree) {
    PPDPtr const rebuilt = Rebuild(mSettings, mFile.URL(), mOtherNames);
    EXPECT_FALSE(rebuilt->IsValidPrinterName());
    EXPECT_FALSE(rebuilt->IsValidPPD());
    EXPECT_EQ(rebuilt->GetControls(), nullptr);
    EXPECT_EQ(rebuilt->GetGroups(), nullptr);
    EXPECT_STREQ(rebuilt->PCFileName(), "ZUBTEST.PPD");
    EXPECT_EQ(rebuilt->LanguageVersion(), nullptr);
    EXPECT_FALSE(rebuilt->Restore(mSettings));
    EXPECT_EQ(rebuilt->CopyValueForKey(CFSTR("*L")), nullptr);
    Settings again;
    EXPECT_TRUE(rebuilt->Save(again));
    // An archive that was made without a file has none to check.
    mSettings.Remove(1000, 1002);
    EXPECT_FALSE(Rebuild(mSettings, mFile.URL(), mNames)->IsValidPrinterName());
    EXPECT_TRUE(Rebuild(mSettings, mFile.URL())->IsValidPPD());
    EXPECT_FALSE(Rebuild(mSettings, nullptr, mNames)->IsValidPrinterName());
}

TEST_F(ArchiveTest, TheFileIsTheOneAtTheURLAndTheVersionIsOnlyLookedFor) {
    TemporaryFile const moved(Sample());
    std::int32_t const later = 2048;
    mSettings.Set(1000, 1001, &later, sizeof later);
    char name[PPDX::kTextSize];
    PPDPtr const rebuilt = Rebuild(mSettings, moved.URL(), mNames);
    ASSERT_TRUE(rebuilt->GetPPDFileName(name));
    EXPECT_TRUE(moved.Path().ends_with(std::string("/") + name));
    EXPECT_NE(rebuilt->GetErrors(), nullptr);

    // Without it there is a tree without a header, and no name is asked for.
    mSettings.Set(1000, 1001, &later, 2);
    PPDPtr const headless = Rebuild(mSettings, mFile.URL(), mOtherNames);
    FSSpec file;
    EXPECT_FALSE(headless->GetFileSpec(file));
    EXPECT_EQ(headless->GetErrors(), nullptr);
    EXPECT_EQ(headless->PCFileName(), nullptr);
    EXPECT_TRUE(headless->IsValidPPD() && headless->IsValidPrinterName());
    EXPECT_EQ(ValueOf(*headless, "*I"), ValueOf(*mPPD, "*I"));
}

TEST_F(ArchiveTest, ARefusedEntryFailsTheSaveAndTheDisplayOptionStays) {
    EntryName const entries[] = {{1000, 1001},
                                 {1000, 1002},
                                 {1000, 1008},
                                 {2000, 2001},
                                 {2000, 2002},
                                 {3000, 3002},
                                 {4000, 4002},
                                 {5000, 5002},
                                 {RecordTag("PCIK"), 500100},
                                 {RecordTag("soVl"), 5005},
                                 {RecordTag("StCt"), 6000}};
    for (auto const& [tag, id] : entries) {
        Settings settings;
        settings.Add(tag, id, "x", 1);
        settings.Lock(tag, id);
        DisplayOptions::Options(kDisplayHidden);
        EXPECT_FALSE(mPPD->Save(settings)) << tag << " " << id;
        EXPECT_EQ(DisplayOptions::Options(), kDisplayHidden);
    }
    // A construction starts at 0 and stays there, whatever comes of it.
    for (CFArrayRef names : {mNames.Get(), mOtherNames.Get()}) {
        DisplayOptions::Options(kDisplayHidden);
        Rebuild(mSettings, mFile.URL(), names);
        EXPECT_EQ(DisplayOptions::Options(), kDisplayPlacedAndVisible);
    }
}

TEST_F(ArchiveTest, ValuesAreRestoredIntoATreeThatIsThere) {
    PPDPtr const other = Parse(mFile);
    DisplayOptions::Options(kDisplayHidden);
    EXPECT_TRUE(other->Restore(mSettings));
    EXPECT_EQ(DisplayOptions::Options(), kDisplayHidden);
    EXPECT_EQ(ArchiveOf(*other), Flat(mSettings));
    Settings empty;
    EXPECT_FALSE(other->Restore(empty));
    EXPECT_EQ(DisplayOptions::Options(), kDisplayHidden);
}

TEST_F(ArchiveTest, ReadersOfTheSameFileAndNameAreEqual) {
    EXPECT_TRUE(*mPPD == *Parse(mFile));
    EXPECT_TRUE(*mPPD == *Rebuild(mSettings, mFile.URL()));
    TemporaryFile const copy(Sample());
    EXPECT_FALSE(*mPPD == *Parse(copy));
    mSettings.Set(1000, 1005, "ZUBTEST2.PPD", 12);
    EXPECT_FALSE(*mPPD == *Rebuild(mSettings, mFile.URL()));
    mSettings.Remove(1000, 1005);
    PPDPtr const nameless = Rebuild(mSettings, mFile.URL());
    EXPECT_FALSE(*mPPD == *nameless);
    EXPECT_TRUE(*nameless == *Rebuild(mSettings, mFile.URL()));
    PPDPtr const unnamed = Rebuild(mSettings, nullptr);
    EXPECT_FALSE(*unnamed == *unnamed);
}

// ---- Damage ----

// Everything that walks a tree, so that what a rebuild left behind is looked at.
void UseAll(ZUBPPD& ppd) {
    DisplayOptionsScope const all(kDisplayAll);
    CFRef<CFDictionaryRef> const values(ppd.CopyAllValues());
    CNTL_TYPE type = kControlType;
    for (auto* control = GetFirst(ppd.GetControls(), type); control != nullptr;
         control = GetNext(ppd.GetControls(), type)) {
        PostScriptOf(*control);
        GetParent(control->GetParent());
        control->ResetToDefaultValue();
    }
    ppd.SetAllValues(values);
    Settings again;
    ppd.Save(again);
    ppd.Restore(again);
}

// Removes an entry, gives it another size or number, or puts it into another record.
void Damage(Settings& settings, EntryName const& entry, std::mt19937& random) {
    static constexpr std::int32_t kNumbers[] = {
        -1, 0, 1, 9999, 10001, 100000, 0x7FFFFFFF, static_cast<std::int32_t>(0x80000000)};
    std::int32_t const number = kNumbers[random() % std::size(kNumbers)];
    Bytes junk(random() % 90);
    std::ranges::generate(junk, random);
    switch (random() % 4) {
        case 0:
            settings.Remove(entry.tag, entry.id);
            break;
        case 1:
            settings.Set(entry.tag, entry.id, &number, sizeof number);
            break;
        case 2:
            settings.Set(entry.tag, entry.id, junk.data(), static_cast<long>(junk.size()));
            break;
        default:
            settings.Add(entry.tag, entry.id + static_cast<long>(random() % 5) - 2, junk.data(),
                         static_cast<long>(junk.size()));
    }
}

TEST_F(ArchiveTest, DamagedEntriesGiveATreeThatCanBeUsed) {
    std::vector<EntryName> const entries = EntriesOf(mSettings);
    std::size_t const wholeSize = Flat(mSettings).size();
    long const live = LiveObjectCount();
    std::mt19937 random(4711);
    int smaller = 0;
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE(round);
        Settings settings(mSettings);
        for (unsigned long count = 1 + random() % 12; count > 0; --count) {
            Damage(settings, entries[random() % entries.size()], random);
        }
        PPDPtr const rebuilt = Rebuild(settings, mFile.URL());
        UseAll(*rebuilt);
        EXPECT_TRUE(rebuilt->IsValidPPD());
        smaller += ArchiveOf(*rebuilt).size() < wholeSize ? 1 : 0;
        ASSERT_EQ(DisplayOptions::Options(), kDisplayPlacedAndVisible);
    }
    EXPECT_GT(smaller, 100);
    EXPECT_EQ(LiveObjectCount(), live);
}

TEST_F(ArchiveTest, AListOfAnyLengthComesBackWhole) {
    std::vector<std::string> options(1500);
    std::ranges::generate(options, [n = 0]() mutable { return "o" + std::to_string(n++); });
    TemporaryFile const file(kHeader + PPDLines::Popup("*Long", options));
    PPDPtr const ppd = Parse(file);
    Settings settings;
    ASSERT_TRUE(ppd->Save(settings));
    EXPECT_EQ(ArchiveOf(*Rebuild(settings, file.URL())), ArchiveOf(*ppd));
}

TEST_F(ArchiveTest, NoCountMakesMoreThanTheArchiveHolds) {
    std::int32_t const many = 0x7FFFFFFF;
    for (auto const& [tag, id] : std::vector<std::pair<unsigned long, long>>{
             {4000, 4002}, {5000, 5002}, {RecordTag("StCt"), 6000}, {RecordTag("PCIC"), 5001}}) {
        Settings settings(mSettings);
        settings.Set(tag, id, &many, sizeof many);
        EXPECT_EQ(ArchiveOf(*Rebuild(settings, mFile.URL())), Flat(mSettings)) << tag;
    }
}

}  // namespace
