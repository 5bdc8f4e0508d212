// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <string_view>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/RecordCipher.h"
#include "ZUBUtils/PPDUtils/ZUBAssert.h"
#include "ciphers/Base64Decoder.h"
#include "ciphers/Base64Encoder.h"
#include "ciphers/BigEndian.h"
#include "ciphers/SHA1.h"
#include "ciphers/Twofish.h"
#include "platform/Wiping.h"

namespace {

constexpr char kSourcePath[] = "PPDX/PPDObjects/Controls/PPDXUserAuthLib";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kLongestRecord = 16 << 20;

// Inner record: version, three lengths, domain type, identifier, three texts.
constexpr std::size_t kGUIDAt = 20;
constexpr std::size_t kTextsAt = kGUIDAt + kGUIDSize;
// Middle block: length of the inner record, the record, its digest, zeros.
constexpr std::size_t kMiddleOverhead = 4 + SHA1::kDigestSize;
// Outer block: version, length of the middle block, session key, middle block enciphered, zeros.
constexpr std::size_t kSessionKeyAt = 8;
constexpr std::size_t kMiddleAt = kSessionKeyAt + sizeof(RecordKey);
constexpr std::size_t kOuterZeros = 8;
constexpr std::size_t kOuterOverhead = kMiddleAt + kOuterZeros;

using Bytes = std::vector<std::uint8_t, WipingAllocator<std::uint8_t>>;
using ByteView = std::span<std::uint8_t const>;

struct UserTexts {
    std::string_view user;
    std::string_view password;
    std::string_view domain;
};

// At least one zero ends the middle block.
std::size_t MiddleSize(std::size_t recordSize) {
    return (recordSize + kMiddleOverhead) / kTwofishBlockSize * kTwofishBlockSize +
           kTwofishBlockSize;
}

bool AreZeros(ByteView bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

std::array<std::uint8_t, SHA1::kDigestSize> DigestOf(ByteView bytes) {
    std::array<std::uint32_t, SHA1::kDigestWords> words{};
    SHA1 sha;
    sha.Input(bytes.data(), bytes.size());
    sha.Result(words.data());
    std::array<std::uint8_t, SHA1::kDigestSize> digest{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        StoreBigEndian32(words[i], digest.data() + 4 * i);
    }
    return digest;
}

Bytes InnerRecord(UserTexts const& texts, UAL_DomainType domainType, unsigned char const* guid) {
    std::string_view const fields[] = {texts.user, texts.password, texts.domain};
    Bytes record(kTextsAt + texts.user.size() + texts.password.size() + texts.domain.size());
    std::uint8_t* position = record.data();
    auto const addNumber = [&position](std::uint32_t number) {
        StoreBigEndian32(number, position);
        position += 4;
    };
    addNumber(kVersion);
    for (std::string_view const text : fields) {
        addNumber(static_cast<std::uint32_t>(text.size()));
    }
    addNumber(static_cast<std::uint32_t>(domainType));
    if (guid != nullptr) {
        std::copy_n(guid, kGUIDSize, position);
    }
    position += kGUIDSize;
    for (std::string_view const text : fields) {
        position = std::ranges::copy(text, position).out;
    }
    ZUB_ASSERT(position == record.data() + record.size(), "(int)(pCurrent - *data) == *dataSize",
               kSourcePath, __LINE__);
    return record;
}

Bytes MiddleBlock(Bytes const& record) {
    Bytes block(MiddleSize(record.size()));
    StoreBigEndian32(static_cast<std::uint32_t>(record.size()), block.data());
    auto const digestAt = std::ranges::copy(record, block.begin() + 4).out;
    std::ranges::copy(DigestOf(record), digestAt);
    return block;
}

// Empty when a step failed.
Bytes OuterBlock(Bytes const& middle) {
    RecordKey sessionKey{};
    WipeAtEnd const wipe(sessionKey);
    if (!MakeSessionKey(sessionKey)) {
        return {};
    }
    Bytes block(middle.size() + kOuterOverhead);
    StoreBigEndian32(kVersion, block.data());
    StoreBigEndian32(static_cast<std::uint32_t>(middle.size()), block.data() + 4);
    for (std::size_t i = 0; i < sessionKey.size(); ++i) {
        StoreBigEndian32(sessionKey[i], block.data() + kSessionKeyAt + 4 * i);
    }
    bool const isDone =
        CryptRecord(false, sessionKey, middle.data(), middle.size(), block.data() + kMiddleAt) ==
            0 &&
        CryptRecord(false, FixedRecordKey(), block.data(), block.size(), block.data()) == 0;
    return isDone ? std::move(block) : Bytes();
}

// Null without memory.
char* CopyAsBase64(Bytes const& bytes) {
    std::size_t const room = Base64Encoder::EncodedLength(bytes.size());
    auto* const text = static_cast<char*>(std::calloc(room + 1, 1));
    if (text != nullptr) {
        std::size_t const length = Base64Encoder::Encode(bytes.data(), bytes.size(), text, false);
        ZUB_ASSERT(length <= room, "*outLen <= maxOutLen", kSourcePath, __LINE__);
    }
    return text;
}

char* Pack(UserTexts const& texts, UAL_DomainType domainType, unsigned char const* guid) {
    Bytes const outer = OuterBlock(MiddleBlock(InnerRecord(texts, domainType, guid)));
    return outer.empty() ? nullptr : CopyAsBase64(outer);
}

Bytes FromBase64(std::string_view text) {
    Bytes bytes(Base64Decoder::MaximumLength(text.size()));
    Base64Decoder decoder;
    std::size_t const length = decoder.Decode(text.data(), text.size(), bytes.data());
    ZUB_ASSERT(length <= bytes.size(), "*outLen <= maxOutLen", kSourcePath, __LINE__);
    bytes.resize(length);
    return bytes;
}

// The middle block in clear; empty unless the text is an outer block.
Bytes OpenOuterBlock(std::string_view text) {
    Bytes outer = FromBase64(text);
    if (outer.size() <= kOuterOverhead ||
        CryptRecord(true, FixedRecordKey(), outer.data(), outer.size(), outer.data()) != 0 ||
        LoadBigEndian32(outer.data()) != kVersion ||
        LoadBigEndian32(outer.data() + 4) != outer.size() - kOuterOverhead ||
        !AreZeros(ByteView(outer).last(kOuterZeros))) {
        return {};
    }
    RecordKey sessionKey{};
    WipeAtEnd const wipe(sessionKey);
    for (std::size_t i = 0; i < sessionKey.size(); ++i) {
        sessionKey[i] = LoadBigEndian32(outer.data() + kSessionKeyAt + 4 * i);
    }
    Bytes middle(outer.size() - kOuterOverhead);
    int const status =
        CryptRecord(true, sessionKey, outer.data() + kMiddleAt, middle.size(), middle.data());
    return status == 0 ? std::move(middle) : Bytes();
}

// The inner record inside of `middle`; empty unless its digest and the zeros behind it fit.
ByteView OpenMiddleBlock(Bytes const& middle) {
    if (middle.size() < MiddleSize(kTextsAt)) {
        return {};
    }
    std::size_t const size = LoadBigEndian32(middle.data());
    if (size < kTextsAt || MiddleSize(size) != middle.size()) {
        return {};
    }
    ByteView const record = ByteView(middle).subspan(4, size);
    ByteView const digest = ByteView(middle).subspan(4 + size, SHA1::kDigestSize);
    bool const isWhole = std::ranges::equal(digest, DigestOf(record)) &&
                         AreZeros(ByteView(middle).subspan(size + kMiddleOverhead));
    return isWhole ? record : ByteView();
}

// False unless the record's lengths are those of the texts in it.
bool FindTexts(ByteView record, UserTexts& texts) {
    if (record.empty() || LoadBigEndian32(record.data()) != kVersion) {
        return false;
    }
    std::string_view rest(reinterpret_cast<char const*>(record.data()) + kTextsAt,
                          record.size() - kTextsAt);
    std::string_view* const fields[] = {&texts.user, &texts.password, &texts.domain};
    for (std::size_t i = 0; i < 3; ++i) {
        std::size_t const length = LoadBigEndian32(record.data() + 4 + 4 * i);
        if (length > rest.size()) {
            return false;
        }
        *fields[i] = rest.substr(0, length);
        rest.remove_prefix(length);
    }
    return rest.empty();
}

// Null without memory.
char* CopyOf(std::string_view text) {
    auto* const copy = static_cast<char*>(std::calloc(text.size() + 1, 1));
    if (copy != nullptr) {
        std::ranges::copy(text, copy);
    }
    return copy;
}

// Wipes a text of known length, in which zeros may lie, and frees it.
void Drop(char*& text, std::size_t length) {
    if (text != nullptr) {
        Wipe(text, length);
    }
    std::free(text);
    text = nullptr;
}

bool CopyTexts(UserTexts const& texts, char** user, char** password, char** domain) {
    *user = CopyOf(texts.user);
    *password = CopyOf(texts.password);
    *domain = CopyOf(texts.domain);
    if (*user != nullptr && *password != nullptr && *domain != nullptr) {
        return true;
    }
    Drop(*user, texts.user.size());
    Drop(*password, texts.password.size());
    Drop(*domain, texts.domain.size());
    return false;
}

int Unpack(char const* text, char** user, char** password, char** domain,
           UAL_DomainType* domainType, unsigned char* guid) {
    Bytes const middle = OpenOuterBlock(text);
    ByteView const record = OpenMiddleBlock(middle);
    UserTexts texts;
    if (!FindTexts(record, texts) || !CopyTexts(texts, user, password, domain)) {
        return -1;
    }
    *domainType = static_cast<UAL_DomainType>(LoadBigEndian32(record.data() + 16));
    std::copy_n(record.data() + kGUIDAt, kGUIDSize, guid);
    return 0;
}

}  // namespace

int UAL_PackAndEncrypt(char const* user, char const* password, char const* domain,
                       UAL_DomainType domainType, unsigned char const* guid, char** out) {
    if (out == nullptr) {
        return -1;
    }
    *out = nullptr;
    if (user == nullptr || password == nullptr) {
        return -1;
    }
    UserTexts const texts{user, password, domain == nullptr ? "" : domain};
    if (texts.user.size() > kLongestRecord || texts.password.size() > kLongestRecord ||
        texts.domain.size() > kLongestRecord ||
        texts.user.size() + texts.password.size() + texts.domain.size() > kLongestRecord) {
        return -1;
    }
    try {
        *out = Pack(texts, domainType, guid);
    } catch (std::bad_alloc const&) {
        return -1;
    }
    return *out == nullptr ? -1 : 0;
}

int UAL_UnpackAndDecrypt(char const* text, char** user, char** password, char** domain,
                         UAL_DomainType* domainType, unsigned char* guid) {
    for (char** const result : {user, password, domain}) {
        if (result != nullptr) {
            *result = nullptr;
        }
    }
    if (domainType != nullptr) {
        *domainType = {};
    }
    if (guid != nullptr) {
        std::fill_n(guid, kGUIDSize, static_cast<unsigned char>(0));
    }
    if (text == nullptr || user == nullptr || password == nullptr || domain == nullptr ||
        domainType == nullptr || guid == nullptr) {
        return -1;
    }
    try {
        return Unpack(text, user, password, domain, domainType, guid);
    } catch (std::bad_alloc const&) {
        return -1;
    }
}
