// SPDX-License-Identifier: Apache-2.0
#include "host/DSCDocument.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <set>
#include <utility>

#include "VelonFeatures/Project/Core/PostScriptInjectionSite.h"
#include "host/HostFiles.h"
#include "platform/CFRef.h"

namespace {

constexpr std::string_view kSignature = "%!";
constexpr std::string_view kConforming = "%!PS-Adobe-";
constexpr char kEndOfTransmission = 4;  // some systems put one ahead of a document or behind it
constexpr std::string_view kUniversalExit = "\x1b%-12345X";
constexpr std::string_view kJobLanguage = "@PJL";

constexpr int kHeaderSites[] = {kNoteCommentSite, kDriverCommentSite, kLayoutCommentSite};

// Replaces a stretch of the document.
struct Edit {
    std::size_t begin;
    std::size_t end;
    JobText text;
};

bool IsLineEnd(char byte) {
    return byte == '\n' || byte == '\r';
}

// The texts of these sites, in the job's order, each a line of its own at least.
template <typename Sites>
JobText TextOf(std::vector<JobDataFile::Pair> const& pairs, Sites const& sites) {
    JobText text;
    for (JobDataFile::Pair const& pair : pairs) {
        if (std::ranges::find(sites, pair.site) != std::ranges::end(sites)) {
            text += pair.text;
            if (!text.empty() && !IsLineEnd(text.back())) {
                text += '\n';
            }
        }
    }
    return text;
}

std::string_view WordAt(std::string_view text, std::size_t number) {
    constexpr std::string_view kBlanks = " \t\r\n";
    for (;; --number) {
        text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
        std::string_view const word = text.substr(0, text.find_first_of(kBlanks));
        if (number == 0) {
            return word;
        }
        text.remove_prefix(word.size());
    }
}

// Where PostScript begins behind the lines that lead into it.
std::size_t BehindPreamble(std::string_view text) {
    std::size_t at = 0;
    bool isOutside = false;  // of any language
    for (;;) {
        std::string_view const rest = text.substr(at);
        if (rest.starts_with(kEndOfTransmission)) {
            ++at;
        } else if (rest.starts_with(kUniversalExit)) {
            isOutside = true;
            at += kUniversalExit.size();
        } else if (isOutside && rest.starts_with(kJobLanguage)) {
            at += std::min(rest.find('\n'), rest.size() - 1) + 1;
        } else if (isOutside && !rest.empty() && IsLineEnd(rest.front())) {
            ++at;
        } else {
            return at;
        }
    }
}

// Without the marks of the transmission's end and the line ends around them.
std::string_view WithoutEndOfTransmission(std::string_view text) {
    std::size_t const behind = text.find_last_not_of("\r\n\x04") + 1;
    return text.substr(0, text.find(kEndOfTransmission, behind));
}

}  // namespace

// Goes through the document once and notes where its sections are.
class DSCDocument::Reader {
  public:
    explicit Reader(DSCDocument& document) : mDocument(document), mText(document.mText) {}

    void Run(std::size_t begin) {
        mNext = begin;
        ReadHeader();
        while (mNext < mText.size()) {
            TakeLine();
        }
        Settle();
    }

  private:
    void ReadHeader() {
        NextLine();
        // The header ends at the first line that is no comment, too.
        while (mNext < mText.size()) {
            std::size_t const former = mNext;
            std::string_view const line = NextLine();
            bool const isComment =
                line.size() > 1 && line[0] == '%' &&
                std::string_view(" \t\r\n").find(line[1]) == std::string_view::npos;
            bool const isEnd = line.starts_with("%%EndComments");
            if (isEnd || !isComment || BeginsSection(line)) {
                mDocument.mCommentsEnd = {former, isEnd};
                mNext = isEnd ? mNext : former;
                return;
            }
        }
        mDocument.mCommentsEnd = {mText.size(), false};
    }

    static bool BeginsSection(std::string_view line) {
        return std::ranges::any_of(
            std::initializer_list<std::string_view>{"%%Begin", "%%End", "%%Page:", "%%Trailer",
                                                    "%%EOF"},
            [line](std::string_view section) { return line.starts_with(section); });
    }

    // The next line with its end. The document ends where a line leaves PostScript.
    std::string_view NextLine() {
        std::string_view const line = SkipLine();
        std::size_t const exit = line.find(kUniversalExit);
        if (exit == std::string_view::npos) {
            return line;
        }
        mText = mText.substr(0, mLine + exit);
        mNext = mText.size();
        return line.substr(0, exit);
    }

    // The same for a line of data, whatever it holds.
    std::string_view SkipLine() {
        mLine = mNext;
        mNext = std::min(mText.find_first_of("\r\n", mLine), mText.size());
        bool const isPair = mText.substr(mNext, 2) == "\r\n";
        mNext = std::min(mNext + (isPair ? 2 : 1), mText.size());
        return mText.substr(mLine, mNext - mLine);
    }

    void TakeLine() {
        std::string_view const line = NextLine();
        if (!line.starts_with("%%")) {
            return;
        }
        if (line.starts_with("%%BeginData:") || line.starts_with("%%BeginBinary:")) {
            SkipData(line);
        } else if (line.starts_with("%%BeginDocument")) {
            ++mEmbedded;
        } else if (line.starts_with("%%EndDocument")) {
            mEmbedded -= mEmbedded > 0 ? 1 : 0;
        } else if (mEmbedded == 0) {
            TakeComment(line);
        }
    }

    void TakeComment(std::string_view line) {
        if (line.starts_with("%%EndProlog")) {
            bool const isAhead = !mInSetup && mFirstPage == std::string::npos;
            mPrologEnd = isAhead ? std::min(mPrologEnd, mNext) : mPrologEnd;
        } else if (line.starts_with("%%BeginSetup")) {
            mInSetup =
                mDocument.mSetupEnd.at == std::string::npos && mFirstPage == std::string::npos;
        } else if (line.starts_with("%%EndSetup") && mInSetup) {
            mDocument.mSetupEnd = {mLine, true, false};
            LeaveSetup();
        } else if (line.starts_with("%%Page:")) {
            LeaveSetup();
            mFirstPage = std::min(mFirstPage, mLine);
        } else if (line.starts_with("%%Trailer")) {
            LeaveSetup();
            mDocument.mTrailer = {mLine, true, false};
        } else if (line.starts_with("%%EOF")) {
            LeaveSetup();
            mEndOfFile = mLine;
        } else {
            TakeFeature(line);
        }
    }

    // A feature that isn't at its end by now stays, and so does a setup without an end.
    void LeaveSetup() {
        if (mInSetup && !mDocument.mSetupEnd.exists) {
            mDocument.mSetupEnd = {mLine, false, true};
        }
        mInSetup = false;
        mKeyword.clear();
    }

    void TakeFeature(std::string_view line) {
        if (line.starts_with("%%BeginFeature:") && mInSetup) {
            mFeatureBegin = mLine;
            mKeyword = WordAt(line, 1);
        } else if (line.starts_with("%%EndFeature") && !mKeyword.empty()) {
            mDocument.mFeatures.push_back({mFeatureBegin, mNext, mKeyword});
            mKeyword.clear();
        } else if (line.starts_with("%%IncludeFeature:") && mInSetup && mKeyword.empty()) {
            mDocument.mFeatures.push_back({mLine, mNext, std::string(WordAt(line, 1))});
        }
    }

    // "%%BeginData: number type Bytes" or "Lines"; without a number it goes up to its end comment.
    void SkipData(std::string_view line) {
        std::string_view const number = WordAt(line, 1);
        std::size_t count = 0;
        auto const result = std::from_chars(number.data(), number.data() + number.size(), count);
        if (result.ec != std::errc()) {
            while (mNext < mText.size() && !SkipLine().starts_with("%%End")) {
            }
        } else if (WordAt(line, 3) == "Lines") {
            for (; count > 0 && mNext < mText.size(); --count) {
                SkipLine();
            }
        } else {
            mNext += std::min(count, mText.size() - mNext);
        }
    }

    // Where sections are to be made that aren't there.
    void Settle() {
        mText = WithoutEndOfTransmission(mText);
        if (!mDocument.mTrailer.exists) {
            mDocument.mTrailer.at = std::min(mEndOfFile, mText.size());
        }
        mLine = mDocument.mTrailer.at;
        LeaveSetup();
        if (mDocument.mSetupEnd.at == std::string::npos) {
            std::size_t const behindProlog =
                mPrologEnd != std::string::npos ? mPrologEnd : BehindHeader();
            mDocument.mSetupEnd.at = mFirstPage != std::string::npos ? mFirstPage : behindProlog;
        }
        for (Place* const place : {&mDocument.mCommentsEnd, &mDocument.mSetupEnd}) {
            place->at = std::min(place->at, mText.size());
        }
    }

    std::size_t BehindHeader() {
        mNext = mDocument.mCommentsEnd.at;
        if (mDocument.mCommentsEnd.exists) {
            NextLine();
        }
        return mNext;
    }

    DSCDocument& mDocument;
    std::string_view mText;
    std::size_t mLine = 0;  // where the line begins that was read last
    std::size_t mNext = 0;
    int mEmbedded = 0;
    bool mInSetup = false;
    std::size_t mPrologEnd = std::string::npos;
    std::size_t mFirstPage = std::string::npos;
    std::size_t mEndOfFile = std::string::npos;
    std::size_t mFeatureBegin = 0;
    std::string mKeyword;  // of the feature that the line is in; empty outside
};

Outcome DSCDocument::Read(std::string const& path) {
    if (Outcome outcome = HostFiles::CheckReadable(path); !outcome.Ok()) {
        return outcome;
    }
    CFRef<CFDataRef> data;
    std::int32_t error = 0;
    if (!CFURLCreateDataAndPropertiesFromResource(nullptr, HostFiles::URL(path, false),
                                                  data.Receive(), &error)) {
        return Outcome::Failed("can't read " + path + ": error " + std::to_string(error));
    }
    return Take({reinterpret_cast<char const*>(CFDataGetBytePtr(data)),
                 static_cast<std::size_t>(CFDataGetLength(data))},
                path);
}

Outcome DSCDocument::Take(std::string text, std::string const& name) {
    mText = std::move(text);
    std::size_t const begin = BehindPreamble(mText);
    std::string_view const start = std::string_view(mText).substr(begin);
    if (!start.starts_with(kSignature)) {
        return Outcome::Failed(name + " is no PostScript document");
    }
    if (!start.starts_with(kConforming)) {
        return Outcome::Failed(name + " doesn't follow the document structuring conventions");
    }
    Reader(*this).Run(begin);
    return Outcome::Done();
}

JobText DSCDocument::Merge(std::vector<JobDataFile::Pair> const& pairs) const {
    std::set<std::string_view> suppressed;
    for (JobDataFile::Pair const& pair : pairs) {
        if (pair.site == kSuppressedKeywordSite) {
            suppressed.insert(pair.text);
        }
    }
    std::vector<Edit> edits;
    edits.push_back({mCommentsEnd.at, mCommentsEnd.at,
                     TextOf(pairs, kHeaderSites) + (mCommentsEnd.exists ? "" : "%%EndComments\n")});
    for (Feature const& feature : mFeatures) {
        if (suppressed.contains(feature.keyword)) {
            edits.push_back({feature.begin, feature.end, ""});
        }
    }
    JobText const setup = TextOf(pairs, std::vector<int>{kFeatureSite}) +
                          TextOf(pairs, std::vector<int>{kFirstCopyMarkerSite});
    edits.push_back({mSetupEnd.at, mSetupEnd.at,
                     (mSetupEnd.exists || mSetupEnd.isOpen ? "" : "%%BeginSetup\n") + setup +
                         (mSetupEnd.exists ? "" : "%%EndSetup\n")});
    edits.push_back({mTrailer.at, mTrailer.at,
                     TextOf(pairs, std::vector<int>{kSecondCopyMarkerSite}) +
                         (mTrailer.exists ? "" : "%%Trailer\n")});
    std::ranges::stable_sort(edits, {}, &Edit::begin);

    std::string_view const document = mText;
    JobText merged;
    std::size_t copied = 0;
    for (Edit const& edit : edits) {
        if (edit.begin > copied) {
            merged += document.substr(copied, edit.begin - copied);
        }
        if (!edit.text.empty() && !merged.empty() && !IsLineEnd(merged.back())) {
            merged += '\n';
        }
        merged += edit.text;
        copied = std::max(copied, edit.end);
    }
    return merged += document.substr(copied);
}
