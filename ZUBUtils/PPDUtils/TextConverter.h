// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ZUBUtils/PPDUtils/HexLanguageExceptions.h"

struct __CFString;
struct OpaqueTECObject;
class PPDX;

// Turns a PPD's texts, bytes in the encoding that its *LanguageEncoding names with hexadecimal
// escapes such as <C4D6>, into strings for display and back. Encodings are numbers of the
// platform's text encoding scheme; kUnknownEncoding stands for none.
class TextConverter {
  public:
    static constexpr std::uint32_t kUnknownEncoding = 65535;

    // From the PPD's encoding to the system's, or to `output`. The PPD is only asked here.
    explicit TextConverter(PPDX* ppd);
    TextConverter(PPDX* ppd, unsigned long const& output);
    TextConverter(unsigned long& input, unsigned long const& output);  // with no language
    TextConverter(TextConverter const&) = delete;
    TextConverter& operator=(TextConverter const&) = delete;
    virtual ~TextConverter();

    // The text with its escapes decoded, as a string that the caller releases. A NUL that an escape
    // gives ends the text. Null text gives the empty string; bytes that are no text of the encoding
    // give null, in the encodings ISOLatin2, ISOLatin5 and JIS83-RKSJ what stands before them.
    // Works without a valid converter too: an unknown encoding is read as UTF-8. `limit` is not
    // used.
    __CFString const* ConvertToCFString(char const* text, long limit);

    // The encoding in which ConvertToCFString reads this text as it stands: a string can be made
    // from the bytes later. kUnknownEncoding for a text with escapes, and in the encodings that it
    // doesn't read in one step.
    std::uint32_t EncodingOf(std::string_view text) const;

    // Converts `text` in place to the output encoding, within `size` bytes with the terminator.
    // Returns the platform's status, 5000 for an empty text; the text is as it was unless that
    // is 0. Needs a valid converter, without one the last status comes back.
    long Convert(char* text, long size);

    // Writes the string in the system's encoding, terminated, into `size` bytes. False when it
    // doesn't fit or a character has no form there: the text is then "Translation Error", cut to
    // the room.
    static bool CFStringToCstring(__CFString const* string, char* text, long size);

    // The number for a *LanguageEncoding text; kUnknownEncoding for null and unknown ones.
    static unsigned long LanguageStringToEncoding(char const* text);
    static unsigned long GetPPDEncoding(PPDX* ppd);
    static unsigned long GetCurrentEncoding();  // the system's

    unsigned long GetOutputEncoding() const { return mOutputEncoding; }
    bool ValidConverter() const { return mValid; }

    // Copies `in` to `out` with the escapes decoded; `out` never needs more room than `in`. At an
    // escape that is malformed (anything but pairs of digits, blanks between them, and ">") the
    // rest is copied as it stands. Returns the bytes written, the terminator counted only where no
    // escape was malformed; it is written in any case.
    static long DehexBufferFill(char const* in, char* out);
    // The value of a hexadecimal digit, 0 for anything else.
    static short toShort(char digit);
    // Moves from the byte at `position` to the next digit or ">", over blanks, tabs and line ends.
    // 0, or kNoHexChar with the position at whatever else is there.
    static short nextHexChar(char** position);
    static constexpr short kNoHexChar = 5000;

    // Back to no encoding, no language and no converter: what it held is disposed of.
    void Initialize();
    // Makes the converter between the two encodings anew; nothing without both of them.
    // ValidConverter() tells whether that worked.
    void Create();

  private:
    void SetLanguage(PPDX* ppd);
    void UseMacRomanForPlainLanguages(char const* text, long size);
    std::uint32_t OneStepEncoding() const;  // kUnknownEncoding when Unicode comes between
    __CFString const* StringFromBytes(char const* bytes, unsigned long length);
    __CFString const* StringThroughUnicode(char const* bytes, unsigned long length);
    bool PrepareUnicodeConverter();
    std::int32_t ppdStringConvert(char const* in, char** output, unsigned long* length);
    std::int32_t convertText(char const* input, unsigned long length, char** output,
                             unsigned long size, unsigned long* consumed, unsigned long* written);
    static std::int32_t resetOutputHandle(char** output, unsigned long growth);

    static HexLanguageExceptions mExceptionsList;

    std::uint32_t mInputEncoding = kUnknownEncoding;
    std::uint32_t mOutputEncoding = kUnknownEncoding;
    OpaqueTECObject* mConverter = nullptr;  // owned, may be null
    std::int32_t mStatus = 0;
    bool mValid = false;
    OpaqueTECObject* mToUnicodeConverter = nullptr;  // owned, null until first needed
    std::uint32_t mUnicodeEncoding = 0;              // the input encoding that one was made for
    std::string mLanguage;
};
