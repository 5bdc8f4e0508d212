// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/JobDataFile.h"
#include "host/Outcome.h"

// A PostScript document that keeps to the document structuring conventions (Adobe's, version 3),
// into which a job's pairs can be merged as a printing system does. Embedded documents and data
// are never looked into. What leads into PostScript ahead of it and out of it behind it, printer
// job language lines and universal exits, is no part of the document and stays around it.
class DSCDocument {
  public:
    // Fails for a file that can't be read, isn't PostScript or doesn't follow the conventions.
    Outcome Read(std::string const& path);
    // The same for a document that is at hand. `name` is what a message calls it.
    Outcome Take(std::string text, std::string const& name);

    // The document with the pairs in it. Comments go to the end of the header, features and the
    // first marker to the end of the setup, the second marker ahead of the trailer. Features of
    // the document's own setup whose keyword the job takes over are left out, and so are the lines
    // that ask for one. A section that is needed and missing is made. Everything else stays byte
    // for byte.
    JobText Merge(std::vector<JobDataFile::Pair> const& pairs) const;

  private:
    struct Feature {
        std::size_t begin;
        std::size_t end;
        std::string keyword;  // with its star
    };
    // A place in the text, and whether the section that it belongs to is there.
    struct Place {
        std::size_t at = std::string::npos;
        bool exists = false;
        bool isOpen = false;  // it begins, but has no end
    };
    class Reader;

    std::string mText;
    Place mCommentsEnd;
    Place mSetupEnd;
    Place mTrailer;
    std::vector<Feature> mFeatures;  // of the setup
};
