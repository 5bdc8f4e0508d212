// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDX.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>
#include <string_view>
#include <utility>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/PPDDelimiters.h"
#include "PPDX/PPDObjects/PPDFile.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDXErrorCode.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "ZUBUtils/PPDUtils/BoyerMoore.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/PPDLanguage.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"

namespace {

constexpr std::size_t kNameScanSize = 4096;  // of the file, searched for *PCFileName
constexpr std::size_t kNameValueSize = 32;   // behind the keyword, searched for a name
constexpr std::string_view kPCFileName = "*PCFileName";

constexpr std::int32_t kStoreVersion = 1024;

// What is told at the end of a block but is about the whole of it.
constexpr PPDXErrorCode kAboutBlocks[] = {
    kOutOfMemory,   kFileEndsInSkippedBlock, kSecondDefaultOrFileEnds, kControlWithoutGroup,
    kAlreadyExists, kControlWithoutRollDown, kBlockWithoutDefault,
};

bool HoldsName(CFStringRef name, BoyerMoore& search) {
    std::uint8_t pascal[256];
    return CFGetTypeID(name) == CFStringGetTypeID() &&
           CFStringGetPascalString(name, pascal, sizeof pascal, kCFStringEncodingMacRoman) &&
           search.Search(0, pascal) >= 0;
}

}  // namespace

PPDX::PPDX(CFArrayRef acceptedNames) : mAcceptedNames(acceptedNames) {}

PPDX::PPDX(Settings& settings, CFURLRef url, CFArrayRef acceptedNames) : PPDX(acceptedNames) {
    BuildFromSettings(settings, url);
}

PPDX::~PPDX() {
    if (mErrors != nullptr) {
        for (PPDXErrorObj* error = mErrors->First(); error != nullptr; error = mErrors->Next()) {
            delete error;
        }
    }
    delete mErrors;
    delete mFile;
    delete mTextConverter;
    for (CString* text : {mFormatVersion, mFileVersion, mPCFileName, mLanguageVersion,
                          mLanguageEncoding, mModelName, mPathToExtension, mDriverVersion}) {
        delete text;
    }
}

void PPDX::Retain() {
    ++mReferenceCount;
}

bool PPDX::Release() {
    if (--mReferenceCount > 0) {
        return false;
    }
    delete this;
    return true;
}

void PPDX::Build() {
    mErrors = new (std::nothrow) PPDXErrors;
    CheckPCFileName();
}

void PPDX::Build(FSSpec const& file) {
    mFile = new (std::nothrow) PPDFile(file);
    Build();
}

void PPDX::Build(CFURLRef url) {
    mFile = new (std::nothrow) PPDFile(url);
    Build();
}

void PPDX::CheckPCFileName() {
    if (mAcceptedNames != nullptr) {
        mPrinterNameValid = ValidateAgainstPCFilename(mAcceptedNames, mFile);
    }
    mAcceptedNames = nullptr;
}

bool PPDX::ValidateAgainstPCFilename(CFArrayRef names, PPDFile* file) {
    if (names == nullptr || file == nullptr || file->openDataFork(fsRdPerm) != noErr) {
        return false;
    }
    char text[kNameScanSize] = {};
    unsigned long size = sizeof text;
    file->dataForkRead(text, &size);
    file->closeDataFork();

    BoyerMoore search(kPCFileName.data(), static_cast<short>(kPCFileName.size()), text,
                      sizeof text);
    long const keyword = search.Search();
    if (keyword < 0) {
        return false;
    }
    char* const end = text + sizeof text;
    std::size_t const behind = static_cast<std::size_t>(keyword) + kPCFileName.size() + 1;
    char* value = text + std::min(behind, sizeof text);
    value = std::find_if(value, end, [](char byte) { return byte != ' ' && byte != '\t'; });
    search.SetSearchData(value, std::min<long>(end - value, kNameValueSize));
    for (CFIndex i = 0; i < CFArrayGetCount(names); ++i) {
        if (HoldsName(static_cast<CFStringRef>(CFArrayGetValueAtIndex(names, i)), search)) {
            return true;
        }
    }
    return false;
}

bool PPDX::ValidateFileName(CFURLRef url, CFArrayRef names, PPDFile* file) {
    if (names == nullptr) {
        return true;
    }
    if (file != nullptr) {
        return ValidateAgainstPCFilename(names, file);
    }
    PPDFile temporary(url);
    return ValidateAgainstPCFilename(names, &temporary);
}

bool PPDX::IsValidPPD() const {
    if (!mHeaderAccepted) {
        return false;
    }
    if (mErrors == nullptr) {
        return true;
    }
    if (mAllErrorsFatal) {
        return mErrors->Empty();
    }
    PPDXErrorObj* error = mErrors->First();
    while (error != nullptr && !error->IsFatal()) {
        error = mErrors->Next();
    }
    return error == nullptr;
}

bool PPDX::GetFileSpec(FSSpec& file) const {
    if (mFile == nullptr) {
        return false;
    }
    mFile->getFileInfo(&file);
    return true;
}

bool PPDX::GetPPDFileName(char* name) const {
    static_assert(FileMac::kNameSize <= kTextSize);
    *name = '\0';
    return mFile != nullptr && mFile->getFileName(name) == noErr;
}

char const* PPDX::TextOf(CString const* field) {
    return field != nullptr ? field->GetCharData() : nullptr;
}

char const* PPDX::PCFileName() const {
    return TextOf(mPCFileName);
}
char const* PPDX::FormatVersion() const {
    return TextOf(mFormatVersion);
}
char const* PPDX::FileVersion() const {
    return TextOf(mFileVersion);
}
char const* PPDX::LanguageVersion() const {
    return TextOf(mLanguageVersion);
}
char const* PPDX::LanguageEncoding() const {
    return TextOf(mLanguageEncoding);
}
char const* PPDX::ModelName() const {
    return TextOf(mModelName);
}
char const* PPDX::ZUVersion() const {
    return TextOf(mDriverVersion);
}
char const* PPDX::PathToPDE() const {
    return TextOf(mPathToExtension);
}

unsigned long PPDX::GetStringTextEncoding() const {
    return mTextConverter != nullptr ? mTextConverter->GetOutputEncoding() : 0;
}

char const* PPDLanguageVersion(PPDX* ppd) {
    return ppd->LanguageVersion();
}
char const* PPDLanguageEncoding(PPDX* ppd) {
    return ppd->LanguageEncoding();
}

long PPDX::Place() const {
    return mCurrentStream != nullptr ? mCurrentStream->Place() : -1;
}

void PPDX::AddError(PPDXErrorObj* error) {
    if (error != nullptr && error->Place() < 0 && mCurrentStream != nullptr) {
        bool const isAboutBlock =
            std::ranges::find(kAboutBlocks, error->Code()) != std::end(kAboutBlocks);
        error->SetPlace(isAboutBlock ? mStatement : Place());
    }
    if (mErrors == nullptr || !mErrors->Add(error)) {
        delete error;
    }
}

void PPDX::AddError(short code, bool fatal) {
    AddError(new PPDXErrorObj(code, fatal));
}

void PPDX::AddError(short code, char const* keyword, bool fatal) {
    AddError(new PPDXErrorObj(code, keyword, fatal));
}

CFStringRef PPDX::CopyTranslation(char const* text) const {
    return mTextConverter != nullptr ? mTextConverter->ConvertToCFString(text, kTextSize) : nullptr;
}

void PPDX::ReplaceText(CString*& field, char const* text) {
    if (field != nullptr) {
        *field = text;
    } else {
        field = new (std::nothrow) CString(text);
    }
}

// ---- The archive ----

PPDX::ArchivedText const PPDX::kArchivedTexts[] = {
    {ArchiveTags::kFormatVersionID, &PPDX::mFormatVersion},
    {ArchiveTags::kFileVersionID, &PPDX::mFileVersion},
    {ArchiveTags::kPCFileNameID, &PPDX::mPCFileName},
    {ArchiveTags::kLanguageVersionID, &PPDX::mLanguageVersion},
    {ArchiveTags::kLanguageEncodingID, &PPDX::mLanguageEncoding},
    {ArchiveTags::kModelNameID, &PPDX::mModelName},
    {ArchiveTags::kDriverVersionID, &PPDX::mDriverVersion},
};

bool PPDX::SaveText(Settings& settings, unsigned long tag, long id, CString const* text) {
    return text == nullptr ||
           settings.Add(tag, id, text->GetCharData(), static_cast<long>(text->Size())) == noErr;
}

bool PPDX::Save(Settings& settings) {
    FSSpec file = {};
    if (settings.Add(ArchiveTags::kHeader, ArchiveTags::kStoreVersionID, &kStoreVersion,
                     sizeof kStoreVersion) != noErr ||
        (GetFileSpec(file) &&
         settings.Add(ArchiveTags::kHeader, ArchiveTags::kFileID, &file, sizeof file) != noErr)) {
        return false;
    }
    return std::ranges::all_of(kArchivedTexts, [&](ArchivedText const& row) {
        return SaveText(settings, ArchiveTags::kHeader, row.id, this->*row.text);
    });
}

void PPDX::BuildFromSettings(Settings& settings, CFURLRef url) {
    std::int32_t version = 0;
    if (!GetSettingsField(settings, ArchiveTags::kHeader, ArchiveTags::kStoreVersionID, &version,
                          sizeof version)) {
        mAcceptedNames = nullptr;
        return;
    }
    mErrors = new (std::nothrow) PPDXErrors;
    FSSpec archived = {};
    if (GetSettingsField(settings, ArchiveTags::kHeader, ArchiveTags::kFileID, &archived,
                         sizeof archived)) {
        mFile = new (std::nothrow) PPDFile(url);
    }
    mPCFileName = GetSettingsString(settings, ArchiveTags::kHeader, ArchiveTags::kPCFileNameID);
    CheckPCFileName();
    if (!mPrinterNameValid) {
        return;
    }
    for (ArchivedText const& row : kArchivedTexts) {
        if (row.id != ArchiveTags::kPCFileNameID) {
            this->*row.text = GetSettingsString(settings, ArchiveTags::kHeader, row.id);
        }
    }
    RenewTextConverter();
}

// ---- Header keywords ----

PPDXErrorObj* PPDX::TestPPDFile(PPDStream& stream, char const* firstToken) {
    char version[kTextSize] = "";
    if (std::strcmp(firstToken, "*PPD-Adobe") == 0 &&
        GetQuotedString(stream, version, kTextSize) > 0 && std::strcmp(version, "4.3") == 0) {
        mHeaderAccepted = true;
        return nullptr;
    }
    return new PPDXErrorObj(kNotPPD43, true);
}

void PPDX::StoreQuoted(PPDStream& line, CString*& field) {
    char text[kTextSize] = "";
    if (GetQuotedString(line, text, kTextSize) > 0 && text[0] != '\0') {
        ReplaceText(field, text);
    }
}

void PPDX::StoreLanguageText(PPDStream& line, CString*& field) {
    char text[kTextSize];
    if (NextToken(line, text, kRestOfLineDelimiters, true)) {
        ReplaceText(field, text);
        RenewTextConverter();
    }
}

void PPDX::RenewTextConverter() {
    if (mLanguageVersion != nullptr && mLanguageEncoding != nullptr) {
        delete std::exchange(mTextConverter, nullptr);
        mTextConverter = new (std::nothrow) TextConverter(this);
    }
}

PPDXErrorObj* PPDX::ParsePSKeywords(PPDStream& line, char const* keyword) {
    struct Row {
        std::string_view keyword;
        void (PPDX::*store)(PPDStream&, CString*&);
        CString* PPDX::*field;
    };
    static constexpr Row kHeader[] = {
        {kPCFileName, &PPDX::StoreQuoted, &PPDX::mPCFileName},
        {"*FormatVersion", &PPDX::StoreQuoted, &PPDX::mFormatVersion},
        {"*FileVersion", &PPDX::StoreQuoted, &PPDX::mFileVersion},
        {"*LanguageVersion", &PPDX::StoreLanguageText, &PPDX::mLanguageVersion},
        {"*ModelName", &PPDX::StoreQuoted, &PPDX::mModelName},
        {"*APDialogExtension", &PPDX::StoreQuoted, &PPDX::mPathToExtension},
        {"*LanguageEncoding", &PPDX::StoreLanguageText, &PPDX::mLanguageEncoding},
    };
    for (Row const& row : kHeader) {
        if (row.keyword == keyword) {
            (this->*row.store)(line, this->*row.field);
            break;
        }
    }
    return nullptr;
}
