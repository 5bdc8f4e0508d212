// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// An ordinary PPD, read for what can be chosen in it. Texts are bytes as they stand in the file;
// code has line feeds between its lines and none at its end. Lines count from 1.
//
// The grammar is that of PPD 4.3 (Adobe Systems, technical note 5003, 1996), taken as widely as
// files in use take it.
struct PlainPPD {
    struct Choice {
        std::string keyword;
        std::string text;  // empty for none
        std::string code;
        long line = 1;
    };
    struct Option {
        std::string keyword;         // with its star
        std::string text;            // empty for none
        std::string type;            // PickOne, PickMany or Boolean
        std::size_t group = 0;       // in `groups`
        bool isJobLanguage = false;  // its code is for the printer's job language, not PostScript
        long line = 1;
        std::string byDefault;
        double order = 0;       // in which code goes into a job
        std::string orderLine;  // empty for none
        std::vector<Choice> choices;
    };
    struct Group {
        std::string keyword;  // empty for what lies in no group
        std::string text;
        long line = 1;
    };
    struct Rule {
        std::vector<std::pair<std::string, std::string>> pairs;  // blank: every option
        long line = 1;
    };
    struct Header {
        std::string value;  // without quotes
        long line = 1;
    };
    // What is wrong with a line, for people.
    struct Trouble {
        long line;
        std::string text;
    };
    // What is neither of an option nor a rule, with all its lines.
    struct Statement {
        std::string keyword;  // with its star; empty for a comment
        std::string text;
        long line;
    };

    // Takes the place of what was read before. False when the bytes don't begin as a PPD does.
    bool Read(std::string_view bytes);

    std::vector<Group> groups;  // the first is that of what lies in none
    std::vector<Option> options;
    std::vector<Rule> rules;
    std::vector<Statement> others;
    std::map<std::string, std::string> symbols;  // code by name
    std::map<std::string, Header> headers;       // the first ones of others
    std::vector<long> translations;              // lines in further languages
    std::vector<Trouble> troubles;               // what came to nothing
    bool isExtended = false;                     // has lines of the extension grammar
};
