// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PlacedPPD.h"

#include "PPDX/PPDObjects/PPDFile.h"

PlacedPPD::PlacedPPD(CFURLRef url, _PARSE_OPTIONS_ options)
    : PlacedPPD(std::make_unique<PPDFile>(url), options) {}

PlacedPPD::PlacedPPD(FSSpec const& file) : PlacedPPD(std::make_unique<PPDFile>(file), kParseAll) {}

PlacedPPD::PlacedPPD(std::unique_ptr<PPDFile> file, _PARSE_OPTIONS_ options)
    : ZUBPPD(options), mLines(*file) {
    Read(file.release());
}

long PlacedPPD::LineOf(PPDXControl const& control) const {
    auto const found = mControlPlaces.find(&control);
    return found == mControlPlaces.end() ? 1 : mLines.NumberAt(found->second);
}

void PlacedPPD::TakeRule(std::string_view key1, std::string_view option1, std::string_view key2,
                         std::string_view option2, bool requirement) {
    mRules.push_back({std::string(key1), std::string(option1), std::string(key2),
                      std::string(option2), requirement, mLines.NumberAt(Place())});
    ZUBPPD::TakeRule(key1, option1, key2, option2, requirement);
}

void PlacedPPD::ControlTaken(PPDXControl& control) {
    mControlPlaces[&control] = mStatement;
}
