// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// The name under which the user is logged in, from the account of the process's real user. The
// caller releases it; null for a user without an account and without memory.
CFStringRef CSCopyUserName();
