// SPDX-License-Identifier: Apache-2.0
#pragma once

// What the reader reports, by the numbers under which PPDXErrorObj carries and describes it.
enum PPDXErrorCode : short {
    kOutOfMemory = 1,
    kPageWithoutName = 4,
    kGroupLineWithoutBlock = 5,
    kNoteWithoutKeyword = 6,
    kMalformedRange = 7,
    kOpenerWithoutKeyword = 8,
    kStateNeitherTrueNorFalse = 9,
    kFileEndsInSkippedBlock = 10,
    kSecondDefaultOrFileEnds = 11,
    kGroupWithoutName = 12,
    kUnknownParent = 14,
    kParentLineLacksField = 15,
    kFlagsLineWithoutBlock = 16,
    kFileNotReadable = 18,
    kShortcutLeadsNowhere = 19,
    kControlWithoutGroup = 21,
    kAlreadyExists = 23,
    kNoPages = 25,
    kNoGroups = 26,
    kNoControls = 27,
    kNotPPD43 = 28,
    kControlWithoutRollDown = 29,
    kUnknownUIType = 31,
    kUnavailableNoteFlag = 32,
    kBlockWithoutDefault = 33,
    kBlockSkipped = 34,
    kRangeWithoutCode = 35,
    kRuleWithoutSecondKey = 36
};
