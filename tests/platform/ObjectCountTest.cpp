// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <memory>
#include <utility>

#include "platform/CollectionManager.h"
#include "platform/PrintManager.h"
#include "platform/TextEncodingConverter.h"
#include "tests/platform/TestSupport.h"

namespace {

using ObjectCountTest = OwnershipTest;

using Owner = std::shared_ptr<void const>;

template <typename Object>
Owner Owned(Object* object, void (*dispose)(Object*)) {
    return object == nullptr ? Owner() : Owner(object, dispose);
}
Owner Owned(void const* object) {
    return object == nullptr ? Owner() : Owner(object, CFRelease);
}

Owner NewConverter() {
    TECObjectRef converter = nullptr;
    TECCreateConverter(&converter, 0, 256);
    return Owned(converter, TECDisposeConverter);
}

Owner NewSession() {
    PMPrintSession session = nullptr;
    PMCreateSession(&session);
    return Owned(session, PMDisposeSession);
}

Owner NewTicket() {
    static PMTicketRef sTicket;
    PMTicketCreate(CFSTR("t"), &sTicket);
    return sTicket == 0 ? Owner() : Owner(&sTicket, PMTicketReleaseAndClear);
}

std::pair<char const*, std::function<Owner()>> const kCreations[] = {
    {"string", [] { return Owned(CFStringCreateWithCString(nullptr, "a", 0)); }},
    {"data", [] { return Owned(CFDataCreate(nullptr, nullptr, 0)); }},
    {"array", [] { return Owned(CFArrayCreateMutable(nullptr, 0)); }},
    {"dictionary", [] { return Owned(CFDictionaryCreateMutable(nullptr, 0)); }},
    {"URL", [] { return Owned(FileURL("/", true).Release()); }},
    {"UUID", [] { return Owned(CFUUIDCreate(nullptr)); }},
    {"handle", [] { return Owned(NewHandle(1), DisposeHandle); }},
    {"collection", [] { return Owned(NewCollection(), DisposeCollection); }},
    {"converter", NewConverter},
    {"session", NewSession},
    {"ticket", NewTicket},
};

TEST_F(ObjectCountTest, EveryKindOfObjectIsCountedAndCanFailToBeMade) {
    for (auto const& [name, create] : kCreations) {
        long const before = LiveObjectCount();
        FailCreationAfter(0);
        EXPECT_EQ(create(), nullptr) << name;
        EXPECT_EQ(LiveObjectCount(), before) << name;
        Owner made = create();  // only one fails
        ASSERT_NE(made, nullptr) << name;
        EXPECT_GT(LiveObjectCount(), before) << name;
        made.reset();
        EXPECT_EQ(LiveObjectCount(), before) << name;
    }
}

TEST_F(ObjectCountTest, TheFailureComesAfterTheGivenNumberOfCreations) {
    FailCreationAfter(2);
    CFRef<CFDataRef> made[5];
    for (auto& data : made) {
        data = Data("x");
    }
    EXPECT_TRUE(made[0] && made[1] && !made[2] && made[3] && made[4]);
    FailCreationAfter(1);
    FailCreationAfter(-1);
    EXPECT_TRUE(Data("x") && Data("y"));
}

}  // namespace
