// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/JobNoteFlag.h"

#include <algorithm>
#include <array>

namespace {

struct Row {
    std::string_view word;
    JobNoteFlag flag;
};

constexpr std::array<Row, JobNoteFlags::kRowCount> kRows = {{
    {"Alpha", kNoteAlpha},
    {"Numeric", kNoteNumeric},
    {"Decimal", kNoteDecimal},
    {"Required", kNoteRequired},
    {"Remembered", kNoteRemembered},
    {"Password", kNotePassword},
    {"AlwaysDisplay", kNoteAlwaysDisplay},
    {"Resume", kNoteResume},
    {"Member", kNoteMember},
    {"OnOfSwitch", kNoteOnOffSwitch},
    {"LengthReq", kNoteLengthReq},
    {"SecPrint", kNoteSecPrint},
    {"Command", kNoteCommand},
    {"Space", kNoteSpace},
    {"Negative", kNoteNegative},
    {"Encrypt", kNoteEncrypt},
    {"MultiSpace", kNoteMultiSpace},
    {"MultiComma", kNoteMultiComma},
    {"LCD", kNoteLCD},
    {"Hyphen", kNoteHyphen},
    {"TwoCharField", kNoteTwoCharField},
    {"NoComma", kNoteNoComma},
    {"MinLength", kNoteMinLength},
    {"UTF8", kNoteUTF8},
    {"AESEncrypt", kNoteAESEncrypt},
}};

}  // namespace

std::size_t JobNoteFlags::RowOf(std::string_view word) {
    return static_cast<std::size_t>(std::ranges::find(kRows, word, &Row::word) - kRows.begin());
}

JobNoteFlag JobNoteFlags::FlagOf(std::size_t row) {
    return kRows[row].flag;
}
