// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Controls.h"
#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/PrintManager.h"

// What a print dialog and its plug-ins agree on: the two tables of functions, and the count of
// live instances of each factory.

// ---- The factory: three functions behind a reserved word ----

struct PlugInFactoryTable {
    void* reserved;
    // 0 and a counted instance in `result`, or 0x80000004 and null for an unknown identifier.
    std::int32_t (*QueryInterface)(void* self, CFUUIDBytes identifier, void** result);
    std::uint32_t (*AddRef)(void* self);
    std::uint32_t (*Release)(void* self);
};
struct PlugInFactory {
    PlugInFactoryTable* table;
};
// The symbol "PrinterInfoPluginFactory" of a plug-in's executable.
using PlugInFactoryFunction = void* (*)(CFAllocatorRef allocator, CFUUIDRef typeID);

constexpr std::int32_t kNoInterface = static_cast<std::int32_t>(0x80000004U);

// The type of plug-in that a bundle lists under "CFPlugInTypes" to be taken for a printer's
// extension, and the interface that the dialog asks its factory for.
#define kPrinterInfoTypeID "BCB07250-B738-11D3-8519-0050E4603277"
#define kPrinterInfoInterfaceID "A996FD7E-B738-11D3-8519-0050E4603277"

// ---- The interface: ten functions ----

struct PrinterInfoAPIVersion {
    std::uint32_t buildVersionMajor;
    std::uint32_t buildVersionMinor;
    std::uint32_t baseVersionMajor;
    std::uint32_t baseVersionMinor;
};

struct PrinterInfoInterface;
using PlugInContext = void*;

struct PrinterInfoTable {
    OSStatus (*Retain)(PrinterInfoInterface* self);
    OSStatus (*Release)(PrinterInfoInterface** self);
    OSStatus (*GetAPIVersion)(PrinterInfoInterface* self, PrinterInfoAPIVersion* version);
    // Sizes in pixels. `kind` belongs to the caller, `title` to the context.
    OSStatus (*Prologue)(PlugInContext* context, OSType* creator, CFStringRef* kind,
                         CFStringRef* title, std::uint32_t* maximumWidth,
                         std::uint32_t* maximumHeight);
    OSStatus (*Initialize)(PlugInContext context, std::uint32_t* flags, std::uint32_t hostReference,
                           ControlRef parentPane, PMPrintSession session);
    OSStatus (*Sync)(PlugInContext context, PMPrintSession session, bool reinitialize);
    // Both arrays, null when there is no summary, belong to the caller.
    OSStatus (*GetSummaryText)(PlugInContext context, CFArrayRef* titles, CFArrayRef* summaries);
    OSStatus (*Open)(PlugInContext context);
    OSStatus (*Close)(PlugInContext context);
    OSStatus (*Terminate)(PlugInContext context, OSStatus status);
};
struct PrinterInfoInterface {
    PrinterInfoTable* table;
};

// ---- Live instances ----

void CFPlugInAddInstanceForFactory(CFUUIDRef factory);
void CFPlugInRemoveInstanceForFactory(CFUUIDRef factory);
long CFPlugInInstanceCount(CFUUIDRef factory);

// The identifier of the application that prints, which CFBundleGetMainBundle answers with;
// null for none.
void SetMainBundleIdentifier(CFStringRef identifier);
