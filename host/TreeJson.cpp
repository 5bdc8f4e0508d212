// SPDX-License-Identifier: Apache-2.0
#include "host/TreeJson.h"

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXElement.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "host/JsonText.h"
#include "platform/CFRef.h"

namespace {

// What pages, groups and controls have in common.
Json Names(PPDXElement& element) {
    return {{"keyword", JsonText::Bytes(element.Keyword())},
            {"name", JsonText::Text(element.CFStringUserName())}};
}

// Null for an orphan, and where a parent is known by a name that leads nowhere.
Json Parent(PPDXElement& element) {
    PPDXElement const* const parent = element.GetParent();
    return parent == nullptr ? Json() : JsonText::Bytes(parent->Keyword());
}

Json Flags(PPDXControl& control) {
    Json flags = Json::array();
    for (char const* flag = control.FirstControlFlag(); flag != nullptr;
         flag = control.NextControlFlag()) {
        flags.push_back(JsonText::Bytes(flag));
    }
    return flags;
}

Json Value(PPDXControl& control) {
    return JsonText::Text(CFRef<CFStringRef>(control.CopyCurrentControlValueString()));
}

Json PostScript(PPDXControl& control) {
    long const length = control.PostScript(nullptr);
    // One byte at least, so that the bytes are never null.
    std::vector<unsigned char> code(static_cast<std::size_t>(length > 0 ? length : 0) + 1);
    // A job note may say that there is nothing and still write something.
    if (length > 0) {
        control.PostScript(code.data());
    }
    return JsonText::Bytes(code.data(), length);
}

Json Item(_PopupItem& item) {
    return {{"keyword", JsonText::Bytes(item.Keyword())},
            {"name", JsonText::Text(item.LocalName())},
            {"code", JsonText::Bytes(item.mPSCode, item.mPSLength)},
            {"selected", item.mSelected != 0}};
}

void DescribePopup(PPDXControl& control, Json& object) {
    auto& popup = static_cast<PPDXPopupControl&>(control);
    object["multiple"] = popup.CanSelectMultipleItems();
    object["installable"] = popup.IsInstallableOption();
    object["default"] = JsonText::Bytes(popup.GetDefaultKeyword());
    Json& items = object["items"] = Json::array();
    for (_PopupItem* item = popup.FirstItem(); item != nullptr; item = popup.NextItem()) {
        items.push_back(Item(*item));
    }
}

// A boolean gives out the code of its present state only; the archive has both as they stand.
Json ArchivedCode(Settings& settings, unsigned long tag, long id) {
    long size = 0;
    if (settings.Get(tag, id, nullptr, size, false) != 0) {
        return Json();
    }
    std::vector<unsigned char> code(static_cast<std::size_t>(size) + 1);
    settings.Get(tag, id, code.data(), size, false);
    return JsonText::Bytes(code.data(), size);
}

void DescribeBoolean(PPDXControl& control, Json& object) {
    constexpr unsigned long kTrueCode = 0x42745054;   // 'BtPT'
    constexpr unsigned long kFalseCode = 0x42665054;  // 'BfPT'
    constexpr long kRecord = 1;
    auto& boolean = static_cast<PPDXBooleanControl&>(control);
    Settings settings;
    boolean.Save(settings, kRecord);
    object["default"] = boolean.DefaultState();
    object["trueText"] = JsonText::Bytes(boolean.TrueDisplayText());
    object["falseText"] = JsonText::Bytes(boolean.FalseDisplayText());
    object["trueCode"] = ArchivedCode(settings, kTrueCode, kRecord);
    object["falseCode"] = ArchivedCode(settings, kFalseCode, kRecord);
}

template <typename Range>
void DescribeRange(PPDXControl& control, Json& object) {
    auto& range = static_cast<Range&>(control);
    object["minimum"] = range.MinVal();
    object["maximum"] = range.MaxVal();
    object["increment"] = range.Increment();
    object["default"] = range.DefaultValue();
}

void DescribeCustomPageSize(PPDXControl& control, Json& object) {
    auto& size = static_cast<PPDXCustomPageSizeControl&>(control);
    object["minWidth"] = size.MinWidth();
    object["maxWidth"] = size.MaxWidth();
    object["minHeight"] = size.MinHeight();
    object["maxHeight"] = size.MaxHeight();
}

void DescribeJobNote(PPDXControl& control, Json& object) {
    auto& note = static_cast<PPDXJobNote&>(control);
    object["maximumLength"] = note.MaxLength();
    object["minimumLength"] = note.MinLength();
    object["noteFlags"] = note.NoteFlags();
    object["defaultNotes"] = JsonText::Bytes(note.GetDefaultNotes());
}

struct KindRow {
    CNTL_TYPE type;
    void (*describe)(PPDXControl& control, Json& object);
};

constexpr KindRow kKinds[] = {
    {kJobNoteType, DescribeJobNote},
    {kRangeType, DescribeRange<PPDXRangeControl>},
    {kFloatRangeType, DescribeRange<PPDXFloatRangeControl>},
    {kBooleanType, DescribeBoolean},
    {kPopupType, DescribePopup},
    {kCustomPageSizeType, DescribeCustomPageSize},
};

// What all controls have, then what a kind adds.
Json Control(PPDXControl& control) {
    Json object = Names(control);
    object["type"] = static_cast<int>(control.Type());
    object["visible"] = control.IsVisible();
    object["parent"] = Parent(control);
    object["flags"] = Flags(control);
    object["value"] = Value(control);
    object["postScript"] = PostScript(control);
    for (KindRow const& row : kKinds) {
        if (row.type == control.Type()) {
            row.describe(control, object);
        }
    }
    return object;
}

// Calls `visit` with each member of a list; with none for a list that wasn't made.
template <typename List, typename Visit>
void ForEach(List* list, Visit visit) {
    if (list != nullptr) {
        for (auto* member = list->First(); member != nullptr; member = list->Next()) {
            visit(*member);
        }
    }
}

template <typename Visit>
void ForEach(PPDXControls* list, Visit visit) {
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = GetFirst(list, type); control != nullptr;
         control = GetNext(list, type)) {
        visit(*control);
    }
}

// What `describe` makes of each member of a list.
template <typename List, typename Describe>
Json Members(List* list, Describe describe) {
    Json members = Json::array();
    ForEach(list, [&](auto& member) { members.push_back(describe(member)); });
    return members;
}

Json Keyword(PPDXElement& element) {
    return JsonText::Bytes(element.Keyword());
}

Json Header(ZUBPPD const& ppd) {
    return {{"PCFileName", JsonText::Bytes(ppd.PCFileName())},
            {"FormatVersion", JsonText::Bytes(ppd.FormatVersion())},
            {"FileVersion", JsonText::Bytes(ppd.FileVersion())},
            {"LanguageVersion", JsonText::Bytes(ppd.LanguageVersion())},
            {"LanguageEncoding", JsonText::Bytes(ppd.LanguageEncoding())},
            {"ModelName", JsonText::Bytes(ppd.ModelName())},
            {"APDialogExtension", JsonText::Bytes(ppd.PathToPDE())},
            {"ZUFileVersion", JsonText::Bytes(ppd.ZUFileVersion())},
            {"ZUVersion", JsonText::Bytes(ppd.ZUVersion())}};
}

Json Error(PPDXErrorObj& error) {
    return {{"code", error.Code()},
            {"fatal", error.IsFatal()},
            {"keyword", JsonText::Bytes(error.Keyword())}};
}

Json Property(PPDXProperty& property) {
    PPDXScrollPane* const pane = property.GetScrollDown();
    Json object = Names(property);
    object["visible"] = property.IsVisible();
    object["showInPrintProperties"] = property.ShowInPrintProp();
    object["showInApplication"] = property.ShowInApp();
    object["scrollPane"] = pane == nullptr ? Json() : Keyword(*pane);
    return object;
}

Json Group(PPDXGroup& group) {
    auto* const rollDown = dynamic_cast<PPDXRollDown*>(&group);
    auto* const pane = dynamic_cast<PPDXScrollPane*>(&group);
    Json object = Names(group);
    object["kind"] = rollDown != nullptr ? "rollDown" : pane != nullptr ? "scrollPane" : "group";
    object["visible"] = group.IsVisible();
    object["parent"] = Parent(group);
    if (rollDown != nullptr) {
        object["controls"] = Members(rollDown->Controls(), Keyword);
    }
    if (pane != nullptr) {
        object["rollDowns"] = Members(pane->RollDowns(), Keyword);
    }
    return object;
}

Json Shortcuts(PPDXShortcuts* shortcuts) {
    Json keywords = Json::array();
    for (PPDXControl* control = FirstShortcut(shortcuts); control != nullptr;
         control = NextShortcut(shortcuts)) {
        keywords.push_back(JsonText::Bytes(control->Keyword()));
    }
    return keywords;
}

// Writes one JSON object as Json::dump does with an indentation of two, but each member and each
// element of a list as soon as it is there.
class ObjectWriter {
  public:
    explicit ObjectWriter(std::ostream& out) : mOut(out) { mOut << '{'; }

    void Member(char const* key, Json const& value) {
        Key(key);
        Value(value, 1);
    }
    template <typename List, typename Describe>
    void Members(char const* key, List* list, Describe describe) {
        Key(key);
        bool isEmpty = true;
        ForEach(list, [&](auto& member) {
            mOut << (isEmpty ? "[\n    " : ",\n    ");
            Value(describe(member), 2);
            isEmpty = false;
        });
        mOut << (isEmpty ? "[]" : "\n  ]");
    }
    void End() { mOut << "\n}\n"; }

  private:
    void Key(char const* key) {
        mOut << (mIsFirst ? "\n  \"" : ",\n  \"") << key << "\": ";
        mIsFirst = false;
    }
    // A line end in a JSON text is one between its parts: those in strings are escaped.
    void Value(Json const& value, std::size_t depth) {
        std::string const text = value.dump(2);
        std::string_view rest = text;
        std::size_t end = rest.find('\n');
        while (end != std::string_view::npos) {
            mOut << rest.substr(0, end + 1) << std::string_view("    ", 2 * depth);
            rest.remove_prefix(end + 1);
            end = rest.find('\n');
        }
        mOut << rest;
    }

    std::ostream& mOut;
    bool mIsFirst = true;
};

}  // namespace

void TreeJson::Write(ZUBPPD& ppd, std::ostream& out) {
    DisplayOptionsScope const all(kDisplayAll);
    ObjectWriter object(out);
    object.Member("validPrinterName", ppd.IsValidPrinterName());
    object.Member("valid", ppd.IsValidPPD());
    object.Member("header", Header(ppd));
    object.Members("errors", ppd.GetErrors(), Error);
    object.Members("properties", ppd.GetProperties(), Property);
    object.Members("groups", ppd.GetGroups(), Group);
    object.Members("controls", ppd.GetControls(), Control);
    object.Member("shortcuts", Shortcuts(ppd.GetShortcuts()));
    object.Member("shortcutCount", GetShortcutCount(ppd.GetShortcuts()));
    object.End();
}

Json TreeJson::Controls(ZUBPPD& ppd) {
    DisplayOptionsScope const all(kDisplayAll);
    return Members(ppd.GetControls(), Control);
}
