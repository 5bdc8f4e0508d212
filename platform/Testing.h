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

// What was looked at since the start, for tests of what an action costs: each reference to a
// control or a window that was followed, each control of a branch that was walked through or on a
// way up to its window, and each handler that an event came to.
long VisitedControls();

// From now on the call of the crypto service with this name (a literal, "CSSM_DeriveKey") fails
// with `status`; null for none. One that takes something back does so all the same.
void FailCryptoCall(char const* name, OSStatus status);
