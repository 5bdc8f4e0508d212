// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/TextEncodingConverter.h"

// What a test sets to see the rare ways.

// System and application text encoding; kTextEncodingUnknown goes back to the locale's.
void SetSystemTextEncoding(TextEncoding encoding);

// After `count` more creations (strings, data, arrays, collections, handles and the like) the next
// one fails, and only that one; -1 for never.
void FailCreationAfter(long count);

// The user's name for CSCopyUserName, in UTF-8; null goes back to the account's.
void SetUserName(char const* name);

// The number of platform objects alive, for tests of ownership. Constants don't count.
long LiveObjectCount();
