// SPDX-License-Identifier: Apache-2.0
#include "host/adopt/AdoptedNames.h"

#include <utility>
#include <vector>

#include "PPDX/PPDObjects/PPDStream.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "host/JsonText.h"
#include "host/PeopleText.h"
#include "platform/CFRef.h"

namespace {

constexpr std::size_t kMostName = 120;  // bytes; leaves room for the rest of a line

std::uint32_t NumberOf(std::string const& encoding) {
    auto const number =
        static_cast<std::uint32_t>(TextConverter::LanguageStringToEncoding(encoding.c_str()));
    return number == TextConverter::kUnknownEncoding ? kCFStringEncodingUTF8 : number;
}

// Bytes that would end the text or its line stand in hexadecimal.
std::string Escaped(std::string const& text) {
    std::string escaped;
    for (char const byte : text) {
        escaped += byte == PPDStream::kEndMark ? "<FF>"
                   : byte == '"'               ? "<22>"
                                               : std::string(1, byte);
    }
    return escaped;
}

}  // namespace

AdoptedNames::AdoptedNames(std::string const& encoding, AdoptTell tell)
    : mEncoding(NumberOf(encoding)), mTell(std::move(tell)) {}

bool AdoptedNames::Reads(std::string const& text) const {
    std::vector<char> bytes(text.size() + 1);
    TextConverter::DehexBufferFill(text.c_str(), bytes.data());
    std::string_view const decoded(bytes.data());
    CFRef<CFStringRef> const string(CFStringCreateWithBytes(
        nullptr, reinterpret_cast<std::uint8_t const*>(decoded.data()),
        static_cast<CFIndex>(decoded.size()), static_cast<CFStringEncoding>(mEncoding), false));
    return string != nullptr;
}

// Cuts between two characters, and not within bytes in hexadecimal.
std::string AdoptedNames::Cut(std::string text) const {
    text.resize(kMostName);
    std::size_t const open = text.rfind('<');
    if (open != text.npos && text.find('>', open) == text.npos) {
        text.resize(open);
    }
    while (!text.empty() && !Reads(text)) {
        text.pop_back();
    }
    return text;
}

std::string AdoptedNames::Named(long line, std::string const& keyword,
                                std::string const& text) const {
    std::string const bare = keyword.substr(keyword.starts_with('*') ? 1 : 0);
    std::string name = text.substr(0, text.find('\n'));
    std::string const shown = "the text of " + PeopleText::Bytes(keyword);
    if (!Reads(name)) {
        bool const isUTF8 = mEncoding == kCFStringEncodingUTF8;
        name = isUTF8 ? JsonText::BytesToUTF8(name) : bare;
        mTell(line, shown + " isn't in the encoding that the file declares: " +
                        (isUTF8 ? "it is read as ISOLatin1" : "its keyword is taken"));
    }
    if (name = Escaped(name); name.size() > kMostName) {
        mTell(line, shown + " has " + std::to_string(name.size()) + " bytes: it is cut to " +
                        std::to_string(kMostName));
        name = Cut(name);
    }
    return keyword + "/" + (name.empty() ? bare : name);
}
