// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "ZUBUtils/PPDUtils/WipedText.h"
#include "platform/TextEncodingConverter.h"

// Texts of notes on their way into a job. They may be secret, so all of them are wiped.

// From the application's text encoding. `out` is empty on failure. 0, or the converter's status. An
// empty text gives an empty one and 0.
OSStatus ConvertTextFromApplicationToUTF8(std::string_view text, WipedText& out);
// Puts a second slash before the first slash and colon, unless two slashes stand ahead of them: the
// name of a user as the directory's service reads it.
WipedText WithSlashDoubled(std::string_view name);
