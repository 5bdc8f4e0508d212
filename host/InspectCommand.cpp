// SPDX-License-Identifier: Apache-2.0
#include "host/InspectCommand.h"

#include <nlohmann/json.hpp>

#include "host/ControlSettings.h"
#include "host/HostFiles.h"
#include "host/ParsedPPD.h"
#include "host/TreeJson.h"

namespace {

// The level is the process's; whoever runs next finds the former one.
class ExtensionsScope {
  public:
    explicit ExtensionsScope(int level) : mFormer(ZUBPPD::GetExtensions()) {
        ZUBPPD::SetExtensions(static_cast<_EXTENSIONS_SUPPORT_>(level));
    }
    ExtensionsScope(ExtensionsScope const&) = delete;
    ExtensionsScope& operator=(ExtensionsScope const&) = delete;
    ~ExtensionsScope() { ZUBPPD::SetExtensions(mFormer); }

  private:
    _EXTENSIONS_SUPPORT_ mFormer;
};

}  // namespace

InspectCommand::InspectCommand(InspectOptions const& options, std::ostream& out, std::ostream& err)
    : mOptions(options), mOut(out), mErr(err) {}

Outcome InspectCommand::Run() {
    if (Outcome outcome = HostFiles::CheckReadable(mOptions.ppd); !outcome.Ok()) {
        return outcome;
    }
    ExtensionsScope const level(mOptions.extensions);
    ParsedPPD const ppd(mOptions.ppd, static_cast<_PARSE_OPTIONS_>(mOptions.parseOptions),
                        mOptions.accepted);
    Outcome outcome = ControlSettings(ppd.Get(), mOptions.ppd, mErr).Apply(mOptions.settings);
    if (outcome.Ok()) {
        mOut << TreeJson::Describe(ppd.Get()).dump(2) << '\n';
    }
    return outcome;
}
