// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <limits>
#include <stdexcept>

#include <pugixml.hpp>

#include "platform/PropertyListArray.h"
#include "platform/internal/Base64.h"
#include "platform/internal/CFObjects.h"

namespace platform {
namespace {

constexpr std::string_view kHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view kFooter = "</plist>\n";
constexpr std::size_t kDataLineLength = 68;

// What XML can hold, apart from the surrogates, which the text conversion refuses.
bool IsXMLCharacter(char16_t unit) {
    return (unit >= 0x20 || unit == u'\t' || unit == u'\n' || unit == u'\r') && unit < 0xFFFE;
}

bool IsXMLText(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(), IsXMLCharacter);
}

bool IsWhite(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string_view Trimmed(std::string_view text) {
    auto const start = text.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(" \t\r\n") - start + 1);
}

// ---- Writing ----

// An element of its own, behind its indentation.
void AppendData(std::uint8_t const* bytes, std::size_t length, int depth, std::string& text) {
    std::string const lineStart = '\n' + std::string(static_cast<std::size_t>(depth), '\t');
    text += "<data>";
    AppendBase64(bytes, length, kDataLineLength, lineStart, text);
    text.append(lineStart).append("</data>\n");
}

void AppendInteger(std::int64_t number, std::string& text) {
    char digits[std::numeric_limits<std::int64_t>::digits10 + 2];
    auto const result = std::to_chars(std::begin(digits), std::end(digits), number);
    text.append("<integer>").append(digits, result.ptr).append("</integer>\n");
}

class PropertyListWriter {
  public:
    // False for a value that has no place in a property list.
    bool Write(CFTypeRef value, int depth);
    std::string& Text() { return mText; }

  private:
    bool WriteEscaped(CFStringRef string);
    bool WriteString(char const* element, CFStringRef string);
    bool WriteNumber(CFNumberRef number);
    bool WriteArray(CFArrayRef array, int depth);
    bool WriteDictionary(CFDictionaryRef dictionary, int depth);
    void Indent(int depth) { mText.append(static_cast<std::size_t>(depth), '\t'); }

    std::string mText;
};

bool PropertyListWriter::Write(CFTypeRef value, int depth) {
    if (value == nullptr || depth > kMaximumPropertyListDepth) {
        return false;
    }
    Indent(depth);
    switch (CFGetTypeID(value)) {
        case kStringTypeID:
            return WriteString("string", static_cast<CFStringRef>(value));
        case kDataTypeID: {
            auto const& bytes = static_cast<CFDataRef>(value)->bytes;
            AppendData(bytes.data(), bytes.size(), depth, mText);
            return true;
        }
        case kArrayTypeID:
            return WriteArray(static_cast<CFArrayRef>(value), depth);
        case kDictionaryTypeID:
            return WriteDictionary(static_cast<CFDictionaryRef>(value), depth);
        case kNumberTypeID:
            return WriteNumber(static_cast<CFNumberRef>(value));
        case kBooleanTypeID:
            mText += value == kCFBooleanTrue ? "<true/>\n" : "<false/>\n";
            return true;
        default:
            return false;
    }
}

bool PropertyListWriter::WriteEscaped(CFStringRef string) {
    std::string text;
    if (!IsXMLText(TextOf(string)) || !GetUTF8(string, text)) {
        return false;
    }
    for (char const c : text) {
        switch (c) {
            case '&':
                mText += "&amp;";
                break;
            case '<':
                mText += "&lt;";
                break;
            case '>':
                mText += "&gt;";
                break;
            case '\r':
                mText += "&#13;";  // a bare one would read back as a line feed
                break;
            default:
                mText += c;
        }
    }
    return true;
}

bool PropertyListWriter::WriteString(char const* element, CFStringRef string) {
    mText.append("<").append(element).append(">");
    bool const isWritten = WriteEscaped(string);
    mText.append("</").append(element).append(">\n");
    return isWritten;
}

bool PropertyListWriter::WriteNumber(CFNumberRef number) {
    if (!number->isFloat) {
        AppendInteger(number->integer, mText);
        return true;
    }
    char digits[64];
    auto const result = std::to_chars(std::begin(digits), std::end(digits), number->real);
    mText.append("<real>").append(digits, result.ptr).append("</real>\n");
    return result.ec == std::errc();
}

bool PropertyListWriter::WriteArray(CFArrayRef array, int depth) {
    if (array->elements.empty()) {
        mText += "<array/>\n";
        return true;
    }
    mText += "<array>\n";
    for (auto const& element : array->elements) {
        if (!Write(element, depth + 1)) {
            return false;
        }
    }
    Indent(depth);
    mText += "</array>\n";
    return true;
}

bool PropertyListWriter::WriteDictionary(CFDictionaryRef dictionary, int depth) {
    if (dictionary->entries.empty()) {
        mText += "<dict/>\n";
        return true;
    }
    mText += "<dict>\n";
    for (auto const& entry : dictionary->entries) {
        Indent(depth + 1);
        if (!WriteString("key", entry.key) || !Write(entry.value, depth + 1)) {
            return false;
        }
    }
    Indent(depth);
    mText += "</dict>\n";
    return true;
}

// ---- Reading ----

// What ends the reading; the text is for people.
class PropertyListError : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
};

class PropertyListReader {
  public:
    explicit PropertyListReader(bool mutableLeaves) : mMutableLeaves(mutableLeaves) {}

    CFRef<CFTypeRef> ReadDocument(pugi::xml_document const& document) const;

  private:
    using ReadFunction = CFRef<CFTypeRef> (PropertyListReader::*)(pugi::xml_node, int) const;
    struct ElementRow {
        std::string_view name;
        ReadFunction read;
    };
    static ElementRow const kElements[];

    CFRef<CFTypeRef> Read(pugi::xml_node element, int depth) const;
    CFRef<CFTypeRef> ReadString(pugi::xml_node element, int) const;
    CFRef<CFTypeRef> ReadData(pugi::xml_node element, int) const;
    CFRef<CFTypeRef> ReadInteger(pugi::xml_node element, int) const;
    CFRef<CFTypeRef> ReadReal(pugi::xml_node element, int) const;
    CFRef<CFTypeRef> ReadTrue(pugi::xml_node element, int) const;
    CFRef<CFTypeRef> ReadFalse(pugi::xml_node element, int) const;
    CFRef<CFTypeRef> ReadArray(pugi::xml_node element, int depth) const;
    CFRef<CFTypeRef> ReadDictionary(pugi::xml_node element, int depth) const;

    bool mMutableLeaves;
};

PropertyListReader::ElementRow const PropertyListReader::kElements[] = {
    {"string", &PropertyListReader::ReadString},   {"data", &PropertyListReader::ReadData},
    {"integer", &PropertyListReader::ReadInteger}, {"real", &PropertyListReader::ReadReal},
    {"true", &PropertyListReader::ReadTrue},       {"false", &PropertyListReader::ReadFalse},
    {"array", &PropertyListReader::ReadArray},     {"dict", &PropertyListReader::ReadDictionary},
    {"date", &PropertyListReader::ReadString},
};

[[noreturn]] void Refuse(std::string const& what, pugi::xml_node node) {
    throw PropertyListError(what + " at byte " + std::to_string(node.offset_debug()));
}

CFRef<CFTypeRef> Checked(CFTypeRef created) {
    if (created == nullptr) {
        throw std::bad_alloc();
    }
    return CFRef<CFTypeRef>(created);
}

// The element's text, which comments and CDATA sections may have split.
std::string TextContent(pugi::xml_node element) {
    std::string text;
    for (auto const child : element.children()) {
        if (child.type() != pugi::node_pcdata && child.type() != pugi::node_cdata) {
            Refuse(std::string("An element inside <") + element.name() + ">", child);
        }
        text += child.value();
    }
    return text;
}

// The element children; anything else but white space is refused.
std::vector<pugi::xml_node> ElementsOf(pugi::xml_node parent) {
    std::vector<pugi::xml_node> elements;
    for (auto const child : parent.children()) {
        if (child.type() == pugi::node_element) {
            elements.push_back(child);
        } else if (!IsWhite(child.value())) {
            Refuse(std::string("Text inside <") + parent.name() + ">", child);
        }
    }
    return elements;
}

CFRef<CFStringRef> ReadText(pugi::xml_node element) {
    CFRef<CFStringRef> string(CreateStringFromUTF8(TextContent(element)));
    if (!string) {
        Refuse("Text that is no UTF-8", element);
    }
    if (!IsXMLText(TextOf(string))) {
        Refuse("A control character", element);
    }
    return string;
}

CFRef<CFTypeRef> PropertyListReader::ReadDocument(pugi::xml_document const& document) const {
    auto const roots = ElementsOf(document);
    if (roots.size() != 1 || std::strcmp(roots[0].name(), "plist") != 0) {
        throw PropertyListError("The document is not one <plist>");
    }
    auto const values = ElementsOf(roots[0]);
    if (values.size() != 1) {
        Refuse("Not one value inside <plist>", roots[0]);
    }
    return Read(values[0], 0);
}

CFRef<CFTypeRef> PropertyListReader::Read(pugi::xml_node element, int depth) const {
    if (depth > kMaximumPropertyListDepth) {
        Refuse("Nested too deep", element);
    }
    for (auto const& row : kElements) {
        if (row.name == element.name()) {
            return (this->*row.read)(element, depth);
        }
    }
    Refuse(std::string("The unknown element <") + element.name() + ">", element);
}

CFRef<CFTypeRef> PropertyListReader::ReadString(pugi::xml_node element, int) const {
    auto string = ReadText(element);
    return Checked(mMutableLeaves ? CFStringCreateMutableCopy(nullptr, 0, string)
                                  : string.Release());
}

CFRef<CFTypeRef> PropertyListReader::ReadData(pugi::xml_node element, int) const {
    std::vector<std::uint8_t> bytes;
    if (!DecodeBase64(TextContent(element), bytes)) {
        Refuse("Data that is no Base64", element);
    }
    return Checked(NewObject<__CFData>(bytes.data(), bytes.size(), mMutableLeaves));
}

CFRef<CFTypeRef> PropertyListReader::ReadInteger(pugi::xml_node element, int) const {
    std::string const text = TextContent(element);
    std::string_view digits = Trimmed(text);
    bool const hasPlus = digits.starts_with('+');
    digits.remove_prefix(hasPlus ? 1 : 0);
    int const base = digits.starts_with("0x") || digits.starts_with("0X") ? 16 : 10;
    digits.remove_prefix(base == 16 ? 2 : 0);
    std::int64_t value = 0;
    auto const* const end = digits.data() + digits.size();
    auto const result = std::from_chars(digits.data(), end, value, base);
    bool const hasTwoSigns = (hasPlus || base == 16) && digits.starts_with('-');
    if (result.ec != std::errc() || result.ptr != end || hasTwoSigns) {
        Refuse("A number that is no 64-bit integer", element);
    }
    return Checked(CFNumberCreate(nullptr, kCFNumberSInt64Type, &value));
}

CFRef<CFTypeRef> PropertyListReader::ReadReal(pugi::xml_node element, int) const {
    std::string const text = TextContent(element);
    std::string_view digits = Trimmed(text);
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    double value = 0;
    auto const* const end = digits.data() + digits.size();
    auto const result = std::from_chars(digits.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) {
        Refuse("A real number that is none", element);
    }
    return Checked(CFNumberCreate(nullptr, kCFNumberFloat64Type, &value));
}

CFRef<CFTypeRef> PropertyListReader::ReadTrue(pugi::xml_node element, int) const {
    if (!ElementsOf(element).empty()) {
        Refuse("A truth value with a content", element);
    }
    return CFRef<CFTypeRef>(kCFBooleanTrue);
}

CFRef<CFTypeRef> PropertyListReader::ReadFalse(pugi::xml_node element, int depth) const {
    ReadTrue(element, depth);
    return CFRef<CFTypeRef>(kCFBooleanFalse);
}

CFRef<CFTypeRef> PropertyListReader::ReadArray(pugi::xml_node element, int depth) const {
    auto array = Checked(CFArrayCreateMutable(nullptr, 0));
    auto* elements = const_cast<CFMutableArrayRef>(static_cast<CFArrayRef>(array.Get()));
    for (auto const child : ElementsOf(element)) {
        elements->elements.push_back(Read(child, depth + 1));
    }
    return array;
}

CFRef<CFTypeRef> PropertyListReader::ReadDictionary(pugi::xml_node element, int depth) const {
    auto dictionary = Checked(CFDictionaryCreateMutable(nullptr, 0));
    auto* entries =
        const_cast<CFMutableDictionaryRef>(static_cast<CFDictionaryRef>(dictionary.Get()));
    auto const children = ElementsOf(element);
    if (children.size() % 2 != 0) {
        Refuse("A key without a value", element);
    }
    for (std::size_t index = 0; index < children.size(); index += 2) {
        if (std::strcmp(children[index].name(), "key") != 0) {
            Refuse("A value without a key", children[index]);
        }
        auto const key = ReadText(children[index]);
        CFDictionarySetValue(entries, key, Read(children[index + 1], depth + 1));
        if (CFDictionaryGetValue(entries, key) == nullptr) {
            throw std::bad_alloc();
        }
    }
    return dictionary;
}

// Whether a character reference at the front is one to zero, as the parser counts: in 32 bits.
bool IsZeroReference(std::string_view text) {
    bool const isHex = text.starts_with("&#x");
    text.remove_prefix(isHex ? 3 : 2);
    std::size_t const end = text.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789");
    std::uint32_t number = 0;
    for (char const c : text.substr(0, end)) {
        auto const digit = static_cast<std::uint32_t>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
        number = number * (isHex ? 16 : 10) + digit;
    }
    return end != 0 && end < text.size() && text[end] == ';' && number == 0;
}

// The parser would end a text there. In a comment and in a CDATA section it is none.
bool HasZeroReference(std::string_view text) {
    constexpr std::pair<std::string_view, std::string_view> kSections[] = {{"<!--", "-->"},
                                                                           {"<![CDATA[", "]]>"}};
    std::size_t at = text.find_first_of("<&");
    while (at < text.size()) {
        std::string_view const rest = text.substr(at);
        if (rest.starts_with("&#") && IsZeroReference(rest)) {
            return true;
        }
        for (auto const& [opening, closing] : kSections) {
            if (rest.starts_with(opening)) {
                at = std::min(text.find(closing, at), text.size() - 1);
            }
        }
        at = text.find_first_of("<&", at + 1);
    }
    return false;
}

CFRef<CFTypeRef> ReadPropertyList(CFDataRef data, bool mutableLeaves) {
    auto const& bytes = data->bytes;
    // The parser would take a zero byte for the end and pass over what is behind it. UTF-16, which
    // it knows as well, has one in its first or second character.
    bool const mayBeUTF8 = bytes.size() < 2 || (bytes[0] < 0xFE && bytes[0] != 0 && bytes[1] != 0);
    if (mayBeUTF8 && std::find(bytes.begin(), bytes.end(), 0) != bytes.end()) {
        throw PropertyListError("A zero byte");
    }
    if (HasZeroReference({reinterpret_cast<char const*>(bytes.data()), bytes.size()})) {
        throw PropertyListError("A reference to a zero character");
    }
    pugi::xml_document document;
    auto const result = document.load_buffer(bytes.data(), bytes.size(),
                                             pugi::parse_default | pugi::parse_ws_pcdata);
    if (result.status == pugi::status_out_of_memory) {
        throw std::bad_alloc();
    }
    if (!result) {
        throw PropertyListError(std::string(result.description()) + " at byte " +
                                std::to_string(result.offset));
    }
    return PropertyListReader(mutableLeaves).ReadDocument(document);
}

// ---- Copying ----

CFRef<CFTypeRef> Copied(CFTypeRef value, int depth);

CFRef<CFTypeRef> CopiedArray(CFArrayRef source, int depth) {
    auto copy = Checked(CFArrayCreateMutable(nullptr, 0));
    auto* array = const_cast<CFMutableArrayRef>(static_cast<CFArrayRef>(copy.Get()));
    for (auto const& element : source->elements) {
        array->elements.push_back(Copied(element, depth + 1));
    }
    return copy;
}

CFRef<CFTypeRef> CopiedDictionary(CFDictionaryRef source, int depth) {
    auto copy = Checked(CFDictionaryCreateMutableCopy(nullptr, 0, source));
    auto* dictionary = const_cast<CFMutableDictionaryRef>(static_cast<CFDictionaryRef>(copy.Get()));
    for (auto& entry : dictionary->entries) {
        entry.value = Copied(entry.value, depth + 1);
    }
    return copy;
}

CFRef<CFTypeRef> Copied(CFTypeRef value, int depth) {
    if (depth > kMaximumPropertyListDepth) {
        throw PropertyListError("Nested too deep");
    }
    switch (CFGetTypeID(value)) {
        case kStringTypeID:
            return Checked(CFStringCreateCopy(nullptr, static_cast<CFStringRef>(value)));
        case kDataTypeID:
            return Checked(CFDataCreateCopy(nullptr, static_cast<CFDataRef>(value)));
        case kArrayTypeID:
            return CopiedArray(static_cast<CFArrayRef>(value), depth);
        case kDictionaryTypeID:
            return CopiedDictionary(static_cast<CFDictionaryRef>(value), depth);
        default:
            return CFRef<CFTypeRef>::Retained(value);
    }
}

}  // namespace

CFTypeRef CreateDeepCopy(CFTypeRef value) {
    return WithoutExceptions<CFTypeRef>(nullptr, [&] { return Copied(value, 0).Release(); });
}

}  // namespace platform

CFDataRef CFPropertyListCreateXMLData(CFAllocatorRef allocator, CFPropertyListRef list) {
    return platform::WithoutExceptions<CFDataRef>(nullptr, [&]() -> CFDataRef {
        platform::PropertyListWriter writer;
        writer.Text() = platform::kHeader;
        if (!writer.Write(list, 0)) {
            return nullptr;
        }
        writer.Text() += platform::kFooter;
        return CFDataCreate(allocator, reinterpret_cast<std::uint8_t const*>(writer.Text().data()),
                            static_cast<CFIndex>(writer.Text().size()));
    });
}

void PropertyListArray::AddInteger(std::int64_t number) {
    mComplete = mComplete && platform::WithoutExceptions(false, [&] {
                    mElements += '\t';
                    platform::AppendInteger(number, mElements);
                    return true;
                });
}

void PropertyListArray::AddData(std::uint8_t const* bytes, std::size_t length) {
    mComplete = mComplete && platform::WithoutExceptions(false, [&] {
                    mElements += '\t';
                    platform::AppendData(bytes, length, 1, mElements);
                    return true;
                });
}

CFDataRef PropertyListArray::CreateXMLData() {
    return platform::WithoutExceptions<CFDataRef>(nullptr, [&]() -> CFDataRef {
        if (!mComplete) {
            return nullptr;
        }
        std::string text(platform::kHeader);
        text.append(mElements.empty() ? "<array/>\n" : "<array>\n");
        text.append(mElements).append(mElements.empty() ? "" : "</array>\n");
        text.append(platform::kFooter);
        return CFDataCreate(nullptr, reinterpret_cast<std::uint8_t const*>(text.data()),
                            static_cast<CFIndex>(text.size()));
    });
}

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef, CFDataRef data,
                                                  CFOptionFlags mutability,
                                                  CFStringRef* errorText) {
    if (errorText != nullptr) {
        *errorText = nullptr;
    }
    std::string_view reason = "Out of memory";
    std::string parserReason;
    try {
        if (data == nullptr) {
            throw platform::PropertyListError("No data");
        }
        bool const mutableLeaves = mutability == kCFPropertyListMutableContainersAndLeaves;
        return platform::ReadPropertyList(data, mutableLeaves).Release();
    } catch (platform::PropertyListError const& error) {
        reason = "";
        platform::WithoutExceptions(false, [&] {
            parserReason = error.what();
            return true;
        });
    } catch (std::exception const&) {
        // The reason stands already.
    }
    if (errorText != nullptr) {
        *errorText =
            platform::CreateStringFromSystemBytes(parserReason.empty() ? reason : parserReason);
    }
    return nullptr;
}
