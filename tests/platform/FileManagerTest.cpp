// SPDX-License-Identifier: Apache-2.0
#include "platform/FileManager.h"

#include <cstring>

#include "tests/platform/TestSupport.h"

namespace {

class FileManagerTest : public OwnershipTest {
  protected:
    OSErr Make(std::string const& name, FSSpec& file) {
        return FSMakeFSSpecFromURL(FileURL(mFolder.Path(name)), &file);
    }

    TemporaryFolder mFolder;
};

std::string PathOf(FSSpec const& file) {
    char path[1024] = "unset";
    return FSSpecGetPath(&file, path, sizeof path) == noErr ? path : "(none)";
}

std::string NameOf(FSSpec const& file) {
    char name[1024] = "unset";
    return FSSpecGetName(&file, name, sizeof name) == noErr ? name : "(none)";
}

TEST_F(FileManagerTest, AnFSSpecLeadsBackToTheFile) {
    mFolder.Write("Printer.ppd", "x");
    FSSpec file;
    EXPECT_EQ(Make("Printer.ppd", file), noErr);
    EXPECT_EQ(PathOf(file), mFolder.Path("Printer.ppd"));

    FSRef reference;
    EXPECT_TRUE(CFURLGetFSRef(FileURL(mFolder.Path("Printer.ppd")), &reference));
    EXPECT_FALSE(CFURLGetFSRef(FileURL(mFolder.Path("absent")), &reference));

    FSSpec absent;
    EXPECT_EQ(Make("absent", absent), fnfErr);
    EXPECT_EQ(PathOf(absent), mFolder.Path("absent"));

    FSSpec nowhere;
    EXPECT_EQ(Make("no/folder", nowhere), dirNFErr);
    EXPECT_EQ(PathOf(nowhere), "(none)");
    EXPECT_EQ(Make("Printer.ppd/x", nowhere), dirNFErr);

    FSSpec root;
    EXPECT_EQ(FSMakeFSSpecFromURL(FileURL("/"), &root), noErr);
    EXPECT_EQ(PathOf(root), "/");
}

TEST_F(FileManagerTest, NamesWithinAKnownFolderLeadToFiles) {
    mFolder.Write("a.ppd", "x");
    FSSpec first;
    ASSERT_EQ(Make("a.ppd", first), noErr);
    auto const make = [&](std::string_view name, std::int32_t directory, FSSpec& file) {
        std::string const pascal = static_cast<char>(name.size()) + std::string(name);
        return FSMakeFSSpec(0, directory, Bytes(pascal), &file);
    };
    FSSpec file;
    EXPECT_EQ(make("a.ppd", first.parID, file), noErr);
    EXPECT_EQ(std::memcmp(&file, &first, sizeof file), 0);
    EXPECT_EQ(make("b.ppd", first.parID, file), fnfErr);
    EXPECT_EQ(PathOf(file), mFolder.Path("b.ppd"));
    EXPECT_EQ(make("a.ppd", 99999, file), dirNFErr);
    for (std::string_view const bad :
         {std::string_view(""), std::string_view("a/b"), std::string_view("a\0b", 3)}) {
        EXPECT_EQ(make(bad, first.parID, file), bdNamErr);
    }
}

TEST_F(FileManagerTest, LongNamesAreShortenedAndStillLeadToTheirFiles) {
    std::string common;
    while (common.size() < 90) {
        common += "ä";  // two bytes, so that a cut may fall inside a character
    }
    std::string const names[] = {common + "1.ppd", common + "2.ppd", "x" + common + ".ppd",
                                 std::string(63, 'n'), std::string(64, 'n')};
    for (auto const& name : names) {
        mFolder.Write(name, name);
        FSSpec file;
        ASSERT_EQ(Make(name, file), noErr);
        EXPECT_LE(file.name[0], 63);
        EXPECT_EQ(NameOf(file), name);
        EXPECT_EQ(PathOf(file), mFolder.Path(name));
        CFRef<CFStringRef> const shortened(
            CFStringCreateWithPascalString(nullptr, file.name, kCFStringEncodingUTF8));
        EXPECT_TRUE(shortened) << name;

        FSSpec again;
        EXPECT_EQ(FSMakeFSSpec(file.vRefNum, file.parID, file.name, &again), noErr);
        EXPECT_EQ(std::memcmp(&again, &file, sizeof file), 0);
    }
    FSSpec exact;
    Make(names[3], exact);
    EXPECT_EQ(exact.name[0], 63);
    char small[10];
    EXPECT_EQ(FSSpecGetName(&exact, small, sizeof small), paramErr);
    EXPECT_STREQ(small, "");
}

TEST_F(FileManagerTest, FilesAreMadeWrittenAndReadThroughTheirNumbers) {
    FSSpec file;
    ASSERT_EQ(Make("data", file), fnfErr);
    std::int16_t reference = 99;
    EXPECT_EQ(FSpOpenDF(&file, fsRdPerm, &reference), fnfErr);
    EXPECT_EQ(FSpCreate(&file, 0, 0), noErr);

    ASSERT_EQ(FSpOpenDF(&file, fsWrPerm, &reference), noErr);
    long count = 10;
    EXPECT_EQ(FSWrite(reference, &count, "0123456789"), noErr);
    EXPECT_EQ(count, 10);
    char unread[16];
    EXPECT_EQ(FSRead(reference, &count, unread), ioErr);  // not open for that
    EXPECT_EQ(FSClose(reference), noErr);
    EXPECT_EQ(FSClose(reference), fnOpnErr);

    ASSERT_EQ(FSpOpenDF(&file, fsRdPerm, &reference), noErr);
    long size = 0;
    EXPECT_EQ(GetEOF(reference, &size), noErr);
    EXPECT_EQ(size, 10);
    char buffer[16] = "";
    count = 4;
    EXPECT_EQ(FSRead(reference, &count, buffer), noErr);
    count = 16;
    EXPECT_EQ(FSRead(reference, &count, buffer), eofErr);
    EXPECT_EQ(count, 6);
    EXPECT_EQ(std::string(buffer, 6), "456789");
    count = -1;
    EXPECT_EQ(FSRead(reference, &count, buffer), paramErr);
    EXPECT_EQ(FSClose(reference), noErr);
}

TEST_F(FileManagerTest, FoldersPipesAndFullDisksAreReported) {
    mFolder.Write("folder/x", "");
    ASSERT_EQ(mkfifo(mFolder.Path("pipe").c_str(), 0600), 0);
    FSSpec file;
    std::int16_t reference = 0;
    ASSERT_EQ(Make("folder", file), noErr);
    EXPECT_EQ(FSpOpenDF(&file, fsRdPerm, &reference), ioErr);
    ASSERT_EQ(Make("pipe", file), noErr);
    EXPECT_EQ(FSpOpenDF(&file, fsRdPerm, &reference), ioErr);
    ASSERT_EQ(FSMakeFSSpecFromURL(FileURL("/dev/full"), &file), noErr);
    ASSERT_EQ(FSpOpenDF(&file, fsWrPerm, &reference), noErr);
    long count = 3;
    EXPECT_EQ(FSWrite(reference, &count, "abc"), dskFulErr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(FSClose(reference), noErr);
}

}  // namespace
