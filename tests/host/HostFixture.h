// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "host/JobDataFile.h"

// A folder of its own for each test, which is also the user's home, and the command in it.
class HostFixture : public ::testing::Test {
  protected:
    struct Result {
        int status;
        std::string out;
        std::string err;
    };

    HostFixture();
    ~HostFixture() override;

    static Result Run(std::vector<std::string> const& arguments);
    // Runs the command, which must end well, and reads what it printed.
    static nlohmann::json RunForJSON(std::vector<std::string> const& arguments);
    // Writes a file into the folder; the path.
    std::string Write(std::string const& name, std::string const& text) const;
    std::string PathOf(std::string const& name) const { return (mFolder / name).string(); }
    // A name that no other test of any process uses, also not for a copy elsewhere.
    static std::string UniqueName(std::string const& stem);

    static Outcome ReadJob(std::string const& path, JobDataFile& job);
    // The pairs of every job data file that holds the text, oldest first.
    static std::vector<JobDataFile> JobsWith(std::string const& text);

    // Beginning of a PPD that the extension takes, up to the first control: a page "Layout" with
    // the pane "Pane1" and the roll-down "Finish" in it.
    static std::string Head(std::string const& pcFileName = "ZUBDEMO.PPD");
    // A popup *Duplex in that roll-down with the options None, On and `third`.
    static std::string Duplex(std::string const& third = "Tumble");

    static int CountLines(std::string const& text);

  private:
    std::filesystem::path mFolder;
};
