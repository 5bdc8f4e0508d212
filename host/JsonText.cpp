// SPDX-License-Identifier: Apache-2.0
#include "host/JsonText.h"

#include <cstddef>
#include <cstdint>

#include <nlohmann/json.hpp>

Json JsonText::Bytes(std::string_view bytes) {
    return BytesToUTF8(bytes);
}

Json JsonText::Bytes(char const* text) {
    return text == nullptr ? Json() : Bytes(std::string_view(text));
}

Json JsonText::Bytes(unsigned char const* code, long length) {
    if (code == nullptr) {
        return Json();
    }
    auto const size = static_cast<std::size_t>(length > 0 ? length : 0);
    return Bytes(std::string_view(reinterpret_cast<char const*>(code), size));
}

Json JsonText::Text(CFStringRef string) {
    return string == nullptr ? Json() : Json(ToUTF8(string));
}

CFRef<CFStringRef> JsonText::FromUTF8(std::string_view text) {
    return CFRef<CFStringRef>(
        CFStringCreateWithBytes(nullptr, reinterpret_cast<std::uint8_t const*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::string JsonText::ToUTF8(CFStringRef string) {
    constexpr std::uint8_t kLossByte = '?';
    CFRange const all = CFRangeMake(0, CFStringGetLength(string));
    CFIndex size = 0;
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, kLossByte, false, nullptr, 0, &size);
    std::string text(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, kLossByte, false,
                     reinterpret_cast<std::uint8_t*>(text.data()), size, &size);
    return text;
}

std::string JsonText::BytesToUTF8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text.push_back(c);
        } else {
            text.push_back(static_cast<char>(0xC0 | (byte >> 6)));
            text.push_back(static_cast<char>(0x80 | (byte & 0x3F)));
        }
    }
    return text;
}
