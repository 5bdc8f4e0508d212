// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// Finds a run of at most 255 bytes in a block of bytes, by the rule of the last occurrence of the
// byte that didn't match. The comparison is exact: the case flag is kept for callers that ask for
// it and doesn't change a search.
//
// A search string that is longer, null or of negative length is taken as the empty one, which is
// never found.
class BoyerMoore {
  public:
    BoyerMoore();
    // `data`, if not null, is borrowed as by SetSearchData.
    BoyerMoore(char const* text, short length, void* data, long dataLength);
    BoyerMoore(BoyerMoore const&) = delete;
    BoyerMoore& operator=(BoyerMoore const&) = delete;
    virtual ~BoyerMoore();

    virtual void SetSearchString(char const* text, short length);  // copies the bytes
    virtual void SetSearchString(unsigned char* text);             // length byte first
    // Copies the search string and a terminator; `text` must have room for 256 bytes.
    virtual void GetSearchString(char* text);
    // The data must live as long as searches are made in it. The start offset goes back to 0.
    virtual void SetSearchData(void* data, long length);

    // Each gives the offset of the first match counted from the start offset, -1 for none. `start`
    // counts from the beginning of the data; a null `text` keeps the search string.
    virtual long Search();
    virtual long Search(long start, char const* text, short length);
    virtual long Search(long start, unsigned char* text);

    virtual void SetCaseSensitve(bool caseSensitive);
    virtual bool GetCaseSensitive();
    virtual short GetSearchStringLength();

  protected:
    virtual void PrepareSearchData();
    virtual void CleanupSearchData();
    virtual void BuildSkipTable();

  private:
    static constexpr std::size_t kSearchStringSize = 256;
    static constexpr std::size_t kSkipTableSize = 256;

    std::uint8_t mSkipTable[kSkipTableSize] = {};
    std::uint8_t mSearchString[kSearchStringSize] = {};  // not terminated
    std::int16_t mSearchStringLength = 0;
    void* mData = nullptr;  // not owned
    std::int32_t mDataLength = 0;
    std::int32_t mStart = 0;
    std::uint8_t const* mBase = nullptr;  // where the search begins, inside mData
    bool mCaseInsensitive = false;
};
