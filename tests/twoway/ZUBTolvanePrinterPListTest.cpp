// SPDX-License-Identifier: Apache-2.0
#include "twoway/ZUBTolvanePrinterPList.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <random>
#include <sstream>
#include <vector>

#include "tests/platform/TestSupport.h"

namespace {

using Words = std::vector<std::string>;

constexpr char kFile[] = "Library/Preferences/ZUB.TolvanePrinterV2.plist";
constexpr char kUnread[] = "Library/Preferences/ZUB.TolvanePrinterV2.plist.unread";
constexpr char kEndMark[] = "----- Data End -----";

// Lists are written here as words: END for the end mark, + and - for booleans, #5 for a number, ''
// for the empty string, anything else for a string.
Words WordsOf(std::string const& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::string XMLOf(std::string const& list) {
    std::string xml = "<plist version=\"1.0\"><array>";
    for (auto const& word : WordsOf(list)) {
        xml += word == "+"     ? "<true/>"
               : word == "-"   ? "<false/>"
               : word == "#5"  ? "<integer>5</integer>"
               : word == "''"  ? "<string></string>"
               : word == "END" ? std::string("<string>") + kEndMark + "</string>"
                               : "<string>" + word + "</string>";
    }
    return xml + "</array></plist>";
}

std::string WordOf(CFTypeRef element) {
    if (CFGetTypeID(element) != CFStringGetTypeID()) {
        return element == kCFBooleanTrue ? "+" : element == kCFBooleanFalse ? "-" : "#5";
    }
    std::string const text = Text(static_cast<CFStringRef>(element));
    return text == kEndMark ? "END" : text.empty() ? "''" : text;
}

std::string ListText(CFArrayRef list) {
    std::string text;
    for (CFIndex index = 0; index < CFArrayGetCount(list); ++index) {
        text += (index == 0 ? "" : " ") + WordOf(CFArrayGetValueAtIndex(list, index));
    }
    return text;
}

// The items of a block, "none" without the block.
std::string BlockOf(ZUBTolvanePrinterPList const& list, char const* name, std::int32_t number) {
    CFRef<CFMutableArrayRef> const items(CFArrayCreateMutable(nullptr, 0));
    return list.GetDataBlob(Str(name), number, items) ? ListText(items) : "none";
}

bool AddBlock(ZUBTolvanePrinterPList& list, char const* name, Words const& texts) {
    auto const items = std::make_unique<char[][ZUBTolvanePrinterPList::kDataItemSize]>(10);
    for (std::size_t index = 0; index < texts.size(); ++index) {
        texts[index].copy(items[index], sizeof items[index]);
    }
    return list.AddDataBlob(Str(name), static_cast<std::int32_t>(texts.size()), 0, items.get());
}

class ZUBTolvanePrinterPListTest : public OwnershipTest {
  protected:
    std::unique_ptr<ZUBTolvanePrinterPList> Read(std::string const& list) const {
        mHome.Write(kFile, XMLOf(list));
        return std::make_unique<ZUBTolvanePrinterPList>();
    }

    TemporaryFolder mHome;
    ScopedVariable mVariable{"HOME", mHome.Path().c_str()};
};

TEST_F(ZUBTolvanePrinterPListTest, OnlyANameInItsPlaceIsFound) {
    auto const list = Read("Anna Bert + 2 1:2 Carl x END Bert '' - 2 END Carl c + 0 Dora #5 - 0");
    struct {
        char const* name;
        CFIndex record;
        char const* address;
        bool isEnabled;
    } const cases[] = {{"aNNa", 0, "Bert", true}, {"BERT", 8, "", false},   {"Carl", 13, "c", true},
                       {"dora", 17, "", false},   {"2", -1, "", false},     {"c", -1, "", false},
                       {"", -1, "", false},       {kEndMark, -1, "", false}};
    for (auto const& row : cases) {
        bool found = row.record < 0;
        EXPECT_EQ(list->Exists(Str(row.name), found), row.record) << row.name;
        EXPECT_EQ(found, row.record >= 0) << row.name;
        EXPECT_EQ(Text(list->Find(Str(row.name))), row.address) << row.name;
        EXPECT_EQ(list->getIPEnabled(Str(row.name)), row.isEnabled) << row.name;
        EXPECT_EQ(list->setIPEnabled(Str(row.name), !row.isEnabled), found) << row.name;
        EXPECT_EQ(list->getIPEnabled(Str(row.name)), found && !row.isEnabled) << row.name;
    }
}

TEST_F(ZUBTolvanePrinterPListTest, AnAddressAndABlockMakeAWholeRecordAndLeaveTheOthers) {
    struct {
        char const* before;
        char const* withAddress;
        char const* withBlock;
    } const cases[] = {
        {"", "a n - 2 END", ""},
        {"A a + 2 1:1 k END B A - 0", "A n - 2 1:1 k END B A - 0",
         "A a + 2 0:2 i j 1:1 k END B A - 0"},
        {"A a + 2 1:0 0:2 k l 10:1 0 END", "A n - 2 1:0 0:2 k l 10:1 0 END",
         "A a + 2 0:2 i j 1:0 10:1 0 END"},
        {"A a + 1 3 x y z B b - 1 1 q", "A n - 2 END B b - 1 1 q",
         "A a + 2 0:2 i j END B b - 1 1 q"},
        {"A a + 0 END B b - 0", "A n - 2 END B b - 0", "A a + 2 0:2 i j END B b - 0"},
        {"A a + 1 0 B b - 0", "A n - 2 END B b - 0", "A a + 2 0:2 i j END B b - 0"},
        // Counts that can't be.
        {"A a + 1 2 x B b - 0", "A n - 2 END 2 x B b - 0", "A a + 2 0:2 i j END 2 x B b - 0"},
        {"A a + 1 x #5", "A n - 2 END x #5", "A a + 2 0:2 i j END x #5"},
        {"A a + 2 0:99 k END B b - 0", "A n - 2 0:99 k END B b - 0", "A a + 2 0:2 i j END B b - 0"},
        {"A a + 2 0:-7 k END", "A n - 2 0:-7 k END", "A a + 2 0:2 i j k END"},
        {"A a + 2 0:3 k 1:1 l END", "A n - 2 0:3 k 1:1 l END", "A a + 2 0:2 i j 1:1 l END"},
        // Booleans that would make a head of what is put before them.
        {"A a + 2 - 1:1 k END B b - 0", "A n - 2 - 1:1 k END B b - 0",
         "A a + 2 0:2 i j 1:1 k END - B b - 0"},
        {"A a + 2 - 0:1 - k + 1:1 l", "A n - 2 - 0:1 - k + 1:1 l END",
         "A a + 2 0:2 i j k 1:1 l END - +"},
        // Records cut short, and marks of no form.
        {"A a + 2 0:2 k B b - 0", "A n - 2 0:2 k END B b - 0", "A a + 2 0:2 i j END B b - 0"},
        {"A a + #5 0:1 k END", "A n - 2 END #5 0:1 k END", "A a + 2 0:2 i j END #5 0:1 k END"},
        {"A a B b - 0", "A a B b - 0 a n - 2 END", "A a B b - 0"},
    };
    for (auto const& row : cases) {
        auto list = Read(row.before);
        EXPECT_TRUE(list->Add(Str("a"), Str("n"), false));
        EXPECT_EQ(ListText(list->Records()), row.withAddress) << row.before;
        list = Read(row.before);
        EXPECT_TRUE(AddBlock(*list, "a", {"i", "j"}));
        EXPECT_EQ(ListText(list->Records()), row.withBlock) << row.before;
        EXPECT_EQ(list->RecordsChanged(), std::string(row.before) != row.withBlock) << row.before;
    }
}

TEST_F(ZUBTolvanePrinterPListTest, ABlockEndsWithItsRecordWhateverItsCountSays) {
    struct {
        char const* list;
        char const* block0;
        char const* block1;
    } const cases[] = {
        {"A a + 2 1:2 k l 0:1 m END", "m", "k l"},
        {"A a + 2 0:9 k #5 l END B b + 2 END", "k l", "none"},
        {"A a + 2 0:2147483647 k B b + 2 1:1 l END", "k", "none"},
        {"A a + 2 0:3 k 1:1 l END", "k", "l"},
        {"A a + 2 0:-1 k 1:x l END", "", ""},
        {"A a + 2 1:2 0:x 1:y 0:1 m END", "m", "0:x 1:y"},
        {"A a + 1 0:1 k END", "none", "none"},
        {"A a + B b + 2 0:1 k END", "none", "none"},
    };
    for (auto const& row : cases) {
        auto const list = Read(row.list);
        EXPECT_EQ(BlockOf(*list, "a", 0), row.block0) << row.list;
        EXPECT_EQ(BlockOf(*list, "a", 1), row.block1) << row.list;
    }
}

TEST_F(ZUBTolvanePrinterPListTest, WhatCannotStandInTheFileIsLeftOut) {
    auto const list = Read("A a + 2 END");
    std::string const unterminated(ZUBTolvanePrinterPList::kDataItemSize, 'x');
    EXPECT_TRUE(
        AddBlock(*list, "A", {"k", "\xFF", kEndMark, "\x01", "", unterminated, "1:2", "l"}));
    EXPECT_EQ(ListText(list->Records()), "A a + 2 0:4 k '' " + unterminated + " l END");
    EXPECT_FALSE(list->Add(Str("B"), nullptr, true));
    EXPECT_FALSE(list->Add(Str("B"), Str("\x02"), true));
    EXPECT_FALSE(list->Add(Str(kEndMark), Str("b"), true));
}

// What another reader of property lists makes of the file.
std::string ReadByPython(std::string const& path) {
    std::string const program = "print(ascii(plistlib.load(open(sys.argv[1], \"rb\"))))";
    return OutputOf("python3 -c 'import plistlib, sys; " + program + "' '" + path + "'");
}

TEST_F(ZUBTolvanePrinterPListTest, SavedRecordsAreReadByTheNextInstanceAndByOtherReaders) {
    ZUBTolvanePrinterPList list;
    CFRef<CFMutableStringRef> const address(CFStringCreateMutableCopy(nullptr, 0, Str("a<&>\r")));
    EXPECT_TRUE(list.Add(Str("Größe \"1\""), address, true));
    CFStringAppend(address, Str(" changed"));
    EXPECT_TRUE(list.Add(Str("B"), Str(" "), false));
    EXPECT_TRUE(AddBlock(list, "b", {"*ZUColor", "\xF0\x9F\x96\xA8"}));
    ASSERT_TRUE(list.Save()) << list.FileError();
    EXPECT_FALSE(list.RecordsChanged());
    EXPECT_EQ(ReadByPython(mHome.Path(kFile)),
              "['Gr\\xf6\\xdfe \"1\"', 'a<&>\\r', True, '2', '----- Data End -----', 'B', ' ', "
              "False, '2', '0:2', '*ZUColor', '\\U0001f5a8', '----- Data End -----']\n");
    EXPECT_TRUE(CFEqual(list.Records(), ZUBTolvanePrinterPList().Records()));
}

TEST_F(ZUBTolvanePrinterPListTest, AFailedSaveLeavesTheFileAndTheRecords) {
    auto list = Read("A a + 2 0:1 k END");
    std::string const before = mHome.Read(kFile);
    EXPECT_TRUE(list->Add(Str("B"), Str("b"), true));
    auto const save = [&] { return list->Save(); };
    EXPECT_FALSE(OnSmallDisk(100, SIG_IGN, save));
    EXPECT_EQ(list->FileError(), EFBIG);
    EXPECT_EQ(mHome.Read(kFile), before);
    // A process that ends in the middle of the write.
    EXPECT_EXIT(OnSmallDisk(100, SIG_DFL, save), testing::KilledBySignal(SIGXFSZ), "");
    EXPECT_EQ(mHome.Read(kFile), before);

    std::filesystem::remove_all(mHome.Path("Library"));
    mHome.Write("Library", "in the way");
    EXPECT_FALSE(list->Save());
    EXPECT_EQ(list->FileError(), ENOTDIR);
    EXPECT_EQ(ListText(list->Records()), "A a + 2 0:1 k END B b + 2 END");
}

TEST_F(ZUBTolvanePrinterPListTest, AFileThatIsNoListIsKeptBesideTheNewOne) {
    std::string ending;
    for (std::string const content : {"<plist><dict><key>A</key><string>a</string></dict></plist>",
                                      "<plist><array><string>A</str", ""}) {
        mHome.Write(kFile, content);
        ZUBTolvanePrinterPList list;
        EXPECT_TRUE(list.Add(Str("A"), Str("a"), true));
        EXPECT_TRUE(list.Save() && list.Save());
        EXPECT_EQ(mHome.Read(kUnread + ending), content);
        EXPECT_EQ(Text(ZUBTolvanePrinterPList().Find(Str("A"))), "a");
        ending = ending.empty() ? ".2" : ".3";
    }
    EXPECT_TRUE(mHome.Read(kUnread).starts_with("<plist><dict>")) << "the first stays";
}

// Runs it in a process that no file is open to by its owner's power alone; what that returned.
template <typename Function>
bool RunAsUser(TemporaryFolder const& home, Function function) {
    constexpr uid_t kNobody = 65534;
    pid_t const child = fork();
    if (child == 0) {
        for (char const* name : {"", "Library", "Library/Preferences", kFile}) {
            if (getuid() == 0 && chown(home.Path(name).c_str(), kNobody, kNobody) != 0) {
                _exit(2);
            }
        }
        bool const isUser = getuid() != 0 || (setgid(kNobody) == 0 && setuid(kNobody) == 0);
        _exit(isUser && function() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(ZUBTolvanePrinterPListTest, AListThatCannotBeReadIsNeverReplaced) {
    mHome.Write(kFile, XMLOf("A a + 2 END B b + 2 END"));
    std::string const before = mHome.Read(kFile);
    // It may be written, and its folder too.
    chmod(mHome.Path(kFile).c_str(), 0200);
    EXPECT_TRUE(RunAsUser(mHome, [] {
        ZUBTolvanePrinterPList list;
        bool const isAdded = list.Add(Str("C"), Str("c"), true);
        return isAdded && !list.Save() && list.FileError() == EACCES;
    }));
    EXPECT_EQ(mHome.Read(kFile), getuid() == 0 ? before : "");
    // Once it can be read again, what was added goes beside what is there.
    EXPECT_TRUE(RunAsUser(mHome, [&] {
        ZUBTolvanePrinterPList list;
        bool const isAdded = list.Add(Str("C"), Str("c"), true);
        chmod(mHome.Path(kFile).c_str(), 0640);
        return isAdded && list.Save();
    }));
    EXPECT_EQ(ListText(ZUBTolvanePrinterPList().Records()), "A a + 2 END B b + 2 END C c + 2 END");
    struct stat status {};
    ASSERT_EQ(0, stat(mHome.Path(kFile).c_str(), &status));
    EXPECT_EQ(0640U, status.st_mode & 07777U) << "a file keeps its mode";
    std::filesystem::remove(mHome.Path(kFile));
    ASSERT_TRUE(ZUBTolvanePrinterPList().Save());
    ASSERT_EQ(0, stat(mHome.Path(kFile).c_str(), &status));
    EXPECT_EQ(0600U, status.st_mode & 07777U);
}

TEST_F(ZUBTolvanePrinterPListTest, ASaveChangesItsOwnRecordAndLeavesWhatOthersSaved) {
    auto const list = Read("A a + 2 1:1 k END B b - 2 END");
    auto const other = std::make_unique<ZUBTolvanePrinterPList>();
    EXPECT_TRUE(other->Add(Str("a"), Str("n"), false) && other->Add(Str("C"), Str("c"), true));
    EXPECT_TRUE(other->Save());
    EXPECT_TRUE(AddBlock(*list, "A", {"i"}) && list->setIPEnabled(Str("B"), true));
    EXPECT_TRUE(list->Save());
    EXPECT_EQ(ListText(list->Records()), "A n - 2 0:1 i 1:1 k END B b + 2 END C c + 2 END");
    EXPECT_TRUE(CFEqual(list->Records(), ZUBTolvanePrinterPList().Records()));
    // A record that has gone from the file comes back whole.
    EXPECT_TRUE(AddBlock(*other, "C", {"j"}));
    mHome.Write(kFile, XMLOf("D d - 2 END"));
    EXPECT_TRUE(other->Save());
    EXPECT_EQ(ListText(other->Records()), "D d - 2 END C c + 2 0:1 j END");
}

TEST_F(ZUBTolvanePrinterPListTest, ProcessesThatSaveAtOnceLoseNothing) {
    constexpr int kRecords = 100;
    auto const saveAll = [](char const* prefix) {
        bool isSaved = true;
        for (int number = 0; number < kRecords; ++number) {
            ZUBTolvanePrinterPList list;
            isSaved = list.Add(Str(prefix + std::to_string(number)), Str("x"), true) &&
                      list.Save() && isSaved;
        }
        return isSaved;
    };
    pid_t const child = fork();
    if (child == 0) {
        _exit(saveAll("A") ? 0 : 1);
    }
    EXPECT_TRUE(saveAll("B"));
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(0, status);
    EXPECT_EQ(2 * kRecords * 5, CFArrayGetCount(ZUBTolvanePrinterPList().Records()));
    EXPECT_FALSE(std::filesystem::exists(mHome.Path(kFile) + ".lock"));
}

TEST_F(ZUBTolvanePrinterPListTest, WithoutMemoryNothingIsHalfDone) {
    constexpr char kBefore[] = "A a + 1 1 x B b - 2 1:1 k END";
    auto const name = Str("a");
    auto const address = Str("n");
    bool isDone = false;
    for (long count = 0; !isDone; ++count) {
        auto const list = Read(kBefore);
        FailCreationAfter(count);
        isDone = list->Add(name, address, false);
        FailCreationAfter(-1);
        EXPECT_EQ(ListText(list->Records()), isDone ? "A n - 2 END B b - 2 1:1 k END" : kBefore);
    }
}

TEST_F(ZUBTolvanePrinterPListTest, DamageInOneRecordLosesNothingOfTheOthers) {
    constexpr unsigned kSeed = 20;
    std::mt19937 random(kSeed);
    auto const anyOf = [&](Words const& words) { return words[random() % words.size()]; };
    std::string const first = "A B + 2 1:1 k 0:2 C l END ";
    std::string const last = "C A - 2 0:1 m END";
    Words const records = {"B b + 2 0:2 x y 1:1 z END", "B b - 1 3 x y z", "B b + 0"};
    Words const pool = WordsOf("+ - #5 '' A B C b 0 1 2 0:9 0:-1 0:x 1:2 END 7");
    for (int round = 0; round < 500; ++round) {
        std::string before = first;
        for (auto const& word : WordsOf(anyOf(records))) {
            auto const fault = random() % 12;  // put in front, put in its place, left out or none
            before += fault < 2 ? anyOf(pool) + " " : "";
            before += fault < 1 || fault > 2 ? word + " " : "";
        }
        auto const list = Read(before + last);
        EXPECT_TRUE(AddBlock(*list, "B", {"i"}));
        EXPECT_TRUE(list->Add(Str("b"), Str("n"), false));
        EXPECT_TRUE(AddBlock(*list, "B", {"i", "j"}));
        EXPECT_EQ(Text(list->Find(Str("B"))) + " " + BlockOf(*list, "B", 0), "n i j") << before;
        std::string const after = ListText(list->Records()) + " ";
        EXPECT_TRUE(after.starts_with(first)) << before << "became " << after;
        EXPECT_NE(after.find(" " + last + " "), std::string::npos) << before << "became " << after;
        EXPECT_EQ(BlockOf(*list, "A", 0), "C l") << before;
    }
}

}  // namespace
