// SPDX-License-Identifier: Apache-2.0
#include "ciphers/SHA1.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "ciphers/BigEndian.h"
#include "platform/Wiping.h"

namespace {

constexpr std::array<std::uint32_t, SHA1::kDigestWords> kInitialDigest = {
    0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
constexpr std::array<std::uint32_t, 4> kRoundConstants = {0x5A827999, 0x6ED9EBA1, 0x8F1BBCDC,
                                                          0xCA62C1D6};
constexpr std::size_t kSteps = 80;
constexpr std::size_t kLengthAt = 56;  // of the length in the last block

// One function for each 20 steps.
std::uint32_t Mix(std::size_t quarter, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    switch (quarter) {
        case 0:
            return (b & c) | (~b & d);
        case 2:
            return (b & c) | (b & d) | (c & d);
        default:
            return b ^ c ^ d;
    }
}

using Schedule = std::array<std::uint32_t, kSteps>;

void Expand(std::array<std::uint8_t, 64> const& block, Schedule& words) {
    for (std::size_t i = 0; i < 16; ++i) {
        words[i] = LoadBigEndian32(block.data() + 4 * i);
    }
    for (std::size_t i = 16; i < kSteps; ++i) {
        words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
    }
}

}  // namespace

SHA1::SHA1() {
    Reset();
}

SHA1::~SHA1() {
    Wipe(&mBlock, sizeof mBlock);
    Wipe(&mDigest, sizeof mDigest);
}

void SHA1::Reset() {
    mDigest = kInitialDigest;
    mLengthLow = 0;
    mLengthHigh = 0;
    Wipe(&mBlock, sizeof mBlock);
    mBlockIndex = 0;
    mComputed = false;
    mCorrupted = false;
}

void SHA1::Input(std::uint8_t const* bytes, std::size_t length) {
    if (bytes == nullptr || length == 0) {
        return;
    }
    mCorrupted = mCorrupted || mComputed;
    for (std::size_t i = 0; i < length && !mCorrupted; ++i) {
        mBlock[mBlockIndex++] = bytes[i];
        mLengthLow += 8;
        if (mLengthLow == 0) {
            mCorrupted = ++mLengthHigh == 0;
        }
        if (mBlockIndex == mBlock.size()) {
            ProcessBlock();
        }
    }
}

void SHA1::Input(char const* bytes, std::size_t length) {
    Input(reinterpret_cast<std::uint8_t const*>(bytes), length);
}

void SHA1::Input(std::uint8_t byte) {
    Input(&byte, 1);
}

void SHA1::Input(char byte) {
    Input(&byte, 1);
}

SHA1& SHA1::operator<<(char const* text) {
    Input(text, text == nullptr ? 0 : std::strlen(text));
    return *this;
}

SHA1& SHA1::operator<<(std::uint8_t const* text) {
    return *this << reinterpret_cast<char const*>(text);
}

SHA1& SHA1::operator<<(char byte) {
    Input(byte);
    return *this;
}

SHA1& SHA1::operator<<(std::uint8_t byte) {
    Input(byte);
    return *this;
}

bool SHA1::Result(std::uint32_t* words) {
    if (mCorrupted || words == nullptr) {
        return false;
    }
    if (!mComputed) {
        Pad();
        mComputed = true;
    }
    std::copy(mDigest.begin(), mDigest.end(), words);
    return true;
}

void SHA1::Pad() {
    mBlock[mBlockIndex++] = 0x80;
    if (mBlockIndex > kLengthAt) {
        std::fill(mBlock.begin() + static_cast<std::ptrdiff_t>(mBlockIndex), mBlock.end(),
                  std::uint8_t{0});
        ProcessBlock();
    }
    std::fill(mBlock.begin() + static_cast<std::ptrdiff_t>(mBlockIndex), mBlock.end(),
              std::uint8_t{0});
    StoreBigEndian32(mLengthHigh, mBlock.data() + kLengthAt);
    StoreBigEndian32(mLengthLow, mBlock.data() + kLengthAt + 4);
    ProcessBlock();
    Wipe(&mBlock, sizeof mBlock);
}

void SHA1::ProcessBlock() {
    Schedule words{};
    WipeAtEnd const wipe(words);
    Expand(mBlock, words);
    auto [a, b, c, d, e] = mDigest;
    for (std::size_t step = 0; step < kSteps; ++step) {
        std::size_t const quarter = step / 20;
        std::uint32_t const sum =
            std::rotl(a, 5) + Mix(quarter, b, c, d) + e + words[step] + kRoundConstants[quarter];
        e = d;
        d = c;
        c = std::rotl(b, 30);
        b = a;
        a = sum;
    }
    mDigest[0] += a;
    mDigest[1] += b;
    mDigest[2] += c;
    mDigest[3] += d;
    mDigest[4] += e;
    mBlockIndex = 0;
}
