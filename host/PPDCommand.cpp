// SPDX-License-Identifier: Apache-2.0
#include "host/PPDCommand.h"

#include "host/ControlSettings.h"
#include "host/HostFiles.h"
#include "host/SettingFiles.h"

CFRef<CFArrayRef> ParsedPPD::Names(std::vector<std::string> const& accepted) {
    if (accepted.empty()) {
        return {};
    }
    CFMutableArrayRef const names = CFArrayCreateMutable(nullptr, 0);
    for (std::string const& fragment : accepted) {
        CFArrayAppendValue(names, JsonText::FromUTF8(fragment));
    }
    return CFRef<CFArrayRef>(names);
}

ParsedPPD::ParsedPPD(std::string const& path, _PARSE_OPTIONS_ options,
                     std::vector<std::string> const& accepted)
    : mPPD(new ZUBPPD(HostFiles::URL(path, false).Get(), options, Names(accepted).Get())) {}

Outcome PPDCommand::Run() {
    if (Outcome outcome = HostFiles::CheckReadable(mReadOptions.ppd); !outcome.Ok()) {
        return outcome;
    }
    ParsedPPD const ppd(mReadOptions.ppd, static_cast<_PARSE_OPTIONS_>(mReadOptions.parseOptions),
                        mReadOptions.accepted);
    if (!mAnyPPD && !ppd->IsValidPPD()) {
        return Outcome::NotOurs(mReadOptions.ppd +
                                " isn't a PPD of the extension, or is broken; zubprint lint says "
                                "why");
    }
    std::vector<ControlSetting> choices = mReadOptions.settings;
    Outcome outcome = SettingFiles::Read(choices, false);
    ControlSettings settings(ppd.Get(), mReadOptions.ppd, mErr);
    if (outcome.Ok()) {
        outcome = settings.Apply(choices);
    }
    if (!outcome.Ok()) {
        return outcome;
    }
    settings.CheckRules();
    return Answer(ppd.Get(), mOut);
}
