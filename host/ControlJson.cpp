// SPDX-License-Identifier: Apache-2.0
#include "host/ControlJson.h"

#include <vector>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "host/ElementJson.h"
#include "platform/CFRef.h"

namespace {

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
    control.PostScript(code.data());
    return JsonText::Bytes(code.data(), length);
}

Json Item(_PopupItem const& item) {
    return {{"keyword", JsonText::Bytes(item.Keyword())},
            {"name", JsonText::Text(item.mLocalName)},
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

struct KindRow {
    CNTL_TYPE type;
    void (*describe)(PPDXControl& control, Json& object);
};

constexpr KindRow kKinds[] = {
    {kRangeType, DescribeRange<PPDXRangeControl>},
    {kFloatRangeType, DescribeRange<PPDXFloatRangeControl>},
    {kBooleanType, DescribeBoolean},
    {kPopupType, DescribePopup},
    {kCustomPageSizeType, DescribeCustomPageSize},
};

}  // namespace

Json ControlJson::Describe(PPDXControl& control) {
    Json object = ElementJson::Names(control);
    object["type"] = static_cast<int>(control.Type());
    object["visible"] = control.IsVisible();
    object["parent"] = ElementJson::Parent(control);
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
