// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/ZUBPPD.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/OwnedBy.h"
#include "PPDX/PPDObjects/PPDDelimiters.h"
#include "PPDX/PPDObjects/PPDFile.h"
#include "PPDX/PPDObjects/PPDFileStream.h"
#include "PPDX/PPDObjects/PPDXErrorCode.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "constraints/UIConstraints.h"
#include "platform/CFRef.h"

namespace {

constexpr char kInstallableOptions[] = "InstallableOptions";
constexpr long kFirstLine = 1;  // a place in it
constexpr char kSizeLine[] = "*%ParamCustomPrintSize";

// Two files that can't be named are no more the same than one and another.
bool IsSameFile(PPDFile const& left, PPDFile const& right) {
    FSSpec const& a = left.getFileInfo();
    FSSpec const& b = right.getFileInfo();
    return left.Valid() && right.Valid() && a.vRefNum == b.vRefNum && a.parID == b.parID &&
           std::equal(a.name, a.name + 1 + a.name[0], b.name);
}

// A text that neither has is the same too.
bool IsSameText(char const* left, char const* right) {
    return left == nullptr || right == nullptr ? left == right : std::strcmp(left, right) == 0;
}

// What the table of the grammar calls, in one form for all rows.
template <PPDXErrorObj* (ZUBPPD::*kParse)(PPDStream&)>
PPDXErrorObj* ParseLine(ZUBPPD& ppd, PPDStream& line) {
    return (ppd.*kParse)(line);
}
template <bool kRequirement>
PPDXErrorObj* ParseRule(ZUBPPD& ppd, PPDStream& line) {
    return ppd.ParseUIConstraint(line, kRequirement);
}
PPDXErrorObj* ParseSizeLine(ZUBPPD& ppd, PPDStream& line) {
    return ppd.ParseCustomPageSize(line, kSizeLine);
}

}  // namespace

_EXTENSIONS_SUPPORT_ ZUBPPD::sExtensionsSupport = kExtensionsAll;

ZUBPPD::ZUBPPD(_PARSE_OPTIONS_ options) : PPDX(nullptr), mParseOptions(options) {
    Options(kDisplayPlacedAndVisible);
    PPDX::Build();
    Build();
}

ZUBPPD::ZUBPPD(CFURLRef url, _PARSE_OPTIONS_ options, CFArrayRef acceptedNames)
    : PPDX(acceptedNames), mParseOptions(options) {
    Options(kDisplayPlacedAndVisible);
    PPDX::Build(url);
    Build();
}

ZUBPPD::ZUBPPD(FSSpec const& file, _PARSE_OPTIONS_ options, CFArrayRef acceptedNames)
    : PPDX(acceptedNames), mParseOptions(options) {
    Options(kDisplayPlacedAndVisible);
    PPDX::Build(file);
    Build();
}

ZUBPPD::ZUBPPD(Settings& settings, CFURLRef url, CFArrayRef acceptedNames)
    : PPDX(settings, url, acceptedNames), mParseOptions(kParsePlacedAndVisible) {
    Options(kDisplayPlacedAndVisible);
    BuildFromSettings(settings);
}

ZUBPPD::~ZUBPPD() {
    DisplayOptionsScope const all(kDisplayAll);
    if (mProperties != nullptr) {
        for (auto* page = mProperties->First(); page != nullptr; page = mProperties->Next()) {
            delete page;
        }
    }
    if (mGroups != nullptr) {
        for (auto* group = mGroups->First(); group != nullptr; group = mGroups->Next()) {
            delete group;
        }
    }
    if (mControls != nullptr) {
        CNTL_TYPE type = kControlType;
        for (auto* control = mControls->First(type); control != nullptr;
             control = mControls->Next(type)) {
            delete control;
        }
    }
    delete mProperties;
    delete mGroups;
    delete mControls;
    delete mShortcuts;
    ClearStringList(mShortcutNames);
    ClearGroupNameList();
    delete mDriverFileVersion;
    delete mExtensionVersion;
    delete mConstraints;
}

bool ZUBPPD::operator==(ZUBPPD const& other) const {
    return mFile != nullptr && other.mFile != nullptr && IsSameFile(*mFile, *other.mFile) &&
           IsSameText(PCFileName(), other.PCFileName());
}

char const* ZUBPPD::ZUVersion() const {
    return TextOf(mExtensionVersion);
}
char const* ZUBPPD::ZUFileVersion() const {
    return TextOf(mDriverFileVersion);
}

void ZUBPPD::Build() {
    if (!IsValidPrinterName()) {
        return;
    }
    // The destructor doesn't run for an object whose constructor throws.
    try {
        mConstraints = new (std::nothrow) UIConstraints;
        mProperties = new (std::nothrow) PPDXProperties;
        mGroups = new (std::nothrow) PPDXGroups;
        mControls = new (std::nothrow) PPDXControls;
        if (mFile != nullptr) {
            Parse();
            AddErrorsOfEmptyLists();
        }
    } catch (std::bad_alloc const&) {
        RefuseForLackOfMemory();
    }
}

void ZUBPPD::Read(PPDFile* file) {
    mFile = file;
    try {
        Parse();
        AddErrorsOfEmptyLists();
    } catch (std::bad_alloc const&) {
        RefuseForLackOfMemory();
    }
}

void ZUBPPD::RefuseForLackOfMemory() {
    mHeaderAccepted = false;
    try {
        AddError(kOutOfMemory, true);
    } catch (std::bad_alloc const&) {
        // That the header isn't accepted says it too.
    }
}

void ZUBPPD::AddErrorsOfEmptyLists() {
    if (mProperties != nullptr && mProperties->Empty()) {
        AddError(kNoPages, false);
    }
    if (mGroups != nullptr && mGroups->Empty()) {
        AddError(kNoGroups, false);
    }
    if (mControls != nullptr && mControls->Empty()) {
        AddError(kNoControls, false);
    }
}

// ---- The pass over the file ----

void ZUBPPD::Parse() {
    if (mErrors == nullptr || mProperties == nullptr || mGroups == nullptr ||
        mControls == nullptr || mConstraints == nullptr) {
        AddError(kOutOfMemory, true);
        return;
    }
    if (mFile == nullptr) {
        return;
    }
    mInsideInstallableOptions = false;
    mHeaderAccepted = false;
    try {
        ParseFile();
    } catch (std::bad_alloc const&) {
        RefuseForLackOfMemory();
    }
    mCurrentStream = nullptr;
}

void ZUBPPD::ParseFile() {
    PPDFileStream stream(mFile, true);
    if (stream.Bad()) {
        AddError(kFileNotReadable, true);
        return;
    }
    mCurrentStream = &stream;
    char firstToken[kTextSize];
    std::unique_ptr<PPDXErrorObj> headerError;
    if (NextToken(stream, firstToken, kKeywordDelimiters, true)) {
        headerError.reset(TestPPDFile(stream, firstToken));
    }
    if (headerError == nullptr) {
        ReadLines();
    }
    mReadUpTo = Place();
    SettleForwardReferences();
    if (headerError != nullptr) {
        headerError->SetPlace(kFirstLine);
        AddError(headerError.release());
    }
    if (stream.ReadFailed()) {
        AddError(kFileNotReadable, true);
    }
}

void ZUBPPD::ReadLines() {
    PPDStream line;
    std::string_view keyword;
    std::int32_t const former = mErrors->Count();
    while (ReadLine(line)) {
        if (!NextToken(line, keyword, kKeywordDelimiters)) {
            continue;
        }
        mStatement = Place();
        PPDXErrorObj* const error = Dispatch(line, keyword);
        bool const fatal = error != nullptr && error->IsFatal();
        if (error != nullptr) {
            AddError(error);
        }
        if (fatal || (mAllErrorsFatal && mErrors->Count() > former)) {
            break;
        }
    }
}

bool ZUBPPD::ReadLine(PPDStream& line) {
    std::string_view text;
    if (mCurrentStream == nullptr || !mCurrentStream->NextLine(text)) {
        return false;
    }
    line.SetupLine(text);
    return true;
}

bool ZUBPPD::NextLine(PPDStream& line, std::string_view& token) {
    return ReadLine(line) && NextToken(line, token, kKeywordDelimiters);
}

PPDXErrorObj* ZUBPPD::Dispatch(PPDStream& line, std::string_view keyword) {
    struct Row {
        std::string_view keyword;
        PPDXErrorObj* (*parse)(ZUBPPD& ppd, PPDStream& line);
    };
    static constexpr Row kGrammar[] = {
        {"*UIConstraints", ParseRule<false>},
        {"*%ZUBUIConstraints", ParseRule<false>},
        {"*%ZUBPropPage", ParseLine<&ZUBPPD::ParsePropertyPage>},
        {"*%ZUBGroupName", ParseLine<&ZUBPPD::ParseGroupName>},
        {"*%ZUBParent", ParseLine<&ZUBPPD::ParseParent>},
        {"*%ZUBFlags", ParseLine<&ZUBPPD::ParseControl>},
        {"*%ZUBJobNote", ParseLine<&ZUBPPD::ParseJobNote>},
        {kSizeLine, ParseSizeLine},
        {"*%ZUShortcut", ParseLine<&ZUBPPD::ParseShortcut>},
        {"*%ZUBSpecialOption", ParseLine<&ZUBPPD::ParseSpecialOption>},
        {"*%ZUBUIRequires", ParseRule<true>},
    };
    for (Row const& row : kGrammar) {
        if (row.keyword == keyword) {
            return row.parse(*this, line);
        }
    }
    char terminated[kTextSize];
    *std::ranges::copy(keyword, terminated).out = '\0';
    return ParsePSKeywords(line, terminated);
}

void ZUBPPD::SettleForwardReferences() {
    ResolveShortcuts();
    ClearStringList(mShortcutNames);
    mShortcutPlaces.clear();
    CollectOrphanGroups();
    ClearGroupNameList();
    mConstraints->Resolve();
}

PPDXErrorObj* ZUBPPD::ParsePSKeywords(PPDStream& line, char const* keyword) {
    struct Row {
        std::string_view keyword;
        PPDXErrorObj* (ZUBPPD::*parse)(PPDStream&);
    };
    static constexpr Row kKeywords[] = {
        {"*%ZUFileVersion", &ZUBPPD::ParseFileVersion},
        {"*%ZUVersion", &ZUBPPD::ParseVersion},
        {"*OpenGroup", &ZUBPPD::ParseOpenGroup},
        {"*CloseGroup", &ZUBPPD::ParseCloseGroup},
    };
    std::string_view const wanted = keyword;
    for (Row const& row : kKeywords) {
        if (row.keyword == wanted) {
            return (this->*row.parse)(line);
        }
    }
    return PPDX::ParsePSKeywords(line, keyword);
}

PPDXErrorObj* ZUBPPD::ParseFileVersion(PPDStream& line) {
    char text[kTextSize];
    if (NextToken(line, text, kRestOfLineDelimiters, true)) {
        ReplaceText(mDriverFileVersion, text);
    }
    return nullptr;
}

PPDXErrorObj* ZUBPPD::ParseVersion(PPDStream& line) {
    char text[kTextSize];
    if (NextToken(line, text, kRestOfLineDelimiters, true)) {
        ReplaceText(mExtensionVersion, text);
    }
    return nullptr;
}

PPDXErrorObj* ZUBPPD::ParseOpenGroup(PPDStream& line) {
    char name[kTextSize];
    if (!NextToken(line, name, kNameDelimiters, true) ||
        std::strcmp(name, kInstallableOptions) != 0) {
        return nullptr;
    }
    mInsideInstallableOptions = true;
    if (mInstallableRollDown != nullptr) {
        return nullptr;
    }
    char text[kTextSize];
    NextToken(line, text, kNameDelimiters, true);
    CFRef<CFStringRef> const translation(CopyTranslation(text));
    if (!translation) {
        return new PPDXErrorObj(kGroupWithoutName, kInstallableOptions, false);
    }
    mInstallableRollDown =
        AddOwned(*mGroups, std::make_unique<PPDXRollDown>(kInstallableOptions, translation, true));
    return nullptr;
}

PPDXErrorObj* ZUBPPD::ParseCloseGroup(PPDStream& line) {
    char name[kTextSize];
    if (NextToken(line, name, kNameDelimiters, true) &&
        std::strcmp(name, kInstallableOptions) == 0) {
        mInsideInstallableOptions = false;
    }
    return nullptr;
}
