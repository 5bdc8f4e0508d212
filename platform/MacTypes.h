// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// Scalar types and result numbers that every service shares. A result of 0 is success, an error
// is negative. The named numbers are those that some caller tells apart.

using OSErr = std::int16_t;
using OSStatus = std::int32_t;
using OSType = std::uint32_t;

constexpr OSStatus noErr = 0;
constexpr OSStatus dskFulErr = -34;
constexpr OSStatus ioErr = -36;
constexpr OSStatus bdNamErr = -37;
constexpr OSStatus fnOpnErr = -38;
constexpr OSStatus eofErr = -39;
constexpr OSStatus fnfErr = -43;
constexpr OSStatus wPrErr = -44;
constexpr OSStatus dupFNErr = -48;
constexpr OSStatus paramErr = -50;
constexpr OSStatus permErr = -54;
constexpr OSStatus memFullErr = -108;
constexpr OSStatus dirNFErr = -120;
constexpr OSStatus procNotFound = -600;
// A link that isn't followed: another user's, in a folder that all may write.
constexpr OSStatus linkRefusedErr = -5035;

// "cmds"_code: the number whose four bytes, highest first, are these ASCII letters.
consteval OSType operator""_code(char const* letters, std::size_t length) {
    if (length != 4) {
        throw "a code has four letters";  // never at run time: it ends the compilation
    }
    OSType code = 0;
    for (std::size_t at = 0; at < length; ++at) {
        code = (code << 8) | static_cast<unsigned char>(letters[at]);
    }
    return code;
}
