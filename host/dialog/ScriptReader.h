// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Controls.h"

// A control by its identifier, in the front window or in that of a number.
struct ScriptTarget {
    std::optional<std::int32_t> window;
    ControlID id = {0, 0};
};

// A line of a script: its command and what the words behind it say.
struct ScriptLine {
    int number = 0;  // from 1
    std::string command;
    std::optional<ScriptTarget> target;
    std::vector<std::int64_t> numbers;
    std::vector<double> lengths;      // points
    std::optional<std::string> text;  // UTF-8
    OSType code = 0;
    char32_t key = 0;
    std::uint32_t modifiers = 0;
    std::int16_t part = 0;
    bool isOutside = false;
    double seconds = 0;
};

// How a command is written.
struct ScriptForm {
    char const* name;
    // Which words it takes, a letter each:
    //
    //     T  [@window/]code:id       t  the same, or nothing
    //     C  code, up to four letters
    //     N  number                  R  one or more numbers
    //     n  number of 31 bits       W  text
    //     I  number, or quoted text  L  two lengths or nothing
    //     S  seconds, to a thousandth, at most 3600
    //     K  key                     M  modifiers, as many as there are
    //     P  part=number or nothing  O  out or nothing
    char const* words;
    char const* usage;  // the same for a person; empty for none
};

// Where lines come from; the stream must outlive who reads it.
struct ScriptSource {
    std::istream& stream;
    std::string name;  // for messages
};

// Reads the script of a dialog, line by line:
//
//     line   = command *( SP word )
//     word   = bare / json-string           ; bare: no blank, no quote
//
// in UTF-8, at most 4,096 bytes a line. Empty lines and lines that begin with # are passed over.
// A line is read from the stream when it is asked for, and nothing beyond it.
class ScriptReader {
  public:
    using FormOf = ScriptForm const* (*)(std::string_view command);  // null for no command

    ScriptReader(ScriptSource source, FormOf formOf)
        : mSource(std::move(source)), mFormOf(formOf) {}

    // A line that a failed read has cut is none.
    enum class Found { kLine, kEnd, kWrongLine, kUnreadable };
    Found Next(ScriptLine& line);
    // About the wrong line, "line N: ...", or why the script can't be read.
    std::string const& Fault() const { return mFault; }

  private:
    Found ReadText(std::string& text);
    int NextByte();
    void CheckBytes(std::string const& text) const;
    void Take(std::string const& text, ScriptLine& line) const;
    bool Parse(std::string const& text, ScriptLine& line);

    ScriptSource mSource;
    FormOf mFormOf;
    int mError = 0;  // the system's, of the read that failed last; 0 for the end
    int mNumber = 0;
    std::string mFault;
};
