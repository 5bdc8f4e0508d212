// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

class ZUBPPD;

// Keeps what stands for a special Chromvale control in the job note of that keyword, which is made
// if there is none: with two-way communication on the job takes the profile's name from there.
void KeepInProfileNote(ZUBPPD& ppd, char const* keyword, CFStringRef value);
