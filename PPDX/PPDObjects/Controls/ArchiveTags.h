// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/Settings.h"

// A four-character code as the number under which an archive keeps an entry.
constexpr unsigned long RecordTag(char const (&code)[5]) {
    unsigned long tag = 0;
    for (int position = 0; position < 4; ++position) {
        tag = tag << 8 | static_cast<unsigned char>(code[position]);
    }
    return tag;
}

// Where the values of a PPD stand in its archive; docs/archive.md tells their form. What was once
// saved is read by these numbers, so none of them ever changes.
namespace ArchiveTags {

// The records of a list, counted in an entry of their own.
struct List {
    unsigned long countTag;
    long countID;
    long firstID;
};
inline constexpr List kPages = {Settings::kPageCountTag, Settings::kPageCountID, 3001};
inline constexpr List kGroups = {4000, 4002, 4001};
inline constexpr List kControls = {5000, 5002, 5001};
// A record is one entry, under the tag of the count.
inline constexpr List kShortcuts = {RecordTag("StCt"), 6000, 6001};

inline constexpr unsigned long kHeader = 1000;
inline constexpr long kStoreVersionID = 1001;
inline constexpr long kFileID = 1002;
inline constexpr long kFormatVersionID = 1003;
inline constexpr long kFileVersionID = 1004;
inline constexpr long kPCFileNameID = 1005;
inline constexpr long kLanguageVersionID = 1006;
inline constexpr long kLanguageEncodingID = 1007;
inline constexpr long kModelNameID = 1008;
inline constexpr long kDriverVersionID = 1009;

inline constexpr unsigned long kVersions = 2000;
inline constexpr long kExtendedFileVersionID = 2001;
inline constexpr long kExtendedVersionID = 2002;

// ---- Every page, group and option ----

inline constexpr unsigned long kKeyword = RecordTag("KyWd");
inline constexpr unsigned long kNameText = RecordTag("LcNm");
inline constexpr unsigned long kName = RecordTag("LcCF");
inline constexpr unsigned long kVisible = RecordTag("isVs");
inline constexpr unsigned long kParent = RecordTag("PrNm");

// ---- Pages and groups ----

inline constexpr unsigned long kShowInPrintProperties = RecordTag("SPPg");
inline constexpr unsigned long kShowInApplication = RecordTag("SApp");

inline constexpr unsigned long kGroup = RecordTag("gGrp");
inline constexpr unsigned long kRollDown = RecordTag("RlDn");
inline constexpr unsigned long kScrollPane = RecordTag("ScPn");

// ---- Options ----

inline constexpr unsigned long kOrder = RecordTag("Ordr");
inline constexpr unsigned long kPostScript = RecordTag("PSDt");
inline constexpr unsigned long kFlags = RecordTag("CFlg");

inline constexpr unsigned long kPopup = RecordTag("PopC");
inline constexpr unsigned long kPopupMultiple = RecordTag("PCMS");
inline constexpr unsigned long kPopupDefault = RecordTag("PCDK");
inline constexpr unsigned long kItemCount = RecordTag("PCIC");
inline constexpr unsigned long kItemKeyword = RecordTag("PCIK");
inline constexpr unsigned long kItemName = RecordTag("PCFN");
inline constexpr unsigned long kItemPlainName = RecordTag("PCIN");  // read, never written
inline constexpr unsigned long kItemCode = RecordTag("PCIP");
inline constexpr unsigned long kItemSelected = RecordTag("PCIS");

inline constexpr unsigned long kBoolean = RecordTag("BlnC");
inline constexpr unsigned long kBooleanValue = RecordTag("BCcV");
inline constexpr unsigned long kBooleanDefault = RecordTag("BCdV");
inline constexpr unsigned long kTrueText = RecordTag("BCtT");
inline constexpr unsigned long kFalseText = RecordTag("BCfT");
inline constexpr unsigned long kTrueCode = RecordTag("BtPT");
inline constexpr unsigned long kFalseCode = RecordTag("BfPT");

struct Numeric {
    unsigned long kind;
    unsigned long value;
    unsigned long minimum;
    unsigned long maximum;
    unsigned long increment;
    unsigned long defaultValue;
};
inline constexpr Numeric kRange = {RecordTag("RngC"), RecordTag("RCVl"), RecordTag("RCMn"),
                                   RecordTag("RCMx"), RecordTag("RCIn"), RecordTag("RCDf")};
inline constexpr Numeric kFloatRange = {RecordTag("FrgC"), RecordTag("FCVl"), RecordTag("FCMn"),
                                        RecordTag("FCMx"), RecordTag("FCIn"), RecordTag("FCDf")};

inline constexpr unsigned long kJobNote = RecordTag("JbNt");
inline constexpr unsigned long kNoteText = RecordTag("jNtT");
inline constexpr unsigned long kNoteDefault = RecordTag("jNDT");
inline constexpr unsigned long kNoteMaximum = RecordTag("jMxL");
inline constexpr unsigned long kNoteMinimum = RecordTag("jMnL");
inline constexpr unsigned long kNoteFlags = RecordTag("jNtF");
inline constexpr unsigned long kNoteOn = RecordTag("jNOn");

inline constexpr unsigned long kSpecialOption = RecordTag("soCN");
inline constexpr unsigned long kSpecialOptionValue = RecordTag("soVl");

}  // namespace ArchiveTags
