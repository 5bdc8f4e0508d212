// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// User name and password as one opaque line of text for a print server that authenticates users.
// docs/security.md has the record and what it protects from. Not for two threads at once.
//
// Texts are bytes up to a zero, of no particular encoding. What is made here is from malloc, and
// the caller frees it with AUTH_freeBuffer. A failure is -1; every result then is null or zero.

enum UAL_DomainType : std::int32_t {
    kUALUserDomain = 2,  // the only one in use; a record may hold any number
};

constexpr std::size_t kGUIDSize = 16;
constexpr std::size_t kMACAddressSize = 6;

// Packs the first 255 bytes of user and password, with an empty domain and a new identifier, into
// `*out`. A null or an empty user, a null password or another domain type than kUALUserDomain make
// a record with nothing in it. `domain` and `reserved` aren't used.
int AUTH_packAndEncrypt(char const* user, char const* password, char const* domain,
                        UAL_DomainType domainType, int reserved, char** out);
// Wipes the text up to its first zero and frees it; the pointer becomes null. Null twice over is
// harmless.
void AUTH_freeBuffer(char** buffer);

// The same with texts of any length up to 16 MiB in all and an identifier of 16 bytes, null for
// zeros. A null domain is an empty one.
int UAL_PackAndEncrypt(char const* user, char const* password, char const* domain,
                       UAL_DomainType domainType, unsigned char const* guid, char** out);
// The inverse. `guid` takes 16 bytes. The text may be anybody's: a record whose lengths, zeros or
// digest don't fit is refused, and nothing is made larger than what the text holds. So is one with
// a null argument.
int UAL_UnpackAndDecrypt(char const* text, char** user, char** password, char** domain,
                         UAL_DomainType* domainType, unsigned char* guid);

// 16 bytes: the hardware address of the primary Ethernet interface, zeros without one; 4 bytes
// that follow the time, in the host's order; 6 zeros. Two calls within a few hundred microseconds
// can give the same. False for null.
bool CreateGUID(unsigned char* guid);

// Points `*mac` at a static buffer of 6 bytes: the address of the last matching interface, zeros
// without one. Returns the status of the last interface's controller, 5 when there was no
// interface; when the interfaces can't be listed `*mac` stays, and the status is that failure's.
// What goes wrong is printed to the standard output stream.
int goGetMACAddress(unsigned char** mac);
