// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "PPDX/PPDObjects/PPDDelimiters.h"
#include "platform/CoreFoundation.h"
#include "platform/FileManager.h"

class CString;
class PPDFile;
class PPDStream;
class PPDXErrorObj;
class PPDXErrors;
class Settings;
class TextConverter;

// The reader's base: the file, the header's texts, the errors, and the token layer that every
// keyword parser uses. Counted from 0: the first Release of an object that nobody retained
// deletes it.
//
// Sizes. A token or a text has at most kTextSize - 1 bytes and a terminator, a line at most
// kLineLength bytes, a PostScript value at most kPostScriptSize bytes.
class PPDX {
  public:
    static constexpr unsigned long kTextSize = 256;
    static constexpr unsigned long kPostScriptSize = 4096;

    PPDX(PPDX const&) = delete;
    PPDX& operator=(PPDX const&) = delete;
    virtual ~PPDX();

    virtual void Retain();
    // True when this was the last reference and the object is gone.
    virtual bool Release();
    // Reads the file from top to bottom.
    virtual void Parse() = 0;
    // Takes a line whose keyword is none of the option grammar's. The error, which the caller then
    // owns, or null.
    virtual PPDXErrorObj* ParsePSKeywords(PPDStream& line, char const* keyword);

    // Whether the file's *PCFileName was accepted; nothing is parsed otherwise.
    bool IsValidPrinterName() const { return mPrinterNameValid; }
    // Whether the header was accepted and no error stands against the file.
    bool IsValidPPD() const;
    // Writes the version of the store, the file, if there is one, and the header's texts. False at
    // the first entry that the archive refuses; what was written stays.
    bool Save(Settings& settings);

    // With true the first error of any kind ends a parse and makes the file not valid.
    void AllErrorsFatal(bool const& fatal) { mAllErrorsFatal = fatal; }

    // How many bytes of the file the last parse has read; less than the file has where a line ended
    // it. -1 without a parse.
    long ReadUpTo() const { return mReadUpTo; }

    PPDXErrors* GetErrors() const { return mErrors; }  // owned by the reader
    // False when the reader has no file; zeroed for a file that can't be named.
    bool GetFileSpec(FSSpec& file) const;
    // The file's own name, terminated, at most kTextSize bytes.
    bool GetPPDFileName(char* name) const;

    // The header's texts, bytes as they stand in the file; null for a keyword that wasn't seen.
    char const* PCFileName() const;
    char const* FormatVersion() const;
    char const* FileVersion() const;
    char const* LanguageVersion() const;
    char const* LanguageEncoding() const;
    char const* ModelName() const;
    char const* ZUVersion() const;
    char const* PathToPDE() const;
    // The encoding that the text converter writes, 0 without a converter.
    unsigned long GetStringTextEncoding() const;
    TextConverter* GetTextConverter() const { return mTextConverter; }

    // ---- The token layer ----

    // Reads bytes up to the end of the line or one of `delimiters` (none for a null text), which is
    // consumed. At most kTextSize - 1 bytes; the rest waits for the next call. False when
    // nothing was read; with `strip` the token may come out empty though the result is true.
    bool NextToken(PPDStream& stream, char* token, Delimiters const& delimiters, bool strip);
    // The same, stripped, as bytes of the stream: good as long as those are.
    static bool NextToken(PPDStream& stream, std::string_view& token, Delimiters const& delimiters);
    // A value in double quotes, which may go on over lines of the current stream; a NUL byte
    // stands for each line break. Bytes written, the terminator counted
    // unless the limit was met; 0 for an empty value and when the file ends in it. A line that
    // begins with * ends the value too, and is lost.
    unsigned long GetQuotedString(PPDStream& stream, char* text, unsigned long const& limit);
    // PostScript in double quotes, which may go on over lines of the current stream. Ends in a
    // line feed and has no terminator. Bytes written; 0 for an empty value.
    unsigned long GetPostscriptString(PPDStream& stream, char* text, unsigned long const& limit);
    static void StripLeadingWhiteSpace(char* text);
    static void StripTrailingWhiteSpace(char* text);

    // Whether a file is one that is read here: its first token must be *PPD-Adobe and the value
    // behind it, at `stream`, "4.3". Otherwise error 28, which the caller deletes.
    PPDXErrorObj* TestPPDFile(PPDStream& stream, char const* firstToken);

    // Whether one of `names` stands in the 32 bytes behind "*PCFileName" in the first 4096 bytes
    // of the file.
    static bool ValidateAgainstPCFilename(CFArrayRef names, PPDFile* file);
    // The same for a URL; no names accept every file. `file` may be null.
    static bool ValidateFileName(CFURLRef url, CFArrayRef names, PPDFile* file);

  protected:
    // `acceptedNames` is borrowed for the length of the construction; null accepts every file.
    explicit PPDX(CFArrayRef acceptedNames);
    // From an archive; see BuildFromSettings.
    PPDX(Settings& settings, CFURLRef url, CFArrayRef acceptedNames);

    void Build();  // with the file that is there, if any: the errors and the name check
    void Build(FSSpec const& file);
    void Build(CFURLRef url);
    // Takes the header's texts from an archive. The file is the one at `url`, whatever the archive
    // says, but only an archive that was made from a file gives one; its name is checked as at a
    // parse, and only the *PCFileName is taken when it isn't accepted. Without the version of the
    // store nothing happens: there is no error list either.
    void BuildFromSettings(Settings& settings, CFURLRef url);

    // Where the line ends that was read last, as PPDXErrorObj has it; -1 outside of a parse.
    long Place() const;
    // The list owns the error from here on. One without a place gets that of the last line, or of
    // the line that began what it is about.
    void AddError(PPDXErrorObj* error);
    void AddError(short code, bool fatal);
    void AddError(short code, char const* keyword, bool fatal);
    // Display text of a translation; null when the reader has no converter yet or the text doesn't
    // convert. The caller releases it.
    CFStringRef CopyTranslation(char const* text) const;
    static void ReplaceText(CString*& field, char const* text);
    static char const* TextOf(CString const* field);
    // False when the archive refuses the text; true for null, which leaves no entry.
    static bool SaveText(Settings& settings, unsigned long tag, long id, CString const* text);

    PPDFile* mFile = nullptr;       // owned; null without a file
    PPDXErrors* mErrors = nullptr;  // owned, with the errors in it
    bool mHeaderAccepted = false;
    bool mPrinterNameValid = true;
    bool mAllErrorsFatal = false;
    CString* mDriverVersion = nullptr;    // owned; only an archive fills it
    PPDStream* mCurrentStream = nullptr;  // not owned; set while Parse runs
    long mStatement = -1;                 // the place of the line that began what is being read
    long mReadUpTo = -1;

  private:
    // A text of the header and the record of it in an archive.
    struct ArchivedText {
        long id;
        CString* PPDX::*text;
    };
    static ArchivedText const kArchivedTexts[];

    void StoreQuoted(PPDStream& line, CString*& field);
    void StoreLanguageText(PPDStream& line, CString*& field);
    void RenewTextConverter();
    void CheckPCFileName();

    CString* mFormatVersion = nullptr;  // owned, as the six texts below
    CString* mFileVersion = nullptr;
    CString* mPCFileName = nullptr;
    CString* mLanguageVersion = nullptr;
    CString* mLanguageEncoding = nullptr;
    CString* mModelName = nullptr;
    CString* mPathToExtension = nullptr;
    TextConverter* mTextConverter = nullptr;  // owned; null until both language keywords are seen
    CFArrayRef mAcceptedNames;                // not owned; used once and cleared
    std::int32_t mReferenceCount = 0;
};
