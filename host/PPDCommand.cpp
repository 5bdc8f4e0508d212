// SPDX-License-Identifier: Apache-2.0
#include "host/PPDCommand.h"

#include <nlohmann/json.hpp>

#include "host/ControlSettings.h"
#include "host/HostFiles.h"
#include "host/ParsedPPD.h"

Outcome PPDCommand::Run() {
    if (Outcome outcome = HostFiles::CheckReadable(mOptions.ppd); !outcome.Ok()) {
        return outcome;
    }
    ParsedPPD const ppd(mOptions.ppd, static_cast<_PARSE_OPTIONS_>(mOptions.parseOptions),
                        mOptions.accepted);
    Outcome outcome = ControlSettings(ppd.Get(), mOptions.ppd, mErr).Apply(mOptions.settings);
    Json answer;
    if (outcome.Ok()) {
        outcome = Answer(ppd.Get(), answer);
    }
    if (outcome.Ok()) {
        mOut << answer.dump(2) << '\n';
    }
    return outcome;
}
