// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDX.h"
#include "PPDX/PPDObjects/PlacedPPD.h"
#include "host/lint/LintChecks.h"

namespace {

using Severity = LintFinding::Severity;

constexpr char kEndsReading = '\xFF';

// Code of a line beginning with *%ZUB goes on in lines that begin with *% and a blank.
bool IsKeywordLine(std::string_view line) {
    return line.starts_with("*%ZU") || (line.size() > 1 && line[0] == '*' &&
                                        std::isalpha(static_cast<unsigned char>(line[1])) != 0);
}

// Goes through the lines as they stand, with the quoted value that may go on over several.
class LineChecks {
  public:
    LineChecks(PlacedPPD const& ppd, LintFindings& findings) : mPPD(ppd), mFindings(findings) {}

    void Run() {
        FileLines const& lines = mPPD.Lines();
        for (long number = 1; number <= Last(); ++number) {
            std::string_view const line = lines.Text(number);
            CheckLine(number, line);
            if (mValueLine == 0) {
                Begin(number, line);
            } else {
                GoOn(number, line);
            }
        }
    }

  private:
    void Add(long line, std::string message, char const* help) {
        mFindings.push_back({line, Severity::kWarning, std::nullopt, "", std::move(message), help});
    }

    // A line that ended reading as a whole is told already, and what is behind it isn't read. A
    // file with a fatal error may have ended anywhere.
    long Last() const {
        bool const isFatal = std::ranges::any_of(mFindings, &LintFinding::fatal);
        bool const endsEarly = mPPD.ReadUpTo() < static_cast<long>(mPPD.Lines().Size());
        return !isFatal && endsEarly ? mPPD.Lines().NumberAt(mPPD.ReadUpTo()) - 1
                                     : mPPD.Lines().Count();
    }

    void CheckLine(long number, std::string_view line) {
        if (line.size() > static_cast<std::size_t>(PPDStream::kLineLength)) {
            Add(number,
                "The line has " + std::to_string(line.size()) + " bytes, " +
                    std::to_string(PPDStream::kLineLength) +
                    " are allowed: what it belongs to ends here, and what is behind may be lost.",
                "Break the line: PostScript in quotes may go on in the next one.");
        } else if (line.find(kEndsReading) != line.npos) {
            Add(number,
                "The line has a byte FF: what it belongs to ends here, and what is behind may be "
                "lost.",
                "Write the character as <FF>, or take it out.");
        }
    }

    // Only of options' lines is more than the line itself taken.
    void Begin(long number, std::string_view line) {
        mInBlock = !LintChecks::OpenedIn(line).empty() ||
                   (mInBlock && !line.starts_with("*Close") && !line.starts_with("*ZUClose") &&
                    !line.starts_with("*End"));
        bool const isOwn = line.starts_with("*%ZUB") || (mInBlock && IsKeywordLine(line));
        std::size_t const colon = isOwn ? line.find(':') : line.npos;
        std::size_t const quote = line.find('"', colon == line.npos ? line.size() : colon);
        if (quote != line.npos && line.find('"', quote + 1) == line.npos) {
            mValueLine = number;
            mSize = line.size() - quote;  // with a line end in the place of the quote
        }
    }

    void GoOn(long number, std::string_view line) {
        std::size_t const quote = line.find('"');
        if (IsKeywordLine(line)) {
            Add(mValueLine,
                "The value that begins here has no closing quote: line " + std::to_string(number) +
                    " counts as part of it.",
                "Close it with a quote.");
            mValueLine = 0;
            Begin(number, line);
        } else if (quote == line.npos) {
            mSize += line.size() + 1;
        } else {
            if (mSize + quote > PPDX::kPostScriptSize) {
                Add(mValueLine,
                    "The value that begins here has " + std::to_string(mSize + quote) +
                        " bytes; of PostScript " + std::to_string(PPDX::kPostScriptSize) +
                        " count, the rest is cut.",
                    "Shorten the code.");
            }
            mValueLine = 0;
        }
    }

    PlacedPPD const& mPPD;
    LintFindings& mFindings;
    long mValueLine = 0;  // where an open value began; 0 for none
    std::size_t mSize = 0;
    bool mInBlock = false;
};

}  // namespace

void LintChecks::Lines(PlacedPPD& ppd, LintFindings& findings) {
    LineChecks(ppd, findings).Run();
}
