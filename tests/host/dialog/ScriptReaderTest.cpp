// SPDX-License-Identifier: Apache-2.0
#include "host/dialog/ScriptReader.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>

#include "host/dialog/ScriptPlayer.h"
#include "platform/Events.h"

namespace {

// What was read, in a few words; "(end)", or the fault.
std::string Read(std::string const& text) {
    std::istringstream script(text);
    ScriptReader reader({script, "script"}, ScriptPlayer::FormOf);
    ScriptLine line;
    switch (reader.Next(line)) {
        case ScriptReader::Found::kEnd:
            return "(end)";
        case ScriptReader::Found::kWrongLine:
        case ScriptReader::Found::kUnreadable:
            return reader.Fault();
        case ScriptReader::Found::kLine:
            break;
    }
    std::ostringstream told;
    told << line.number << ' ' << line.command;
    if (line.target) {
        told << ' ' << line.target->window.value_or(0) << '/' << std::hex
             << line.target->id.signature << std::dec << ':' << line.target->id.id;
    }
    for (std::int64_t const number : line.numbers) {
        told << " n" << number;
    }
    for (double const length : line.lengths) {
        told << " l" << length;
    }
    if (line.text) {
        told << " t" << *line.text;
    }
    told << (line.part != 0 ? " p" + std::to_string(line.part) : "")
         << (line.isOutside ? " out" : "") << (line.key != 0 ? " k" + std::to_string(line.key) : "")
         << (line.modifiers != 0 ? " m" + std::to_string(line.modifiers) : "")
         << (line.seconds != 0 ? " s" + std::to_string(line.seconds) : "");
    return told.str();
}

TEST(ScriptReaderTest, ALineIsACommandAndTheWordsThatItTakes) {
    struct {
        char const *line, *read;
    } const cases[] = {
        {"print", "1 print"},
        {"\n# a note\n\nprint\n", "4 print"},
        {"", "(end)"},
        {"# only\n", "(end)"},
        {"click ok:0", "1 click 0/6f6b2020:0"},
        {"click @12/Cntl:-3 part=21 out", "1 click 12/436e746c:-3 p21 out"},
        {"click \"ok  :0\" out", "1 click 0/6f6b2020:0 out"},
        {"click a:b:1", "1 click 0/613a6220:1"},
        {"click \"\\u00a9:1\"", "1 click 0/a9202020:1"},
        {"choose Cntl:1 17", "1 choose 0/436e746c:1 n17"},
        {"choose Cntl:1 \"17\"", "1 choose 0/436e746c:1 t17"},
        {"choose Cntl:1 \"Two \\\"Sided\\\" \\u00e9\"", "1 choose 0/436e746c:1 tTwo \"Sided\" é"},
        {"rows List:1 3 4294967295", "1 rows 0/4c697374:1 n3 n4294967295"},
        {"sort List:1 NAME", "1 sort 0/4c697374:1"},
        {"tick 0.25", "1 tick s0.250000"},
        {"tick 3600", "1 tick s3600.000000"},
        {"paper \"A 4\"", "1 paper tA 4"},
        {"paper Custom 841.9 595", "1 paper l841.9 l595 tCustom"},
        {"dump", "1 dump"},
        {"dump pdlg:1", "1 dump 0/70646c67:1"},
        {"key backtab", "1 key k9 m512"},
        {"key delete cmd shift", "1 key k127 m768"},
        {"key é option control", "1 key k233 m6144"},
        {"key \"\\ud83d\\ude00\"", "1 key k128512"},
        {"key \" \"", "1 key k32"},
    };
    for (auto const& row : cases) {
        EXPECT_EQ(row.read, Read(row.line)) << row.line;
    }
}

TEST(ScriptReaderTest, AnyOtherLineIsTold) {
    for (std::string const& line : {
             std::string("nothing"),
             std::string("\"print\""),
             std::string("print "),
             std::string("click"),
             std::string("click  ok:0"),
             std::string("click ok"),
             std::string("click :1"),
             std::string("click fiveC:1"),
             std::string("click ok:1.5"),
             std::string("click ok:2147483648"),
             std::string("click @0/ok:0"),
             std::string("click @x/ok:0"),
             std::string("click ok:0 part=x"),
             std::string("click ok:0 part=-1"),
             std::string("click ok:0 out part=21"),
             std::string("click \"ok:0\"out"),
             std::string("click \"ok:0"),
             std::string("click \"\\ok:0\""),
             std::string("click o\"k:0"),
             std::string("click Ωκ:0"),
             std::string("choose a:1"),
             std::string("choose a:1 A4"),
             std::string("rows a:1"),
             std::string("rows a:1 x"),
             std::string("rows a:1 4294967296"),
             std::string("tick"),
             std::string("tick -1"),
             std::string("tick .5"),
             std::string("tick 1."),
             std::string("tick 0.0001"),
             std::string("tick 3600.001"),
             std::string("tick 1e3"),
             std::string("tick nan"),
             std::string("paper A4 841"),
             std::string("paper A4 nan 1"),
             std::string("copies -1"),
             std::string("copies x"),
             std::string("key"),
             std::string("key ab"),
             std::string("key a meta"),
             std::string("key \"\""),
             std::string("dump a:1 b:1"),
             std::string("key \xFF"),
             std::string("key \0", 5),
             "# " + std::string(4096, 'x'),
             "key " + std::string(4093, 'x'),
         }) {
        EXPECT_EQ(0U, Read("\n" + line).rfind("line 2: ", 0)) << line << ": " << Read(line);
    }
    EXPECT_EQ("1 paper t" + std::string(4090, 'x'), Read("paper " + std::string(4090, 'x')))
        << "4,096 bytes fit";
}

TEST(ScriptReaderTest, ALineThatAFailedReadHasCutIsntRead) {
    class Broken : public std::streambuf {
      public:
        Broken() { setg(mText.data(), mText.data(), mText.data() + mText.size()); }

      private:
        int_type underflow() override {
            errno = EIO;
            throw std::ios_base::failure("broken");
        }
        std::string mText = "print\nprint";
    } broken;
    std::istream script(&broken);
    ScriptReader reader({script, "script"}, ScriptPlayer::FormOf);
    ScriptLine line;
    EXPECT_EQ(ScriptReader::Found::kLine, reader.Next(line));
    EXPECT_EQ(ScriptReader::Found::kUnreadable, reader.Next(line));
    EXPECT_EQ("can't read script: Input/output error", reader.Fault());
}

TEST(ScriptReaderTest, AWrongLineIsToldWithWhatItTakes) {
    struct {
        char const *script, *fault;
    } const cases[] = {
        {"\xEF\xBB\xBFprint\n", "line 1: the script begins with a byte order mark"},
        {"print\r\n", "line 1: a line ends in LF alone"},
        {" print", "line 1: a blank begins or ends the line"},
        {"select a:1 2", "line 1: a word is missing (select T FROM TO)"},
        {"choose a:1 -1",
         "line 1: '-1' is no number from 0 to 4294967295 (choose T N, or T \"TITLE\")"},
        {"copies 2147483648", "line 1: '2147483648' is no number from 0 to 2147483647 (copies N)"},
        {"print now", "line 1: 'now' is too much (print)"},
    };
    for (auto const& row : cases) {
        EXPECT_EQ(row.fault, Read(row.script));
    }
}

}  // namespace
