// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/ClampTo32Bits.h"
#include "ZUBUtils/PPDUtils/WipedText.h"
#include "ciphers/KeyMaterial.h"
#include "ciphers/ZUCFStringCipher.h"
#include "platform/CFRef.h"
#include "platform/UserIdentity.h"
#include "platform/Wiping.h"

namespace {

constexpr std::string_view kUserName = "*ZUUserAuthName";
constexpr std::string_view kComment = "%%";
constexpr CFStringEncoding kLastResortEncoding = 2;  // Chinese, traditional script
constexpr CFIndex kBytesPerUnit = 4;                 // in UTF-8, and to spare
constexpr std::size_t kLongestInCode = 512;
constexpr std::size_t kLengthWhenCut = 511;
constexpr std::uint32_t kLimitsCharacters = kNoteAlpha | kNoteNumeric | kNoteDecimal | kNoteSpace |
                                            kNoteNegative | kNoteMultiSpace | kNoteMultiComma;

// Notes whose text is UTF-8.
constexpr std::array<std::string_view, 3> kUTF8Keywords = {"*Notes1", "*Instruct", "*Resume"};
// Notes that share their keyword, and their value, with a list.
constexpr std::array<std::string_view, 3> kListKeywords = {"*ZURGBOverride", "*ZUOutProfile",
                                                           "*ZUSimulation"};

// What stands in front of the text of a note without a template.
struct FlagComment {
    JobNoteFlag flag;
    std::string_view head;
};
constexpr FlagComment kFlagComments[] = {
    {kNoteResume, "%%PersPassword: "},
    {kNoteMember, "%%DeptPassword: "},
};
struct KeywordComment {
    std::string_view keyword;
    std::string_view head;
};
constexpr KeywordComment kKeywordComments[] = {
    {"*Notes1", "%%ZUBCustom1: "},
    {"*Notes2", "%%ZUBCustom2: "},
    {"*Instruct", "%%ZUBCustom3: "},
};
constexpr std::string_view kNoComment = "%%EmptyOption\n\n";

bool IsOneOf(std::array<std::string_view, 3> const& keywords, char const* keyword) {
    return keyword != nullptr && std::ranges::find(keywords, keyword) != keywords.end();
}

char const* TextOf(std::unique_ptr<CString> const& text) {
    return text != nullptr ? text->GetCharData() : nullptr;
}

template <typename Source>
std::unique_ptr<CString> NewText(Source source) {
    return std::unique_ptr<CString>(new (std::nothrow) CString(source));
}

// Null where the string doesn't convert, and without memory.
std::unique_ptr<CString> NewConverted(CFStringRef string, CFStringEncoding encoding) {
    if (string == nullptr) {
        return nullptr;
    }
    try {
        std::vector<char, WipingAllocator<char>> text(
            static_cast<std::size_t>(CFStringGetLength(string) * kBytesPerUnit + 1));
        return CFStringGetCString(string, text.data(), static_cast<CFIndex>(text.size()), encoding)
                   ? NewText(text.data())
                   : nullptr;
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}

CFRef<CFStringRef> CopyPresetKey() {
    return CFRef<CFStringRef>(CFStringCreateWithBytes(
        nullptr, reinterpret_cast<std::uint8_t const*>(kPresetKey.data()),
        static_cast<CFIndex>(kPresetKey.size()), kCFStringEncodingASCII, false));
}

// The head of the comment for a note without a template; empty for none.
std::string_view CommentHead(std::uint32_t flags, std::string_view keyword) {
    for (FlagComment const& row : kFlagComments) {
        if ((flags & row.flag) != 0) {
            return row.head;
        }
    }
    auto const* const row = std::ranges::find(kKeywordComments, keyword, &KeywordComment::keyword);
    return row != std::end(kKeywordComments) ? row->head : std::string_view();
}

}  // namespace

PPDXJobNote::PPDXJobNote(char const* keyword, CFStringRef translation, PointerList& flags,
                         unsigned char* code, long codeSize, CString* defaultText,
                         CString* /*languageEncoding*/, bool visible, long maximum,
                         JobNoteFlag const& noteFlags, long minimum)
    : PPDXControl(keyword, translation, flags, code, codeSize, visible, nullptr),
      mNotes(defaultText),
      mMaximum(ClampTo32Bits(maximum)),
      mMinimum(ClampTo32Bits(minimum)),
      mNoteFlags(noteFlags) {
    SetType(kJobNoteType);
    if (mNotes == nullptr && Keyword() != nullptr && Keyword() == kUserName) {
        mNotes = NewConverted(CFRef<CFStringRef>(CSCopyUserName()), kCFStringEncodingMacRoman);
    }
    if (mNotes != nullptr) {
        mDefaultNotes = NewText<CString const&>(*mNotes);
    }
}

PPDXJobNote::PPDXJobNote(Settings& settings, long id, CString* /*languageEncoding*/)
    : PPDXControl(settings, id, nullptr) {
    SetType(kJobNoteType);
    ControlRecord const record(settings, id);
    mNotes.reset(record.CopyText(ArchiveTags::kNoteText));
    mDefaultNotes.reset(record.CopyText(ArchiveTags::kNoteDefault));
    record.Read(ArchiveTags::kNoteMaximum, mMaximum);
    record.Read(ArchiveTags::kNoteMinimum, mMinimum);
    std::int32_t flags = 0;
    record.Read(ArchiveTags::kNoteFlags, flags);
    mNoteFlags = static_cast<std::uint32_t>(flags);
    record.Read(ArchiveTags::kNoteOn, mNotesOn);
}

PPDXJobNote::~PPDXJobNote() {
    DiscardCode();
}

void PPDXJobNote::DiscardCode() {
    if (mSubstituted != nullptr) {
        Wipe(mSubstituted, static_cast<std::size_t>(mSubstitutedLength));
    }
    std::free(std::exchange(mSubstituted, nullptr));
    mSubstitutedLength = 0;
}

// ---- The archive ----

short PPDXJobNote::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXControl::Save(settings, id));
    record.AddMark(ArchiveTags::kJobNote);
    record.AddText(ArchiveTags::kNoteText, mNotes.get());
    record.AddText(ArchiveTags::kNoteDefault, mDefaultNotes.get());
    record.AddNumber(ArchiveTags::kNoteMaximum, mMaximum);
    record.AddNumber(ArchiveTags::kNoteMinimum, mMinimum);
    record.AddNumber(ArchiveTags::kNoteFlags, static_cast<std::int32_t>(mNoteFlags));
    record.AddNumber(ArchiveTags::kNoteOn, mNotesOn);
    return record.Status();
}

short PPDXJobNote::Restore(Settings& settings, long id) {
    mNotes.reset(ControlRecord(settings, id).CopyText(ArchiveTags::kNoteText));
    return 0;
}

// ---- The text ----

bool PPDXJobNote::OkayToDisplay(_DISPLAY_OPTIONS_ const& options) {
    bool const asksVisibility = options == kDisplayPlacedAndVisible || options == kDisplayOrphans;
    return !asksVisibility || IsVisible();
}

bool PPDXJobNote::HasUTF8Keyword() const {
    return IsOneOf(kUTF8Keywords, Keyword());
}

bool PPDXJobNote::IsCutInCode() {
    bool const holdsText = PPDXControl::PostScript(nullptr) > 0 ||
                           !CommentHead(mNoteFlags, Keyword() != nullptr ? Keyword() : "").empty();
    return holdsText && mNotes != nullptr && mNotes->Size() > kLongestInCode;
}

bool PPDXJobNote::IsAnyText() const {
    return (mNoteFlags & kLimitsCharacters) == 0;
}

char const* PPDXJobNote::GetNotes() const {
    return TextOf(mNotes);
}

char const* PPDXJobNote::GetDefaultNotes() const {
    return TextOf(mDefaultNotes);
}

void PPDXJobNote::SetNotes(char const* text) {
    DiscardCode();
    // The text may be the one that goes.
    mNotes = NewText(text);
    ReportChange(GetNotes());
}

void PPDXJobNote::SetUTF8Notes(CFStringRef text) {
    if (auto notes = NewConverted(text, kCFStringEncodingUTF8)) {
        mNotes = std::move(notes);
    }
}

std::unique_ptr<CString> PPDXJobNote::ExchangeNotes(std::unique_ptr<CString> notes) noexcept {
    DiscardCode();
    return std::exchange(mNotes, std::move(notes));
}

void PPDXJobNote::ResetToDefaultValue() {
    SetNotes(GetDefaultNotes());
}

void PPDXJobNote::SetCurrentControlWithCFString(CFStringRef value) {
    DiscardCode();
    auto notes = HasUTF8Keyword() ? NewConverted(value, kCFStringEncodingUTF8) : nullptr;
    mNotes = notes != nullptr ? std::move(notes) : NewText(value);
}

CFStringRef PPDXJobNote::CopyNotes() const {
    char const* const text = GetNotes();
    if (text == nullptr) {
        return CFStringCreateCopy(nullptr, CFSTR(""));
    }
    // The plain decoding is done as UTF-8, of which ASCII is a part, where the text is UTF-8.
    bool const isUTF8 = IsOneOf(kUTF8Keywords, Keyword());
    CFRef<CFStringRef> plain(CFStringCreateWithCString(
        nullptr, text, isUTF8 ? kCFStringEncodingUTF8 : kCFStringEncodingASCII));
    CFRef<CFStringRef> system(
        CFStringCreateWithCString(nullptr, text, CFStringGetSystemEncoding()));
    if (!plain && !system) {
        return CFStringCreateWithCString(nullptr, text, kLastResortEncoding);
    }
    bool const takesPlain = plain && (isUTF8 || !system);
    return takesPlain ? plain.Release() : system.Release();
}

CFStringRef PPDXJobNote::CopyCurrentControlValueString() {
    return CopyNotes();
}

CFStringRef PPDXJobNote::CopyPresetValueString() {
    CFRef<CFStringRef> const value(CopyCurrentControlValueString());
    return value ? ZUCFCreateEncryptedString(value, CopyPresetKey()) : nullptr;
}

void PPDXJobNote::SetPresetValueString(CFStringRef value) {
    if (value == nullptr) {
        return;
    }
    if (IsOneOf(kListKeywords, Keyword())) {
        SetCurrentControlWithCFString(value);
        return;
    }
    CFRef<CFStringRef> const plain(ZUCFCreateDecryptedString(value, CopyPresetKey()));
    if (plain) {
        SetCurrentControlWithCFString(plain);
    }
}

// ---- PostScript ----

long PPDXJobNote::PostScript(unsigned char* out) {
    char const* const notes = GetNotes();
    if (notes == nullptr || *notes == '\0' || Keyword() == nullptr) {
        return 0;
    }
    WipedText text((std::string_view(notes)));
    if (mSubstituted == nullptr) {
        Substitute();
    }
    if (out == nullptr && IsOneOf(kListKeywords, Keyword())) {
        return 0;
    }
    text.BlankControlCharacters();
    return GeneratePSOutputData(out, mSubstituted, mSubstitutedLength, text.CStr(), true);
}

void PPDXJobNote::Substitute() {
    DiscardCode();
    std::string_view const text = GetNotes();
    WipedText value(text.size() > kLongestInCode ? text.substr(0, kLengthWhenCut) : text);
    // The base operation gives the template as the PPD has it.
    long const size = PPDXControl::PostScript(nullptr);
    if (size < 1) {
        BuildPDLString(value.CStr());
        return;
    }
    std::vector<unsigned char> code(static_cast<std::size_t>(size));
    PPDXControl::PostScript(code.data());
    // Elsewhere the text becomes hexadecimal, in which no character does harm.
    if (std::string_view(reinterpret_cast<char*>(code.data()), code.size()).starts_with(kComment)) {
        value.BlankControlCharacters();
    }
    mSubstitutedLength =
        static_cast<std::int32_t>(Inject(Keyword(), code.data(), size, value.CStr(), mSubstituted));
}

void PPDXJobNote::BuildPDLString(char const* value) {
    DiscardCode();
    WipedText comment;
    std::string_view const head =
        CommentHead(mNoteFlags, Keyword() != nullptr ? Keyword() : std::string_view());
    if (!head.empty()) {
        comment.Append(head);
        comment.Append(value != nullptr ? value : "");
        comment.BlankControlCharacters();
        comment.Append("\n");
    } else if (!IsOneOf(kListKeywords, Keyword())) {
        comment.Append(kNoComment);
    }
    std::string_view const text = comment.View();
    auto* const block =
        text.empty() ? nullptr : static_cast<unsigned char*>(std::malloc(text.size()));
    if (block != nullptr) {
        std::memcpy(block, text.data(), text.size());
        mSubstituted = block;
        mSubstitutedLength = static_cast<std::int32_t>(text.size());
    }
}
