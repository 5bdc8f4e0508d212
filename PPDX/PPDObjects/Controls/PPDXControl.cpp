// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXControl.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/ListFromJP.h"
#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/ClampTo32Bits.h"
#include "ZUBUtils/PPDUtils/WipedText.h"
#include "constraints/UIConstraints.h"
#include "platform/CFRef.h"

namespace {

constexpr char kFlagDelimiter = '|';

constexpr std::string_view kNoShortcutKeywords[] = {
    "*ZUChromVale",
    "*ZU_PROP_COLORMODE",
    "*ZU_PROP_CV_PURE_BLACK",
    "*ZU_PROP_CV_OVER_PRINT",
    "*ZU_PROP_CV_RGB_SEPARATION",
    "*ZU_PROP_CV_SOURCE_PROFILES",
    "*ZU_PROP_CV_SIMULATION",
    "*ZU_PROP_CV_SPOTCOLORS",
    "*ZU_PROP_CV_OUTPUT_PROFILE",
    "*ZU_PROP_CV_SIM_SPEED",
    "*ZU_PROP_CV_COLOR_SMART",
    "*ZU_PROP_CV_GAMMA",
    "*ZU_PROP_CV_WHITEPOINT",
    "*ZU_PROP_CV_PHOSPHORS",
    "*ZU_PROP_CV_CRD",
    "*ZU_PROP_CV_CRD_IMAGES",
    "*ZU_PROP_CV_CRD_GRAPHICS",
    "*ZU_PROP_CV_CRD_TEXT",
    "*ZU_PROP_CV_CRD_IMAGES_HT",
    "*ZU_PROP_CV_CRD_GRAPHICS_HT",
    "*ZU_PROP_CV_CRD_TEXT_HT",
    "*ZU_LOCAL_PROP_FIRSTPAGESOURCE",
    "*ZU_LOCAL_PROP_FIRSTPAGEMEDIA",
    "*ZU_LOCAL_PROP_BACKPAGESOURCE",
    "*ZU_LOCAL_PROP_BACKPAGEMEDIA",
    "*ZU_PROP_WATERMARK_FIRSTPAGEONLY",
    "*ZU_PROP_WATERMARK_FOREGROUND",
    "*ZU_PROP_WATERMARK_OUTLINE",
    "*ZU_PROP_WATERMARK",
    "*ZU_PROP_LOCAL_ZULANDSCAPE",
};

std::string_view ViewOf(char const* text) {
    return text != nullptr ? text : std::string_view();
}

std::string_view ViewOf(unsigned char const* bytes, long length) {
    if (bytes == nullptr || length < 1) {
        return {};
    }
    return {reinterpret_cast<char const*>(bytes), static_cast<std::size_t>(length)};
}

std::string_view CodeOrLineFeed(std::string_view code) {
    return code.empty() ? "\n" : code;
}

// The length of the parts together, which are written where there is a place for them.
template <typename... Parts>
long Write(unsigned char* place, Parts const&... parts) {
    if (place != nullptr) {
        auto* end = reinterpret_cast<char*>(place);
        ((end += std::string_view(parts).copy(end, std::string_view::npos)), ...);
    }
    return static_cast<long>((std::string_view(parts).size() + ...));
}

// The value of a note may be a password.
WipedText HexadecimalString(std::string_view value) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    WipedText text("<");
    for (char const byte : value) {
        auto const number = static_cast<unsigned char>(byte);
        text.Append(kDigits.substr(number >> 4, 1));
        text.Append(kDigits.substr(number & 15, 1));
    }
    text.Append(">");
    return text;
}

WipedText PlainText(std::string_view value, bool doubleBackslashes) {
    WipedText text;
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (static_cast<unsigned char>(value[at]) > 127) {
            return {};
        }
        bool const isDoubled = value[at] == '\\' && doubleBackslashes;
        text.Append(isDoubled ? "\\\\" : value.substr(at, 1));
    }
    return text;
}

// Every byte is a character of Mac Roman, so code goes through it and back unharmed.
CFRef<CFStringRef> MacRomanString(std::string_view bytes) {
    return CFRef<CFStringRef>(CFStringCreateWithBytes(
        nullptr, reinterpret_cast<std::uint8_t const*>(bytes.data()),
        static_cast<CFIndex>(bytes.size()), kCFStringEncodingMacRoman, false));
}

// The lines of comments that the code begins with.
std::size_t LengthOfComments(std::string_view code) {
    constexpr std::string_view kCommentEnds = "\r\n\f";
    std::size_t length = 0;
    while (code.substr(length).starts_with('%')) {
        std::size_t const end = std::min(code.find_first_of(kCommentEnds, length), code.size());
        length = std::min(code.find_first_not_of(kCommentEnds, end), code.size());
    }
    return length;
}

void ReplaceEvery(CFMutableStringRef text, std::string_view wanted, std::string_view replacement,
                  CFOptionFlags options) {
    CFRef<CFStringRef> const wantedString = MacRomanString(wanted);
    CFRef<CFStringRef> const replacementString = MacRomanString(replacement);
    if (wantedString && replacementString) {
        CFStringFindAndReplace(text, wantedString, replacementString,
                               CFRangeMake(0, CFStringGetLength(text)), options);
    }
}

// The code with `replacement` in place of every marker; null without memory.
CFRef<CFMutableStringRef> Replaced(std::string_view code, std::string const& marker,
                                   WipedText const& replacement) {
    CFRef<CFStringRef> const original = MacRomanString(code);
    CFRef<CFMutableStringRef> text(CFStringCreateMutableCopy(nullptr, 0, original));
    if (original && text) {
        ReplaceEvery(text, marker, replacement.View(), kCFCompareCaseInsensitive);
    }
    return text;
}

// The same where a hexadecimal string also takes the place of parentheses around it.
CFRef<CFMutableStringRef> InStrings(std::string_view code, std::string const& marker,
                                    WipedText const& hexadecimal) {
    CFRef<CFMutableStringRef> text = Replaced(code, marker, hexadecimal);
    WipedText inParentheses("(");
    inParentheses.Append(hexadecimal.View());
    inParentheses.Append(")");
    if (text && !hexadecimal.Empty()) {
        ReplaceEvery(text, inParentheses.View(), hexadecimal.View(), 0);
    }
    return text;
}

// The text in Mac Roman with a terminator, in a malloc block; its length without that.
long CopyMacRomanBytes(CFStringRef text, unsigned char*& block) {
    CFRange const whole = CFRangeMake(0, CFStringGetLength(text));
    CFIndex length = 0;
    CFStringGetBytes(text, whole, kCFStringEncodingMacRoman, '?', false, nullptr, 0, &length);
    block = static_cast<unsigned char*>(std::malloc(static_cast<std::size_t>(length) + 1));
    if (block == nullptr) {
        return 0;
    }
    CFStringGetBytes(text, whole, kCFStringEncodingMacRoman, '?', false, block, length, &length);
    block[length] = '\0';
    return length;
}

char const* TextAt(PointerListItr const& position) {
    auto const* const flag = static_cast<CString const*>(*position);
    return flag != nullptr ? flag->GetCharData() : nullptr;
}

}  // namespace

PPDXControl::PPDXControl(char const* keyword, CFStringRef localName, PointerList& flags,
                         unsigned char* psData, long psLength, bool visible,
                         UIConstraints* constraints)
    : PPDXElement(keyword, localName, visible),
      mFlags(std::move(flags)),
      mPSCode(psData),
      mPSLength(psData != nullptr ? std::max(ClampTo32Bits(psLength), 0) : 0),
      mConstraints(constraints) {}

PPDXControl::PPDXControl(Settings& settings, long id, UIConstraints* constraints)
    : PPDXElement(settings, id), mConstraints(constraints) {
    ControlRecord const record(settings, id);
    record.Read(ArchiveTags::kOrder, mOrder);
    mPSCode = record.CopyBytes(ArchiveTags::kPostScript, mPSLength);
    ReadFlags(settings, id);
}

PPDXControl::~PPDXControl() {
    while (mFlags.OwnsNodes()) {
        delete static_cast<CString*>(mFlags.Back());
        mFlags.PopBack();
    }
    std::free(mPSCode);
}

void PPDXControl::ReadFlags(Settings& settings, long id) {
    std::unique_ptr<CString> const text(ControlRecord(settings, id).CopyText(ArchiveTags::kFlags));
    std::string_view rest = text != nullptr ? ViewOf(text->GetCharData()) : std::string_view();
    while (!rest.empty()) {
        std::string const flag(rest.substr(0, rest.find(kFlagDelimiter)));
        rest.remove_prefix(std::min(flag.size() + 1, rest.size()));
        if (!flag.empty()) {
            mFlags.PushBack(new CString(flag.c_str()));
        }
    }
}

short PPDXControl::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXElement::Save(settings, id));
    record.AddNumber(ArchiveTags::kOrder, mOrder);
    record.AddBytes(ArchiveTags::kPostScript, mPSCode, mPSLength);
    std::string flags;
    for (PointerListItr flag = mFlags.Begin(); flag != mFlags.End(); ++flag) {
        flags.append(ViewOf(TextAt(flag))) += kFlagDelimiter;
    }
    if (!flags.empty()) {
        record.AddBytes(ArchiveTags::kFlags, flags.data(), static_cast<long>(flags.size()));
    }
    return record.Status();
}

long PPDXControl::PostScript(unsigned char* out) {
    if (out != nullptr && mPSLength > 0) {
        std::memcpy(out, mPSCode, static_cast<std::size_t>(mPSLength));
    }
    return mPSLength;
}

CFStringRef PPDXControl::CopyPresetValueString() {
    return CopyCurrentControlValueString();
}

void PPDXControl::SetPresetValueString(CFStringRef value) {
    SetCurrentControlWithCFString(value);
}

char const* PPDXControl::FirstControlFlag() {
    mFlagCursor = mFlags.Begin();
    return TextAt(mFlagCursor);
}

char const* PPDXControl::NextControlFlag() {
    return TextAt(++mFlagCursor);
}

bool PPDXControl::FindControlFlag(char const* flag) {
    if (flag == nullptr) {
        return false;
    }
    for (char const* word = FirstControlFlag(); word != nullptr; word = NextControlFlag()) {
        if (std::strcmp(word, flag) == 0) {
            return true;
        }
    }
    return false;
}

bool PPDXControl::IsNoVelonDriverUI() {
    return FindControlFlag("NoVelonDriverUI") || FindControlFlag("DriverUserDisplayHidden");
}

bool PPDXControl::ValidKeyword(char const* keyword) {
    return keyword != nullptr &&
           std::ranges::find(kNoShortcutKeywords, keyword) == std::ranges::end(kNoShortcutKeywords);
}

long PPDXControl::GeneratePSOutputData(unsigned char* out, unsigned char const* ps, long psLength,
                                       char const* option, bool framed) const {
    std::string_view const code = ViewOf(ps, psLength);
    return framed ? Frame(out, code, ViewOf(option)) : Write(out, CodeOrLineFeed(code));
}

long PPDXControl::Frame(unsigned char* out, std::string_view code, std::string_view option) const {
    constexpr std::string_view kBegin = "%%BeginFeature: ";
    constexpr std::string_view kEnd = "%%EndFeature\n";
    return Write(out, kBegin, KeywordText(), " ", option, "\n", CodeOrLineFeed(code), kEnd);
}

long PPDXControl::Inject(char const* name, unsigned char const* ps, long psLength,
                         char const* value, unsigned char*& result) const {
    result = nullptr;
    std::string_view const code = ViewOf(ps, psLength);
    std::string_view const text = ViewOf(value);
    std::string const marker = std::string("<").append(ViewOf(name)) + ">";
    bool const isComment = code.starts_with("%%");
    bool const isNote = mType == kJobNoteType && !text.empty();
    // What a user types stays a text outside of comments, also behind one.
    std::size_t const plain = isNote ? LengthOfComments(isComment ? code : "") : code.size();
    CFRef<CFMutableStringRef> const whole =
        Replaced(code.substr(0, plain), marker, PlainText(text, !isComment));
    CFRef<CFMutableStringRef> const rest =
        InStrings(code.substr(plain), marker, isNote ? HexadecimalString(text) : WipedText());
    if (!whole || !rest) {
        return 0;
    }
    CFStringAppend(whole, rest);
    return CopyMacRomanBytes(whole, result);
}

void PPDXControl::UpdateKVCache(char const* keyword, char const* option) {
    if (mConstraints != nullptr && keyword != nullptr && option != nullptr) {
        mConstraints->UpdateKVCache(keyword, option);
    }
}

void PPDXControl::UpdateKVCache(long key, long option) {
    if (mConstraints != nullptr) {
        mConstraints->UpdateKVCache(key, option);
    }
}

void PPDXControl::ReportChange(char const* value) const {
    if (Keyword() != nullptr) {
        CheckForChangeInListFromJP(Keyword(), value);
    }
}

char const* GetFirstControlFlag(PPDXControl* control) {
    return control != nullptr ? control->FirstControlFlag() : nullptr;
}

char const* GetNextControlFlag(PPDXControl* control) {
    return control != nullptr ? control->NextControlFlag() : nullptr;
}

long GetControlFlagCount(PPDXControl* control) {
    return control != nullptr ? control->ControlFlagCount() : 0;
}

bool IsCommandControl(PPDXControl* control) {
    return control != nullptr && control->IsCommand();
}

bool IsSpoolerControl(PPDXControl* control) {
    return control != nullptr && control->IsSpooler();
}

bool IsSetupControl(PPDXControl* control) {
    return control != nullptr && control->IsSetup();
}

bool IsMacVJNControl(PPDXControl* control) {
    return control != nullptr && control->IsMacVJN();
}

bool IsMacImgShiftControl(PPDXControl* control) {
    return control != nullptr && control->IsMacImgShift();
}

bool IsNoVelonDriverUIControl(PPDXControl* control) {
    return control != nullptr && control->IsNoVelonDriverUI();
}

bool IsValidControlKeyword(PPDXControl* control, char const* keyword) {
    return control != nullptr && PPDXControl::ValidKeyword(keyword);
}

long GetPostScript(PPDXControl* control, unsigned char* out) {
    return control != nullptr ? control->PostScript(out) : 0;
}

void ResetControlToDefault(PPDXControl* control) {
    if (control != nullptr) {
        control->ResetToDefaultValue();
    }
}
