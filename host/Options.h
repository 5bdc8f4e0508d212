// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ZUBUtils/PPDUtils/WipedText.h"

// One choice of the user: a control's keyword, bytes as they stand in the PPD, and its value in
// UTF-8, which may be a secret.
struct ControlSetting {
    std::string keyword;
    WipedText value;
    std::string file = {};  // what SettingFiles reads the value from; empty when it is told here
};

// Which PPD a command reads, and what is set in it before anything is asked.
struct ReadOptions {
    std::string ppd;
    std::vector<std::string> accepted;  // *PCFileName fragments; none accept every file
    int parseOptions = 3;               // 0 to 3
    std::vector<ControlSetting> settings;
};

// What `zubprint inspect` was told.
struct InspectOptions : ReadOptions {
    int extensions = -1;   // 0, 1, 2 or any other number for all
    bool rebuilt = false;  // print what comes back from an archive of the PPD
};

// What `zubprint constraints` was told.
struct ConstraintsOptions : ReadOptions {
    bool customPaper = false;
};

// A keyword and one of its options, or all of them; bytes as they stand in the PPD.
struct OptionChoice {
    std::string keyword;
    std::optional<std::string> option;
};

// What `zubprint solve` was told.
struct SolveOptions : ReadOptions {
    std::vector<OptionChoice> change;  // each with an option
    std::vector<OptionChoice> locked;
    bool keepDelta = false;
    bool test = false;  // search for nothing
};

// What `zubprint list` was told.
struct ListOptions : ReadOptions {
    bool all = false;  // hidden options and orphans too
    std::string word;  // only options that it is a part of; empty for all
    bool json = false;
};

// What `zubprint why` and `zubprint fix` were told.
struct ChoiceOptions : ReadOptions {
    OptionChoice choice;  // with an option
    bool json = false;
};

// What `zubprint lint` was told.
struct LintOptions {
    std::string ppd;
    int parseOptions = 3;  // 0 to 3
    int extensions = -1;   // as for inspect
    bool json = false;
    bool strict = false;  // anything above a note is a failure
};

// What `zubprint adopt` was told.
struct AdoptOptions {
    std::string ppd;
};

// What `zubprint unpack` was told.
struct UnpackOptions {
    std::string text;  // the record, "-" for standard input
};

// What `zubprint decrypt-note` was told.
struct DecryptNoteOptions {
    std::string ppd;
    std::string digits;  // hexadecimal, "-" for standard input
    bool isAES = false;  // the note asks for AES where the PPD names no algorithm
};

// Pages on a sheet.
struct PageLayout {
    int rows;
    int columns;
};

// What `zubprint print` was told. Texts are UTF-8.
struct PrintOptions {
    std::string ppd;
    std::vector<ControlSetting> settings;  // made after Initialize, in this order
    bool strict = false;  // a choice that is warned of ends the run before anything is written
    bool fix = false;     // the changes that the choices need are made
    bool dryRun = false;  // the job is printed, and nothing stays on disk
    bool pairs = false;
    std::string preset;      // a file with choices, made ahead of the settings; empty for none
    std::string savePreset;  // the file that the choices go to; empty for none
    std::string printer = "Demo";
    // None: the PPD's *ModelName, else what the tickets file has, else "Demo".
    std::optional<std::string> makeAndModel;
    std::string deviceURI = "ipp://localhost/printers/Demo";
    std::string processName = "zubprint";
    std::string bundleID = "com.zub.print";
    bool compiledPPD = true;
    bool customPaper = false;
    std::string bundle;  // empty: the built one
    int commits = 1;

    std::string document;  // empty for none, "-" for standard input
    // Where the document goes with the job in it; empty for nowhere, "-" for standard output.
    std::string output;

    std::string tickets;  // a file that keeps the tickets between runs; empty for none
    // What the operating system's own panes would put into the tickets. None leaves what the
    // tickets file has, or a default.
    std::optional<int> orientation;
    std::optional<PageLayout> layout;
    std::optional<std::string> paperFeed;  // a keyword
    std::optional<std::string> paper;
    std::optional<int> copies;
    std::optional<std::string> jobName;

    std::optional<std::string> address;  // for the printer's record, two-way communication on
    bool noAddress = false;              // an empty one, two-way communication off
    // For the printer's record, in the place of all that it has; none leave those.
    std::vector<std::string> watermarks;
    std::optional<int> selectedWatermark;  // counted from 0; -1 for none
    // The file whose presence makes all printers share one set of choices.
    std::string commonPresets = "/CommonPresets.txt";
};

// What `zubprint dialog` was told.
struct DialogOptions : PrintOptions {
    std::string script;  // a file's name, "-" for standard input
    // The main display, in points.
    double displayWidth = 1440;
    double displayHeight = 900;
    int systemMinorVersion = 5;
};
