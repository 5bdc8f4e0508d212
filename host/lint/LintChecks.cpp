// SPDX-License-Identifier: Apache-2.0
#include "host/lint/LintChecks.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrorTexts.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "PPDX/PPDObjects/PlacedPPD.h"
#include "host/ControlNames.h"
#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"
#include "twoway/PrinterListFile.h"

namespace {

using Severity = LintFinding::Severity;

constexpr std::size_t kMostNamed = 5;  // in one message

std::string Text(char const* bytes) {
    return bytes == nullptr ? std::string() : bytes;
}

long FirstLineWith(FileLines const& lines, std::string_view beginning) {
    for (long number = 1; number <= lines.Count(); ++number) {
        if (lines.Text(number).starts_with(beginning)) {
            return number;
        }
    }
    return 0;
}

// What to do with a file that can't be read as it is, by its first bytes; empty for any other.
std::string RemedyOfBeginning(FileLines const& lines, std::string const& path) {
    std::string_view const first = lines.Text(1);
    if (lines.Size() == 0) {
        return "The file is empty or can't be read: get it anew.";
    }
    if (first.starts_with("\x1F\x8B")) {
        return "The file is compressed: gunzip -c " + PeopleText::ForShell(path) +
               " > NEW.ppd makes one that can be read.";
    }
    if (first.starts_with("\xEF\xBB\xBF")) {
        return "Take out the byte order mark, the bytes EF BB BF at the beginning.";
    }
    return {};
}

bool IsOfReading(short code) {
    return code == 18 || code == 28;
}

bool IsOfLayout(short code) {
    return code >= 25 && code <= 27;
}

LintFinding FindingOf(PPDXErrorObj const& error, PlacedPPD const& ppd, std::string const& path) {
    short const code = error.Code();
    FileLines const& lines = ppd.Lines();
    std::string help = Text(ErrorRemedyOf(code));
    if (IsOfLayout(code) && !LintChecks::IsExtended(ppd)) {
        help += " For an ordinary PPD zubprint adopt does it.";
    }
    std::string const beginning = RemedyOfBeginning(lines, path);
    return {lines.NumberAt(error.Place()),
            Severity::kError,
            code,
            Text(error.Keyword()),
            Text(error.Description()),
            IsOfReading(code) && !beginning.empty() ? beginning : help,
            error.IsFatal()};
}

std::string LinesBehind(long count) {
    return std::to_string(count) + (count == 1 ? " line behind it" : " lines behind it");
}

// Why reading ended ahead of the end of the file.
LintFinding EndFinding(FileLines const& lines, long place) {
    long const line = lines.NumberAt(place);
    std::string_view const text = lines.Text(line);
    bool const isLong = text.size() > static_cast<std::size_t>(PPDStream::kLineLength);
    std::string const left = LinesBehind(lines.Count() - line);
    if (isLong) {
        return {line,
                Severity::kWarning,
                std::nullopt,
                "",
                "Reading ends here: the line has " + std::to_string(text.size()) + " bytes, " +
                    std::to_string(PPDStream::kLineLength) + " are allowed. It and " + left +
                    " count for nothing.",
                "Break the line: PostScript in quotes may go on in the next one."};
    }
    return {line,
            Severity::kWarning,
            std::nullopt,
            "",
            "Reading ends here, at a byte FF. The line and " + left + " count for nothing.",
            "Write the character as <FF>, or take it out."};
}

}  // namespace

bool LintChecks::IsExtended(PlacedPPD const& ppd) {
    return FirstLineWith(ppd.Lines(), "*%ZU") > 0;
}

std::string LintChecks::Sentence(std::string const& text) {
    return text.ends_with('?') ? text : text + ".";
}

std::string LintChecks::OpenedIn(std::string_view line) {
    constexpr std::string_view kOpeners[] = {"*OpenUI", "*ZUOpenUI", "*BeginUI", "*JCLOpenUI"};
    for (std::string_view const opener : kOpeners) {
        if (line.starts_with(opener)) {
            line.remove_prefix(opener.size());
            line.remove_prefix(std::min(line.find_first_not_of(": \t"), line.size()));
            return std::string(line.substr(0, line.find_first_of("/: \t")));
        }
    }
    return {};
}

void LintChecks::Reading(PlacedPPD& ppd, std::string const& path, LintFindings& findings) {
    FileLines const& lines = ppd.Lines();
    bool fatal = false;
    bool isRead = true;
    PPDXErrors* const errors = ppd.GetErrors();
    for (PPDXErrorObj* error = FirstError(errors); error != nullptr; error = NextError(errors)) {
        findings.push_back(FindingOf(*error, ppd, path));
        fatal |= error->IsFatal();
        isRead &= !IsOfReading(error->Code());
    }
    if (!isRead) {  // what such a file doesn't have is no news
        std::erase_if(findings, [](LintFinding const& finding) {
            return finding.code && IsOfLayout(*finding.code);
        });
    }
    if (!ppd.IsValidPPD() && !fatal) {
        std::string const remedy = RemedyOfBeginning(lines, path);
        findings.push_back(
            {1, Severity::kError, std::nullopt, "",
             "The file doesn't begin with *PPD-Adobe: \"4.3\".",
             remedy.empty() ? "Take out what stands ahead of it, blank lines too." : remedy});
    }
    if (fatal || !ppd.IsValidPPD()) {
        return;
    }
    if (ppd.ReadUpTo() < static_cast<long>(lines.Size())) {
        findings.push_back(EndFinding(lines, ppd.ReadUpTo()));
    } else if (!lines.IsWhole()) {
        findings.push_back({lines.Count(), Severity::kWarning, std::nullopt, "",
                            "The last line isn't read: it has no line end.",
                            "Write a line end behind it."});
    }
}

void LintChecks::Use(PlacedPPD& ppd, std::string const& path, LintFindings& findings) {
    FileLines const& lines = ppd.Lines();
    if (!IsExtended(ppd)) {
        findings.push_back(
            {1, Severity::kWarning, std::nullopt, "",
             "The file has nothing of the extension grammar: none of its options "
             "is used.",
             "zubprint adopt " + PeopleText::ForShell(path) + " > NEW.ppd writes one that has."});
    }
    PrinterListFile const printers(
        HostFiles::URL(HostFiles::BuiltBundle(false) + "/Contents", true),
        kCFPropertyListImmutable);
    CFArrayRef const names = printers.PCFileNames();
    if (names == nullptr || PPDX::ValidateFileName(HostFiles::URL(path, false), names, nullptr)) {
        return;
    }
    std::vector<std::string> known;
    for (CFIndex index = 0; index < CFArrayGetCount(names); ++index) {
        known.push_back(
            JsonText::ToUTF8(static_cast<CFStringRef>(CFArrayGetValueAtIndex(names, index))));
    }
    findings.push_back({std::max(1L, FirstLineWith(lines, "*PCFileName")), Severity::kWarning,
                        std::nullopt, "*PCFileName",
                        "zubprint print refuses this file: its *PCFileName isn't one of the "
                        "plug-in's printers.",
                        "The name must hold " + Suggestions::List(known, "or") +
                            " and lie in the first 4096 bytes."});
}

long LintChecks::LineOfChoice(PlacedPPD const& ppd, PPDXControl const& control,
                              std::string const& option) {
    FileLines const& lines = ppd.Lines();
    long const first = ppd.LineOf(control);
    std::string const head = Text(control.Keyword()) + " " + option;
    for (long number = first; number <= lines.Count(); ++number) {
        std::string_view const line = lines.Text(number);
        if (line.starts_with("*CloseUI") || line.starts_with("*ZUCloseUI") ||
            line.starts_with("*EndUI")) {
            break;
        }
        if (line.starts_with(head) &&
            (line.size() == head.size() ||
             std::string_view("/: \t").find(line[head.size()]) != std::string_view::npos)) {
            return number;
        }
    }
    return first;
}

namespace {

std::set<std::string> MentionedKeywords(PlacedPPD& ppd) {
    std::set<std::string> keywords;
    for (PlacedPPD::Rule const& rule : ppd.Rules()) {
        keywords.insert(rule.key1);
        keywords.insert(rule.key2);
    }
    PPDXShortcuts* const shortcuts = ppd.GetShortcuts();
    for (PPDXControl* control = FirstShortcut(shortcuts); control != nullptr;
         control = NextShortcut(shortcuts)) {
        keywords.insert(Text(control->Keyword()));
    }
    return keywords;
}

// The choices that people see by their keyword only.
std::vector<std::string> NamelessChoices(PPDXControl& control) {
    std::vector<std::string> nameless;
    if (auto* const popup = dynamic_cast<PPDXPopupControl*>(&control)) {
        for (_PopupItem* item = popup->FirstItem(); item != nullptr; item = popup->NextItem()) {
            CFStringRef const name = item->LocalName();
            if (name == nullptr || CFStringGetLength(name) == 0) {
                nameless.push_back(Text(item->Keyword()));
            }
        }
    } else if (auto* const boolean = dynamic_cast<PPDXBooleanControl*>(&control)) {
        if (boolean->TrueDisplayText() == nullptr) {
            nameless.emplace_back("True");
        }
        if (boolean->FalseDisplayText() == nullptr) {
            nameless.emplace_back("False");
        }
    }
    return nameless;
}

std::string AnnouncedIn(std::string_view line) {
    constexpr std::string_view kFlags = "*%ZUBFlags";
    if (!line.starts_with(kFlags)) {
        return {};
    }
    line.remove_prefix(kFlags.size());
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    return std::string(line.substr(0, line.find_first_of(" \t:")));
}

// Options that are announced and neither there nor named by an error.
void AddDropped(PlacedPPD& ppd, LintFindings& findings) {
    std::set<long> explained;
    std::set<std::string> named;
    for (LintFinding const& finding : findings) {
        explained.insert(finding.line);
        named.insert(finding.code ? finding.keyword : "");
    }
    for (PPDXControl* const control : ControlNames::All(ppd)) {
        explained.insert(ppd.LineOf(*control));
    }
    FileLines const& lines = ppd.Lines();
    for (long number = 1; number < lines.NumberAt(ppd.ReadUpTo()); ++number) {
        std::string const keyword = AnnouncedIn(lines.Text(number));
        if (!keyword.empty() && explained.count(number) == 0 && named.count(keyword) == 0) {
            findings.push_back({number, Severity::kWarning, std::nullopt, keyword,
                                "This option is dropped.",
                                "Its block must follow at once, without a blank line, to its "
                                "closing line, and *%ZUVersion, above 2, must stand ahead of it."});
        }
    }
}

}  // namespace

void LintChecks::Options(PlacedPPD& ppd, LintFindings& findings) {
    DisplayOptionsScope const all(kDisplayAll);
    AddDropped(ppd, findings);
    std::set<std::string> mentioned = MentionedKeywords(ppd);
    for (LintFinding const& finding : findings) {  // or told to be in no place already
        if (finding.code == 29 || finding.code == 21) {
            mentioned.insert(finding.keyword);
        }
    }
    for (PPDXControl* const control : ControlNames::All(ppd)) {
        std::string const keyword = Text(control->Keyword());
        bool const isOffered = control->Type() != kSpecialOptionType;
        if (isOffered && control->GetParent() == nullptr && mentioned.count(keyword) == 0) {
            findings.push_back({ppd.LineOf(*control), Severity::kNote, std::nullopt, keyword,
                                "No group, rule or shortcut mentions this option: nobody sees it.",
                                "Give it a *%ZUBGroup line, or a *%ZUShortcut."});
        }
        std::vector<std::string> nameless = NamelessChoices(*control);
        if (nameless.empty()) {
            continue;
        }
        long const line = LineOfChoice(ppd, *control, nameless.front());
        std::string const count = std::to_string(nameless.size());
        bool const isLonger = nameless.size() > kMostNamed;
        nameless.resize(std::min(nameless.size(), kMostNamed));
        std::ranges::transform(nameless, nameless.begin(),
                               [](std::string const& name) { return PeopleText::Bytes(name); });
        findings.push_back({line, Severity::kWarning, std::nullopt, keyword,
                            count + (count == "1" ? " choice" : " choices") +
                                " without a name for people: " +
                                Suggestions::List(nameless, isLonger ? "," : "and") +
                                (isLonger ? " ..." : "") + ".",
                            "Write it behind a slash: " + PeopleText::Bytes(keyword) + " " +
                                nameless.front() + "/Name: ..."});
    }
}
