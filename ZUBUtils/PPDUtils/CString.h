// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

class Arena;
struct __CFString;

// An 8-bit text on the heap, NUL-terminated. A string that was never given a text has a null
// buffer, which is not the same as holding the empty text "".
//
// Nothing here reports that memory ran out: a construction then leaves the string without a
// buffer, every other operation leaves it as it was unless it says otherwise. Pointers into the
// text die with the next operation that changes the string. Texts of 4 GB and more are refused
// like a lack of memory. Not for use from two threads at once.
class CString {
  public:
    CString() = default;
    CString(char const* text);  // a private copy; null leaves a null buffer
    CString(CString const& other);
    CString(CString&& other) noexcept;  // the other string has no text then
    // The copy lies in the arena, which must outlive the string or its next change: such a string
    // needn't be destroyed. Throws std::bad_alloc.
    CString(Arena& arena, std::string_view text);
    // In the system encoding, or where that has no form for a character in UTF-8; null buffer for
    // a null string and when both fail.
    CString(__CFString const* string);
    virtual ~CString();

    CString& operator=(char const* text);  // null gives the buffer up
    CString& operator=(CString const& other);
    // In the application's text encoding. The empty text "", not a null buffer, for a null string,
    // a lack of memory or a character without a form in the encoding.
    CString& operator=(__CFString const* string);

    // Appends in place and returns this very string.
    CString& operator+(char const* text);

    // Byte by byte. Both sides must hold text; a side without one equals nothing.
    bool operator==(CString const& other) const;
    bool operator==(char const* text) const;

    operator char const*() const { return mBuffer; }  // may be null
    char const* GetCharData() const { return mBuffer; }
    std::uint32_t Size() const { return mLength; }  // bytes without the terminator
    bool Empty() const { return mBuffer == nullptr || *mBuffer == '\0'; }

    // Whether `text` occurs, upper and lower case of the locale taken as the same.
    bool Contains(char const* text) const;

    // Takes out `count` bytes at `at`, which points into this string's text, or all to the end
    // when fewer are left. The buffer stays where it is.
    void Remove(char const* at, unsigned long count);
    // Puts `text` before `at`, which points into this string's text or at its terminator. Returns
    // the new buffer, which is the string's; null, with nothing changed, when the string has no
    // buffer, when `text` is null or empty and when there is no memory.
    char* Insert(char const* at, char const* text);
    // Replaces the first occurrence, case-sensitive. The empty text occurs at the start of every
    // text, so `with` goes in front then. Nothing happens when there is no occurrence or `what` has
    // no buffer; a `with` without a text removes.
    void Replace(CString const& what, CString const& with);

    // What the operations above are made of. Initialize forgets the buffer without freeing it: it
    // is for a string that has none yet, or whose buffer somebody else has taken.
    void Initialize();
    void ClearBuffer();  // frees it
    // Replaces the text by a copy; the string's own buffer is left alone. False without memory.
    bool SetBuffer(char const* text);

  private:
    bool HoldsPosition(char const* at) const;
    bool Splice(std::size_t position, std::size_t removed, char const* text, std::size_t length);
    bool Convert(__CFString const* string, std::size_t bytesPerUnit, std::uint32_t const* encodings,
                 std::size_t encodingCount);

    void Adopt(char* buffer, std::size_t length);  // in place of the buffer that there is

    char* mBuffer = nullptr;  // may be null
    std::uint32_t mLength = 0;
    bool mOwnsBuffer = true;  // false for one in an arena
};
