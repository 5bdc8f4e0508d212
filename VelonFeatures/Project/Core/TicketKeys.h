// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// Names of tickets and keys in them. Each is plain ASCII; TicketKey makes the platform's text.

// The constant text of a key, never released.
inline CFStringRef TicketKey(char const* key) {
    return CFStringConstant(key);
}

// ---- Session data, each holding a ticket's number ----
constexpr char kPrintSettingsTicket[] = "PMPrintSettingsTicket";
constexpr char kPrinterInfoTicket[] = "PMPrinterInfoTicket";
constexpr char kPageFormatTicket[] = "PMPageFormatTicket";

// The name under which a ticket of print settings is created.
constexpr char kPrintSettingsTicketName[] = "com.apple.print.PrintSettingsTicket";

// ---- Printer info ----
constexpr char kCompiledPPDKey[] = "com.apple.print.PrinterInfo.PMCompiledPPD";
constexpr char kMakeAndModelNameKey[] = "com.apple.print.PrinterInfo.PMMakeAndModelName";
constexpr char kPrinterLongNameKey[] = "com.apple.print.PrinterInfo.PMPrinterLongName";
constexpr char kPrinterAddressKey[] = "com.apple.print.PrinterInfo.PMPrinterAddress";
constexpr char kSupportsColorKey[] = "com.apple.print.PrinterInfo.PMSupportsColor";
constexpr char kDoesCopiesKey[] = "com.apple.print.PrinterInfo.PMDoesCopies";
constexpr char kDoesCopyCollateKey[] = "com.apple.print.PrinterInfo.PMDoesCopyCollate";
constexpr char kDoesReverseOrderKey[] = "com.apple.print.PrinterInfo.PMDoesReverseOrder";
constexpr char kInputFileTypeListKey[] = "com.apple.print.PrinterInfo.PMInputFileTypeList";
constexpr char kOutputTypeListKey[] = "com.apple.print.PrinterInfo.PMOutputTypeList";
constexpr char kPostScriptLevelKey[] = "com.apple.print.PrinterInfo.PMPostScriptLevel";
constexpr char kPSVersionKey[] = "com.apple.print.PrinterInfo.PMPSVersion";
constexpr char kPSRevisionKey[] = "com.apple.print.PrinterInfo.PMPSRevision";
constexpr char kTrueTypeRasterizerKey[] = "com.apple.print.PrinterInfo.PMPSTTRasterizer";
constexpr char kTotalMemInstalledKey[] = "com.apple.print.PrinterInfo.PMTotalMemInstalled";
constexpr char kDescriptionFileKey[] = "com.apple.print.PrinterInfo.PMDescriptionFile";
constexpr char kColorDeviceIDKey[] = "com.apple.print.PrinterInfo.PMColorDeviceID";

// ---- Page format ----
constexpr char kOrientationKey[] = "com.apple.print.PageFormat.PMOrientation";
// The inner ticket about the paper, and what lies in it.
constexpr char kPaperInfoTicket[] = "com.apple.print.PaperInfoTicket";
constexpr char kPaperRectKey[] = "com.apple.print.PaperInfo.PMUnadjustedPaperRect";
constexpr char kPaperNameKey[] = "com.apple.print.PaperInfo.ppd.PMPaperName";

// ---- Print settings ----
constexpr char kCopiesKey[] = "com.apple.print.PrintSettings.PMCopies";
constexpr char kLayoutRowsKey[] = "com.apple.print.PrintSettings.PMLayoutRows";
constexpr char kLayoutColumnsKey[] = "com.apple.print.PrintSettings.PMLayoutColumns";
constexpr char kJobNameKey[] = "com.apple.print.JobInfo.PMJobName";
constexpr char kPrimaryPaperFeedKey[] = "com.apple.print.PrintSettings.PMPrimaryPaperFeed";

// ---- What the extension itself keeps in the print settings; pairs are numbered from 0 ----
constexpr char kSelectedWatermarkKey[] = ".SelectedWatermarkKey";
constexpr char kFirstPageOnlyKey[] = ".FirstPageOnlyKey";
constexpr char kPCCountKey[] = ".PCKey";
constexpr char kPCKey[] = "PCKey";
constexpr char kPCValue[] = "PCValue";
constexpr char kStoredCountKey[] = ".MMKey";
constexpr char kStoredKey[] = "MMKey";
constexpr char kStoredValue[] = "MMValue";
