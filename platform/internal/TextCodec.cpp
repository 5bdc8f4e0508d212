// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/TextCodec.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/CoreFoundation.h"
#include "platform/UTF16.h"
#include "platform/internal/CFRuntime.h"
#include "platform/internal/MacScriptTables.h"

namespace platform {
namespace {

// In one allocation, unlike an assignment from an iterator of another type.
void Widen(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) {
    text.resize(size);
    std::copy_n(bytes, size, text.begin());
}

// ASCII and ISO Latin 1: the bytes below a limit are the characters.
class LatinCodec : public TextCodec {
  public:
    explicit LatinCodec(char32_t limit) : mLimit(limit) {}

    int Decode(std::uint8_t const* bytes, std::uint8_t const*, char32_t& character) const override {
        character = *bytes;
        return character < mLimit ? 1 : kMalformed;
    }
    std::size_t Encode(char32_t character, std::uint8_t* bytes) const override {
        if (character >= mLimit) {
            return 0;
        }
        *bytes = static_cast<std::uint8_t>(character);
        return 1;
    }
    std::size_t MaximumBytesPerUnit() const override { return 1; }
    bool DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const override {
        Widen(bytes, size, text);
        return std::all_of(bytes, bytes + size, [this](std::uint8_t b) { return b < mLimit; });
    }

  private:
    char32_t mLimit;
};

class UTF8Codec : public TextCodec {
  public:
    int Decode(std::uint8_t const* bytes, std::uint8_t const* end,
               char32_t& character) const override;
    std::size_t Encode(char32_t character, std::uint8_t* bytes) const override;
    std::size_t MaximumBytesPerUnit() const override { return 3; }
    bool DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const override;
};

struct UTF8Form {
    std::uint8_t leadMask;
    std::uint8_t lead;
    char32_t first;  // the smallest character that needs this form
    int size;
};
constexpr UTF8Form kUTF8Forms[] = {
    {0x80, 0x00, 0, 1},
    {0xE0, 0xC0, 0x80, 2},
    {0xF0, 0xE0, 0x800, 3},
    {0xF8, 0xF0, kFirstSupplementary, 4},
};

int UTF8Codec::Decode(std::uint8_t const* bytes, std::uint8_t const* end,
                      char32_t& character) const {
    auto const* form = std::find_if(std::begin(kUTF8Forms), std::end(kUTF8Forms),
                                    [&](auto& row) { return (*bytes & row.leadMask) == row.lead; });
    if (form == std::end(kUTF8Forms)) {
        return kMalformed;
    }
    character = static_cast<char32_t>(*bytes & ~form->leadMask);
    // What the lead byte already rules out isn't merely cut.
    int taken = 1;
    for (; taken < form->size && bytes + taken < end; ++taken) {
        if ((bytes[taken] & 0xC0) != 0x80) {
            return kMalformed;
        }
        character = (character << 6) | (bytes[taken] & 0x3FU);
    }
    int const missing = form->size - taken;
    char32_t const lowest = character << (6 * missing);
    char32_t const highest = lowest | ((char32_t{1} << (6 * missing)) - 1);
    if (highest < form->first || lowest > kLastCharacter ||
        (IsSurrogate(lowest) && IsSurrogate(highest))) {
        return kMalformed;
    }
    return missing == 0 ? form->size : kCut;
}

std::size_t UTF8Codec::Encode(char32_t character, std::uint8_t* bytes) const {
    if (IsSurrogate(character) || character > kLastCharacter) {
        return 0;
    }
    auto form = std::rbegin(kUTF8Forms);
    while (character < form->first) {
        ++form;
    }
    for (int index = form->size - 1; index > 0; --index) {
        bytes[index] = static_cast<std::uint8_t>(0x80U | (character & 0x3FU));
        character >>= 6;
    }
    bytes[0] = static_cast<std::uint8_t>(form->lead | character);
    return static_cast<std::size_t>(form->size);
}

bool UTF8Codec::DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const {
    if (std::all_of(bytes, bytes + size, [](std::uint8_t b) { return b < 0x80; })) {
        Widen(bytes, size, text);
        return true;
    }
    return TextCodec::DecodeText(bytes, size, text);
}

// In host order. A lone surrogate is a unit like any other here, so that every string survives.
class UTF16Codec : public TextCodec {
  public:
    int Decode(std::uint8_t const* bytes, std::uint8_t const* end,
               char32_t& character) const override {
        if (end - bytes < 2) {
            return kCut;
        }
        character = Unit(bytes);
        if (!IsHighSurrogate(character)) {
            return IsLowSurrogate(character) ? kMalformed : 2;
        }
        if (end - bytes < 4) {
            return kCut;
        }
        char16_t const units[] = {static_cast<char16_t>(character), Unit(bytes + 2)};
        std::size_t position = 0;
        character = TakeCharacter({units, 2}, position);
        return position == 2 ? 4 : kMalformed;
    }
    std::size_t Encode(char32_t character, std::uint8_t* bytes) const override {
        char16_t units[2];
        std::size_t const size = PutCharacter(character, units) * sizeof(char16_t);
        std::memcpy(bytes, units, size);
        return size;
    }
    std::size_t MaximumBytesPerUnit() const override { return 2; }
    bool DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const override {
        text.resize(size / sizeof(char16_t));
        std::copy_n(bytes, text.size() * sizeof(char16_t),
                    reinterpret_cast<std::uint8_t*>(text.data()));
        return size % sizeof(char16_t) == 0;
    }

  private:
    static char16_t Unit(std::uint8_t const* bytes) {
        char16_t unit = 0;
        std::memcpy(&unit, bytes, sizeof unit);
        return unit;
    }
};

// ---- Tables ----

class IconvDescriptor {
  public:
    IconvDescriptor(char const* to, char const* from) : mDescriptor(iconv_open(to, from)) {}
    IconvDescriptor(IconvDescriptor const&) = delete;
    IconvDescriptor& operator=(IconvDescriptor const&) = delete;
    ~IconvDescriptor() {
        if (IsOpen()) {
            iconv_close(mDescriptor);
        }
    }

    bool IsOpen() const { return mDescriptor != reinterpret_cast<iconv_t>(-1); }

    // Converts one character and returns the size of its form. On failure 0 with errno EINVAL for
    // a cut character and EILSEQ otherwise.
    std::size_t Convert(void const* source, std::size_t size, void* target,
                        std::size_t targetSize) {
        iconv(mDescriptor, nullptr, nullptr, nullptr, nullptr);
        auto* in = const_cast<char*>(static_cast<char const*>(source));
        auto* out = static_cast<char*>(target);
        std::size_t left = targetSize;
        if (iconv(mDescriptor, &in, &size, &out, &left) == static_cast<std::size_t>(-1)) {
            return 0;
        }
        return targetSize - left;
    }

  private:
    iconv_t mDescriptor;
};

struct TableRow {
    std::uint32_t encoding;
    char const* iconvName;      // null for a table of ours
    char16_t const* upperHalf;  // 128 units, or null
    bool doubleByte;
};
constexpr TableRow kTableRows[] = {
    {kCFStringEncodingMacRoman, "MACINTOSH", nullptr, false},
    {1, "CP932", nullptr, true},
    {2, "BIG5", nullptr, true},
    {3, "EUC-KR", nullptr, true},
    {6, nullptr, kMacGreekUpperHalf, false},
    {7, "MAC-CYRILLIC", nullptr, false},
    {25, "EUC-CN", nullptr, true},
    {29, "MAC-CENTRALEUROPE", nullptr, false},
    {35, nullptr, kMacTurkishUpperHalf, false},
    {kCFStringEncodingISOLatin2, "ISO-8859-2", nullptr, false},
    {kCFStringEncodingISOLatin5, "ISO-8859-9", nullptr, false},
    {kCFStringEncodingISOLatin9, "ISO-8859-15", nullptr, false},
    {kCFStringEncodingWindowsLatin1, "CP1252", nullptr, false},
    {kCFStringEncodingGBK, "GBK", nullptr, true},
    {kCFStringEncodingShiftJIS, "CP932", nullptr, true},
};

// Where the conversion library follows an older edition of a Mac script.
struct Correction {
    std::uint32_t encoding;
    std::uint8_t byte;
    char16_t character;
};
constexpr Correction kCorrections[] = {
    {kCFStringEncodingMacRoman, 0xC6, 0x2206},
    {kCFStringEncodingMacRoman, 0xF0, 0xF8FF},
    {7, 0xFF, 0x20AC},
};

constexpr char16_t kUndefined = 0xFFFF;
constexpr char16_t kLeadByte = 0xFFFE;
constexpr std::size_t kByteCount = 256;
constexpr std::uint32_t kUnitCount = 0x10000;

// Single-byte and double-byte encodings within the first 65536 characters, as two tables.
class TableCodec : public TextCodec {
  public:
    explicit TableCodec(TableRow const& row);

    int Decode(std::uint8_t const* bytes, std::uint8_t const* end,
               char32_t& character) const override;
    std::size_t Encode(char32_t character, std::uint8_t* bytes) const override;
    std::size_t MaximumBytesPerUnit() const override { return mPairs.empty() ? 1 : 2; }
    bool DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const override;

  private:
    using Page = std::array<std::uint16_t, kByteCount>;

    void ReadSingleBytes(TableRow const& row);
    void ReadPairs(TableRow const& row);
    void ReadPairForms(TableRow const& row);
    void SetForm(char32_t character, std::uint32_t form);

    std::array<char16_t, kByteCount> mFirst;
    std::vector<char16_t> mPairs;                            // by both bytes; empty: single-byte
    std::array<std::unique_ptr<Page>, kByteCount> mPages{};  // forms, by the character's high byte
};

TableCodec::TableCodec(TableRow const& row) {
    mFirst.fill(kUndefined);
    ReadSingleBytes(row);
    if (row.doubleByte) {
        ReadPairs(row);
        ReadPairForms(row);
    }
    for (std::uint32_t byte = 0; byte < kByteCount; ++byte) {
        if (mFirst[byte] < kLeadByte) {
            SetForm(mFirst[byte], byte);
        }
    }
}

void TableCodec::ReadSingleBytes(TableRow const& row) {
    for (std::size_t byte = 0; byte < kByteCount / 2; ++byte) {
        mFirst[byte] = static_cast<char16_t>(byte);
    }
    if (row.upperHalf != nullptr) {
        std::copy_n(row.upperHalf, kByteCount / 2, mFirst.begin() + kByteCount / 2);
        return;
    }
    IconvDescriptor decoder("UTF-16LE", row.iconvName);
    if (!decoder.IsOpen()) {
        return;
    }
    for (std::size_t byte = kByteCount / 2; byte < kByteCount; ++byte) {
        auto const source = static_cast<std::uint8_t>(byte);
        std::uint8_t unit[8];
        if (decoder.Convert(&source, 1, unit, sizeof unit) == 2) {
            mFirst[byte] = static_cast<char16_t>(unit[0] | (unit[1] << 8));
        } else if (row.doubleByte && errno == EINVAL) {
            mFirst[byte] = kLeadByte;
        }
        // A control beyond ASCII is padding of the double-byte scheme and no text.
        if (row.doubleByte && mFirst[byte] >= 0x80 && mFirst[byte] < 0xA0) {
            mFirst[byte] = kUndefined;
        }
    }
    for (Correction const& correction : kCorrections) {
        if (correction.encoding == row.encoding) {
            mFirst[correction.byte] = correction.character;
        }
    }
}

void TableCodec::ReadPairs(TableRow const& row) {
    mPairs.assign(kUnitCount, kUndefined);
    IconvDescriptor decoder("UTF-16LE", row.iconvName);
    if (!decoder.IsOpen()) {
        return;
    }
    for (std::uint32_t pair = 0; pair < kUnitCount; ++pair) {
        std::uint8_t const source[] = {static_cast<std::uint8_t>(pair >> 8),
                                       static_cast<std::uint8_t>(pair)};
        std::uint8_t unit[8];
        if (mFirst[source[0]] == kLeadByte && decoder.Convert(source, 2, unit, sizeof unit) == 2) {
            mPairs[pair] = static_cast<char16_t>(unit[0] | (unit[1] << 8));
        }
    }
}

// Asks the library for the forms, since several pairs may stand for one character and several
// characters may go to one pair.
void TableCodec::ReadPairForms(TableRow const& row) {
    IconvDescriptor encoder(row.iconvName, "UTF-16LE");
    if (!encoder.IsOpen()) {
        return;
    }
    for (std::uint32_t unit = 0x80; unit < kLeadByte; ++unit) {
        std::uint8_t const source[] = {static_cast<std::uint8_t>(unit),
                                       static_cast<std::uint8_t>(unit >> 8)};
        std::uint8_t form[8];
        if (!IsSurrogate(unit) && encoder.Convert(source, 2, form, sizeof form) == 2) {
            SetForm(unit, (static_cast<std::uint32_t>(form[0]) << 8) | form[1]);
        }
    }
}

void TableCodec::SetForm(char32_t character, std::uint32_t form) {
    auto& page = mPages[character >> 8];
    if (page == nullptr) {
        page = std::make_unique<Page>();
    }
    (*page)[character & 0xFF] = static_cast<std::uint16_t>(form);
}

int TableCodec::Decode(std::uint8_t const* bytes, std::uint8_t const* end,
                       char32_t& character) const {
    character = mFirst[bytes[0]];
    if (character < kLeadByte) {
        return 1;
    }
    if (character == kUndefined) {
        return kMalformed;
    }
    if (end - bytes < 2) {
        return kCut;
    }
    character = mPairs[(static_cast<std::size_t>(bytes[0]) << 8) | bytes[1]];
    return character == kUndefined ? kMalformed : 2;
}

std::size_t TableCodec::Encode(char32_t character, std::uint8_t* bytes) const {
    if (character == 0) {
        *bytes = 0;
        return 1;
    }
    if (character >= kUnitCount || mPages[character >> 8] == nullptr) {
        return 0;
    }
    std::uint16_t const form = (*mPages[character >> 8])[character & 0xFF];
    std::size_t size = 0;
    if (form >= kByteCount) {
        bytes[size++] = static_cast<std::uint8_t>(form >> 8);
    }
    bytes[size++] = static_cast<std::uint8_t>(form);
    return form == 0 ? 0 : size;
}

bool TableCodec::DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const {
    if (!mPairs.empty()) {
        return TextCodec::DecodeText(bytes, size, text);
    }
    text.resize(size);
    std::transform(bytes, bytes + size, text.begin(), [this](std::uint8_t b) { return mFirst[b]; });
    return text.find(kUndefined) == UTF16Text::npos;
}

TextCodec const* TableCodecForRow(std::size_t row) {
    static std::array<std::once_flag, std::size(kTableRows)> sOnce;
    // Never freed: strings may be converted while the process ends.
    static std::array<TextCodec const*, std::size(kTableRows)> sCodecs{};
    return WithoutExceptions<TextCodec const*>(nullptr, [row] {
        std::call_once(sOnce[row], [row] { sCodecs[row] = new TableCodec(kTableRows[row]); });
        return sCodecs[row];
    });
}

}  // namespace

bool TextCodec::DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const {
    text.reserve(size);
    auto const* const end = bytes + size;
    while (bytes != end) {
        char32_t character = 0;
        int const taken = Decode(bytes, end, character);
        if (taken <= 0) {
            return false;
        }
        char16_t units[2];
        text.append(units, PutCharacter(character, units));
        bytes += taken;
    }
    return true;
}

TextCodec const* TextCodec::ForEncoding(std::uint32_t encoding) {
    static auto const& sASCII = *new LatinCodec(0x80);
    static auto const& sLatin1 = *new LatinCodec(0x100);
    static auto const& sUTF8 = *new UTF8Codec;
    static auto const& sUTF16 = *new UTF16Codec;

    switch (encoding) {
        case kCFStringEncodingASCII:
            return &sASCII;
        case kCFStringEncodingISOLatin1:
            return &sLatin1;
        case kCFStringEncodingUTF8:
            return &sUTF8;
        case kCFStringEncodingUnicode:
            return &sUTF16;
        default:
            break;
    }
    // The lower half is the script, the rest its variant.
    auto const* row = std::find_if(std::begin(kTableRows), std::end(kTableRows), [&](auto& r) {
        return r.encoding == (encoding & 0xFFFF) && encoding >> 26 == 0;
    });
    if (row == std::end(kTableRows)) {
        return nullptr;
    }
    return TableCodecForRow(static_cast<std::size_t>(row - std::begin(kTableRows)));
}

}  // namespace platform
