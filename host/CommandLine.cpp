// SPDX-License-Identifier: Apache-2.0
#include "host/CommandLine.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/JsonText.h"
#include "host/Suggestions.h"
#include "host/WatermarkFault.h"
#include "platform/CFRef.h"

namespace {

constexpr char const* kSetHelp = "Set the control KEY to VALUE; may be repeated, in order";

bool IsUTF8(std::string const& text) {
    return static_cast<bool>(JsonText::FromUTF8(text));
}

CLI::Validator TextCheck() {
    return {[](std::string& text) {
                return IsUTF8(text) ? std::string() : std::string("The text isn't UTF-8");
            },
            ""};
}

CLI::Validator NameCheck() {
    return {[](std::string& text) {
                return text.empty() ? std::string("The name is empty") : std::string();
            },
            ""};
}

CLI::Validator URICheck() {
    return {[](std::string& text) {
                CFRef<CFURLRef> const uri(
                    CFURLCreateWithString(nullptr, JsonText::FromUTF8(text), nullptr));
                return uri ? std::string() : "'" + text + "' is no URI";
            },
            ""};
}

// KEY=TEXT or KEY alone.
OptionChoice CutAtEquals(std::string const& text) {
    std::size_t const at = text.find('=');
    if (at == std::string::npos) {
        return {text, std::nullopt};
    }
    return {text.substr(0, at), text.substr(at + 1)};
}

// What of an argument without its "=" can be told: the rest may be a password.
std::string KeywordIn(std::string const& text) {
    std::size_t const length = text.starts_with('*') ? text.find_first_of(" =:") : 0;
    return length < text.size() ? text.substr(0, length) + "..." : text;
}

// Only the value is text; a keyword is whatever bytes the PPD has.
CLI::Validator SettingCheck() {
    return {[](std::string& text) {
                auto const [keyword, value] = CutAtEquals(text);
                if (keyword.empty() || !value) {
                    return "'" + KeywordIn(text) +
                           "' isn't KEY=VALUE, as in Duplex=None; zubprint list shows both";
                }
                return IsUTF8(*value) ? std::string() : std::string("The value isn't UTF-8");
            },
            ""};
}

CLI::Option* AddText(CLI::App& app, std::string const& name, std::string& text,
                     std::string const& help) {
    return app.add_option(name, text, help)->check(TextCheck())->type_name("TEXT");
}

// Hands the texts given for an option to `take` when the arguments have been read.
template <typename Take>
CLI::Option* AddTexts(CLI::App& app, std::string const& name, std::string const& help, Take take) {
    return app.add_option_function<std::vector<std::string>>(name, take, help);
}

CLI::Validator SettingFileCheck() {
    return {[](std::string& text) {
                auto const [keyword, file] = CutAtEquals(text);
                bool const isFile = !keyword.empty() && file && !file->empty();
                return isFile ? std::string() : "'" + KeywordIn(text) + "' isn't KEY=FILE";
            },
            ""};
}

// Takes the choices of both options in the order in which they stand among the arguments.
void TakeSettings(CLI::App const& app, CLI::Option const* fromFile,
                  std::vector<CLI::Option const*> const& options,
                  std::vector<ControlSetting>& settings) {
    std::map<CLI::Option const*, std::size_t> taken;
    for (CLI::Option const* const option : app.parse_order()) {
        if (std::find(options.begin(), options.end(), option) == options.end()) {
            continue;
        }
        auto const [keyword, rest] = CutAtEquals(option->results().at(taken[option]++));
        std::string const text = rest.value_or("");
        settings.push_back(option == fromFile ? ControlSetting{keyword, {}, text}
                                              : ControlSetting{keyword, WipedText(text)});
    }
}

void AddSettings(CLI::App& app, std::vector<ControlSetting>& settings) {
    // One argument for each, so that what follows it stays what it is.
    CLI::Option const* const set = app.add_option("--set", kSetHelp)
                                       ->expected(1)
                                       ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
                                       ->check(SettingCheck())
                                       ->type_name("KEY=VALUE");
    CLI::Option const* const fromFile =
        app.add_option("--set-from",
                       "As --set, with the value from a file, which nobody sees among the "
                       "arguments; - is standard input; a line end at its end is left off")
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->check(SettingFileCheck())
            ->type_name("KEY=FILE");
    app.parse_complete_callback([&app, &settings, set, fromFile] {
        TakeSettings(app, fromFile, {set, fromFile}, settings);
    });
}

CLI::Validator ChoiceCheck(bool needsOption) {
    return {[needsOption](std::string& text) {
                auto const [keyword, option] = CutAtEquals(text);
                bool const isChoice = !keyword.empty() && (option || !needsOption);
                return isChoice ? std::string()
                                : "'" + text + "' isn't KEY" + (needsOption ? "" : " or KEY") +
                                      "=OPTION";
            },
            ""};
}

CLI::Option* AddChoices(CLI::App& app, std::string const& name, std::string const& help,
                        bool needsOption, std::vector<OptionChoice>& choices) {
    auto const take = [&choices](std::vector<std::string> const& texts) {
        for (std::string const& text : texts) {
            choices.push_back(CutAtEquals(text));
        }
    };
    return AddTexts(app, name, help, take)->check(ChoiceCheck(needsOption));
}

void AddParseOptions(CLI::App& app, int& options) {
    app.add_option("--parse-options", options,
                   "What is taken in: 1 orphans, 2 hidden elements, 3 both, 0 neither")
        ->check(CLI::Range(0, 3))
        ->capture_default_str();
}

void AddExtensions(CLI::App& app, int& level) {
    app.add_option("--extensions", level,
                   "Which job note flags are known: 0, 1 or 2 fewer, any other number all")
        ->capture_default_str();
}

void DescribeReading(CLI::App& app, ReadOptions& options) {
    app.add_option("PPD", options.ppd, "The PPD to read")->required();
    AddParseOptions(app, options.parseOptions);
    AddSettings(app, options.settings);
}

void DescribeInspect(CLI::App& app, InspectOptions& options) {
    DescribeReading(app, options);
    app.add_option("--accept", options.accepted,
                   "An accepted *PCFileName fragment; may be repeated; without it every file is "
                   "accepted")
        ->allow_extra_args(false)
        ->check(TextCheck());
    AddExtensions(app, options.extensions);
    app.add_flag("--rebuilt", options.rebuilt,
                 "Save what was read into an archive and print what comes back from that");
}

void AddCustomPaper(CLI::App& app, bool& customPaper) {
    app.add_flag("--custom-paper", customPaper,
                 "The paper of the page format is no paper of the PPD");
}

void DescribeConstraints(CLI::App& app, ConstraintsOptions& options) {
    DescribeReading(app, options);
    AddCustomPaper(app, options.customPaper);
}

void DescribeSolve(CLI::App& app, SolveOptions& options) {
    DescribeReading(app, options);
    AddChoices(app, "CHANGE", "The options that are proposed as one change", true, options.change)
        ->type_name("KEY=OPTION");
    AddChoices(app, "--lock", "Leave this option, or all options of KEY, alone; may be repeated",
               false, options.locked)
        ->allow_extra_args(false)
        ->type_name("KEY[=OPTION]");
    app.add_flag("--keep-delta", options.keepDelta, "Don't give proposed keys another option");
    app.add_flag("--test", options.test, "Only tell what the change runs into");
}

void AddJson(CLI::App& app, bool& json) {
    app.add_flag("--json", json, "Print one JSON document instead of text");
}

void DescribeList(CLI::App& app, ListOptions& options) {
    DescribeReading(app, options);
    app.add_option("WORD", options.word, "Only options that have this in a name or a keyword")
        ->check(TextCheck());
    app.add_flag("--all", options.all, "Hidden options too, and those outside of all groups");
    AddJson(app, options.json);
}

void DescribeChoice(CLI::App& app, ChoiceOptions& options) {
    DescribeReading(app, options);
    app.add_option_function<std::string>(
           "CHOICE", [&options](std::string const& text) { options.choice = CutAtEquals(text); },
           "The choice that is asked about")
        ->required()
        ->check(ChoiceCheck(true))
        ->type_name("KEY=OPTION");
    AddJson(app, options.json);
}

void DescribeLint(CLI::App& app, LintOptions& options) {
    app.add_option("PPD", options.ppd, "The PPD to look at")->required();
    AddParseOptions(app, options.parseOptions);
    AddExtensions(app, options.extensions);
    app.add_flag("--strict", options.strict, "Status 1 when anything above a note is found");
    AddJson(app, options.json);
}

void DescribeAdopt(CLI::App& app, AdoptOptions& options) {
    app.add_option("PPD", options.ppd, "An ordinary PPD of any PostScript printer")->required();
}

void DescribePreset(CLI::App& app, PrintOptions& options) {
    app.add_option("--preset", options.preset,
                   "Make the choices that were saved in this file, of this printer or another, "
                   "ahead of those of --set")
        ->check(NameCheck())
        ->type_name("FILE");
}

void DescribePrinter(CLI::App& app, PrintOptions& options) {
    AddText(app, "--printer", options.printer, "Printer name")->capture_default_str();
    app.add_option("--make-and-model", options.makeAndModel,
                   "Make and model; without it the PPD's *ModelName, else the tickets file's, "
                   "else Demo")
        ->check(TextCheck());
    app.add_option("--device-uri", options.deviceURI, "Device URI")
        ->check(URICheck())
        ->type_name("URI")
        ->capture_default_str();
    app.add_flag_callback(
        "--no-compiled-ppd", [&options] { options.compiledPPD = false; },
        "Leave the compiled PPD item out of the printer info ticket");
}

// Two numbers from 1 with an x between them.
std::optional<std::pair<int, int>> PairOf(std::string const& text) {
    int first = 0;
    int second = 0;
    char const* const end = text.data() + text.size();
    auto const one = std::from_chars(text.data(), end, first);
    if (one.ec != std::errc() || one.ptr == end || *one.ptr != 'x') {
        return std::nullopt;
    }
    auto const two = std::from_chars(one.ptr + 1, end, second);
    bool const isWhole = two.ec == std::errc() && two.ptr == end;
    return isWhole && first > 0 && second > 0 ? std::optional(std::pair(first, second))
                                              : std::nullopt;
}

CLI::Validator PairCheck(std::string const& form) {
    return {[form](std::string& text) {
                return PairOf(text) ? std::string() : "'" + text + "' isn't " + form;
            },
            ""};
}

CLI::Option* AddLayout(CLI::App& app, std::optional<PageLayout>& layout) {
    auto const take = [&layout](std::string const& text) {
        auto const pages = PairOf(text);
        layout = PageLayout{pages->first, pages->second};
    };
    return app
        .add_option_function<std::string>("--layout", take, "Pages on a sheet, rows x columns")
        ->check(PairCheck("ROWSxCOLUMNS"))
        ->type_name("RxC");
}

void DescribeTickets(CLI::App& app, PrintOptions& options) {
    app.add_option("--tickets", options.tickets,
                   "Keep the tickets in this file: read before the dialog if it exists, written "
                   "after it")
        ->type_name("FILE");
    app.add_option("--orientation", options.orientation,
                   "Orientation of the page: 1 and 3 portrait, 2 and 4 landscape");
    AddLayout(app, options.layout);
    app.add_option("--paper-feed", options.paperFeed, "Keyword of the paper source")
        ->check(TextCheck())
        ->type_name("KEYWORD");
    app.add_option("--paper", options.paper, "Name of the paper")
        ->check(TextCheck())
        ->type_name("NAME");
    app.add_option("--copies", options.copies, "Number of copies")->check(CLI::Range(1, INT32_MAX));
    app.add_option("--job-name", options.jobName, "Name of the job")->check(TextCheck());
}

void DescribeRecord(CLI::App& app, PrintOptions& options) {
    CLI::Option* const address =
        app.add_option("--address", options.address,
                       "Give the printer's record this address, with two-way communication on")
            ->check(TextCheck())
            ->type_name("HOST");
    app.add_flag("--no-address", options.noAddress,
                 "Give the printer's record an empty address, with two-way communication off")
        ->excludes(address);
    app.add_option("--common-presets", options.commonPresets,
                   "The file whose presence makes all printers share one set of choices")
        ->type_name("FILE")
        ->capture_default_str();
}

void DescribeWatermarks(CLI::App& app, PrintOptions& options) {
    AddTexts(
        app, "--watermark",
        "Give the printer's record this watermark; may be repeated, and the first one replaces "
        "what is there",
        [&options](std::vector<std::string> const& records) { options.watermarks = records; })
        ->allow_extra_args(false)
        ->check(CLI::Validator([](std::string& record) { return WatermarkFault(record); }, ""))
        ->type_name("RECORD");
    app.add_option(
           "--select-watermark", options.selectedWatermark,
           "Select a watermark of the printer, counted from 0, on the pages that its record "
           "tells; -1 for none")
        ->check(CLI::Range(-1, INT32_MAX))
        ->type_name("N");
}

// What print and dialog have in common.
void DescribeSession(CLI::App& app, PrintOptions& options, std::string const& pairsHelp) {
    app.add_option("--ppd", options.ppd, "The printer's PPD")->required()->type_name("PPD");
    AddSettings(app, options.settings);
    app.add_flag("--strict", options.strict,
                 "Write nothing, with status 1, when a choice isn't taken as it is or stands "
                 "against another");
    app.add_flag("--fix", options.fix,
                 "Make the further changes that the choices need, and say which");
    DescribePreset(app, options);
    app.add_flag("--pairs", options.pairs, pairsHelp);
    DescribePrinter(app, options);
    DescribeTickets(app, options);
    DescribeRecord(app, options);
    DescribeWatermarks(app, options);
    AddText(app, "--process-name", options.processName, "Name of the printing application")
        ->capture_default_str();
    AddText(app, "--bundle-id", options.bundleID, "Bundle identifier of the printing application")
        ->capture_default_str();
    AddCustomPaper(app, options.customPaper);
    app.add_option("--bundle", options.bundle, "The plug-in bundle; the built one without it")
        ->check(NameCheck())
        ->type_name("DIR");
}

void DescribePrint(CLI::App& app, PrintOptions& options) {
    DescribeSession(
        app, options,
        "Print the pairs of the job data file as JSON, [{\"site\": 81, \"text\": \"...\"}], "
        "instead of its path, each byte as the character of its number; no file stays then");
    CLI::Option* const document =
        app.add_option("DOCUMENT", options.document,
                       "The PostScript document that is printed; - is standard input");
    app.add_option("-o", options.output,
                   "Write the document with the job merged into it; - is standard output, to which "
                   "nothing else goes then")
        ->needs(document)
        ->type_name("FILE");
    app.add_flag("--dry-run", options.dryRun,
                 "Print the job, or the document with the job in it where -o is given, and leave "
                 "nothing on disk");
    app.add_option("--save-preset", options.savePreset, "Save the choices in this file")
        ->check(NameCheck())
        ->type_name("FILE");
    app.add_option("--commits", options.commits,
                   "Commit so often in one dialog; what the last one wrote is printed")
        ->check(CLI::Range(1, INT32_MAX))
        ->type_name("N")
        ->capture_default_str();
}

void DescribeDialog(CLI::App& app, DialogOptions& options) {
    DescribeSession(app, options,
                    "Tell the pairs of each job besides its path, [{\"site\": 81, \"text\": "
                    "\"...\"}], each byte as the character of its number; the file stays");
    app.add_option("--script", options.script,
                   "Act out the lines of this file, each answered by a JSON object; - is standard "
                   "input")
        ->required()
        ->type_name("FILE");
    auto const take = [&options](std::string const& text) {
        auto const size = PairOf(text);
        options.displayWidth = size->first;
        options.displayHeight = size->second;
    };
    app.add_option_function<std::string>("--display", take,
                                         "Size of the main display in points, 1440x900 without it")
        ->check(PairCheck("WIDTHxHEIGHT"))
        ->type_name("WxH");
    app.add_option("--os-minor", options.systemMinorVersion, "The system's minor version")
        ->check(CLI::Range(0, INT32_MAX))
        ->type_name("N")
        ->capture_default_str();
}

// The names by which a command knows its options.
std::vector<std::string> OptionNames(CLI::App& command) {
    std::vector<std::string> names;
    for (CLI::Option const* const option : command.get_options()) {
        for (std::string const& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
        for (std::string const& name : option->get_snames()) {
            names.push_back("-" + name);
        }
    }
    return names;
}

// What follows the name of a command.
std::string FormOf(std::string const& command) {
    struct Form {
        std::string_view command;
        char const* arguments;
    };
    constexpr Form kForms[] = {
        {"inspect", "PPD"},
        {"constraints", "PPD"},
        {"solve", "PPD KEY=OPTION..."},
        {"print", "--ppd PPD [--set KEY=VALUE]... [DOCUMENT -o FILE]"},
        {"dialog", "--ppd PPD --script FILE"},
        {"list", "PPD [WORD]"},
        {"why", "PPD KEY=OPTION"},
        {"fix", "PPD KEY=OPTION"},
        {"lint", "PPD"},
        {"adopt", "PPD > NEW.ppd"},
        {"unpack", "TEXT"},
        {"decrypt-note", "--ppd PPD HEX"},
    };
    auto const* const form = std::ranges::find(kForms, command, &Form::command);
    return "zubprint " + command +
           (form == std::end(kForms) ? "" : std::string(" ") + form->arguments);
}

std::vector<std::string> CommandNames(CLI::App const& app) {
    std::vector<std::string> names;
    for (CLI::App const* const command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

std::string UnknownCommandText(CLI::App const& app, std::vector<std::string> const& arguments) {
    std::vector<std::string> const commands = CommandNames(app);
    std::string const all =
        "; the commands are " + Suggestions::List(commands, "and") + "; see zubprint --help";
    if (arguments.empty()) {
        return "a command is missing" + all;
    }
    auto const later = std::ranges::find_first_of(arguments, commands);
    if (later != arguments.end()) {
        return "the command comes first: " + FormOf(*later) + "; see zubprint " + *later +
               " --help";
    }
    std::string const ask = Suggestions::Ask(arguments.front(), commands);
    return "there is no command '" + arguments.front() + "'" +
           (ask.empty() ? all : ask + " See zubprint --help");
}

// An option that the command doesn't have; empty for none.
std::string UnknownOption(std::vector<std::string> const& arguments,
                          std::vector<std::string> const& names) {
    for (std::string const& argument : arguments) {
        bool const isLong = argument.starts_with("--");
        std::string const name =
            isLong ? argument.substr(0, argument.find('=')) : argument.substr(0, 2);
        if (name.size() > 1 && name.front() == '-' && name != "--" &&
            std::ranges::count(names, name) == 0) {
            return argument.substr(0, argument.find('='));
        }
    }
    return {};
}

// Where to read on.
std::string WithHelp(std::string const& text, std::string const& command) {
    return text + (text.ends_with('?') ? " See" : "; see") + " zubprint " + command + " --help";
}

// What was wrong, what may have been meant, and where to read on.
std::string UsageText(CLI::App& app, std::vector<std::string> arguments,
                      CLI::ParseError const& error) {
    std::vector<std::string> const commands = CommandNames(app);
    if (arguments.empty() || std::ranges::count(commands, arguments.front()) == 0) {
        return UnknownCommandText(app, arguments);
    }
    std::string const command = arguments.front();
    arguments.erase(arguments.begin());
    // Something is missing or too much: a name that was mistyped may be both.
    bool const isMismatch = dynamic_cast<CLI::ExtrasError const*>(&error) != nullptr ||
                            dynamic_cast<CLI::RequiredError const*>(&error) != nullptr;
    if (!isMismatch) {
        return WithHelp(error.what(), command);
    }
    std::vector<std::string> const names = OptionNames(*app.get_subcommand(command));
    std::string const unknown = UnknownOption(arguments, names);
    if (!unknown.empty()) {
        bool const isLetter = unknown.size() == 2;
        return WithHelp(command + " has no option " + unknown +
                            (isLetter ? "" : Suggestions::Ask(unknown, names)),
                        command);
    }
    return WithHelp(error.what() + ("; it is " + FormOf(command)), command);
}

// The help with lines that a terminal shows whole: what is too long goes on below where its
// description begins.
std::string Wrapped(std::string const& help) {
    constexpr std::size_t kWidth = 80;
    constexpr std::size_t kDescription = 30;  // where CLI11 begins descriptions
    std::istringstream lines(help);
    std::string wrapped;
    for (std::string line; std::getline(lines, line);) {
        for (std::size_t margin = 0; line.size() > kWidth; margin = kDescription) {
            std::size_t const blank = line.rfind(' ', kWidth);
            if (blank == std::string::npos || blank <= margin) {
                break;
            }
            wrapped += line.substr(0, blank) + '\n';
            line = std::string(kDescription, ' ') + line.substr(blank + 1);
        }
        wrapped += line + '\n';
    }
    return wrapped;
}

// Whether help is asked for ahead of the command, or as one; prints it then.
bool HelpsFirst(CLI::App& app, std::vector<std::string> const& arguments, std::ostream& out) {
    constexpr std::string_view kHelp[] = {"help", "-h", "--help"};
    if (arguments.empty() || std::ranges::count(kHelp, arguments.front()) == 0) {
        return false;
    }
    std::vector<std::string> const commands = CommandNames(app);
    bool const isOne = arguments.size() > 1 && std::ranges::count(commands, arguments[1]) > 0;
    out << Wrapped(isOne ? app.get_subcommand(arguments[1])->help("zubprint") : app.help());
    return true;
}

void DescribeUnpack(CLI::App& app, UnpackOptions& options) {
    app.add_option("TEXT", options.text,
                   "The record, as it stands behind %%ZUBUATag:; - is standard input")
        ->required();
}

void DescribeDecryptNote(CLI::App& app, DecryptNoteOptions& options) {
    app.add_option("--ppd", options.ppd, "The printer's PPD, which chooses cipher and key")
        ->required()
        ->type_name("PPD");
    app.add_flag("--aes", options.isAES, "The note is one with AESEncrypt");
    app.add_option("HEX", options.digits, "The hexadecimal digits; - is standard input")
        ->required();
}

}  // namespace

std::optional<ExitStatus> CommandLine::Parse(int argc, char const* const* argv, std::ostream& out,
                                             std::ostream& err) {
    CLI::App app("Stands in the print dialog's place: loads the plug-in and drives it", "zubprint");
    app.require_subcommand(1);
    auto const add = [this, &app](Command command, char const* name, char const* help) {
        return app.add_subcommand(name, help)->callback([=, this] { mCommand = command; });
    };
    DescribeInspect(
        *add(Command::kInspect, "inspect", "Print all that came of reading a PPD, as JSON"),
        mInspect);
    DescribeConstraints(*add(Command::kConstraints, "constraints",
                             "Print which choices would conflict with the present selection"),
                        mConstraints);
    DescribeSolve(*add(Command::kSolve, "solve",
                       "Propose a change of options and print what makes it consistent"),
                  mSolve);
    DescribePrint(*add(Command::kPrint, "print",
                       "Run one dialog without a window and print the path of the job data file"),
                  mPrint);
    DescribeList(*add(Command::kList, "list", "Show a printer's options, for a person to read"),
                 mList);
    DescribeChoice(*add(Command::kWhy, "why", "Say what stands against a choice"), mChoice);
    DescribeChoice(*add(Command::kFix, "fix", "Say what a choice needs to be changed with it"),
                   mChoice);
    DescribeLint(*add(Command::kLint, "lint", "Look for all that is wrong with a PPD"), mLint);
    DescribeAdopt(
        *add(Command::kAdopt, "adopt",
             "Print an ordinary PPD in the extension's grammar, so that its options can be used"),
        mAdopt);
    DescribeDialog(*add(Command::kDialog, "dialog",
                        "Open a print dialog and act out a script in it, on a clock of its own"),
                   mDialog);
    DescribeUnpack(*add(Command::kUnpack, "unpack",
                        "Print what a packed user authentication record holds, as JSON"),
                   mUnpack);
    DescribeDecryptNote(
        *add(Command::kDecryptNote, "decrypt-note", "Print the plain text of an enciphered note"),
        mDecryptNote);
    std::vector<std::string> const arguments(argv + std::min(argc, 1), argv + argc);
    if (HelpsFirst(app, arguments, out)) {
        return ExitStatus::kDone;
    }
    try {
        app.parse(argc, argv);
    } catch (CLI::CallForHelp const&) {
        out << Wrapped(app.help());
        return ExitStatus::kDone;
    } catch (CLI::ParseError const& error) {
        err << Outcome::Line(UsageText(app, arguments, error));
        return ExitStatus::kUsage;
    }
    return std::nullopt;
}
