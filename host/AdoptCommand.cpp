// SPDX-License-Identifier: Apache-2.0
#include "host/AdoptCommand.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

#include "host/HostFiles.h"
#include "host/adopt/AdoptedPPD.h"

Outcome AdoptCommand::Run() {
    if (Outcome outcome = HostFiles::CheckReadable(mOptions.ppd); !outcome.Ok()) {
        return outcome;
    }
    std::ifstream file(mOptions.ppd, std::ios::binary);
    std::string const bytes{std::istreambuf_iterator<char>(file), {}};
    PlainPPD plain;
    if (!plain.Read(bytes)) {
        return Outcome::Failed(mOptions.ppd + " isn't a PPD: it doesn't begin with *PPD-Adobe");
    }
    if (plain.isExtended) {
        return Outcome::Failed(mOptions.ppd +
                               " is in the extension's grammar already: zubprint list shows its "
                               "options");
    }
    auto const hasChoices = [](PlainPPD::Option const& option) { return !option.choices.empty(); };
    if (std::ranges::none_of(plain.options, hasChoices)) {
        return Outcome::Failed(mOptions.ppd + " has no options that could be adopted");
    }
    AdoptedOption::Tell const tell = [this](long line, std::string const& text) {
        mErr << Outcome::Line(mOptions.ppd + ':' + std::to_string(line) + ": " + text);
    };
    AdoptedPPD(plain, tell).Write(mOut);
    return Outcome::Done();
}
