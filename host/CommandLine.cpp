// SPDX-License-Identifier: Apache-2.0
#include "host/CommandLine.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/JsonText.h"
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
                    return "'" + KeywordIn(text) + "' isn't KEY=VALUE";
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

void DescribeReading(CLI::App& app, ReadOptions& options) {
    app.add_option("PPD", options.ppd, "The PPD to read")->required();
    app.add_option("--parse-options", options.parseOptions,
                   "What is taken in: 1 orphans, 2 hidden elements, 3 both, 0 neither")
        ->check(CLI::Range(0, 3))
        ->capture_default_str();
    AddSettings(app, options.settings);
}

void DescribeInspect(CLI::App& app, InspectOptions& options) {
    DescribeReading(app, options);
    app.add_option("--accept", options.accepted,
                   "An accepted *PCFileName fragment; may be repeated; without it every file is "
                   "accepted")
        ->allow_extra_args(false)
        ->check(TextCheck());
    app.add_option("--extensions", options.extensions,
                   "Which job note flags are known: 0, 1 or 2 fewer, any other number all")
        ->capture_default_str();
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

CLI::Option* AddLayout(CLI::App& app, std::optional<PageLayout>& layout) {
    auto const read = [](std::string const& text) -> std::optional<PageLayout> {
        PageLayout pages{};
        char const* const end = text.data() + text.size();
        auto const rows = std::from_chars(text.data(), end, pages.rows);
        if (rows.ec != std::errc() || rows.ptr == end || *rows.ptr != 'x') {
            return std::nullopt;
        }
        auto const columns = std::from_chars(rows.ptr + 1, end, pages.columns);
        bool const whole = columns.ec == std::errc() && columns.ptr == end;
        return whole && pages.rows > 0 && pages.columns > 0 ? std::optional(pages) : std::nullopt;
    };
    return app
        .add_option_function<std::string>(
            "--layout", [&layout, read](std::string const& text) { layout = read(text); },
            "Pages on a sheet, rows x columns")
        ->check(CLI::Validator(
            [read](std::string& text) {
                return read(text) ? std::string() : "'" + text + "' isn't ROWSxCOLUMNS";
            },
            ""))
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

void DescribePrint(CLI::App& app, PrintOptions& options) {
    app.add_option("--ppd", options.ppd, "The printer's PPD")->required()->type_name("PPD");
    CLI::Option* const document =
        app.add_option("DOCUMENT", options.document,
                       "The PostScript document that is printed; - is standard input");
    app.add_option("-o", options.output,
                   "Write the document with the job merged into it; - is standard output, to which "
                   "nothing else goes then")
        ->needs(document)
        ->type_name("FILE");
    AddSettings(app, options.settings);
    app.add_flag("--strict", options.strict,
                 "Write nothing, with status 1, when a choice isn't taken as it is or stands "
                 "against another");
    app.add_flag(
        "--pairs", options.pairs,
        "Print the pairs of the job data file as JSON, [{\"site\": 81, \"text\": \"...\"}], "
        "instead of its path, each byte as the character of its number; no file stays then");
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
        ->check(CLI::Validator(
            [](std::string& text) {
                return text.empty() ? std::string("No folder is named") : std::string();
            },
            ""))
        ->type_name("DIR");
    app.add_option("--commits", options.commits,
                   "Commit so often in one dialog; what the last one wrote is printed")
        ->check(CLI::Range(1, INT32_MAX))
        ->type_name("N")
        ->capture_default_str();
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
    DescribeUnpack(*add(Command::kUnpack, "unpack",
                        "Print what a packed user authentication record holds, as JSON"),
                   mUnpack);
    DescribeDecryptNote(
        *add(Command::kDecryptNote, "decrypt-note", "Print the plain text of an enciphered note"),
        mDecryptNote);
    try {
        app.parse(argc, argv);
    } catch (CLI::CallForHelp const&) {
        out << app.help();
        return ExitStatus::kDone;
    } catch (CLI::ParseError const& error) {
        err << Outcome::Line(error.what());
        return ExitStatus::kUsage;
    }
    return std::nullopt;
}
