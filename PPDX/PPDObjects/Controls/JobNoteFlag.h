// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// What a PPD says about a job note: which characters it takes, how it travels, what it is. Bits,
// combined by OR; a value may have several.
enum JobNoteFlag : std::uint32_t {
    kNoteNoFlags = 0,
    kNoteAlpha = 0x1,
    kNoteNumeric = 0x2,
    kNoteDecimal = 0x4,
    kNoteRequired = 0x8,
    kNoteRemembered = 0x10,
    kNotePassword = 0x20,
    kNoteAlwaysDisplay = 0x40,
    kNoteResume = 0x80,
    kNoteMember = 0x100,
    kNoteOnOffSwitch = 0x200,
    kNoteLengthReq = 0x400,
    kNoteSecPrint = 0x800,
    kNoteCommand = 0x1000,
    kNoteSpace = 0x2000,
    kNoteNegative = 0x4000,
    kNoteEncrypt = 0x8000,
    kNoteMultiSpace = 0x10000,
    kNoteMultiComma = 0x20000,
    kNoteLCD = 0x40000,
    kNoteHyphen = 0x80000,
    kNoteTwoCharField = 0x100000,
    kNoteNoComma = 0x200000,
    kNoteMinLength = 0x400000,
    kNoteUTF8 = 0x800000,
    kNoteAESEncrypt = 0x1000000
};

// The words for them in a PPD, in the order in which versions of the grammar added them: an older
// version knows the first rows only.
class JobNoteFlags {
  public:
    static constexpr std::size_t kRowCount = 25;

    // The row of exactly this word; kRowCount for a word of no row.
    static std::size_t RowOf(std::string_view word);
    static JobNoteFlag FlagOf(std::size_t row);  // of a row below kRowCount
};
