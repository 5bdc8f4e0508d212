// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <string>

#include "platform/Controls.h"
#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"
#include "platform/internal/Gestures.h"

namespace platform {
namespace {

// One tag of a control's data. Both routines may throw. Get fills `bytes` with the value's own
// bytes; a string among them is the caller's to release.
struct DataTag {
    OSType tag;
    std::int64_t size;  // of the value; kAnySize for text
    bool isString;
    OSStatus (*set)(ControlNode& node, std::int64_t size, void const* data);
    OSStatus (*get)(ControlNode& node, std::string& bytes);
};
constexpr std::int64_t kAnySize = -1;

template <typename Value>
Value Read(void const* data) {
    Value value;
    std::memcpy(&value, data, sizeof value);
    return value;
}
template <typename Value>
OSStatus Answer(std::string& bytes, Value const& value) {
    bytes.assign(reinterpret_cast<char const*>(&value), sizeof value);
    return noErr;
}

OSStatus AnswerString(std::string& bytes, std::u16string const& text) {
    CFStringRef const string =
        CFStringCreateWithCharacters(nullptr, text.data(), static_cast<CFIndex>(text.size()));
    return string == nullptr ? memFullErr : Answer(bytes, string);
}

OSStatus SetString(ControlNode& node, std::int64_t, void const* data) {
    auto const text = Read<CFStringRef>(data);
    if (text == nullptr) {
        return paramErr;
    }
    if (IsRadioGroup(node)) {
        return SetControlTitleWithCFString(node.Ref(), text);
    }
    if (node.As<FieldText>() == nullptr) {
        return errDataNotSupported;
    }
    SetText(node, std::u16string(TextOf(text)));
    return noErr;
}

OSStatus GetString(ControlNode& node, std::string& bytes) {
    if (IsRadioGroup(node)) {
        return AnswerString(bytes, std::u16string(TextOf(node.title)));
    }
    auto const* const field = node.As<FieldText>();
    return field == nullptr ? errDataNotSupported : AnswerString(bytes, ShownText(*field));
}

OSStatus SetBytes(ControlNode& node, std::int64_t size, void const* data) {
    if (node.As<FieldText>() == nullptr) {
        return errDataNotSupported;
    }
    CFRef<CFStringRef> const text(
        CFStringCreateWithBytes(nullptr, static_cast<std::uint8_t const*>(data),
                                static_cast<CFIndex>(size), CFStringGetSystemEncoding(), false));
    if (!text) {
        return paramErr;
    }
    SetText(node, std::u16string(TextOf(text)));
    return noErr;
}

OSStatus GetBytes(ControlNode& node, std::string& bytes) {
    auto const* const field = node.As<FieldText>();
    if (field == nullptr) {
        return errDataNotSupported;
    }
    std::u16string const shown = ShownText(*field);
    auto const length = static_cast<CFIndex>(shown.size());
    CFRef<CFStringRef> const text(CFStringCreateWithCharacters(nullptr, shown.data(), length));
    if (!text) {
        return memFullErr;
    }
    CFStringEncoding const encoding = CFStringGetSystemEncoding();
    CFIndex used = 0;
    bytes.resize(static_cast<std::size_t>(CFStringGetMaximumSizeForEncoding(length, encoding)));
    CFStringGetBytes(text, CFRangeMake(0, length), encoding, '?', false,
                     reinterpret_cast<std::uint8_t*>(bytes.data()),
                     static_cast<CFIndex>(bytes.size()), &used);
    bytes.resize(static_cast<std::size_t>(used));
    return noErr;
}

OSStatus SetPassword(ControlNode& node, std::int64_t size, void const* data) {
    if (!IsField(node)) {
        return errDataNotSupported;
    }
    OSStatus const status = SetString(node, size, data);
    if (status == noErr) {
        node.As<FieldText>()->isPassword = true;
    }
    return status;
}

OSStatus GetPassword(ControlNode& node, std::string& bytes) {
    return IsField(node) ? AnswerString(bytes, node.As<FieldText>()->text) : errDataNotSupported;
}

OSStatus SetIsPassword(ControlNode& node, std::int64_t, void const* data) {
    if (!IsField(node)) {
        return errDataNotSupported;
    }
    node.As<FieldText>()->isPassword = Read<std::uint8_t>(data) != 0;
    MarkChanged(node);
    return noErr;
}

OSStatus GetIsPassword(ControlNode& node, std::string& bytes) {
    return IsField(node) ? Answer(bytes, node.As<FieldText>()->isPassword) : errDataNotSupported;
}

OSStatus SetSelection(ControlNode& node, std::int64_t, void const* data) {
    if (!IsField(node)) {
        return errDataNotSupported;
    }
    FieldText& field = *node.As<FieldText>();
    auto const wanted = Read<ControlEditTextSelectionRec>(data);
    field.selectionStart = PlaceInText(field, wanted.selStart);
    field.selectionEnd = std::max(field.selectionStart, PlaceInText(field, wanted.selEnd));
    MarkForFace(node);
    return noErr;
}

OSStatus GetSelection(ControlNode& node, std::string& bytes) {
    return IsField(node) ? Answer(bytes, SelectionOf(*node.As<FieldText>())) : errDataNotSupported;
}

OSStatus SetFont(ControlNode& node, std::int64_t, void const* data) {
    auto const font = Read<ControlFontStyleRec>(data);
    return SetControlFontStyle(node.Ref(), &font);
}

OSStatus GetFont(ControlNode& node, std::string& bytes) {
    return Answer(bytes, node.font);
}

OSStatus SetDrawing(ControlNode& node, std::int64_t, void const* data) {
    auto* const pane = node.As<DrawnPane>();
    if (pane == nullptr) {
        return errDataNotSupported;
    }
    pane->draw = Read<ControlDrawProc>(data);
    MarkForDrawing(node);
    return noErr;
}

OSStatus GetDrawing(ControlNode& node, std::string& bytes) {
    auto const* const pane = node.As<DrawnPane>();
    return pane == nullptr ? errDataNotSupported : Answer(bytes, pane->draw);
}

constexpr DataTag kTags[] = {
    {"cfst"_code, sizeof(CFStringRef), true, SetString, GetString},
    {"text"_code, kAnySize, false, SetBytes, GetBytes},
    {"pwcf"_code, sizeof(CFStringRef), true, SetPassword, GetPassword},
    {"ispw"_code, sizeof(bool), false, SetIsPassword, GetIsPassword},
    {"sele"_code, sizeof(ControlEditTextSelectionRec), false, SetSelection, GetSelection},
    {"font"_code, sizeof(ControlFontStyleRec), false, SetFont, GetFont},
    {"draw"_code, sizeof(ControlDrawProc), false, SetDrawing, GetDrawing},
};

DataTag const* FindTag(OSType tag) {
    auto const found = std::find_if(std::begin(kTags), std::end(kTags),
                                    [&](DataTag const& row) { return row.tag == tag; });
    return found == std::end(kTags) ? nullptr : found;
}

// The value's bytes where there is room for them.
OSStatus Deliver(DataTag const& tag, std::string const& bytes, std::int64_t room, void* buffer) {
    bool const isCut = room < static_cast<std::int64_t>(bytes.size());
    if (buffer == nullptr || (isCut && tag.size != kAnySize)) {
        if (tag.isString) {
            CFRelease(Read<CFStringRef>(bytes.data()));
        }
        return buffer == nullptr ? noErr : errDataSizeMismatch;
    }
    std::size_t const copied = isCut ? static_cast<std::size_t>(room) : bytes.size();
    if (copied > 0) {
        std::memcpy(buffer, bytes.data(), copied);
    }
    return noErr;
}

}  // namespace

ControlEditTextSelectionRec SelectionOf(FieldText const& field) {
    return {ClampedCoordinate(static_cast<int>(field.selectionStart)),
            ClampedCoordinate(static_cast<int>(field.selectionEnd))};
}

}  // namespace platform

using platform::Find;

OSStatus SetControlData(ControlRef control, std::int16_t, OSType tag, std::int64_t size,
                        void const* data) {
    platform::ControlNode* const node = Find(control);
    platform::DataTag const* const row = platform::FindTag(tag);
    if (node == nullptr || size < 0 || (data == nullptr && size > 0)) {
        return paramErr;
    }
    if (row == nullptr) {
        return errDataNotSupported;
    }
    if (row->size != platform::kAnySize && row->size != size) {
        return errDataSizeMismatch;
    }
    return platform::Guarded([&] { return row->set(*node, size, data); });
}

OSStatus GetControlData(ControlRef control, std::int16_t, OSType tag, std::int64_t bufferSize,
                        void* buffer, std::int64_t* actualSize) {
    if (actualSize != nullptr) {
        *actualSize = 0;
    }
    if (buffer != nullptr && bufferSize > 0) {
        std::memset(buffer, 0, static_cast<std::size_t>(bufferSize));
    }
    platform::ControlNode* const node = Find(control);
    platform::DataTag const* const row = platform::FindTag(tag);
    if (node == nullptr || bufferSize < 0 || (buffer == nullptr && bufferSize > 0)) {
        return paramErr;
    }
    if (row == nullptr) {
        return errDataNotSupported;
    }
    return platform::Guarded([&]() -> OSStatus {
        std::string bytes;
        OSStatus const status = row->get(*node, bytes);
        if (status != noErr) {
            return status;
        }
        if (actualSize != nullptr) {
            *actualSize = static_cast<std::int64_t>(bytes.size());
        }
        return platform::Deliver(*row, bytes, bufferSize, buffer);
    });
}

OSStatus GetControlDataSize(ControlRef control, std::int16_t part, OSType tag, std::int64_t* size) {
    if (size == nullptr) {
        return paramErr;
    }
    return GetControlData(control, part, tag, 0, nullptr, size);
}
