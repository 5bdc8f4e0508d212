// SPDX-License-Identifier: Apache-2.0
#include "host/InspectCommand.h"

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/ZUBPPD.h"
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

Outcome InspectCommand::Run() {
    ExtensionsScope const level(mOptions.extensions);
    return PPDCommand::Run();
}

Outcome InspectCommand::Answer(ZUBPPD& ppd, Json& answer) {
    answer = TreeJson::Describe(ppd);
    return Outcome::Done();
}
