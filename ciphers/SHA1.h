// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// SHA-1 (FIPS 180-1) of what is fed in pieces. A length of 0, and a null text, feed nothing. What
// was fed is wiped when the object goes and at Reset.
class SHA1 {
  public:
    static constexpr std::size_t kDigestWords = 5;
    static constexpr std::size_t kDigestSize = 4 * kDigestWords;

    SHA1();
    virtual ~SHA1();

    void Reset();

    void Input(std::uint8_t const* bytes, std::size_t length);
    void Input(char const* bytes, std::size_t length);
    void Input(std::uint8_t byte);
    void Input(char byte);
    SHA1& operator<<(char const* text);  // without its terminator
    SHA1& operator<<(std::uint8_t const* text);
    SHA1& operator<<(char byte);
    SHA1& operator<<(std::uint8_t byte);

    // The digest of all that was fed, as words of the host, the same at each call. False, with
    // `words` untouched, once something was fed behind a result or beyond 2^64 - 1 bits.
    bool Result(std::uint32_t* words);

  private:
    void Pad();
    void ProcessBlock();

    std::array<std::uint32_t, kDigestWords> mDigest{};
    std::uint32_t mLengthLow = 0;  // in bits
    std::uint32_t mLengthHigh = 0;
    std::array<std::uint8_t, 64> mBlock{};
    std::size_t mBlockIndex = 0;
    bool mComputed = false;
    bool mCorrupted = false;
};
