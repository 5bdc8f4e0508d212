// SPDX-License-Identifier: Apache-2.0
#include "host/RunNotes.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>

#include "tests/host/HostFixture.h"

namespace fs = std::filesystem;

namespace {

class RunNotesTest : public HostFixture {
  protected:
    ~RunNotesTest() override {
        for (std::string const& path : mPaths) {
            fs::remove(path);
        }
    }

    std::string Make(std::string const& path) {
        std::ofstream(path) << "text";
        mPaths.push_back(path);
        return path;
    }
    std::string MakeJobFile() {
        std::string name = UniqueName("ABCDEF0123456789-");
        std::replace(name.begin(), name.end(), 'x', '-');
        name.resize(36, '0');
        return Make("/tmp/Velon.temp" + name);
    }

  private:
    std::vector<std::string> mPaths;
};

TEST_F(RunNotesTest, WhatAKilledRunLeftGoesWithTheNextOne) {
    std::string const job = MakeJobFile();
    std::string const copy = Make("/tmp/" + UniqueName("notes") + ".ppd");
    std::string const printed = MakeJobFile();
    std::string const replaced = MakeJobFile();
    std::string const foreign = Make("/tmp/" + UniqueName("Velon.temp"));
    std::string const elsewhere = Make(PathOf("other.ppd"));
    int ready[2];
    ASSERT_EQ(0, pipe(ready));
    pid_t const child = fork();
    if (child == 0) {
        RunNotes notes;
        for (auto const* path : {&job, &copy, &printed, &replaced, &foreign, &elsewhere}) {
            notes.Made(*path);
        }
        notes.Keep(printed);
        _exit(write(ready[1], "x", 1) == 1 ? pause() : 1);
    }
    char byte = 0;
    ASSERT_EQ(1, read(ready[0], &byte, 1));
    // Another's file under a name that was noted.
    fs::rename(Make(PathOf("new")), replaced);
    { RunNotes const next; }
    EXPECT_TRUE(fs::exists(job)) << "its run lives";
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    { RunNotes const next; }
    EXPECT_FALSE(fs::exists(job));
    EXPECT_FALSE(fs::exists(copy));
    for (auto const* path : {&printed, &replaced, &foreign, &elsewhere}) {
        EXPECT_TRUE(fs::exists(*path)) << *path;
    }
    EXPECT_TRUE(fs::is_empty(PathOf("zubprint"))) << "no note is left";
}

TEST_F(RunNotesTest, NotesInAFolderThatOthersReachAreNotFollowed) {
    std::string const job = MakeJobFile();
    std::string const folder = PathOf("zubprint");
    fs::create_directory(folder);
    fs::permissions(folder, fs::perms::all);
    struct stat status {};
    ASSERT_EQ(0, stat(job.c_str(), &status));
    std::ofstream(folder + "/run-1-0")
        << "made " << status.st_dev << ' ' << status.st_ino << ' ' << job << '\n';
    { RunNotes const next; }
    EXPECT_TRUE(fs::exists(job));
    // The same note in a folder of the user alone.
    fs::permissions(folder, fs::perms::owner_all);
    { RunNotes const next; }
    EXPECT_FALSE(fs::exists(job));
}

}  // namespace
