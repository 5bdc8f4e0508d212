// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// Strings, data, arrays, dictionaries, numbers, booleans, URLs, UUIDs, property lists, bundles.
//
// Ownership: what a function with Create or Copy in its name returns belongs to the caller, who
// gives it up with CFRelease. What a Get function returns is borrowed and lives as long as the
// object it was asked of. Counts are not atomic across a mutation: an object belongs to one thread
// at a time. Releasing or retaining null is harmless. A Create or Copy function returns null when
// it can't make the object, and every function takes null objects as empty ones unless it says
// otherwise.
//
// Mutable and immutable objects share one representation: a mutable reference serves wherever an
// immutable one is asked for.

struct __CFString;
struct __CFData;
struct __CFArray;
struct __CFDictionary;
struct __CFNumber;
struct __CFBoolean;
struct __CFURL;
struct __CFUUID;
struct __CFBundle;
struct __CFAllocator;

using CFTypeRef = void const*;
using CFPropertyListRef = void const*;
using CFAllocatorRef = __CFAllocator const*;  // always null: there is one allocator
using CFStringRef = __CFString const*;
using CFMutableStringRef = __CFString*;
using CFDataRef = __CFData const*;
using CFMutableDataRef = __CFData*;
using CFArrayRef = __CFArray const*;
using CFMutableArrayRef = __CFArray*;
using CFDictionaryRef = __CFDictionary const*;
using CFMutableDictionaryRef = __CFDictionary*;
using CFNumberRef = __CFNumber const*;
using CFBooleanRef = __CFBoolean const*;
using CFURLRef = __CFURL const*;
using CFUUIDRef = __CFUUID const*;
using CFBundleRef = __CFBundle*;

using CFIndex = long;
using CFTypeID = unsigned long;
using CFStringEncoding = std::uint32_t;
using CFOptionFlags = unsigned long;

struct CFRange {
    CFIndex location;
    CFIndex length;
};
constexpr CFRange CFRangeMake(CFIndex location, CFIndex length) {
    return {location, length};
}
constexpr CFIndex kCFNotFound = -1;

enum CFComparisonResult : long {
    kCFCompareLessThan = -1,
    kCFCompareEqualTo = 0,
    kCFCompareGreaterThan = 1
};

// ---- Every object ----

CFTypeRef CFRetain(CFTypeRef object);  // the same object
void CFRelease(CFTypeRef object);
CFIndex CFGetRetainCount(CFTypeRef object);  // 0 for null
CFTypeID CFGetTypeID(CFTypeRef object);      // 0 for null
// Same type and same value, containers element by element; two nulls are equal.
bool CFEqual(CFTypeRef left, CFTypeRef right);

CFTypeID CFStringGetTypeID();
CFTypeID CFDataGetTypeID();
CFTypeID CFArrayGetTypeID();
CFTypeID CFDictionaryGetTypeID();
CFTypeID CFNumberGetTypeID();
CFTypeID CFBooleanGetTypeID();
CFTypeID CFURLGetTypeID();
CFTypeID CFUUIDGetTypeID();
CFTypeID CFBundleGetTypeID();

// ---- Strings: UTF-16 inside; lengths and positions count UTF-16 units ----

constexpr CFStringEncoding kCFStringEncodingMacRoman = 0;
constexpr CFStringEncoding kCFStringEncodingUnicode = 0x100;  // UTF-16
constexpr CFStringEncoding kCFStringEncodingISOLatin1 = 0x0201;
constexpr CFStringEncoding kCFStringEncodingISOLatin2 = 0x0202;
constexpr CFStringEncoding kCFStringEncodingISOLatin5 = 0x0209;
constexpr CFStringEncoding kCFStringEncodingISOLatin9 = 0x020F;
constexpr CFStringEncoding kCFStringEncodingWindowsLatin1 = 0x0500;
constexpr CFStringEncoding kCFStringEncodingASCII = 0x0600;
constexpr CFStringEncoding kCFStringEncodingGBK = 0x0631;
constexpr CFStringEncoding kCFStringEncodingShiftJIS = 0x0A01;
constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;
constexpr CFStringEncoding kCFStringEncodingInvalidId = 0xFFFFFFFFU;

constexpr CFOptionFlags kCFCompareCaseInsensitive = 1;

// Strict: bytes that are no text of the encoding give null. Null text gives null.
CFStringRef CFStringCreateWithCString(CFAllocatorRef, char const* text, CFStringEncoding encoding);
// `length` bytes. UTF-16 is taken in host order; with `isExternal` a byte order mark is honoured
// and dropped, in UTF-8 too. A negative length, or null bytes with a length, gives null.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef, std::uint8_t const* bytes, CFIndex length,
                                    CFStringEncoding encoding, bool isExternal);
CFStringRef CFStringCreateWithPascalString(CFAllocatorRef, std::uint8_t const* text,
                                           CFStringEncoding encoding);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, char16_t const* characters,
                                         CFIndex length);
CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef string);
// What goes beyond `maximum` UTF-16 units is cut off; 0 is no limit.
CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex maximum);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex maximum, CFStringRef string);
// A constant made once for each text and never freed; ASCII only. See CFSTR.
CFStringRef CFStringConstant(char const* text);
#define CFSTR(text) CFStringConstant("" text "")

CFIndex CFStringGetLength(CFStringRef string);
char16_t CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index);  // 0 beyond the end
// The text and a terminator into `size` bytes. False, with an empty text where there is room for
// it, when it doesn't fit whole or a character has no form in the encoding.
bool CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding);
// Length byte and at most 255 bytes, within `size` bytes in all; false as above.
bool CFStringGetPascalString(CFStringRef string, std::uint8_t* buffer, CFIndex size,
                             CFStringEncoding encoding);
// Converts as many whole characters of `range` as fit into `size` bytes (null buffer: counts only)
// and returns how many UTF-16 units those were. `lossByte` stands for a character without a form
// in the encoding; 0 stops there. `used`, if given, receives the byte count. With `isExternal`
// UTF-16 begins with a byte order mark.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         std::uint8_t lossByte, bool isExternal, std::uint8_t* buffer, CFIndex size,
                         CFIndex* used);
// Bytes that `length` UTF-16 units can take at most, without a terminator.
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

CFComparisonResult CFStringCompare(CFStringRef left, CFStringRef right, CFOptionFlags options);
// Compares the units of `left` in `range`, cut to its end, with the whole of `right`.
CFComparisonResult CFStringCompareWithOptions(CFStringRef left, CFStringRef right, CFRange range,
                                              CFOptionFlags options);
// First occurrence, or location kCFNotFound and length 0. An empty text is never found.
CFRange CFStringFind(CFStringRef string, CFStringRef wanted, CFOptionFlags options);
// Replaces every occurrence inside `range`; returns how many. What was put in isn't searched again.
CFIndex CFStringFindAndReplace(CFMutableStringRef string, CFStringRef wanted,
                               CFStringRef replacement, CFRange range, CFOptionFlags options);
void CFStringAppend(CFMutableStringRef string, CFStringRef appended);
// Text that doesn't convert appends nothing.
void CFStringAppendCString(CFMutableStringRef string, char const* text, CFStringEncoding encoding);
void CFStringReplaceAll(CFMutableStringRef string, CFStringRef replacement);

// Leading blanks, a sign and digits; 0 without digits, clamped to 32 bits.
std::int32_t CFStringGetIntValue(CFStringRef string);
// Leading blanks and a decimal number with a point and an exponent; 0 without one.
double CFStringGetDoubleValue(CFStringRef string);

CFStringEncoding CFStringGetSystemEncoding();
// The 8-bit script encoding that serves the same language: Mac Roman for all Latin-1 kinds and
// for UTF-8, Mac Japanese for Shift-JIS and so on.
CFStringEncoding CFStringGetMostCompatibleMacStringEncoding(CFStringEncoding encoding);

// UTF-16 comes out with a byte order mark. Null when a character has no form and lossByte is 0.
CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef, CFStringRef string,
                                               CFStringEncoding encoding, std::uint8_t lossByte);
CFStringRef CFStringCreateFromExternalRepresentation(CFAllocatorRef, CFDataRef data,
                                                     CFStringEncoding encoding);

// ---- Data ----

CFDataRef CFDataCreate(CFAllocatorRef, std::uint8_t const* bytes, CFIndex length);
CFDataRef CFDataCreateCopy(CFAllocatorRef, CFDataRef data);
CFMutableDataRef CFDataCreateMutable(CFAllocatorRef, CFIndex capacity);
CFIndex CFDataGetLength(CFDataRef data);
std::uint8_t const* CFDataGetBytePtr(CFDataRef data);  // valid until the data changes
void CFDataAppendBytes(CFMutableDataRef data, std::uint8_t const* bytes, CFIndex length);

// ---- Arrays: they retain their elements; a null element is kept as null ----

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef, CFIndex capacity);
CFMutableArrayRef CFArrayCreateMutableCopy(CFAllocatorRef, CFIndex capacity, CFArrayRef array);
CFIndex CFArrayGetCount(CFArrayRef array);
CFTypeRef CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);  // null beyond the end
void CFArrayAppendValue(CFMutableArrayRef array, CFTypeRef value);
void CFArrayInsertValueAtIndex(CFMutableArrayRef array, CFIndex index, CFTypeRef value);
void CFArraySetValueAtIndex(CFMutableArrayRef array, CFIndex index, CFTypeRef value);
void CFArrayRemoveValueAtIndex(CFMutableArrayRef array, CFIndex index);

// ---- Dictionaries: they retain keys and values, keep the order of insertion; keys are strings --

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex capacity);
CFMutableDictionaryRef CFDictionaryCreateMutableCopy(CFAllocatorRef, CFIndex capacity,
                                                     CFDictionaryRef dictionary);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
CFTypeRef CFDictionaryGetValue(CFDictionaryRef dictionary, CFStringRef key);  // null if absent
// Each array, if given, has room for the count. Nothing in them is retained.
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, CFTypeRef* keys, CFTypeRef* values);
// Without a key or a value nothing changes.
void CFDictionarySetValue(CFMutableDictionaryRef dictionary, CFStringRef key, CFTypeRef value);
void CFDictionaryRemoveValue(CFMutableDictionaryRef dictionary, CFStringRef key);

// ---- Numbers and booleans ----

enum CFNumberType : long {
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat64Type = 6
};
CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, void const* value);
// False when the value has no exact form in the type, which then gets the nearest one.
bool CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
bool CFNumberIsFloatType(CFNumberRef number);

extern CFBooleanRef const kCFBooleanTrue;
extern CFBooleanRef const kCFBooleanFalse;
bool CFBooleanGetValue(CFBooleanRef boolean);  // false for null

// ---- URLs: file URLs by path, others by their text ----

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, std::uint8_t const* path,
                                                 CFIndex length, bool isDirectory);
// Null for text without a scheme and without a base to take it from, for a file of another machine,
// and for text with blanks, controls or characters beyond ASCII, which a URL writes as %XX.
CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef text, CFURLRef base);
CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef component,
                                               bool isDirectory);
// A relative file path is taken from the process's working directory.
CFURLRef CFURLCopyAbsoluteURL(CFURLRef url);
// The file's path in bytes, terminated; false for no file URL or too small a buffer.
bool CFURLGetFileSystemRepresentation(CFURLRef url, bool resolveAgainstBase, std::uint8_t* buffer,
                                      CFIndex size);
CFStringRef CFURLCopyScheme(CFURLRef url);  // "file" for a file URL
CFStringRef CFURLGetString(CFURLRef url);

// Reads a whole file. False with the reason in `error` (a POSIX errno or a negative number), and
// null in `data`, when it can't be read. A link is followed, here and below, unless it lies in a
// sticky folder that all may write and is neither the caller's nor the folder owner's:
// linkRefusedErr.
bool CFURLCreateDataAndPropertiesFromResource(CFAllocatorRef, CFURLRef url, CFDataRef* data,
                                              std::int32_t* error);
// Writes a whole file: into a new file beside it that then takes its name, so that a reader sees
// the old content or the new. The rights of an existing file stay, but for setuid and setgid. False
// with the reason in `error`, and the file as it was.
bool CFURLWriteDataAndPropertiesToResource(CFURLRef url, CFDataRef data, std::int32_t* error);
// The same, and a file that wasn't there is for its owner alone.
bool WritePrivateDataToResource(CFURLRef url, CFDataRef data, std::int32_t* error);

// ---- UUIDs ----

struct CFUUIDBytes {
    std::uint8_t byte[16];
};
CFUUIDRef CFUUIDCreate(CFAllocatorRef);                              // a new random one
CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef, CFStringRef text);  // null unless 8-4-4-4-12
CFUUIDRef CFUUIDCreateFromUUIDBytes(CFAllocatorRef, CFUUIDBytes bytes);
CFStringRef CFUUIDCreateString(CFAllocatorRef, CFUUIDRef uuid);  // upper-case hexadecimal
CFUUIDBytes CFUUIDGetUUIDBytes(CFUUIDRef uuid);

// ---- Property lists: strings, data, arrays, dictionaries, numbers, booleans, as XML ----

constexpr CFOptionFlags kCFPropertyListImmutable = 0;
constexpr CFOptionFlags kCFPropertyListMutableContainersAndLeaves = 2;

// Null for a list that holds another type, null elements or text with characters that XML can't
// hold (controls other than tab, line feed and carriage return).
CFDataRef CFPropertyListCreateXMLData(CFAllocatorRef, CFPropertyListRef list);
// Null for data that is no property list, with a text for people in `errorText` if given, which
// the caller releases: "Out of memory" tells nothing about the data. Depth of nesting is bounded. A
// date is read as a string.
CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef, CFDataRef data,
                                                  CFOptionFlags mutability, CFStringRef* errorText);

// ---- Bundles: a directory with Contents/Info.plist, known by its identifier once created ----

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef url);  // null without an Info.plist
// The bundle created last under this identifier that is still alive; not a copy.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);
CFBundleRef CFBundleGetMainBundle();  // the printing application's; never null
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);  // null for a bundle that names none
// The text of `key` in `table` ("Localizable" when null) for the user's language, English failing
// that; `value` if there is none, or `key` when that is null or empty.
CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef table);
// Loads the bundle's executable at the first call. Null without an executable or such a symbol.
void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name);
