// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/internal/UTF16Text.h"

namespace platform {

// One text encoding, character by character, and strict: what isn't text has no result. Codecs are
// made once and live as long as the process; they may be used from several threads.
class TextCodec {
  public:
    // Null for an encoding that isn't known, and without memory. A Mac script's variants are taken
    // as the script.
    static TextCodec const* ForEncoding(std::uint32_t encoding);

    static constexpr std::size_t kMaximumCharacterSize = 4;
    static constexpr int kMalformed = 0;
    static constexpr int kCut = -1;

    TextCodec(TextCodec const&) = delete;
    TextCodec& operator=(TextCodec const&) = delete;
    virtual ~TextCodec() = default;

    // Takes the character at `bytes`, of which there are at least one, and returns how many bytes
    // it has, or kMalformed or, when it goes on beyond `end`, kCut.
    virtual int Decode(std::uint8_t const* bytes, std::uint8_t const* end,
                       char32_t& character) const = 0;
    // Writes at most kMaximumCharacterSize bytes and returns how many, 0 for no form.
    virtual std::size_t Encode(char32_t character, std::uint8_t* bytes) const = 0;
    virtual std::size_t MaximumBytesPerUnit() const = 0;

    // A whole run; false, with unspecified text, when some of it is malformed or cut.
    virtual bool DecodeText(std::uint8_t const* bytes, std::size_t size, UTF16Text& text) const;

  protected:
    TextCodec() = default;
};

}  // namespace platform
