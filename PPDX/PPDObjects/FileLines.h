// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class PPDFile;

// The bytes of a file by lines, counted from 1, for whoever speaks of them to people. A line ends
// as in PPDStream, in LF, CR or CR LF, but may be of any length.
class FileLines {
  public:
    // Reads the whole file; no lines when it can't be read.
    explicit FileLines(PPDFile& file);

    std::size_t Size() const { return mBytes.size(); }  // bytes
    long Count() const { return static_cast<long>(mStarts.size()); }
    // The line in which the last of so many bytes from the beginning lies; 1 for none of them.
    long NumberAt(long place) const;
    // Its bytes without the line end; empty for a line that isn't there.
    std::string_view Text(long number) const;
    // Whether a line end stands behind the last line.
    bool IsWhole() const;

  private:
    std::string mBytes;
    std::vector<std::size_t> mStarts;  // of each line
};
