// SPDX-License-Identifier: Apache-2.0
#include "host/PrintedDocument.h"

#include <filesystem>
#include <iostream>
#include <iterator>
#include <system_error>

#include "host/HostFiles.h"
#include "host/SettingFiles.h"

namespace fs = std::filesystem;

namespace {

constexpr char const* kStandardStream = "-";
constexpr char const* kStandardInput = "/dev/stdin";
constexpr char const* kStandardOutput = "/dev/stdout";
constexpr int kMostLinks = 40;  // as many as the kernel follows

// Where a file is or would be made. A link that leads to nothing yet is followed too.
fs::path Resolved(fs::path path) {
    std::error_code error;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, error); ++links) {
        fs::path const target = fs::read_symlink(path, error);
        path = target.is_absolute() ? target : path.parent_path() / target;
    }
    // A bare name has no folder that could be resolved.
    fs::path const absolute = fs::absolute(path, error);
    fs::path const resolved = fs::weakly_canonical(absolute, error);
    return error ? absolute : resolved;
}

bool IsSameFile(std::string const& one, std::string const& other) {
    std::error_code error;
    return fs::equivalent(one, other, error) || Resolved(one) == Resolved(other);
}

}  // namespace

PrintedDocument::PrintedDocument(PrintOptions const& options) : mOptions(options) {}

bool PrintedDocument::IsStandardInput() const {
    return SettingFiles::IsStandardInput(mOptions.document);
}

bool PrintedDocument::TakesStandardOutput() const {
    return mOptions.output == kStandardStream || mOptions.output == kStandardOutput;
}

Outcome PrintedDocument::Open() {
    for (auto const& check : {&PrintedDocument::CheckOutput, &PrintedDocument::CheckPreset}) {
        if (Outcome outcome = (this->*check)(); !outcome.Ok()) {
            return outcome;
        }
    }
    if (IsStandardInput()) {
        return HasOutput() ? mDocument.Take({std::istreambuf_iterator<char>(std::cin), {}},
                                            "standard input")
                           : Outcome::Done();
    }
    if (HasOutput()) {
        return mDocument.Read(mOptions.document);
    }
    return mOptions.document.empty() ? Outcome::Done()
                                     : HostFiles::CheckReadable(mOptions.document);
}

Outcome PrintedDocument::CheckOutput() const {
    if (!HasOutput()) {
        return Outcome::Done();
    }
    if (TakesStandardOutput()) {
        return mOptions.pairs ? Outcome{ExitStatus::kUsage,
                                        "--pairs and the document can't both go to standard output"}
                              : Outcome::Done();
    }
    return CheckOverwriting("-o", mOptions.output, "");
}

Outcome PrintedDocument::CheckPreset() const {
    if (mOptions.savePreset == kStandardStream) {
        return {ExitStatus::kUsage, "--save-preset takes the name of a file, and - is none"};
    }
    return CheckOverwriting("--save-preset", mOptions.savePreset, mOptions.output);
}

Outcome PrintedDocument::CheckOverwriting(std::string const& option, std::string const& path,
                                          std::string const& output) const {
    struct Row {
        char const* what;
        std::string path;
    };
    for (Row const& row :
         {Row{"the PPD", mOptions.ppd},
          Row{"the document", IsStandardInput() ? kStandardInput : mOptions.document},
          Row{"the tickets file", mOptions.tickets}, Row{"the printed document", output}}) {
        if (!path.empty() && !row.path.empty() && IsSameFile(path, row.path)) {
            std::string told = option;
            told.append(" ").append(path).append(" would overwrite ").append(row.what);
            return {ExitStatus::kUsage, told};
        }
    }
    return Outcome::Done();
}

Outcome PrintedDocument::Write(std::vector<JobDataFile::Pair> const& pairs,
                               std::ostream& out) const {
    JobText const merged = mDocument.Merge(pairs);
    if (TakesStandardOutput()) {
        out << merged;
        return Outcome::Done();
    }
    return HostFiles::Write(mOptions.output, merged);
}

void PrintedDocument::WriteTo(std::vector<JobDataFile::Pair> const& pairs,
                              std::ostream& out) const {
    out << mDocument.Merge(pairs);
}
