// SPDX-License-Identifier: Apache-2.0
#include <pwd.h>
#include <unistd.h>

#include "platform/PlugInHost.h"
#include "platform/Testing.h"
#include "platform/UserIdentity.h"
#include "tests/platform/TestSupport.h"

namespace {

using CFUUIDTest = OwnershipTest;

TEST_F(CFUUIDTest, TextIsReadInEitherCaseAndOnlyInItsOneShape) {
    CFRef<CFUUIDRef> const uuid(
        CFUUIDCreateFromString(nullptr, CFSTR("bcb07250-B738-11d3-8519-0050E4603277")));
    ASSERT_TRUE(uuid);
    EXPECT_EQ(CFUUIDGetUUIDBytes(uuid).byte[15], 0x77);
    CFRef<CFStringRef> const text(CFUUIDCreateString(nullptr, uuid));
    EXPECT_EQ(Text(text), kPrinterInfoTypeID);
    for (char const* bad :
         {"", "BCB07250B73811D385190050E4603277", "BCB07250-B738-11D3-8519-0050E460327",
          "BCB07250-B738-11D3-8519-0050E460327G", "BCB07250-B738-11D3-85190-050E4603277",
          "BCB07250-B738-11D3-8519-0050E46032771"}) {
        EXPECT_EQ(CFUUIDCreateFromString(nullptr, Str(bad)), nullptr) << bad;
    }
}

TEST_F(CFUUIDTest, NewOnesDifferAndAreMarkedAsRandom) {
    CFRef<CFUUIDRef> const first(CFUUIDCreate(nullptr));
    EXPECT_FALSE(CFEqual(first, CFRef<CFUUIDRef>(CFUUIDCreate(nullptr))));
    EXPECT_EQ(CFUUIDGetUUIDBytes(first).byte[6] >> 4, 4);
    EXPECT_EQ(CFUUIDGetUUIDBytes(first).byte[8] >> 6, 2);
}

TEST(UserIdentityTest, TheNameIsTheRealUsersUnlessATestSaysAnother) {
    passwd const* const account = getpwuid(getuid());
    ASSERT_NE(account, nullptr);
    EXPECT_EQ(Text(CFRef<CFStringRef>(CSCopyUserName())), account->pw_name);
    SetUserName("J\xC3\xBCrg");
    EXPECT_EQ(Text(CFRef<CFStringRef>(CSCopyUserName())), "J\xC3\xBCrg");
    SetUserName(nullptr);
}

}  // namespace
