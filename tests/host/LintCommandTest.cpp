// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <utility>

#include "PPDX/PPDObjects/PPDXErrorTexts.h"
#include "host/lint/PostScriptScanner.h"
#include "tests/PPDLines.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

// A head of five lines that reports nothing by itself.
std::string const kStart =
    "*PPD-Adobe: \"4.3\"\n"
    "*LanguageVersion: English\n"
    "*LanguageEncoding: ISOLatin1\n"
    "*PCFileName: \"ZUBTEST.PPD\"\n"
    "*%ZUVersion: 4.4\n";
std::string const kFlags = "*%ZUBFlags *Duplex: Dynamic\n";

// Programs are looked for in this folder alone as long as it lives.
class PathScope {
  public:
    explicit PathScope(std::string const& folder) {
        char const* const former = std::getenv("PATH");
        mFormer = former == nullptr ? "" : former;
        setenv("PATH", folder.c_str(), 1);
    }
    PathScope(PathScope const&) = delete;
    PathScope& operator=(PathScope const&) = delete;
    ~PathScope() { setenv("PATH", mFormer.c_str(), 1); }

  private:
    std::string mFormer;
};

class LintCommandTest : public HostFixture {
  protected:
    // The findings; any status of a file that was read.
    json Lint(std::string const& text, int code = 0) const {
        std::vector<std::string> arguments = {"lint", "--json", Write("lint.ppd", text)};
        if (code == 21) {  // told only where orphans aren't kept, the next where words are unknown
            arguments.insert(arguments.end(), {"--parse-options", "2"});
        } else if (code == 32) {
            arguments.insert(arguments.end(), {"--extensions", "0"});
        }
        Result const result = Run(arguments);
        EXPECT_TRUE(result.status == 0 || result.status == 4) << result.err;
        json const findings = json::parse(result.out, nullptr, false);
        EXPECT_TRUE(findings.is_array()) << result.out;
        return findings;
    }
    // Lines at which something with this in its message is found.
    static std::multiset<int> LinesOf(json const& findings, std::string const& message) {
        std::multiset<int> lines;
        for (json const& finding : findings) {
            if (finding["message"].get<std::string>().find(message) != std::string::npos) {
                lines.insert(finding["line"].get<int>());
            }
        }
        return lines;
    }
    static std::string LongLine(std::size_t size) { return "*% " + std::string(size - 3, 'x'); }
};

TEST_F(LintCommandTest, EachErrorStandsAtItsLineWithWhatItMeansAndWhatToDo) {
    struct Case {
        int code;
        int line;
        std::string text;
    };
    std::string const block = "*OpenUI *Duplex/Two Sided: PickOne\n";
    std::string const popup = PPDLines::Popup("*Duplex", {"None", "On"});
    std::string const group = "*%ZUBGroup *Duplex: Finish/Finishing\n";
    for (Case const& row : {
             Case{1, 2, "*PPD-Adobe: \"4.3\"\n*%ZUBSpecialOption *Early: 1\n"},
             Case{4, 6, kStart + "*%ZUBPropPage\n"},
             Case{5, 7, kStart + kFlags + group + "*% a remark\n" + block},
             Case{6, 8, kStart + kFlags + group + "*%ZUBJobNote *Other/Note: 40\n\n"},
             Case{7, 8, kStart + kFlags + group + "*%ZUBRange *Duplex/Two: (1;2;3) \"\"\n"},
             Case{8, 7, kStart + kFlags + "*OpenUI\n"},
             Case{9, 9,
                  kStart + kFlags +
                      "*OpenUI *Duplex/Two: Boolean\n*DefaultDuplex: True\n"
                      "*Duplex Maybe/Maybe: \"\"\n*CloseUI\n"},
             Case{10, 6,
                  kStart + kFlags + "*OpenUIZUB *Duplex/Two: PickOne\n*Duplex On/On: \"\"\n"},
             Case{11, 9,
                  kStart + kFlags + block +
                      "*DefaultDuplex: None\n*DefaultDuplex: On\n"
                      "*Duplex On/On: \"\"\n*CloseUI\n"},
             Case{11, 6, kStart + kFlags + block + "*DefaultDuplex: None\n*Duplex On/On: \"\"\n"},
             Case{12, 6, kStart + "*%ZUBGroupName\n"},
             Case{14, 7, kStart + "*%ZUBGroupName A/A: True\n*%ZUBParent A/B: True|Rolldown\n"},
             Case{15, 6, kStart + "*%ZUBParent Finish\n"},
             Case{16, 6, kStart + kFlags + "*% a remark\n*% another\n"},
             Case{18, 1, ""},
             Case{19, 6, kStart + "*%ZUShortcut *Dupplex\n" + popup},
             Case{21, 6, kStart + popup},
             Case{23, 12, kStart + popup + "*%ZUBFlags *Duplex: Dynamic\n"},
             Case{25, 1, kStart + popup},
             Case{26, 1, kStart + popup},
             Case{27, 1, kStart},
             Case{28, 1, "*PPD-Adobe: \"4.2\"\n*LanguageVersion: English\n"},
             Case{29, 6, kStart + popup},
             Case{31, 7, kStart + kFlags + "*OpenUI *Duplex: PickOne\n"},
             Case{32, 6, kStart + "*%ZUBJobNote *Note/Note: 40|LCD\n\n"},
             Case{33, 6, kStart + kFlags + block + "*Duplex On/On: \"1\n2\"\n*CloseUI\n"},
             Case{34, 7, kStart + kFlags + "*OpenUIZUB *Duplex/Two: PickOne\n*CloseUIZUB\n"},
             Case{35, 8, kStart + kFlags + group + "*%ZUBRange *Duplex/Two: (1;2;3;4)\n"},
             Case{36, 12, kStart + popup + "*UIConstraints: *Duplex On\n"},
         }) {
        SCOPED_TRACE(row.text);
        // Line ends of other systems don't move a line, nor do the borders of what is read at once.
        for (int variant = 0; variant < 3; ++variant) {
            std::string text = row.text;
            int line = row.line;
            if (variant == 1) {
                for (std::size_t at = 0; (at = text.find('\n', at)) != text.npos; at += 2) {
                    text.replace(at, 1, "\r\n");
                }
            } else if (variant == 2 && text.starts_with(kStart)) {
                std::string const filling = LongLine(97) + "\n\r";
                for (int number = 0; number < 300; ++number) {
                    text.insert(kStart.size(), filling);
                }
                line += line > 5 ? 600 : 0;
            }
            json const findings = Lint(text, row.code);
            bool const found = std::ranges::any_of(findings, [&](json const& finding) {
                return finding["code"] == row.code && finding["line"] == line &&
                       finding["severity"] == "error" &&
                       finding["message"] == ErrorTextOf(static_cast<short>(row.code)) &&
                       (row.text.empty() ||
                        finding["help"] == ErrorRemedyOf(static_cast<short>(row.code)));
            });
            EXPECT_TRUE(found) << row.code << " at line " << line << ": " << findings.dump(1);
        }
    }
}

TEST_F(LintCommandTest, ThePageOfErrorsSaysWhatTheProgramSays) {
    std::ifstream file(ZUB_DOCS "/errors.md");
    std::string const page{std::istreambuf_iterator<char>(file), {}};
    std::string headings;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        headings += line.starts_with("## ") ? line + "\n" : "";
    }
    std::string expected;
    for (PPDXErrorText const& row : ErrorTexts()) {
        std::string const heading = "## " + std::to_string(row.code) + ": " + row.text + "\n";
        expected += heading;
        std::size_t const begin = page.find(heading);
        ASSERT_NE(std::string::npos, begin) << heading;
        std::string const section = page.substr(begin, page.find("\n## ", begin) - begin);
        EXPECT_NE(std::string::npos, section.find(row.remedy)) << section;
        std::string const fatal = row.fatal;
        EXPECT_EQ(!fatal.empty(), section.find("Fatal: " + fatal + ".\n") != section.npos)
            << section;
        std::string example = section.substr(section.find("```\n") + 4);
        example.resize(example.find("```\n"));
        bool const isWhole = example.starts_with("*PPD") || !example.starts_with('*');
        json const findings = Lint(row.code == 18 ? ""
                                   : isWhole      ? example
                                                  : kStart + example,
                                   row.code);
        auto const found = std::ranges::find_if(
            findings, [&row](json const& finding) { return finding["code"] == row.code; });
        ASSERT_NE(findings.end(), found) << section << findings.dump(1);
        EXPECT_TRUE(!(*found)["fatal"] || !fatal.empty()) << section;
        EXPECT_TRUE((*found)["fatal"] || fatal != "always") << section;
    }
    EXPECT_EQ(expected, headings);
}

TEST_F(LintCommandTest, WhatIsNeverReadIsTold) {
    std::string const tail = PPDLines::Popup("*Duplex", {"None", "On"});
    EXPECT_EQ(std::multiset<int>{6},
              LinesOf(Lint(kStart + LongLine(255) + "\n" + tail), "has 255 bytes"));
    EXPECT_EQ(std::multiset<int>{},
              LinesOf(Lint(kStart + LongLine(254) + "\n" + tail), "Reading ends"));
    EXPECT_EQ(std::multiset<int>{7},
              LinesOf(Lint(kStart + "*% a\n*% \xFF\n" + tail), "at a byte FF"));
    EXPECT_EQ(std::multiset<int>{6}, LinesOf(Lint(kStart + "*% no end"), "The last line"));
    EXPECT_EQ(std::multiset<int>{1}, LinesOf(Lint("\n" + kStart), "doesn't begin with"));
    EXPECT_EQ(std::multiset<int>{6},
              LinesOf(Lint(kStart + "*%ZUBFlags *Gone:\n\n" + tail), "is dropped"));
    EXPECT_EQ(std::multiset<int>{1},
              LinesOf(Lint("*PPD-Adobe: \"4.3\"\n*PCFileName: \"ZUB.PPD\"\n"), "nothing of the "));
    EXPECT_EQ(std::multiset<int>{3}, LinesOf(Lint("*PPD-Adobe: \"4.3\"\n*% a\n*PCFileName: "
                                                  "\"OTHER.PPD\"\n"),
                                             "print refuses this file"));
}

TEST_F(LintCommandTest, WhatIsReadInPartIsTold) {
    std::string const code(250, '1');
    std::string codes;
    while (codes.size() < 4096) {
        codes += code + "\n";
    }
    std::string const head = kStart + kFlags + "*OpenUI *Duplex/Two: PickOne\n";  // 6 and 7
    struct {
        std::string lines;  // from 8 on
        int line;
        char const* told;
    } const cases[] = {
        {"*DefaultDuplex: a\n*Duplex a/A: \"\n " + code + " pop\n\"\n*End\n*CloseUI\n", 10,
         "255 bytes, 254 are allowed"},
        {"*DefaultDuplex: a\n*Duplex a/A\xFF: \"\"\n*CloseUI\n", 9, "a byte FF"},
        {"*DefaultDuplex: a\n*Duplex a/A: \"1 pop\n*Duplex b/B: \"\"\n*CloseUI\n", 9,
         "no closing quote: line 10 counts"},
        {"*DefaultDuplex: a\n*Duplex a/A: \"\n" + codes + "pop\"\n*End\n*CloseUI\n", 9,
         "4096 count"},
        {"*DefaultDuplex: a\n*Duplex a/A: \"\"\n*Duplex a/B: \"\"\n*CloseUI\n", 10,
         "a stands twice"},
        {"*Duplex a/A: \"\"\n*Duplex b/B: \"\"\n*DefaultDuplex: b\n*CloseUI\n", 10,
         "stands behind choices"},
    };
    for (auto const& row : cases) {
        EXPECT_EQ(std::multiset<int>{row.line}, LinesOf(Lint(head + row.lines), row.told))
            << row.told;
    }
    // Code of a line that only this reader sees goes on in comments.
    json const whole = Lint(kStart +
                            "*%ZUBFlags *ZUScale: Dynamic\n*%ZUBRange *ZUScale/S: (1;9;1;5) \"\n"
                            "*% <*ZUScale> pop\"\n");
    EXPECT_EQ(0U, LinesOf(whole, "no closing quote").size());
}

TEST_F(LintCommandTest, RulesThatDoNothingOrFightAreToldAndChoicesThatNobodyCanMake) {
    std::string const text =
        kStart + PPDLines::Popup("*A", {"a1", "a2"}) + PPDLines::Popup("*B", {"b1", "b2"}) +
        "*%ZUBFlags *Free: Dynamic\n*OpenUI *Free/Free: PickOne\n*DefaultFree: f\n"
        "*Free f: \"\"\n*CloseUI\n"       // 18 to 22
        "*UIConstraints: *A a2 *B b2\n"   // 23
        "*UIConstraints: *B b2 *A a2\n"   // 24
        "*UIConstraints: *A a2 *B b2\n"   // 25: again
        "*UIConstraints: *A a2 *B b1\n"   // 26: with 23, no way to a2; one direction
        "*UIConstraints: *A a1 *C c\n"    // 27: no such option
        "*UIConstraints: *A a1 *B b\n"    // 28: no such choice
        "*UIConstraints: *A a1 *A a2\n"   // 29: never both
        "*%ZUBUIRequires: *B b2 *A a2\n"  // 30: fights 24
        "*UIConstraints: *B b1 *A a1\n";  // 31: the defaults
    json const findings = Lint(text);
    EXPECT_EQ(std::multiset<int>{25}, LinesOf(findings, "again what line 23"));
    EXPECT_EQ((std::multiset<int>{27, 28, 29}), LinesOf(findings, "does nothing"));
    EXPECT_EQ(std::multiset<int>{28}, LinesOf(findings, "did you mean b1 or b2?"));
    EXPECT_EQ(std::multiset<int>{30}, LinesOf(findings, "fights line 24"));
    EXPECT_EQ(std::multiset<int>{31}, LinesOf(findings, "stand against each other"));
    EXPECT_EQ(std::multiset<int>{10}, LinesOf(findings, "a2 can never be chosen"));
    EXPECT_EQ(std::multiset<int>{26}, LinesOf(findings, "2 rules hold in one direction only"));
    EXPECT_EQ(1U, LinesOf(findings, "has no place").count(18));  // and no note that nobody sees it
    EXPECT_EQ(std::multiset<int>{21}, LinesOf(findings, "1 choice without a name for people: f."));
}

TEST_F(LintCommandTest, AFileOfAnotherKindGetsTheRemedyForIt) {
    for (auto const& [text, help] : {std::pair<std::string, std::string>{"", "is empty"},
                                     {"\x1F\x8B\x08 gz\n", "gunzip -c"},
                                     {"\xEF\xBB\xBF" + kStart, "byte order mark"}}) {
        json const findings = Lint(text);
        ASSERT_EQ(1U, findings.size()) << findings;  // nothing of pages that aren't there
        EXPECT_NE(std::string::npos, findings[0]["help"].get<std::string>().find(help));
    }
    std::string const block = "*OpenUI *A/A: PickOne\n*DefaultA: x\n*A x/X: \"\"\n*CloseUI: *A\n";
    json const plain = Lint("*PPD-Adobe: \"4.3\"\n" + block + "*UIConstraints: *A x *B y\n");
    EXPECT_EQ(0U, LinesOf(plain, "does nothing").size());
    json const unused =
        Lint(kStart + block + "*UIConstraints: *A x *B y\n*UIConstraints: *A x *C y\n");
    EXPECT_EQ(std::multiset<int>{10}, LinesOf(unused, "stands in line 6 but isn't used"));
    EXPECT_EQ(0U, LinesOf(unused, "there is no option").size());
}

TEST_F(LintCommandTest, DefaultsAndEndsThatDontFitTheirBlockAreTold) {
    std::string text = kStart + kFlags +
                       "*OpenUI *Duplex/Two: PickOne\n*DefaultDuplex: Nome\n"
                       "*Duplex None/Off: \"\"\n*CloseUI: *Duplx\n";
    json findings = Lint(text);
    EXPECT_EQ(std::multiset<int>{8}, LinesOf(findings, "none of the choices; did you mean None?"));
    EXPECT_EQ(std::multiset<int>{10}, LinesOf(findings, "end names *Duplx."));
    text.replace(text.find("Nome"), 4, "None");
    text.replace(text.find("*Duplx"), 6, "*Duplex");
    findings = Lint(text);
    EXPECT_EQ(0U, LinesOf(findings, "none of the choices").size());
    EXPECT_EQ(0U, LinesOf(findings, "end names").size());
    EXPECT_EQ(0U, LinesOf(findings, "nobody sees it").size());  // error 29 has said it
}

TEST_F(LintCommandTest, RulesInThousandsAreReadInTime) {
    constexpr int kCount = 3000;
    std::vector<std::string> choices;
    std::string rules;
    for (int number = 0; number < kCount; ++number) {
        std::string const name = "c" + std::to_string(number);
        choices.push_back(name);
        rules += "*UIConstraints: *A *B " + name + "\n*UIConstraints: *A " + name + " *B\n" +
                 "*UIConstraints: *N" + name + " x *A\n";
    }
    std::clock_t const begin = std::clock();
    json const findings =
        Lint(kStart + PPDLines::Popup("*A", choices) + PPDLines::Popup("*B", choices) + rules);
    EXPECT_EQ(static_cast<std::size_t>(kCount), LinesOf(findings, "can never be chosen").size());
    EXPECT_EQ(static_cast<std::size_t>(kCount), LinesOf(findings, "there is no option").size());
    EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 20);  // in minutes when it grows by squares
}

TEST_F(LintCommandTest, CodeThatNoScannerTakesIsToldWhereGhostscriptIs) {
    std::string const ppd =
        Write("code.ppd", kStart + kFlags +
                              "*OpenUI *Duplex/Two: PickOne\n*DefaultDuplex: None\n"
                              "*Duplex None/Off: \"false //unknown setduplex % ) in a remark\"\n"
                              "*Duplex On/On: \"{ true setduplex\"\n"
                              "*Duplex Text/Text: \"(a) print (b \\) print\"\n"
                              "*Duplex Run/Run: \"(/tmp/zub-lint) deletefile quit\"\n"
                              "*Duplex Last/Last: \"> stop\"\n*CloseUI\n");
    json const findings = RunForJSON({"lint", "--json", ppd});
    if (PostScriptScanner::Program().empty()) {
        EXPECT_EQ(1U, LinesOf(findings, "Ghostscript isn't installed").size());
    } else {
        EXPECT_EQ((std::multiset<int>{10, 11, 13}), LinesOf(findings, "isn't well-formed"));
    }
    PathScope const path(PathOf(""));
    EXPECT_EQ(1U, LinesOf(RunForJSON({"lint", "--json", ppd}), "Ghostscript isn't").size());
    // An answer that breaks off isn't taken for a clean one.
    Write("gs", "#!/bin/sh\ncat > /dev/null\necho rejected 0\n");
    std::filesystem::permissions(PathOf("gs"), std::filesystem::perms::owner_all);
    EXPECT_EQ(1U, LinesOf(RunForJSON({"lint", "--json", ppd}), "gave no answer").size());
}

TEST_F(LintCommandTest, StatusesAndLinesAreThoseThatEditorsAndScriptsRead) {
    std::string const clean = Write("clean.ppd", Head() + Duplex());
    Result result = Run({"lint", "--strict", clean});
    EXPECT_EQ(0, result.status) << result.out << result.err;
    std::string const orphan = Write("orphan.ppd", kStart + PPDLines::Popup("*A\x1B[2J", {"a"}));
    result = Run({"lint", orphan});
    EXPECT_EQ(0, result.status) << result.err;
    EXPECT_NE(std::string::npos, result.out.find(orphan + ":6: error: *A?[2J: ")) << result.out;
    EXPECT_EQ(std::string::npos, result.out.find('\x1B'));
    EXPECT_EQ(1, Run({"lint", "--strict", orphan}).status);
    EXPECT_EQ(4, Run({"lint", Write("old.ppd", "*PPD-Adobe: \"4.1\"\n")}).status);
    EXPECT_EQ(1, Run({"lint", orphan + ".missing"}).status);
}

}  // namespace
