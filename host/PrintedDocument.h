// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/DSCDocument.h"
#include "host/JobDataFile.h"
#include "host/Options.h"
#include "host/Outcome.h"

// The document of `zubprint print`: where it comes from, and where it goes with the job in it.
class PrintedDocument {
  public:
    // The options must outlive the object.
    explicit PrintedDocument(PrintOptions const& options);

    // Called once, before the dialog. Fails for a document that can't be opened and, if it is to
    // be written with the job, can't be read or merged into. An output that is one of the files
    // that the command reads or keeps is wrong usage; nothing was touched then.
    Outcome Open();

    bool HasOutput() const { return !mOptions.output.empty(); }
    // Whether standard output belongs to the document alone.
    bool TakesStandardOutput() const;
    // Writes the document to the options' output, which may be `out`, the standard output.
    Outcome Write(std::vector<JobDataFile::Pair> const& pairs, std::ostream& out) const;

    // The same to `out`, wherever the options say it goes.
    void WriteTo(std::vector<JobDataFile::Pair> const& pairs, std::ostream& out) const;

  private:
    bool IsStandardInput() const;
    Outcome CheckOutput() const;
    Outcome CheckPreset() const;
    // Wrong usage if this output of the option is a file that is read, kept, or `output`, which may
    // be empty.
    Outcome CheckOverwriting(std::string const& option, std::string const& path,
                             std::string const& output) const;

    PrintOptions const& mOptions;
    DSCDocument mDocument;
};
