// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "host/Outcome.h"
#include "platform/CFRef.h"
#include "platform/PlugInHost.h"

// A plug-in bundle with its factory and one interface instance, given back on destruction.
class LoadedPlugIn {
  public:
    LoadedPlugIn() = default;
    LoadedPlugIn(LoadedPlugIn const&) = delete;
    LoadedPlugIn& operator=(LoadedPlugIn const&) = delete;
    ~LoadedPlugIn();

    // Called once. On failure nothing but the destructor may follow.
    Outcome Load(std::string const& bundle);
    // The interface's functions; null before a successful Load.
    PrinterInfoTable const* Table() const;

  private:
    Outcome OpenBundle(std::string const& bundle);
    Outcome MakeFactory(std::string const& bundle);
    Outcome MakeInterface(std::string const& bundle);
    bool ListsPrinterInfoType() const;
    void ReleaseInterface();

    CFRef<CFBundleRef> mBundle;
    PlugInFactory* mFactory = nullptr;           // one count owned
    PrinterInfoInterface* mInterface = nullptr;  // mInterfaceCounts counts owned
    int mInterfaceCounts = 0;
};
