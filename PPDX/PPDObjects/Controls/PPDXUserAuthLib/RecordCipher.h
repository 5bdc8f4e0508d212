// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// The two keys of a user authentication record, and the cipher step that both serve.

// A Twofish key of 256 bits.
using RecordKey = std::array<std::uint32_t, 8>;

// The key of the outer block, which whoever reads the record has too.
RecordKey FixedRecordKey();
// A new key for one record. False, with zeros in it, when the operating system gives no random
// numbers. The caller wipes it.
bool MakeSessionKey(RecordKey& key);

// Twofish without chaining. 0, or -1 for a length that isn't a multiple of 16. `in` and `out` may
// be the same place.
int CryptRecord(bool decrypt, RecordKey const& key, std::uint8_t const* in, std::size_t length,
                std::uint8_t* out);
