// SPDX-License-Identifier: Apache-2.0
// A parse in which one allocation fails, each in turn.
#include <new>

#include <gtest/gtest.h>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include "PPDText.h"
#include "platform/Testing.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"

namespace {

// One of everything that the reader makes something of.
constexpr char kEverything[] =
    "*ModelName: \"Model\"\n"
    "*%ZUFileVersion: 1\n"
    "*%ZUShortcut: *Pick\n"
    "*OpenGroup: InstallableOptions/Installed\n"
    "*%ZUBFlags *Tray: Dynamic\n"
    "*OpenUI *Tray/Tray: Boolean\n*DefaultTray: False\n"
    "*Tray True/Yes: \"1\"\n*Tray False/No: \"0\"\n*CloseUI: *Tray\n"
    "*CloseGroup: InstallableOptions\n"
    "*%ZUBFlags *Pick: Dynamic|Setup\n*%ZUBGroup *Pick: Finish/F\n"
    "*OpenUI *Pick/Pick: PickOne\n*DefaultPick: B\n"
    "*Pick A/One: \"a\"\n*Pick B/Two: \"\nb\n\"\n*End\n*CloseUI: *Pick\n"
    "*%ZUBFlags *Range: Dynamic\n*%ZUBGroup *Range: Finish/F\n"
    "*%ZUBRange *Range/Range: (0;9;1;5) \"<*Range>\"\n"
    "*%ZUBFlags *Float: Dynamic\n*%ZUBGroup *Float: Finish/F\n"
    "*%ZUBFloatRange *Float/Float: (0;9;1;5) \"<*Float>\"\n"
    "*%ParamCustomPrintSize Width: 1 points 72 900\n"
    "*%ZUBSpecialOption *Special: value\n"
    "*UIConstraints: *Pick A *Tray True\n"
    "*UIConstraints: *Pick *Tray\n";

TEST(OutOfMemoryTest, AParseWithoutMemoryAtAnyPointEndsAndLeaksNothing) {
    TemporaryFile const file(std::string(kHeader) + kTree + kEverything);
    CFRef<CFURLRef> const url = file.URL();
    long const before = LiveObjectCount();
    bool failed = true;
    long count = 0;
    for (; failed && count < 20000; ++count) {
        ZUBPPD* ppd = nullptr;
        FailAnyNewAfter(count);
        try {
            ppd = new ZUBPPD(url, kParseAll, nullptr);
        } catch (std::bad_alloc const&) {
        }
        failed = HasAnyNewFailed();
        FailAnyNewAfter(-1);
        EXPECT_TRUE(failed || ppd->IsValidPPD()) << "an earlier failure stays behind";
        PPDPtr(ppd).reset();
        ASSERT_EQ(before, LiveObjectCount()) << count;
    }
    EXPECT_FALSE(failed);
    EXPECT_GT(count, 100) << "the allocations of a parse";
#ifdef __SANITIZE_ADDRESS__
    EXPECT_EQ(0, __lsan_do_recoverable_leak_check());
#endif
}

}  // namespace
