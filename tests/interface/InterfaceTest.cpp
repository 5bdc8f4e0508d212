// SPDX-License-Identifier: Apache-2.0
// Calls the operations of the logic that no other test calls, in the form in which callers outside
// know them: what changes a name, a type or who may call it doesn't compile here. The others are
// called so by the tests of their classes.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "PPDX/PPDObjects/GroupName.h"
#include "PPDX/PPDObjects/PPDFile.h"
#include "PPDX/PPDObjects/PPDFileStream.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "ZUBUtils/PPDUtils/BoyerMoore.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"
#include "tests/interface/InterfacePPD.h"

namespace {

TEST(InterfaceTest, StringsListsAndErrors) {
    CString text("set by text");
    text.ClearBuffer();
    text.SetBuffer("set");
    text.ClearBuffer();
    text.Initialize();
    EXPECT_TRUE(text.Empty());

    CError error(short{7}, CString("seven"), true);
    error = CError(error);
    EXPECT_TRUE(error == short{7} && !(error != short{7}) && error.IsFatal());

    char data[] = "xabcabc";
    unsigned char pascal[] = "\3abc";
    BoyerMoore empty;
    EXPECT_EQ(empty.GetSearchStringLength(), 0);
    BoyerMoore search("abc", 3, data, 7);
    search.SetSearchString("ca", 2);
    EXPECT_EQ(search.Search(), 3);
    search.SetSearchString(pascal);
    EXPECT_EQ(search.Search(), 1);
    search.SetCaseSensitve(true);
    EXPECT_TRUE(search.GetCaseSensitive());
    char found[256];
    search.GetSearchString(found);
    EXPECT_EQ(search.GetSearchStringLength(), 3);
    EXPECT_STREQ(found, "abc");
}

TEST(InterfaceTest, ArchiveAndStreams) {
    Settings settings;
    long size = 0;
    EXPECT_EQ(settings.FixEndianness(&size, 4, true), 0);
    CFDataStream stream;
    EXPECT_EQ(settings.Save(&stream), 0);
    EXPECT_TRUE(static_cast<DataStream&>(stream).dataExists());
    std::unique_ptr<unsigned char[]> const external(CFStringToExternal(CFSTR("name"), &size));
    EXPECT_EQ(Taken(ExtenalToCFString(external.get(), size)), "name");
}

TEST(InterfaceTest, TextConversion) {
    auto input = TextConverter::LanguageStringToEncoding("MacStandard");
    TextConverter converter(input, kCFStringEncodingMacRoman);
    converter.Create();
    EXPECT_TRUE(converter.ValidConverter());
    EXPECT_EQ(converter.GetOutputEncoding(), kCFStringEncodingMacRoman);
    converter.Initialize();
    converter.Create();
    EXPECT_FALSE(converter.ValidConverter());
    EXPECT_EQ(converter.GetOutputEncoding(), TextConverter::kUnknownEncoding);

    PPDPtr const ppd = ParseBody("");
    auto encoding = TextConverter::GetPPDEncoding(ppd.get());
    EXPECT_TRUE(TextConverter(encoding, TextConverter::GetCurrentEncoding()).ValidConverter());
    EXPECT_EQ(encoding, TextConverter::LanguageStringToEncoding("ISOLatin1"));
    EXPECT_NE(TextConverter::GetCurrentEncoding(), TextConverter::kUnknownEncoding);
    char in[] = "<4 1>";
    char* position = in;
    EXPECT_EQ(TextConverter::nextHexChar(&position), 0);
    EXPECT_EQ(TextConverter::toShort(*position), 4);
    EXPECT_EQ(TextConverter::nextHexChar(&position), 0);
    EXPECT_EQ(position, in + 3);
    char odd[] = "<x";
    position = odd;
    EXPECT_EQ(TextConverter::nextHexChar(&position), 5000);
}

TEST(InterfaceTest, ReaderAndFiles) {
    TemporaryFile const file(kHeader);
    PPDFile onDisk(file.URL());
    FSSpec place;
    short volume = 0;
    long folder = 0;
    char name[FileMac::kNameSize];
    onDisk.getFileInfo(&place);
    onDisk.getFileInfo(&volume, &folder, name);
    EXPECT_TRUE(folder == place.parID && volume == onDisk.getFileInfo().vRefNum);
    EXPECT_TRUE(onDisk.getFileName(name) == noErr && onDisk.exists());
    PPDFile same(place);
    unsigned long count = 4;
    EXPECT_EQ(same.openDataFork(1), noErr);
    EXPECT_EQ(same.dataForkRead(name, &count), noErr);
    EXPECT_TRUE(same.dataForkOpen() && same.getDataForkRefNum() >= 0);
    EXPECT_EQ(same.closeDataFork(), noErr);
    EXPECT_EQ(same.dataForkWrite(name, count), -38);
    EXPECT_EQ(same.createDataFork(GetCreatorID(), 0), dupFNErr);
    EXPECT_TRUE(PPDX::ValidateAgainstPCFilename(Names("ZUBTEST"), &same));
    EXPECT_FALSE(PPDX::ValidateFileName(file.URL(), Names("OTHER"), nullptr));
    PPDFileStream stream(&same, true);
    char line[PPDStream::kLineSize];
    EXPECT_TRUE(stream.GetLine(line) && stream.Good() && !stream.Bad() && !stream.EndOfFile());
    stream.Setup();
    EXPECT_TRUE(stream.Bad());
    static_cast<PPDStream&>(stream).Setup("x", 1);
    EXPECT_EQ(stream.PeekChar(), 'x');
    stream.Setup("y", 1);
    EXPECT_EQ(stream.PeekChar(), 'y');

    PPDPtr const ppd(new ZUBPPD(place, kParseAll, nullptr));
    EXPECT_TRUE(ppd->IsValidPrinterName() && ppd->IsValidPPD());
    EXPECT_TRUE(ppd->GetFileSpec(place) && ppd->GetPPDFileName(name));
    EXPECT_STREQ(ppd->PCFileName(), "ZUBTEST.PPD");
    EXPECT_STREQ(ppd->LanguageVersion(), "English");
    EXPECT_STREQ(ppd->LanguageEncoding(), "ISOLatin1");
    EXPECT_STREQ(ppd->ZUVersion(), "4.4");
    EXPECT_TRUE(ppd->ModelName() == nullptr && ppd->PathToPDE() == nullptr);
    EXPECT_NE(ppd->GetStringTextEncoding(), TextConverter::kUnknownEncoding);
    ppd->AllErrorsFatal(true);
    EXPECT_TRUE(ppd->ParseOrphans() && ppd->ParseHidden());
    PPDStream model(" \"Own\"", 6);
    PPDStream base(" \"Base\"", 7);
    EXPECT_EQ(Taken(ppd->PPDX::ParsePSKeywords(base, "*ModelName")), "none");
    EXPECT_EQ(Taken(ppd->ParsePSKeywords(model, "*ModelName")), "none");
    EXPECT_STREQ(ppd->ModelName(), "Own");
    PPDPtr const empty(new ZUBPPD(kParseAll));
    empty->Parse();
    EXPECT_FALSE(empty->IsValidPPD() || empty->GetFileSpec(place));
    EXPECT_EQ(ppd->GetErrors()->Count(), 3);

    PPDStream text("a/b: \"q\" \"ps\"", 13);
    PPDStream copy(text);
    char token[PPDX::kTextSize];
    char byte = 0;
    EXPECT_TRUE(copy.GetChar(byte) && copy.PeekChar() == '/' && copy.Status() == 0);
    copy.SkipWhiteSpace();
    char const* const delimiters = "/:";
    EXPECT_TRUE(ppd->NextToken(text, token, delimiters, true));
    EXPECT_EQ(ppd->GetQuotedString(text, token, 256UL), 2U);
    EXPECT_EQ(ppd->GetPostscriptString(text, token, 256UL), 3U);
    char blanks[] = "  x ";
    PPDX::StripLeadingWhiteSpace(blanks);
    PPDX::StripTrailingWhiteSpace(blanks);
    EXPECT_STREQ(blanks, "x");
    PPDStream version("4.2", 3);
    EXPECT_EQ(Taken(ppd->TestPPDFile(version, "*PPD-Adobe")), "28");

    for (auto set : {&ZUBPPD::IncludeOrphans, &ZUBPPD::IncludeHidden, &ZUBPPD::ExcludeOrphans,
                     &ZUBPPD::IncludeHidden, &ZUBPPD::ExcludeHidden}) {
        _DISPLAY_OPTIONS_ const former = ZUBPPD::Options();
        set();
        int const bit = set == &ZUBPPD::IncludeOrphans ? 1 : set == &ZUBPPD::IncludeHidden ? 2 : 0;
        EXPECT_EQ(ZUBPPD::Options(), bit == 0 ? 0 : former | bit);
    }
    ZUBPPD::Options(kDisplayAll);
    EXPECT_EQ(ZUBPPD::sDisplayOptions, kDisplayAll);
    ZUBPPD::Options(kDisplayPlacedAndVisible);
    ZUBPPD::SetExtensions(kExtensionsLevel1);
    EXPECT_EQ(ZUBPPD::GetExtensions(), kExtensionsLevel1);
    ZUBPPD::SetExtensions(kExtensionsAll);
    EXPECT_EQ(ZUBPPD::sExtensionsSupport, kExtensionsAll);
}

// Outside of a parse there are no further lines: a block that is opened ends at once.
TEST(InterfaceTest, ParsersOfSingleLines) {
    PPDPtr const ppd = ParseBody(kTree);
    PointerList flags;
    PPDXGroup* const group = ppd->GetGroups()->Find("Finish", true);
    auto const line = [](char const* text) {
        return PPDStream(text, static_cast<long>(std::strlen(text)));
    };
    auto const expect = [&](char const* error, char const* text, auto parse) {
        PPDStream stream = line(text);
        EXPECT_EQ(Taken(parse(stream)), error) << text;
    };
    expect("none", " Page/Page: True", [&](auto& s) { return ppd->ParsePropertyPage(s); });
    expect("none", " Late/Late: True", [&](auto& s) { return ppd->ParseGroupName(s); });
    expect("none", " Late/Pane1: True|Rolldown", [&](auto& s) { return ppd->ParseParent(s); });
    expect("none", " *A x *B y", [&](auto& s) { return ppd->ParseUIConstraint(s, false); });
    expect("none", " *R", [&](auto& s) { return ppd->ParseShortcut(s); });
    expect("16", " *K:", [&](auto& s) { return ppd->ParseControl(s); });
    expect("5", " *K: Finish/F", [&](auto& s) { return ppd->ParseGroup(s, "*K", flags); });
    expect("11", " *K/K: PickOne",
           [&](auto& s) { return ppd->ParseOpenUI(s, "*K", flags, group); });
    expect("10", "", [&](auto& s) { return ppd->ParseOpenUIZUB(s, "*K", flags, group); });
    expect("none", " *R/R: (0;9;1;4) \"x\"",
           [&](auto& s) { return ppd->ParseRange(s, "*R", flags, group); });
    expect("none", " *F/F: (0;9;1;4) \"x\"",
           [&](auto& s) { return ppd->ParseFloatRange(s, "*F", flags, group); });
    expect("none", "Width: 1 points 72 1000",
           [&](auto& s) { return ppd->ParseCustomPageSize(s, "*%ParamCustomPrintSize"); });
    expect("none", " *Server: 2", [&](auto& s) { return ppd->ParseSpecialOption(s); });
    EXPECT_EQ(Taken(ppd->ParsePopupControl("*P", CFSTR("P"), flags, group, true)), "11");
    EXPECT_EQ(Taken(ppd->ParseBooleanControl("*B", CFSTR("B"), flags, group)), "none");
    EXPECT_NE(ControlOf<PPDXRangeControl>(*ppd, "*R"), nullptr);
    EXPECT_NE(ControlOf<PPDXFloatRangeControl>(*ppd, "*F"), nullptr);
    EXPECT_NE(ControlOf<PPDXSpecialOption>(*ppd, "*Server"), nullptr);
    auto* const size = ControlOf<PPDXCustomPageSizeControl>(*ppd, "*CustomPrintSize");
    ASSERT_NE(size, nullptr);
    EXPECT_EQ(size->MaxWidth(), 1000.0F);
    EXPECT_NE(ppd->GetProperties()->Find("Page", true), nullptr);
    EXPECT_NE(ppd->GetGroups()->Find("Late", true), nullptr);

    GroupName const late("Late", CFSTR("Late"), true);
    EXPECT_TRUE(std::strcmp(late.Keyword(), "Late") == 0 && late.IsVisible());
    ppd->SetupControl(
        group, new PPDXRangeControl("*N", CFSTR("N"), flags, nullptr, 0, 0, 9, 1, 4, true), true);
    EXPECT_EQ(ControlOf(*ppd, "*N")->GetParent(), group);
}

TEST(InterfaceTest, TreeAndValues) {
    PPDPtr const ppd = ParseTwoOfEach();
    Settings settings;
    EXPECT_TRUE(ppd->Save(settings));
    PPDX& base = *ppd;
    Settings header;
    EXPECT_TRUE(base.Save(header));
    TemporaryFile const file(kHeader);
    PPDPtr const restored(new ZUBPPD(settings, file.URL(), nullptr));
    DisplayOptionsScope const all(kDisplayAll);
    restored->ResolveHeirarchy();
    EXPECT_NE(ControlOf(*restored, "*R1")->GetParent(), nullptr);
    Settings lists;
    EXPECT_EQ(ppd->GetGroups()->Save(lists) + ppd->GetProperties()->Save(lists), 0);
    Settings none;
    PPDXGroups groups(none);
    PPDXProperties pages(none);
    PPDXGroup added("Added", CFSTR("Added"), true);
    PPDXProperty addedPage("Added", CFSTR("Added"), true, true, true);
    groups.Add(&added);
    pages.Add(&addedPage);
    EXPECT_TRUE(groups.First() == &added && pages.First() == &addedPage && pages.Count() == 1);
    added.SetParent(&addedPage);
    EXPECT_TRUE(added.OkayToDisplay(kDisplayPlacedAndVisible));
    EXPECT_EQ(added.Save(lists, 1) + addedPage.Save(lists, 2), 0);
    EXPECT_TRUE(PPDXGroup(lists, 1) == "Added" && PPDXProperty(lists, 2).ShowInApp());
    EXPECT_TRUE(PPDXRollDown(lists, 1).Controls()->Empty() &&
                PPDXScrollPane(lists, 1).RollDowns()->Empty());
    PPDXErrorObj const error(short{8}, CString("*K"), false);
    EXPECT_STREQ(error.Keyword(), "*K");
}

TEST(InterfaceTest, Controls) {
    PPDPtr const ppd = ParseTwoOfEach();
    DisplayOptionsScope const all(kDisplayAll);
    PPDXControls& controls = *ppd->GetControls();
    for (PPDXControl* control :
         {static_cast<PPDXControl*>(controls.FindPopup("*PageSize", true)),
          static_cast<PPDXControl*>(controls.FindBoolean("*B1", true)),
          static_cast<PPDXControl*>(controls.FindRangeControl("*R1", true)),
          static_cast<PPDXControl*>(controls.FindFloatRangeControl("*F1", true))}) {
        control->SetItemID(101);
        EXPECT_EQ(control->GetItemID(), 101U);
        std::string const value = Taken(control->CopyPresetValueString());
        control->SetPresetValueString(Str(value));
        EXPECT_EQ(Taken(control->CopyCurrentControlValueString()), value);
        unsigned char code[] = "<*K>";
        EXPECT_EQ(control->GeneratePSOutputData(nullptr, code, 4, "12", false), 4);
        EXPECT_GT(control->GeneratePSOutputData(nullptr, code, 4, "12", true), 20);
    }
    EXPECT_STREQ(controls.FindPopup("*InputSlot", true)->FirstItem()->displayName(), "O");

    PPDXControl& flagged = *controls.FindRangeControl("*R1", true);
    EXPECT_FALSE(flagged.IsDynamic());
    Settings archive;
    EXPECT_EQ(controls.Save(archive) + controls.Restore(archive), 0);
    CountArray counts;
    PPDXControls::Increment(&flagged, counts);
    EXPECT_EQ(PPDXControls::Count(counts), 1);
}

// Each kind made with nothing, with everything, and from an archive, in which it had `id`.
TEST(InterfaceTest, ControlsByThemselves) {
    DisplayOptionsScope const all(kDisplayAll);
    PointerList flags;
    PointerList items;
    Settings settings;
    long const id = 5001;
    PPDXPopupControl noPopup;
    noPopup.AppendPopupItem(new _PopupItem);
    noPopup.FirstItem()->mKeyword = new CString("A");
    EXPECT_TRUE(noPopup.SetKeywordSelect("A", true) && noPopup.GetValue() == 1);
    EXPECT_EQ(noPopup.Save(settings, id), 0);
    EXPECT_EQ(PPDXPopupControl(settings, id, nullptr).ItemCount(), 1);
    PPDXPopupControl popup("*P", CFSTR("P"), flags, true, false, false, items, nullptr, nullptr);
    EXPECT_EQ(popup.DefaultValue(), 0);

    EXPECT_FALSE(PPDXBooleanControl().DefaultState());
    PPDXBooleanControl boolean("*B", CFSTR("B"), flags, true, nullptr, nullptr, 0, nullptr, nullptr,
                               0, false, nullptr);
    boolean.SetValue(true);
    EXPECT_EQ(boolean.Save(settings, id), 0);
    EXPECT_TRUE(PPDXBooleanControl(settings, id, nullptr).IsTrue());

    PPDXRangeControl range("*R", CFSTR("R"), flags, nullptr, 0, 1, 9, 2, 4, true);
    EXPECT_TRUE(range.MinVal() == 1 && range.MaxVal() == 9 && range.Increment() == 2);
    EXPECT_EQ(range.Save(settings, id), 0);
    EXPECT_EQ(PPDXRangeControl(settings, id).DefaultValue() - PPDXRangeControl().DefaultValue(), 4);
    PPDXFloatRangeControl real("*F", CFSTR("F"), flags, nullptr, 0, 0.5, 2, .25, 1.5, true);
    EXPECT_TRUE(real.MinVal() == 0.5F && real.MaxVal() == 2.0F && real.Increment() == 0.25F);
    real.SetValue(7);
    EXPECT_EQ(real.Save(settings, id), 0);
    EXPECT_EQ(PPDXFloatRangeControl(settings, id).GetValue(), 2.0F);
    EXPECT_EQ(PPDXFloatRangeControl().DefaultValue(), 0.0F);

    PPDXCustomPageSizeControl limited("*S", flags, 1, 2, 3, 4);
    EXPECT_TRUE(limited.MinWidth() == 1 && limited.MaxWidth() == 2 && limited.MinHeight() == 3 &&
                limited.MaxHeight() == 4);
    PPDXCustomPageSizeControl size("*S", flags);
    size.SetWidth(1);
    size.SetHeight(2);
    size.SetMinWidth(3);
    size.SetMaxWidth(4);
    size.SetMinHeight(5);
    size.SetMaxHeight(6);
    EXPECT_TRUE(size.GetWidth() == 1 && size.GetHeight() == 2 && size.MinWidth() == 3 &&
                size.MaxWidth() == 4 && size.MinHeight() == 5 && size.MaxHeight() == 6);

    char text[] = "2.1";
    PPDXSpecialOption option("*O", CFSTR("O"), flags, text, nullptr, 0, true);
    EXPECT_EQ(option.Save(settings, id), 0);
    EXPECT_TRUE(PPDXSpecialOption().GetValue()->Empty());
    EXPECT_STREQ(PPDXSpecialOption(settings, id).GetValue()->GetCharData(), text);

    items.PushBack(&popup);
    EXPECT_EQ(PPDXShortcuts(items).Find("*P", true), &popup);
    PPDXControls registry(settings, nullptr);
    registry.Add(&option);
    EXPECT_TRUE(registry.Empty() && registry.FindSpecialOption("*O", true) == &option);
}

TEST(InterfaceTest, RulesAndTheirContainers) {
    using Pair = std::pair<long, long>;
    ItemConstraintList list(2);
    list.insert(Pair(5, 6));
    list += ItemConstraintList(list);
    EXPECT_EQ(list.size(), 2);
    KeyConstraintTree tree(1);
    tree.insert(2, Pair(3, 4));
    EXPECT_EQ(tree.DisableConstraints(2, -1, -1).size(), 1U);
    EXPECT_EQ(tree.EnableConstraints(2, -1, -1).size(), 1U);
    EXPECT_EQ(std::unique_ptr<ItemConstraintList>(tree.GetItemConstraintList(2))->size(), 1);
    ConstraintForest forest;
    forest.insert(1, 2, Pair(5, 6));
    forest.clear();
    EXPECT_EQ(forest.GetConstraintList(1, 2), nullptr);
    KeyForest keys;
    keys.insert(1, 2);
    keys.clear();
    EXPECT_EQ(keys.GetItems(1), nullptr);
}

TEST(InterfaceTest, RulesAndSolver) {
    UIConstraints store;
    for (char const* option : {"A", "B"}) {
        store.KVSInsert("*X", option);
        store.KVSInsert("*Y", option);
    }
    CStringSoup& texts = store.GetConstraintStrings();
    long const x = texts.Find("*X");
    long const y = texts.Find("*Y");
    long const a = texts.Find("A");
    long const b = texts.Find("B");
    store.KVSInsert(y, texts.Insert("C"));
    store.Add("*X", "A", "*Y", "B", false);
    store.Resolve();
    KVCache change;
    change.Insert(x, a);
    EXPECT_TRUE(store.ValidateDelta(change));
    store.UpdateKVCache(y, b);
    EXPECT_FALSE(store.ValidateDelta(change));

    KVCache current;
    current.Insert(y, b);
    KVCache const locked;
    ConstraintsEngine engine(&current, &store.GetConstraintForest(), &store.GetKeyForest(),
                             &locked);
    EXPECT_EQ(engine.Test(&change).conflicts.size(), 1);
    KVCache alternatives = engine.Test(&change).alternatives;
    EXPECT_EQ(engine.TestLockedStatus(&alternatives).size(), 0);
    EXPECT_EQ(engine.RSolve(&change, false).conflicts.size(), 0);
    engine.purge();
}

}  // namespace
