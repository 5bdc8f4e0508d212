// SPDX-License-Identifier: Apache-2.0
#include "host/LintCommand.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/PlacedPPD.h"
#include "host/ExtensionsScope.h"
#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "host/PPDCommand.h"
#include "host/PeopleText.h"
#include "host/lint/LintChecks.h"

namespace {

using Severity = LintFinding::Severity;

constexpr char const* kSeverities[] = {"error", "warning", "note"};

char const* NameOf(Severity severity) {
    return kSeverities[static_cast<std::size_t>(severity)];
}

Json AsJson(LintFinding const& finding) {
    return {{"line", finding.line},
            {"severity", NameOf(finding.severity)},
            {"code", finding.code ? Json(*finding.code) : Json()},
            {"keyword", finding.keyword.empty() ? Json() : JsonText::Bytes(finding.keyword)},
            {"message", finding.message},
            {"help", finding.help},
            {"fatal", finding.fatal}};
}

std::string AsText(LintFinding const& finding, std::string const& file) {
    std::string text =
        file + ':' + std::to_string(finding.line) + ": " + NameOf(finding.severity) + ": ";
    if (!finding.keyword.empty()) {
        text += PeopleText::Bytes(finding.keyword) + ": ";
    }
    text += PeopleText::Plain(std::string_view(finding.message));
    if (finding.code) {
        text += " (" + std::to_string(*finding.code) + (finding.fatal ? ", fatal)" : ")");
    }
    return text + (finding.help.empty() ? "" : " ") +
           PeopleText::Plain(std::string_view(finding.help)) + '\n';
}

}  // namespace

Outcome LintCommand::Run() {
    if (Outcome outcome = HostFiles::CheckReadable(mOptions.ppd); !outcome.Ok()) {
        return outcome;
    }
    ExtensionsScope const level(mOptions.extensions);
    std::unique_ptr<PlacedPPD, ReleasePPD> const ppd(new PlacedPPD(
        HostFiles::URL(mOptions.ppd, false), static_cast<_PARSE_OPTIONS_>(mOptions.parseOptions)));
    LintFindings findings;
    LintChecks::Reading(*ppd, mOptions.ppd, findings);
    if (LintChecks::IsExtended(*ppd)) {
        LintChecks::Lines(*ppd, findings);
    }
    bool const isValid = ppd->IsValidPPD();
    if (isValid) {
        LintChecks::Use(*ppd, mOptions.ppd, findings);
        if (LintChecks::IsExtended(*ppd)) {  // no option of another file is used, nor any rule
            LintChecks::Rules(*ppd, findings);
            LintChecks::Blocks(*ppd, findings);
        }
        LintChecks::Options(*ppd, findings);
        LintChecks::Code(*ppd, findings);
    }
    std::ranges::stable_sort(findings, {}, &LintFinding::line);
    if (mOptions.json) {
        Json list = Json::array();
        std::ranges::transform(findings, std::back_inserter(list), AsJson);
        mOut << list.dump(2) << '\n';
    } else {
        std::string const file = PeopleText::Plain(std::string_view(mOptions.ppd));
        for (LintFinding const& finding : findings) {
            mOut << AsText(finding, file);
        }
    }
    if (!isValid) {
        return {ExitStatus::kNotPPD, mOptions.ppd + " isn't a valid PPD: print refuses it"};
    }
    bool const isClean = std::ranges::none_of(
        findings, [](LintFinding const& finding) { return finding.severity != Severity::kNote; });
    return isClean || !mOptions.strict ? Outcome::Done()
                                       : Outcome::Failed("something is wrong with " + mOptions.ppd);
}
