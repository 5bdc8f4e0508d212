// SPDX-License-Identifier: Apache-2.0
#include "host/AdoptCommand.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "host/HostFiles.h"
#include "host/PeopleText.h"
#include "host/adopt/AdoptedPPD.h"

namespace {

constexpr std::string_view kCompressed = "\x1F\x8B";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string Counted(std::size_t count, std::string const& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// Empty for bytes that can be adopted.
std::string WhyNot(std::string const& file, std::string_view bytes, PlainPPD& plain) {
    if (bytes.empty()) {
        return file + " is empty";
    }
    if (bytes.starts_with(kCompressed)) {
        return file + " is compressed: gunzip -c " + PeopleText::ForShell(file) +
               " > NEW.ppd makes one that can be read";
    }
    if (!plain.Read(bytes)) {
        return file + " isn't a PPD: it doesn't begin with *PPD-Adobe";
    }
    if (plain.isExtended) {
        return file + " is in the extension's grammar already: zubprint list shows its options";
    }
    return {};
}

}  // namespace

Outcome AdoptCommand::Run() {
    std::string const& path = mOptions.ppd;
    if (Outcome outcome = HostFiles::CheckReadable(path); !outcome.Ok()) {
        return outcome;
    }
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::vector<std::pair<long, std::string>> told;
    if (bytes.starts_with(kByteOrderMark)) {
        bytes.erase(0, kByteOrderMark.size());
        told.emplace_back(1, "the byte order mark is left out");
    }
    PlainPPD plain;
    if (std::string why = WhyNot(path, bytes, plain); !why.empty()) {
        return Outcome::Failed(std::move(why));
    }
    AdoptedPPD adopted(
        plain, [&told](long line, std::string const& text) { told.emplace_back(line, text); });
    AdoptedPPD::Counts const& carried = adopted.Carried();
    if (carried.options == 0) {
        return Outcome::Failed(path + " has no options that could be adopted");
    }
    adopted.Write(mOut);
    std::ranges::stable_sort(told, {}, &std::pair<long, std::string>::first);
    for (auto const& [line, text] : told) {
        std::string place = path;
        place.append(":").append(std::to_string(line)).append(": ");
        mErr << Outcome::Line(place + text);
    }
    mErr << Outcome::Line(path + ": carried " + Counted(carried.options, "option") + " with " +
                          Counted(carried.choices, "choice") + ", " +
                          Counted(carried.rules, "constraint") +
                          "; zubprint list NEW.ppd shows them");
    return Outcome::Done();
}
