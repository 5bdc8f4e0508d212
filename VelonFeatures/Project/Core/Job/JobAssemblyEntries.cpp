// SPDX-License-Identifier: Apache-2.0
// The entries of a job that have a form of their own.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/Job/JobAssembly.h"
#include "VelonFeatures/Project/Core/Job/ShortText.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/Warning.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/PlainText.h"
#include "ZUBUtils/PPDUtils/StringUtils.h"
#include "platform/CFRef.h"
#include "platform/TextEncodingConverter.h"

namespace {

constexpr char kPlainFeatureFormat[] = "%%%%BeginFeature: %s %s\n%%%%EndFeature\n";
constexpr char kPCFeatureFormat[] = "%%%%BeginFeature: *%s %s\n%%%%EndFeature\n";
constexpr char kDynamicOptionFormat[] =
    "%%%%BeginFeature: %s %s\n /KTXsetDynamicOption where\n        { pop (%s) (%s) "
    "KTXsetDynamicOption } if\n%%%%EndFeature\n";
constexpr char kScaleFormat[] =
    "%%%%BeginFeature: *ZUScale %d\n userdict /KTXZUBsetpageproperties known {  << /KTXSetZUScale "
    "[ %d.%d%d ] >> KTXZUBsetpageproperties } { /KTXSetZUScale where { pop %d.%d%d KTXSetZUScale } "
    "if } ifelse \n%%%%EndFeature\n";
constexpr char kCustomSizeFormat[] =
    "%%%%BeginFeature: *CustomPrintSize %s %s\n   userdict /KTXZUBsetpageproperties known\n   {<< "
    "/KTXsetPrintSize [ %s %s 0 0 1 ] >> KTXZUBsetpageproperties} if\n%%%%EndFeature\n";
constexpr char kSameSizeText[] = "%%BeginFeature: *ZUPrintSize SameAsPageSize\n\n%%EndFeature\n";
constexpr char kUTF8VersionFormat[] = "%%%%ZUUTF8_Version: %s \n";

constexpr char kPrintSize[] = "*ZUPrintSize";

constexpr std::size_t kPaperNameSize = 64;  // with the terminator, as the three below
constexpr std::size_t kFilePathSize = 1024;
constexpr std::size_t kDynamicOptionSize = 1024;
constexpr std::size_t kUTF8VersionSize = 128;
constexpr int kNoPCValue = -1;

CFRef<CFStringRef> ValueOf(PPDXControl* control) {
    return CFRef<CFStringRef>(control != nullptr ? control->CopyCurrentControlValueString()
                                                 : nullptr);
}

// Upper and lower case taken as the same. Nothing equals nothing.
bool SameText(CFStringRef left, CFStringRef right) {
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    return CFStringCompare(left, right, kCFCompareCaseInsensitive) == kCFCompareEqualTo;
}

// The number that a text begins with, in the 32 bits that it has.
int NumberOf(std::string const& text) {
    return static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
}

// In the encoding that Japanese systems print in; empty where there is no such form.
std::string ToMacJapanese(std::string const& text) {
    constexpr TextEncoding kUTF8 = CreateTextEncoding(256, 0, 2);
    constexpr TextEncoding kMacJapanese = CreateTextEncoding(1, 4, 0);
    constexpr std::size_t kBytesPerByte = 4;
    TECObjectRef converter = nullptr;
    if (TECCreateConverter(&converter, kUTF8, kMacJapanese) != noErr) {
        return {};
    }
    std::string converted(text.size() * kBytesPerByte, '\0');
    unsigned long consumed = 0;
    unsigned long written = 0;
    OSStatus const status = TECConvertText(
        converter, reinterpret_cast<std::uint8_t const*>(text.data()), text.size(), &consumed,
        reinterpret_cast<std::uint8_t*>(converted.data()), converted.size(), &written);
    TECDisposeConverter(converter);
    converted.resize(status == noErr ? written : 0);
    return converted;
}

std::string ToUTF8(CFStringRef string) {
    char text[OptionPair::kStoredSize] = "";
    CFStringGetCString(string, text, sizeof text, kCFStringEncodingUTF8);
    return text;
}

// Whether a pair that came from outside the PPD can stand in a comment.
bool IsFit(std::string const& key, std::string const& value) {
    bool const fit = !HasControlCharacters(key) && !HasControlCharacters(value);
    if (!fit) {
        Warn("the pair " + key + " is left out: it has control characters");
    }
    return fit;
}

std::string_view ViewOf(char const* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

// Whether nobody chose the value: it is the PPD's default. Of an option that is neither a list nor
// a note nobody can choose a path or a destination: its value counts as the PPD's own.
bool IsPPDsOwn(PPDXControl* control) {
    if (auto* const note = dynamic_cast<PPDXJobNote*>(control)) {
        return ViewOf(note->GetNotes()) == ViewOf(note->GetDefaultNotes());
    }
    if (auto* const popup = dynamic_cast<PPDXPopupControl*>(control)) {
        char const* const keyword = popup->GetDefaultKeyword();
        char const* const current = popup->CurrentKeyword();
        return keyword != nullptr && current != nullptr && std::strcmp(keyword, current) == 0;
    }
    return true;
}

// Makes an empty file at a path that a PPD may have named. Only a regular file of the user's own,
// with no other name, is touched, whatever stands there; with `keep` one with content is left
// alone.
void MakeEmptyFile(char const* path, bool keep) {
    constexpr mode_t kMode = 0777;
    // A pipe without a reader would make the dialog wait, a link would lead elsewhere.
    int const file =
        open(path, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kMode);
    if (file < 0) {
        return;
    }
    struct stat found = {};
    if (fstat(file, &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid() &&
        found.st_nlink == 1 && !(keep && found.st_size > 0) && ftruncate(file, 0) == 0) {
        fchmod(file, kMode);
    }
    close(file);
}

}  // namespace

// ---- The paper source of the operating system ----

void JobAssembly::TakePaperFeed() {
    std::string const keyword = mData.TakePaperFeed();
    auto* const slot = dynamic_cast<PPDXPopupControl*>(FindAnyControl(mPPD, "*InputSlot"));
    if (!keyword.empty() && slot != nullptr) {
        slot->SetKeywordSelect(keyword.c_str(), true);
    }
}

// ---- Pairs ----

void JobAssembly::OutStoredPairs() {
    for (std::int32_t i = 0; i < mData.StoredPairCount(); ++i) {
        OptionPair const& pair = mData.StoredPairs()[static_cast<std::size_t>(i)];
        CFRef<CFStringRef> const key(pair.CopyKey());
        CFRef<CFStringRef> const value(pair.CopyValue());
        if (key && value && IsFit(ToUTF8(key), ToUTF8(value))) {
            AddShortText(mTicket, kFeatureSite, kPlainFeatureFormat, ToUTF8(key).c_str(),
                         ToUTF8(value).c_str());
        }
    }
}

void JobAssembly::OutPCPairs() {
    if (!mData.GetIPAddressEnabled()) {
        return;
    }
    bool anyPair = false;
    for (OptionPair const& pair : mData.PCPairs()) {
        anyPair |= OutPCPair(pair);
    }
    char const* const version = mPPD == nullptr ? nullptr : mPPD->ZUVersion();
    if (anyPair && (version == nullptr || *version == '3')) {
        OutPCPrintSize();
    }
}

bool JobAssembly::OutPCPair(OptionPair const& pair) {
    CFRef<CFStringRef> const key(pair.CopyKey());
    CFRef<CFStringRef> const value(pair.CopyValue());
    if (!key || !value || NumberOf(ToUTF8(value)) == kNoPCValue ||
        !IsFit(ToUTF8(key), ToUTF8(value))) {
        return false;
    }
    std::string text = ShortText(kPCFeatureFormat, ToUTF8(key).c_str(), ToUTF8(value).c_str());
    char const* const language = mPPD == nullptr ? nullptr : mPPD->LanguageVersion();
    if (language != nullptr && std::strcmp(language, "Japanese") == 0) {
        text = ToMacJapanese(text);
    }
    mTicket.AddText(kFeatureSite, text.c_str());
    return !text.empty();
}

void JobAssembly::OutPCPrintSize() {
    char size[kPaperNameSize] = "CustomPageSize0";
    CFRef<CFStringRef> const value = ValueOf(FindAnyControl(mPPD, kPrintSize));
    if (!value || (!SameText(value, CFSTR("CustomPrintSize")) &&
                   !CFStringGetCString(value, size, sizeof size, kCFStringEncodingUTF8))) {
        return;
    }
    AddShortText(mTicket, kFeatureSite, kPlainFeatureFormat, "*ZUPCPPDSize", size);
}

// ---- Colour management ----

// With two-way communication on, the server's own names of profiles stand in notes of the options'
// keywords.
void JobAssembly::OutSpecialControls() {
    bool isAddressOn = false;
    mData.GetTolvanePrinterAddress(mData.PrinterName(), &isAddressOn);
    for (char const* keyword : kSpecialChromvaleKeywords) {
        PPDXControl* const control = FindAnyControl(mPPD, keyword);
        PPDXJobNote* const note = GetFindJobNote(ControlsOf(mPPD), keyword, true);
        if (isAddressOn && note != nullptr) {
            OutDynamicOption(control, *note);
            continue;
        }
        if (note != nullptr && control != nullptr && !mData.GetIPAddressEnabled()) {
            note->SetCurrentControlWithCFString(CFSTR(""));
        }
        OutControl(control);
    }
}

void JobAssembly::OutDynamicOption(PPDXControl* control, PPDXJobNote& note) {
    char const* const keyword = (control != nullptr ? control : &note)->Keyword();
    char const* const text = note.GetNotes() != nullptr ? note.GetNotes() : "";
    if (!IsPlainProfileText(text)) {
        Warn(std::string(keyword) + " is left out: its profile can't stand in a job");
        return;
    }
    char option[kDynamicOptionSize];
    int const length =
        std::snprintf(option, sizeof option, kDynamicOptionFormat, keyword, text, keyword, text);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof option) {
        Warn(std::string(keyword) + " is left out: its profile's name is too long");
        return;
    }
    // The server marks a name in UTF-8 so; the mark itself can't be typed.
    std::unique_ptr<char[]> const marked(_replace(option, "EFBBBF", "\xEF\xBB\xBF"));
    if (marked != nullptr) {
        mTicket.AddText(kFeatureSite, marked.get());
    }
}

// ---- Sizes ----

void JobAssembly::OutScale() {
    PPDXRangeControl* const scale = GetFindRangeControl(ControlsOf(mPPD), "*ZUScale", true);
    if (scale == nullptr) {
        return;
    }
    int const value = static_cast<int>(scale->GetValue());
    int const whole = value / 100;
    int const tens = value / 10 % 10;
    int const ones = value % 10;
    AddText(mTicket, kFeatureSite, kScaleFormat, value, whole, tens, ones, whole, tens, ones);
}

void JobAssembly::OutCustomSize() {
    auto* const size =
        dynamic_cast<PPDXCustomPageSizeControl*>(FindAnyControl(mPPD, "*CustomPrintSize"));
    if (size == nullptr ||
        !SameText(ValueOf(FindAnyControl(mPPD, kPrintSize)), CFSTR("CustomPrintSize"))) {
        return;
    }
    std::string const width = FixedText(size->GetWidth(), 2);
    std::string const height = FixedText(size->GetHeight(), 2);
    AddText(mTicket, kFeatureSite, kCustomSizeFormat, width.c_str(), height.c_str(), width.c_str(),
            height.c_str());
}

void JobAssembly::OutPrintSize() {
    PPDXControl* const printSize = FindAnyControl(mPPD, kPrintSize);
    PPDXControl* const pageSize = FindAnyControl(mPPD, "*PageSize");
    if (printSize == nullptr || pageSize == nullptr) {
        return;
    }
    if (mPPD->CustomPaper() || !SameText(ValueOf(printSize), ValueOf(pageSize))) {
        mTicket.Add(kFeatureSite, printSize);
    } else {
        mTicket.AddText(kFeatureSite, kSameSizeText);
    }
}

// ---- Printing into a file ----

// The file is made while the job is put together; who prints fills it.
void JobAssembly::OutFileDestination() {
    PPDXControl* const destination = FindAnyControl(mPPD, "*ZUDestination");
    PPDXControl* const mailbox = FindAnyControl(mPPD, "*ZUMailboxName");
    CFRef<CFStringRef> const name = ValueOf(mailbox);
    char path[kFilePathSize];
    if (!name || !SameText(ValueOf(destination), CFSTR("File")) ||
        !CFStringGetCString(name, path, sizeof path, kCFStringEncodingUTF8)) {
        return;
    }
    mTicket.AddText(kFilePathSite, path);
    MakeEmptyFile(path, IsPPDsOwn(destination) && IsPPDsOwn(mailbox));
}

// ---- What the server can read ----

void JobAssembly::OutUTF8Version() {
    PPDXControls* const controls = ControlsOf(mPPD);
    CFRef<CFStringRef> const version = ValueOf(
        controls != nullptr ? controls->FindSpecialOption("*ZUUTF8_Version", true) : nullptr);
    char text[kUTF8VersionSize];
    if (version && CFStringGetCString(version, text, sizeof text, kCFStringEncodingASCII)) {
        if (HasControlCharacters(text)) {
            Warn("control characters in *ZUUTF8_Version become blanks");
        }
        AddShortText(mTicket, kDriverCommentSite, kUTF8VersionFormat,
                     BlankControlCharacters(text).c_str());
    }
}
