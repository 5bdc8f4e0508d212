// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/MacTypes.h"
#include "tests/platform/TestSupport.h"

namespace {

using CFURLTest = OwnershipTest;

CFRef<CFURLRef> URL(char const* text, CFURLRef base = nullptr) {
    return CFRef<CFURLRef>(CFURLCreateWithString(nullptr, Str(text), base));
}

std::string PathOf(CFURLRef url, bool resolve = true) {
    std::uint8_t buffer[256];
    return CFURLGetFileSystemRepresentation(url, resolve, buffer, sizeof buffer)
               ? reinterpret_cast<char const*>(buffer)
               : "(none)";
}

TEST_F(CFURLTest, FilePathsSurviveTheWayThroughAURLsText) {
    for (std::string const path : {"/", "/usr/share/ppd/A 4#1?.ppd",
                                   "/tmp/Gr\xC3\xB6\xC3\x9F"
                                   "e",
                                   "/tmp/\xFF%41"}) {
        auto const url = FileURL(path);
        ASSERT_TRUE(url) << path;
        EXPECT_EQ(PathOf(url), path);
        auto const again = URL(Text(CFURLGetString(url)).c_str());
        EXPECT_EQ(PathOf(again), path);
        EXPECT_TRUE(CFEqual(url, again));
    }
    EXPECT_EQ(Text(CFURLGetString(FileURL("/a b/", true))), "file:///a%20b/");
    EXPECT_EQ(PathOf(FileURL("/a//", true)), "/a");
    EXPECT_FALSE(FileURL(std::string("/a\0b", 4)));
}

TEST_F(CFURLTest, TextMakesAFileURLAnotherURLOrNone) {
    struct {
        char const* text;
        char const* scheme;
        char const* path;  // null: there is no URL
    } const cases[] = {
        {"file:///etc/a%20b", "file", "/etc/a b"},
        {"FILE:///etc", "file", "/etc"},
        {"file://localhost/etc/", "file", "/etc"},
        {"lpd://10.0.0.7/queue", "lpd", "(none)"},
        {"file://elsewhere/etc", "", nullptr},
        {"file:///a%zz", "", nullptr},
        {"file:///a%00b", "", nullptr},
        {"file://", "", nullptr},
        {"1pd://x", "", nullptr},
        {"lpd://a b", "", nullptr},
        {"lpd://\xC3\xA4", "", nullptr},
    };
    for (auto const& c : cases) {
        auto const url = URL(c.text);
        EXPECT_EQ(url.Get() != nullptr, c.path != nullptr) << c.text;
        if (url) {
            CFRef<CFStringRef> const scheme(CFURLCopyScheme(url));
            EXPECT_EQ(Text(scheme), c.scheme) << c.text;
            EXPECT_EQ(PathOf(url), c.path) << c.text;
        }
    }
}

TEST_F(CFURLTest, RelativeTextTakesItsPlaceFromTheBase) {
    EXPECT_EQ(PathOf(URL("b%20c", FileURL("/x/y", true))), "/x/y/b c");
    EXPECT_EQ(PathOf(URL("b", FileURL("/x/y"))), "/x/b");
    EXPECT_EQ(PathOf(URL("/b", FileURL("/x/y"))), "/b");
    auto const other = URL("ipp://host/a/b");
    EXPECT_EQ(Text(CFURLGetString(URL("c", other))), "ipp://host/a/c");
    EXPECT_EQ(Text(CFURLGetString(URL("/c", other))), "ipp://host/c");
}

TEST_F(CFURLTest, ComponentsAreAppendedAsNamesNotAsURLText) {
    auto const append = [](CFURLRef url, char const* name) {
        return CFRef<CFURLRef>(
            CFURLCreateCopyAppendingPathComponent(nullptr, url, Str(name), false));
    };
    EXPECT_EQ(PathOf(append(FileURL("/a", true), "x%41 #.plist")), "/a/x%41 #.plist");
    EXPECT_EQ(PathOf(append(FileURL("/"), "b")), "/b");
    EXPECT_EQ(Text(CFURLGetString(append(URL("ipp://host/a"), "b c"))), "ipp://host/a/b%20c");
}

TEST_F(CFURLTest, RelativePathsBecomeAbsoluteFromTheWorkingDirectory) {
    auto const relative = FileURL("sub/file");
    auto const expected = std::filesystem::current_path().string() + "/sub/file";
    EXPECT_EQ(PathOf(relative, false), "sub/file");
    EXPECT_EQ(PathOf(relative, true), expected);
    CFRef<CFURLRef> const absolute(CFURLCopyAbsoluteURL(relative));
    EXPECT_EQ(PathOf(absolute, false), expected);
    std::uint8_t small[4];
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(relative, true, small, sizeof small));
    EXPECT_EQ(small[0], 0);
}

class FileAccessTest : public OwnershipTest {
  protected:
    bool Write(std::string const& path, std::string_view content) {
        return CFURLWriteDataAndPropertiesToResource(FileURL(path), Data(content), &mError);
    }
    mode_t ModeOf(std::string const& name) {
        struct stat status {};
        EXPECT_EQ(stat(mFolder.Path(name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TemporaryFolder mFolder;
    std::int32_t mError = 99;
};

TEST_F(FileAccessTest, WrittenFileReadsBackWhole) {
    std::string content(200000, '\0');
    for (std::size_t index = 0; index < content.size(); ++index) {
        content[index] = static_cast<char>(index * 31 >> 3);
    }
    for (std::string const& sample : {content, std::string()}) {
        EXPECT_TRUE(Write(mFolder.Path("file"), sample));
        EXPECT_EQ(mError, 0);
        CFRef<CFDataRef> data;
        EXPECT_TRUE(CFURLCreateDataAndPropertiesFromResource(nullptr, FileURL(mFolder.Path("file")),
                                                             data.Receive(), &mError));
        EXPECT_EQ(mError, 0);
        EXPECT_TRUE(Text(data) == sample);
    }
    EXPECT_EQ(mFolder.CountEntries(), 1);
}

TEST_F(FileAccessTest, ReadingWhatIsNoFileTellsWhy) {
    ASSERT_EQ(mkfifo(mFolder.Path("pipe").c_str(), 0600), 0);
    std::pair<char const*, std::int32_t> const cases[] = {
        {"absent", ENOENT}, {"", EISDIR}, {"pipe", EINVAL}};
    for (auto const& [name, error] : cases) {
        CFDataRef data = nullptr;
        auto const url = FileURL(mFolder.Path(name));
        EXPECT_FALSE(CFURLCreateDataAndPropertiesFromResource(nullptr, url, &data, &mError));
        EXPECT_EQ(mError, error) << name;
        EXPECT_EQ(data, nullptr);
    }
}

TEST_F(FileAccessTest, ModeStaysWithAnExistingFileAndFollowsTheMaskForANewOne) {
    mode_t const mask = umask(027);
    EXPECT_TRUE(Write(mFolder.Path("new"), "a"));
    umask(mask);
    EXPECT_EQ(ModeOf("new"), 0640U);
    chmod(mFolder.Path("new").c_str(), 0604);
    EXPECT_TRUE(Write(mFolder.Path("new"), "b"));
    EXPECT_EQ(ModeOf("new"), 0604U);
    EXPECT_EQ(mFolder.Read("new"), "b");
    chmod(mFolder.Path("new").c_str(), 06755);
    EXPECT_TRUE(Write(mFolder.Path("new"), "c"));
    EXPECT_EQ(ModeOf("new"), 0755U) << "without setuid and setgid";
}

TEST_F(FileAccessTest, InASharedFolderOnlyOwnLinksAndItsOwnersAreFollowed) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can make another user's link";
    }
    constexpr uid_t kNeighbour = 65534;
    std::filesystem::create_directory(mFolder.Path("shared"));
    mFolder.Write("file", "own");
    std::string const link = mFolder.Path("shared/link");
    ASSERT_EQ(symlink("../file", link.c_str()), 0);
    // The way there leads through a link of one's own.
    ASSERT_EQ(symlink("shared/link", mFolder.Path("first").c_str()), 0);
    struct {
        mode_t mode;
        uid_t folder;
        uid_t link;
        bool isFollowed;
    } const cases[] = {
        {01777, 0, kNeighbour, false},         {01777, 0, 0, true},
        {01777, kNeighbour, kNeighbour, true}, {01755, 0, kNeighbour, true},
        {0777, 0, kNeighbour, true},
    };
    for (auto const& row : cases) {
        ASSERT_EQ(chown(mFolder.Path("shared").c_str(), row.folder, 0), 0);
        ASSERT_EQ(chmod(mFolder.Path("shared").c_str(), row.mode), 0);
        ASSERT_EQ(lchown(link.c_str(), row.link, 0), 0);
        mFolder.Write("file", "own");
        for (char const* name : {"shared/link", "first"}) {
            CFRef<CFDataRef> data;
            EXPECT_EQ(row.isFollowed,
                      CFURLCreateDataAndPropertiesFromResource(nullptr, FileURL(mFolder.Path(name)),
                                                               data.Receive(), &mError));
            EXPECT_EQ(row.isFollowed ? 0 : linkRefusedErr, mError);
            EXPECT_EQ(row.isFollowed, Write(mFolder.Path(name), "new"));
            EXPECT_EQ(row.isFollowed ? 0 : linkRefusedErr, mError);
        }
        EXPECT_EQ(mFolder.Read("file"), row.isFollowed ? "new" : "own");
    }
}

TEST_F(FileAccessTest, ALinkStaysAndWhatItLeadsToIsReplaced) {
    mFolder.Write("real/file", "old");
    ASSERT_EQ(symlink("real/file", mFolder.Path("link").c_str()), 0);
    ASSERT_EQ(symlink("real/later", mFolder.Path("dangling").c_str()), 0);
    ASSERT_EQ(symlink("loop", mFolder.Path("loop").c_str()), 0);
    EXPECT_TRUE(Write(mFolder.Path("link"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(mFolder.Path("link")));
    EXPECT_EQ(mFolder.Read("real/file"), "new");
    EXPECT_TRUE(Write(mFolder.Path("dangling"), "made"));
    EXPECT_EQ(mFolder.Read("real/later"), "made");
    EXPECT_FALSE(Write(mFolder.Path("loop"), "x"));
    EXPECT_EQ(mError, ELOOP);
}

TEST_F(FileAccessTest, AFullDiskLeavesTheOldFileAndNothingBesideIt) {
    mFolder.Write("file", "old");
    auto const write = [&] { return Write(mFolder.Path("file"), std::string(5000, 'x')); };
    EXPECT_FALSE(OnSmallDisk(1000, SIG_IGN, write));
    EXPECT_EQ(mError, EFBIG);
    EXPECT_EQ(mFolder.Read("file"), "old");
    EXPECT_EQ(mFolder.CountEntries(), 1);

    EXPECT_FALSE(Write("/dev/full", "x"));
    EXPECT_EQ(mError, ENOSPC);
}

TEST_F(FileAccessTest, WhereNoFileCanStandTheWriteFails) {
    EXPECT_FALSE(Write(mFolder.Path("absent/file"), "x"));
    EXPECT_EQ(mError, ENOENT);
    EXPECT_FALSE(Write(mFolder.Path(), "x"));
    EXPECT_EQ(mError, EISDIR);
    if (geteuid() != 0) {
        mFolder.Write("file", "old");
        chmod(mFolder.Path("file").c_str(), 0444);
        EXPECT_FALSE(Write(mFolder.Path("file"), "x"));
        EXPECT_EQ(mError, EACCES);
        EXPECT_EQ(mFolder.Read("file"), "old");
    }
}

}  // namespace
