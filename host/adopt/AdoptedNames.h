// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// Hears what couldn't be carried, and of which line.
using AdoptTell = std::function<void(long line, std::string const& text)>;

// The texts for people of an adopted PPD, within what its reader takes: bytes of the encoding that
// the file declares, and short enough that the rest of a line finds room.
class AdoptedNames {
  public:
    // `encoding` as *LanguageEncoding names it; an unknown one stands for UTF-8, as in the reader.
    AdoptedNames(std::string const& encoding, AdoptTell tell);

    // "keyword/text" as it stands in a line. What isn't of the encoding, or is too long, is mended
    // and told; the keyword stands for what can't be mended or is empty.
    std::string Named(long line, std::string const& keyword, std::string const& text) const;

  private:
    bool Reads(std::string const& text) const;
    std::string Cut(std::string text) const;

    std::uint32_t mEncoding;
    AdoptTell mTell;
};
