// SPDX-License-Identifier: Apache-2.0
#include "tests/host/HostFixture.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <unistd.h>

#include "host/HostFiles.h"
#include "host/Zubprint.h"
#include "twoway/PropertyListFile.h"

namespace fs = std::filesystem;

namespace {

fs::path const kTemporary = "/tmp";

bool Holds(JobDataFile const& file, std::string const& text) {
    return std::ranges::any_of(file.Pairs(), [&](JobDataFile::Pair const& pair) {
        return pair.text.find(text) != std::string::npos;
    });
}

}  // namespace

HostFixture::HostFixture() {
    std::string name = ::testing::TempDir() + "zubprint-test-XXXXXX";
    mFolder = mkdtemp(name.data());
    setenv("HOME", mFolder.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", mFolder.c_str(), 1);
}

// A job's data outlives the command; that of this test goes with it.
HostFixture::~HostFixture() {
    for (fs::directory_entry const& file : fs::directory_iterator(mFolder)) {
        fs::remove(kTemporary / file.path().filename());
    }
    fs::remove_all(mFolder);
}

HostFixture::Result HostFixture::Run(std::vector<std::string> const& arguments) {
    std::vector<char const*> argv = {"zubprint"};
    for (std::string const& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    int const status = Zubprint::Run(static_cast<int>(argv.size()), argv.data(), out, err);
    return {status, out.str(), err.str()};
}

nlohmann::json HostFixture::RunForJSON(std::vector<std::string> const& arguments) {
    Result const result = Run(arguments);
    EXPECT_EQ(0, result.status) << result.err;
    nlohmann::json document = nlohmann::json::parse(result.out, nullptr, false);
    EXPECT_FALSE(document.is_discarded()) << result.out;
    return document;
}

std::string HostFixture::Write(std::string const& name, std::string const& text) const {
    std::ofstream(mFolder / name, std::ios::binary) << text;
    return PathOf(name);
}

std::string HostFixture::UniqueName(std::string const& stem) {
    static int sCount = 0;
    return stem + std::to_string(getpid()) + "x" + std::to_string(++sCount);
}

Outcome HostFixture::ReadJob(std::string const& path, JobDataFile& job) {
    PropertyListFile const file(HostFiles::URL(path, false), kCFPropertyListImmutable);
    return job.Take(file.PropertyList());
}

std::vector<JobDataFile> HostFixture::JobsWith(std::string const& text) {
    std::vector<std::pair<fs::file_time_type, JobDataFile>> found;
    for (fs::directory_entry const& entry : fs::directory_iterator(kTemporary)) {
        JobDataFile file;
        std::error_code gone;
        // Another process may be writing its own file at this moment.
        if (entry.path().filename().string().starts_with("Velon.temp") &&
            ReadJob(entry.path(), file).Ok() && Holds(file, text)) {
            found.emplace_back(fs::last_write_time(entry.path(), gone), file);
            fs::remove(entry.path(), gone);
        }
    }
    std::ranges::stable_sort(found, {}, [](auto const& pair) { return pair.first; });
    std::vector<JobDataFile> files;
    for (auto const& [time, file] : found) {
        files.push_back(file);
    }
    return files;
}

std::string HostFixture::Head(std::string const& pcFileName) {
    return "*PPD-Adobe: \"4.3\"\n"
           "*FormatVersion: \"4.3\"\n"
           "*LanguageVersion: English\n"
           "*LanguageEncoding: ISOLatin1\n"
           "*PCFileName: \"" +
           pcFileName +
           "\"\n"
           "*%ZUVersion: 4.4\n"
           "*%ZUBPropPage Layout/Layout: True\n"
           "*%ZUBGroupName Pane1/Layout Pane: True\n"
           "*%ZUBGroupName Finish/Finishing: True\n"
           "*%ZUBParent Pane1/Layout: True|Scrollpane\n"
           "*%ZUBParent Finish/Pane1: True|Rolldown\n";
}

std::string HostFixture::Duplex(std::string const& third) {
    return "*%ZUBFlags *Duplex: Dynamic\n"
           "*%ZUBGroup *Duplex: Finish/Finishing\n"
           "*OpenUI *Duplex/Two Sided: PickOne\n"
           "*DefaultDuplex: None\n"
           "*Duplex None/Off: \"false setduplex\"\n"
           "*Duplex On/On: \"true setduplex\"\n"
           "*Duplex " +
           third +
           "/Tumbled: \"true settumble\"\n"
           "*CloseUI: *Duplex\n";
}

int HostFixture::CountLines(std::string const& text) {
    return static_cast<int>(std::ranges::count(text, '\n'));
}
