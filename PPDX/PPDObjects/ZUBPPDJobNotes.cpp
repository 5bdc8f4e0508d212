// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "PPDX/PPDObjects/CodeBlock.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/OwnedBy.h"
#include "PPDX/PPDObjects/PPDDelimiters.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDXErrorCode.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CFRef.h"

// The lines that make job notes.

namespace {

constexpr std::string_view kDefaultLine = "*%Default";
constexpr std::string_view kMinLengthWord = "MinLength";
constexpr char kSeriesOfShortcuts = '2';

// How many rows of the flags a file of level 0, 1 and 2 may use.
constexpr std::array<std::size_t, 3> kRowsOfLevel = {9, 12, 15};

constexpr std::int32_t kMinimumWithoutDigit = -1;
constexpr std::int32_t kMinimumTooLong = -2;
constexpr std::int32_t kMinimumWithSecondLetter = -3;

std::size_t AvailableRows() {
    auto const level = static_cast<std::size_t>(ZUBPPD::GetExtensions());
    return level < kRowsOfLevel.size() ? kRowsOfLevel[level] : JobNoteFlags::kRowCount;
}

bool IsDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

std::int32_t MinimumLength(std::string_view digits) {
    if (digits.empty()) {
        return 0;
    }
    if (!IsDigit(digits[0])) {
        return kMinimumWithoutDigit;
    }
    if (digits.size() > 2) {
        return kMinimumTooLong;
    }
    if (digits.size() == 1) {
        return digits[0] - '0';
    }
    return IsDigit(digits[1]) ? (digits[0] - '0') * 10 + (digits[1] - '0')
                              : kMinimumWithSecondLetter;
}

// What a line with a note's code begins with.
std::string CodeLineOf(std::string_view keyword) {
    return std::string("*%").append(keyword.starts_with('*') ? keyword.substr(1) : keyword);
}

}  // namespace

// What the lines of a note give until it can be made.
struct ZUBPPD::NoteLine {
    char keyword[kTextSize];
    CFRef<CFStringRef> name;
    long maximum = 0;
    long minimum = 0;
    std::uint32_t flags = kNoteNoFlags;
    std::unique_ptr<CString> defaultText;
    CodeBlock code;
    std::unique_ptr<PPDXErrorObj> error;  // the first one that keeps the note from being made
};

PPDXErrorObj* ZUBPPD::ParseJobNote(PPDStream& line) {
    NoteLine note;
    if (!NextToken(line, note.keyword, kNameDelimiters, true)) {
        return new PPDXErrorObj(kNoteWithoutKeyword, false);
    }
    if (!ReadNote(line, false, note) || note.error != nullptr) {
        return note.error.release();
    }
    PeekNoteCompanion(note);
    PointerList noFlags;
    return PlaceNote(note, noFlags, nullptr);
}

PPDXErrorObj* ZUBPPD::ParseJobNote(PPDStream& line, char const* keyword, PointerList& flags,
                                   PPDXGroup* group) {
    NoteLine note;
    if (!NextToken(line, note.keyword, kNameDelimiters, true) ||
        std::strcmp(note.keyword, keyword) != 0) {
        note.error = std::make_unique<PPDXErrorObj>(kNoteWithoutKeyword, note.keyword, false);
    } else if (!ReadNote(line, true, note)) {
        return nullptr;
    }
    if (note.error != nullptr) {
        note.error->SetPlace(Place());  // not the companion's, which is read all the same
    }
    TakeNoteCompanion(keyword, note);
    if (note.error != nullptr) {
        return note.error.release();
    }
    PPDXErrorObj* const error = PlaceNote(note, flags, dynamic_cast<PPDXRollDown*>(group));
    char const* const version = ZUVersion();
    if (error == nullptr && version != nullptr && *version == kSeriesOfShortcuts) {
        AddNoteToShortcuts(keyword);
    }
    return error;
}

// ---- The note's own line ----

bool ZUBPPD::ReadNote(PPDStream& line, bool grouped, NoteLine& note) {
    char text[kTextSize];
    if (!NextToken(line, text, kTranslationDelimiters, false)) {
        return false;
    }
    note.name = CFRef<CFStringRef>(CopyTranslation(text));
    if (!NextToken(line, text, kWordDelimiters, true)) {
        return false;
    }
    note.maximum = std::strtol(text, nullptr, 10);
    ReadNoteWords(line, grouped, note);
    if (note.error == nullptr && !note.name) {
        note.error = std::make_unique<PPDXErrorObj>(kNoteWithoutKeyword, note.keyword, false);
    }
    return true;
}

void ZUBPPD::ReadNoteWords(PPDStream& line, bool grouped, NoteLine& note) {
    for (std::string_view word; NextToken(line, word, kWordDelimiters);) {
        if (grouped && word.starts_with(kMinLengthWord)) {
            note.minimum = MinimumLength(word.substr(kMinLengthWord.size()));
            word = kMinLengthWord;
        }
        std::size_t const row = JobNoteFlags::RowOf(word);
        if (row == JobNoteFlags::kRowCount) {
            continue;
        }
        if (row < AvailableRows()) {
            note.flags |= JobNoteFlags::FlagOf(row);
        } else if (note.error == nullptr) {
            note.error = std::make_unique<PPDXErrorObj>(kUnavailableNoteFlag, note.keyword, false);
        }
    }
}

// ---- The line behind it ----

void ZUBPPD::PeekNoteCompanion(NoteLine& note) {
    if (mCurrentStream == nullptr) {
        return;
    }
    // A copy that sees as much of the file as is in memory, and leaves the stream where it is.
    PPDStream ahead(*mCurrentStream);
    std::string_view text;
    std::string_view token;
    if (!ahead.NextLine(text)) {
        return;
    }
    PPDStream line(text);
    if (!NextToken(line, token, kKeywordDelimiters)) {
        return;
    }
    if (token.starts_with(kDefaultLine)) {
        char value[kTextSize];
        NextToken(line, value, kWordDelimiters, true);
        if (value[0] != '\0') {
            note.defaultText = std::make_unique<CString>(value);
        }
    } else if (token == CodeLineOf(note.keyword)) {
        note.code = ReadCode(line);
    } else {
        return;
    }
    ReadLine(line);
}

void ZUBPPD::TakeNoteCompanion(char const* keyword, NoteLine& note) {
    PPDStream line;
    std::string_view token;
    if (!NextLine(line, token)) {
        return;
    }
    if (token.starts_with(kDefaultLine)) {
        char value[kTextSize];
        if (GetQuotedString(line, value, kTextSize) > 0 && value[0] != '\0') {
            note.defaultText = std::make_unique<CString>(value);
        }
    } else if (token == CodeLineOf(keyword)) {
        note.code = ReadCode(line);
    }
}

// ---- Into the tree ----

PPDXErrorObj* ZUBPPD::PlaceNote(NoteLine& note, PointerList& flags, PPDXGroup* group) {
    CString encoding(LanguageEncoding());
    auto* const control = new (std::nothrow)
        PPDXJobNote(note.keyword, note.name, flags, note.code.bytes.get(), note.code.size,
                    note.defaultText.get(), &encoding, true, note.maximum,
                    static_cast<JobNoteFlag>(note.flags), note.minimum);
    if (control == nullptr) {
        return new PPDXErrorObj(kOutOfMemory, note.keyword, false);
    }
    flags.MakeEmpty();
    static_cast<void>(note.code.bytes.release());
    static_cast<void>(note.defaultText.release());
    SetupControl(group != nullptr ? group : mGroups->Find(kJobNoteGroup, true), control, false);
    return nullptr;
}

void ZUBPPD::AddNoteToShortcuts(char const* keyword) {
    for (auto at = mShortcutNames.Begin(); at != mShortcutNames.End(); ++at) {
        if (*static_cast<CString const*>(*at) == keyword) {
            return;
        }
    }
    PushOwned(mShortcutNames, std::make_unique<CString>(keyword));
}
