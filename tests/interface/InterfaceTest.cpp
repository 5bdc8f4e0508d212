// SPDX-License-Identifier: Apache-2.0
// Calls every operation of the logic in the form in which callers outside know it: what changes a
// name, a type or who may call it doesn't compile here. What the operations do beyond that is the
// matter of the tests of their classes.
#include <gtest/gtest.h>

#include <cstdlib>
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
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PPDTree.h"
#include "VelonFeatures/Project/Core/PlugIn/PlugInFactoryEntry.h"
#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/PrinterInfoTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/BoyerMoore.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/DebugMessage.h"
#include "ZUBUtils/PPDUtils/PtrLinkList.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "ZUBUtils/PPDUtils/StringUtils.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"
#include "platform/CollectionManager.h"
#include "platform/MemoryManager.h"
#include "platform/PlugInHost.h"
#include "platform/ProcessManager.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"
#include "tests/interface/InterfacePPD.h"
#include "twoway/PPDLookups.h"
#include "twoway/PrinterListFile.h"
#include "twoway/RandomFileName.h"

namespace {
TEST(InterfaceTest, StringsListsAndErrors) {
    CString text("abc");
    char* const kept = text.Insert(const_cast<char*>(text.GetCharData()), const_cast<char*>("x"));
    EXPECT_EQ(kept, text.GetCharData());
    text.Remove(kept, 1);
    text.Replace(CString(""), CString("<"));
    EXPECT_STREQ(text + ">", "<abc>");
    EXPECT_TRUE(text == CString("<abc>") && text == "<abc>" && text.Contains("ABC"));
    text = CFSTR("cf");
    text = CString(CFSTR("copy"));
    EXPECT_EQ(text.Size(), 4U);
    text = "set by text";
    text.ClearBuffer();
    text.SetBuffer("set");
    text.ClearBuffer();
    text.Initialize();
    EXPECT_TRUE(text.Empty());

    int const items[3] = {};
    PointerList list;
    list.PushBack(&items[1]);
    list.PushFront(&items[0]);
    list.InsertBefore(list.End(), &items[2]);
    PointerList copy(list);
    copy = list;
    EXPECT_EQ(*list.Erase(list.Begin()), &items[1]);
    PointerList const& same = list;
    EXPECT_TRUE(*same.Begin() == &items[1] && *--same.End() == &items[2]);
    list.Erase(list.Begin(), --list.End());
    EXPECT_EQ(list.Front(), list.Back());
    list.PopFront();
    copy.PopBack();
    EXPECT_EQ(copy.Size(), 2U);
    copy.MakeEmpty();
    EXPECT_TRUE(list.Empty() && copy.Empty());
    PtrLinkList links(new LinkElement_Dual);
    EXPECT_TRUE(links.add(new LinkElement_Dual));
    LinkElementDualIterator place = links.Begin();
    EXPECT_EQ(*place++, links.index(1));
    EXPECT_EQ(*--place, links.index(0));

    CError none;
    EXPECT_TRUE(none == short{0} && !none.IsFatal());
    MyDebugMessage("text", 1);
    CError error(short{7}, CString("seven"), true);
    error = CError(error);
    EXPECT_TRUE(error == short{7} && !(error != short{7}) && error.IsFatal());
    error.Description("text");
    EXPECT_STREQ(error.Description(), "text");

    char data[] = "xabcabc";
    unsigned char pascal[256];
    BoyerMoore empty;
    EXPECT_EQ(empty.GetSearchStringLength(), 0);
    BoyerMoore search("abc", 3, data, 7);
    EXPECT_EQ(search.Search(2, "abc", 3), 2);
    EXPECT_EQ(search.Search(0, ctoPStr(const_cast<char*>("abc"), pascal)), 1);
    search.SetSearchString(pascal);
    search.SetSearchString("abc", 3);
    search.SetSearchData(data + 1, 6);
    search.SetCaseSensitve(true);
    EXPECT_TRUE(search.GetCaseSensitive());
    EXPECT_EQ(search.Search(), 0);
    char found[256];
    search.GetSearchString(found);
    EXPECT_EQ(search.GetSearchStringLength(), 3);
    EXPECT_STREQ(ptoCStr(pascal, found), "abc");
    char number[kFloatTextSize];
    EXPECT_EQ(string2Number(num2String(12, number)), 12);
    EXPECT_STREQ(float2String(1.5F, number), "   1.5000");
    EXPECT_STREQ(deleteCharRangeInStr(data, 0, 4), "abc");
    EXPECT_EQ(findChar(data, 'b'), data + 1);
    std::unique_ptr<char[]> const filled(newInitalizedCString(3, '1'));
    EXPECT_FALSE(validateRangeValues(filled.get(), 2));
    wchar_t wide[] = L"12";
    EXPECT_EQ(wtoi(wide), 12);
    char what[] = "b";
    std::unique_ptr<char[]> const replaced(_replace(data, what, found));
    EXPECT_STREQ(replaced.get(), "aabcc");
}

TEST(InterfaceTest, ArchiveAndStreams) {
    OpaqueCollection* collection = NewCollection();
    Settings settings(collection);
    unsigned long tag = 1000;
    long id = 1;
    long size = 0;
    long attributes = 0;
    char value[] = "text";
    EXPECT_EQ(settings.Add(tag, id, value, 4), 0);
    EXPECT_EQ(settings.Set(tag, id, value, 3), 0);
    EXPECT_EQ(settings.Get(tag, id, nullptr, size, false), 0);
    EXPECT_EQ(settings.SetAttribute(tag, id, 1L, true), 0);
    EXPECT_EQ(settings.Lock(tag, id), 0);
    EXPECT_NE(settings.Remove(tag, id), 0);
    EXPECT_EQ(settings.Unlock(tag, id), 0);
    EXPECT_EQ(settings.First(tag, id, size, attributes), 0);
    EXPECT_NE(settings.Next(tag, id, size, attributes), 0);
    std::unique_ptr<CString> const stored(GetSettingsString(settings, 1000, 1));
    EXPECT_STREQ(stored->GetCharData(), "tex");
    EXPECT_EQ(settings.FixEndianness(&size, 4, true), 0);

    CFDataStream stream;
    EXPECT_EQ(settings.Save(&stream), 0);
    CFDataStream source(stream.Data());
    DataStream& in = source;
    EXPECT_TRUE(in.dataExists() && in.valid());
    CFDataStream both;
    DataStream& out = both;
    unsigned long count = 0;
    short status = 1;
    char byte = 0;
    EXPECT_TRUE(out.out(value, 4) && out.in(&byte, 1, &count, &status));
    EXPECT_TRUE(byte == 't' && count == 1 && status == 0);
    char** flat = nullptr;
    EXPECT_EQ(settings.GetSettingsHandle(&flat), 0);
    Settings copy(flat);
    DisposeHandle(flat);
    copy = Settings(settings);
    EXPECT_EQ(copy.Read(&in, in.dataSize()), 0);
    EXPECT_TRUE(copy.Valid() && !copy.Empty() && copy.LastError() == 0 && copy.Count() == 1);

    std::unique_ptr<unsigned char[]> const external(CFStringToExternal(CFSTR("name"), &size));
    copy.Add(1000, 2, external.get(), size);
    EXPECT_EQ(Taken(GetSettingsCFString(copy, 1000, 2)), "name");
    EXPECT_EQ(Taken(ExtenalToCFString(external.get(), size)), "name");
}

TEST(InterfaceTest, TextConversion) {
    EXPECT_TRUE(HexLanguageExceptions().IsException(std::string("Czech")));
    auto input = TextConverter::LanguageStringToEncoding("MacStandard");
    TextConverter converter(input, kCFStringEncodingMacRoman);
    converter.Create();
    EXPECT_TRUE(converter.ValidConverter());
    EXPECT_EQ(converter.GetOutputEncoding(), kCFStringEncodingMacRoman);
    char text[32] = "caf<8E>";
    EXPECT_EQ(Taken(converter.ConvertToCFString(text, 256)), "caf\u00E9");
    EXPECT_EQ(converter.Convert(text, sizeof text), 0);
    EXPECT_TRUE(TextConverter::CFStringToCstring(CFSTR("text"), text, sizeof text));
    converter.Initialize();
    converter.Create();
    EXPECT_FALSE(converter.ValidConverter());
    EXPECT_EQ(converter.GetOutputEncoding(), TextConverter::kUnknownEncoding);

    PPDPtr const ppd = ParseBody("");
    EXPECT_TRUE(TextConverter(ppd.get()).ValidConverter());
    EXPECT_TRUE(TextConverter(ppd.get(), input).ValidConverter());
    auto encoding = TextConverter::GetPPDEncoding(ppd.get());
    EXPECT_TRUE(TextConverter(encoding, TextConverter::GetCurrentEncoding()).ValidConverter());
    EXPECT_EQ(TextConverter::GetPPDEncoding(ppd.get()),
              TextConverter::LanguageStringToEncoding("ISOLatin1"));
    EXPECT_NE(TextConverter::GetCurrentEncoding(), TextConverter::kUnknownEncoding);
    char in[] = "<4 1>";
    EXPECT_EQ(TextConverter::DehexBufferFill(in, text), 2);
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

    ppd->Retain();
    ppd->Retain();
    EXPECT_FALSE(ppd->Release());
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
    PointerList items;
    auto* const item = new _PopupItem;
    item->mKeyword = new CString("A");
    items.PushBack(item);
    PPDXControl* const made =
        ppd->PPDCreatePopupMenu("Finish", "*Made", "Made", items, new CString("A"));
    EXPECT_TRUE(*made == "*Made" && made->GetParent() == group);
    items.MakeEmpty();
    EXPECT_TRUE(ppd->PPDReconcilePopupMenu("*Made", "Name", items, nullptr));
    ppd->SetupControl(
        group, new PPDXRangeControl("*N", CFSTR("N"), flags, nullptr, 0, 0, 9, 1, 4, true), true);
    EXPECT_EQ(ControlOf(*ppd, "*N")->GetParent(), group);
}

TEST(InterfaceTest, TreeAndValues) {
    PPDPtr const ppd = ParseTwoOfEach();
    Settings settings;
    EXPECT_TRUE(ppd->Save(settings));
    EXPECT_TRUE(ppd->Restore(settings));
    PPDX& base = *ppd;
    Settings header;
    EXPECT_TRUE(base.Save(header));
    TemporaryFile const file(kHeader);
    PPDPtr const restored(new ZUBPPD(settings, file.URL(), nullptr));
    EXPECT_FALSE(*restored == *ppd);
    DisplayOptionsScope const all(kDisplayAll);
    EXPECT_EQ(restored->GetControls()->ControlCount(), ppd->GetControls()->ControlCount() - 1);

    EXPECT_STREQ(ppd->GetPPDXControlForKey(CFSTR("*R1"))->Keyword(), "*R1");
    ppd->SetValueForKey(CFSTR("*PageSize"), CFSTR("B"));
    EXPECT_EQ(Taken(ppd->CopyValueForKey(CFSTR("*PageSize"))), "B");
    CFRef<CFDictionaryRef> const values(ppd->CopyAllValues());
    ppd->SetAllValues(values);
    EXPECT_FALSE(ppd->IsKVConstrained("*PageSize", "B"));
    ppd->SetValueForKey(CFSTR("*ZUDuplex"), CFSTR("B"));
    EXPECT_TRUE(ppd->IsKVConstrained("*PageSize", "B"));
    EXPECT_FALSE(ppd->IsKVConstrained(-1L, -1L));

    for (auto* group = ppd->GetGroups()->First(); group; group = ppd->GetGroups()->Next()) {
        EXPECT_EQ(ppd->GetGroups()->Find(group->Keyword(), true), group);
    }
    Settings lists;
    EXPECT_EQ(ppd->GetGroups()->Save(lists) + ppd->GetProperties()->Save(lists), 0);
    EXPECT_FALSE(ppd->GetGroups()->Empty() || ppd->GetProperties()->Empty());
    auto* const page = ppd->GetProperties()->Find("Layout", true);
    EXPECT_TRUE(page->GetScrollDown()->RollDowns()->Find("Finish", true)->GetParent() ==
                page->GetScrollDown());
    restored->ResolveHeirarchy();
    EXPECT_NE(ControlOf(*restored, "*R1")->GetParent(), nullptr);
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
    PPDXErrors errors;
    PPDXErrorObj first;
    errors.Add(&first);
    EXPECT_TRUE(errors.First() == &first && errors.Next() == nullptr && errors.Count() == 1);

    PPDXErrorObj error(short{8}, CString("*K"), false);
    error = PPDXErrorObj(short{8}, false);
    EXPECT_EQ(error.Keyword(), nullptr);
    std::unique_ptr<CString> const name(CFStringToCString(CFSTR("name")));
    EXPECT_STREQ(name->GetCharData(), "name");
    EXPECT_FALSE(page->IsOrphan() && *page == *page->GetScrollDown());
    EXPECT_TRUE(*page == "Layout" && page->IsVisible() && page->CFStringUserName() != nullptr);
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
        control->ResetToDefaultValue();
        std::string const value = Taken(control->CopyPresetValueString());
        control->SetPresetValueString(Str(value));
        control->SetCurrentControlWithCFString(Str(value));
        EXPECT_EQ(Taken(control->CopyCurrentControlValueString()), value);
        EXPECT_FALSE(control->IsInstallableOption());
        unsigned char* injected = nullptr;
        unsigned char code[] = "<*K>";
        EXPECT_EQ(control->Inject("*K", code, 4, "12", injected), 2);
        std::free(injected);
        EXPECT_EQ(control->GeneratePSOutputData(nullptr, code, 4, "12", false), 4);
        EXPECT_GT(control->GeneratePSOutputData(nullptr, code, 4, "12", true), 20);
    }
    PPDXPopupControl& size = *controls.FindPopup("*PageSize", true);
    size.SetValue(2);
    EXPECT_TRUE(size.GetKeywordCFLocalName("A") != nullptr && size.IsKeywordSelected("B"));
    auto* const item = new _PopupItem;
    size.AppendPopupItem(item);
    PointerList items;
    items.PushBack(new _PopupItem);
    EXPECT_TRUE(size.Rebuild("Size", items, nullptr));
    EXPECT_STREQ(controls.FindSpecialOption("*Server", true)->GetValue()->GetCharData(), "2.1");
    EXPECT_EQ(controls.CustomPageSizeCount(), 1);
    EXPECT_STREQ(controls.FindPopup("*InputSlot", true)->FirstItem()->displayName(), "O");

    PPDXControl& flagged = *controls.FindRangeControl("*R1", true);
    EXPECT_TRUE(flagged.IsCommand() && flagged.IsSpooler() && flagged.IsSetup() &&
                flagged.IsMacVJN() && flagged.IsMacImgShift() && flagged.IsNoVelonDriverUI());
    EXPECT_FALSE(flagged.IsDynamic() || PPDXControl::ValidKeyword(nullptr));
    EXPECT_TRUE(PPDXControl::ValidKeyword("*Key"));
    CStringSoup& ids = ppd->GetUIConstraints()->GetConstraintStrings();
    controls.FindPopup("*ZUDuplex", true)->UpdateKVCache("*ZUDuplex", "B");
    EXPECT_EQ(ppd->GetUIConstraints()->GetSelection().GetItem(ids.Find("*ZUDuplex")),
              ids.Find("B"));

    Settings archive;
    EXPECT_EQ(controls.Save(archive) + controls.Restore(archive), 0);
    EXPECT_TRUE(controls.SpecialOptionsCount() == 1 && !controls.NoSpecialOptions());
    EXPECT_EQ(controls.FirstSpecialOption(), controls.FindSpecialOption("*Server", true));
    EXPECT_EQ(controls.NextSpecialOption(), nullptr);
    CountArray counts;
    PPDXControls::Increment(&flagged, counts);
    EXPECT_EQ(PPDXControls::Count(counts), 1);

    PPDXShortcuts& shortcuts = *ppd->GetShortcuts();
    Settings settings;
    EXPECT_EQ(shortcuts.Save(settings), 0);
    EXPECT_EQ(PPDXShortcuts(settings, &controls).Count(), 4);
    EXPECT_NE(shortcuts.First(false), shortcuts.Next());
    EXPECT_STREQ(shortcuts.InputSlot()->Keyword(), "*InputSlot");
    EXPECT_STREQ(shortcuts.Orientation()->Keyword(), "*ZU_PAPER_ORIENTATION");
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
    CStringSoup soup;
    EXPECT_STREQ(soup.Find(soup.Insert("text")), "text");
    EXPECT_EQ(soup.size(), 1);
    soup.Clear();
    EXPECT_EQ(soup.Find("text"), -1);

    using Pair = std::pair<long, long>;
    EXPECT_TRUE(KeyOptionGreater(Pair(2, 1), Pair(1, 9)));
    KVCache pairs;
    pairs.add(Pair(1, 2));
    pairs += pairs + pairs;
    pairs.merge(pairs);
    EXPECT_TRUE(pairs.size() == 3 && pairs.GetKV(2) == Pair(1, 2) && pairs == KVCache(pairs));
    EXPECT_EQ(pairs.pop_front(), pairs.pop_back());
    pairs.clear();
    EXPECT_EQ(pairs.pop_back(), Pair(0, 0));

    ItemConstraintList list(2);
    list.insert(3, 4, kConstraintPlain);
    list.insert(Pair(5, 6));
    list += ItemConstraintList(list);
    std::unique_ptr<Pair> const second(list[1]);
    EXPECT_TRUE(list.size() == 4 && *second == Pair(5, 6));
    KeyConstraintTree tree(1);
    tree.insert(2, Pair(3, 4));
    EXPECT_EQ(tree.DisableConstraints(2, -1, -1).size(), 1U);
    EXPECT_EQ(tree.EnableConstraints(2, -1, -1).size(), 1U);
    EXPECT_EQ(std::unique_ptr<ItemConstraintList>(tree.GetItemConstraintList(2))->size(), 1);
    ConstraintForest forest;
    forest.insert(1, 2, 3, 4, kConstraintPlain);
    forest.insert(1, 2, Pair(5, 6));
    EXPECT_EQ(std::unique_ptr<ItemConstraintList>(forest.GetConstraintList(1, 2))->size(), 2);
    forest.clear();
    EXPECT_EQ(forest.GetConstraintList(1, 2), nullptr);
    KeyForest keys;
    keys.insert(1, 2);
    KVCache* filled = &pairs;
    keys.GetKeys(&filled);
    EXPECT_TRUE(pairs.GetItem(1) == 2 && keys.GetItems(1)->size() == 1);
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
    EXPECT_TRUE(store.IsKVConstrained(x, a) && store.IsKVConstrained("*X", "A"));
    store.UpdateKVCache("*Y", "A");
    EXPECT_TRUE(store.ValidateDelta(change));
    EXPECT_FALSE(store.GetConstraintForest().EnableConstraints(-2, -1, -1, -1));
    EXPECT_FALSE(store.GetRequiresForest().DisableConstraints(x, -1, -1, -1));

    PPDPtr const ppd = ParseBody(kTree + PPDLines::Popup("*P", {"A", "B"}));
    auto* const popup = ControlOf<PPDXPopupControl>(*ppd, "*P");
    CStringSoup& ids = ppd->GetUIConstraints()->GetConstraintStrings();
    popup->UpdateKVCache(ids.Find("*P"), ids.Find("B"));
    EXPECT_EQ(ppd->GetUIConstraints()->GetSelection().GetItem(ids.Find("*P")), ids.Find("B"));

    KVCache current;
    current.Insert(y, b);
    KVCache const locked;
    ConstraintsEngine engine(&current, &store.GetConstraintForest(), &store.GetKeyForest(),
                             &locked);
    EXPECT_EQ(engine.Test(&change).conflicts.size(), 1);
    KVCache alternatives = engine.Test(&change).alternatives;
    EXPECT_EQ(engine.TestLockedStatus(&alternatives).size(), 0);
    EXPECT_EQ(engine.Solve(&change, true).conflicts.size(), 0);
    EXPECT_EQ(engine.RSolve(&change, false).conflicts.size(), 0);
    engine.purge();
    EXPECT_EQ(engine.ListCurrentConstraints(x).Lookup(std::pair(x, a)), 0);
    EXPECT_EQ(engine.ListScreenedConstraints(current, true, x).size(), 1);
    EXPECT_EQ(engine.ListBlockingConstraints(y, a, x).size(), 0);
}

}  // namespace
