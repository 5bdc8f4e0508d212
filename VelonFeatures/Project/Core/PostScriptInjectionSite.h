// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// Where in the job an entry goes. The number stands before each text in the job data file.
enum PostScriptInjectionSite : std::int16_t {
    kSuppressedKeywordSite = -9,  // keywords whose code the operating system leaves to us
    kNoteCommentSite = 30,
    kFirstCopyMarkerSite = 72,
    kSecondCopyMarkerSite = 73,
    kFeatureSite = 81,
    kDriverCommentSite = 501,
    kLayoutCommentSite = 504,
    kFilePathSite = 900
};
