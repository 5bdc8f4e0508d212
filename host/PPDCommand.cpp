// SPDX-License-Identifier: Apache-2.0
#include "host/PPDCommand.h"

#include <nlohmann/json.hpp>

#include "host/ControlSettings.h"
#include "host/HostFiles.h"
#include "host/ParsedPPD.h"

Outcome PPDCommand::Run() {
    if (Outcome outcome = HostFiles::CheckReadable(mReadOptions.ppd); !outcome.Ok()) {
        return outcome;
    }
    ParsedPPD const ppd(mReadOptions.ppd, static_cast<_PARSE_OPTIONS_>(mReadOptions.parseOptions),
                        mReadOptions.accepted);
    if (!mAnyPPD && !ppd->IsValidPPD()) {
        return Outcome::NotOurs(mReadOptions.ppd + " isn't a PPD of the extension, or is broken");
    }
    Outcome outcome =
        ControlSettings(ppd.Get(), mReadOptions.ppd, mErr).Apply(mReadOptions.settings);
    Json answer;
    if (outcome.Ok()) {
        outcome = Answer(ppd.Get(), answer);
    }
    if (outcome.Ok()) {
        mOut << answer.dump(2) << '\n';
    }
    return outcome;
}
