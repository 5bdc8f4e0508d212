// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/NoteText.h"

#include <vector>

#include "platform/CFRef.h"

namespace {

constexpr std::size_t kUTF8BytesPerByte = 4;

// Converts the text. `out` is empty on failure. 0, or the converter's status.
OSStatus ConvertText(std::string_view text, TextEncoding from, TextEncoding to, WipedText& out) {
    out.Clear();
    TECObjectRef converter = nullptr;
    if (OSStatus const status = TECCreateConverter(&converter, from, to); status != noErr) {
        return status;
    }
    std::vector<std::uint8_t, WipingAllocator<std::uint8_t>> room(text.size() * kUTF8BytesPerByte);
    unsigned long consumed = 0;
    unsigned long written = 0;
    OSStatus const status =
        TECConvertText(converter, reinterpret_cast<std::uint8_t const*>(text.data()), text.size(),
                       &consumed, room.data(), room.size(), &written);
    TECDisposeConverter(converter);
    if (status == noErr) {
        out.Append(std::string_view(reinterpret_cast<char const*>(room.data()), written));
    }
    return status;
}

}  // namespace

OSStatus ConvertTextFromApplicationToUTF8(std::string_view text, WipedText& out) {
    constexpr TextEncoding kUTF8 = CreateTextEncoding(256, 0, 2);
    out.Clear();
    return text.empty() ? noErr : ConvertText(text, GetApplicationTextEncoding(), kUTF8, out);
}

WipedText WithSlashDoubled(std::string_view name) {
    std::size_t at = name.find('/');
    while (at != std::string_view::npos && at + 1 < name.size() && name[at + 1] != '/' &&
           name[at + 1] != ':') {
        at = name.find('/', at + 1);
    }
    bool const isFound = at != std::string_view::npos && name.substr(at).starts_with("/:");
    if (!isFound) {
        return WipedText(name);
    }
    WipedText doubled(name.substr(0, at));
    doubled.Append("/");
    doubled.Append(name.substr(at));
    return doubled;
}
