// SPDX-License-Identifier: Apache-2.0
#include <functional>

#include "platform/CollectionManager.h"
#include "platform/PrintManager.h"
#include "platform/TextEncodingConverter.h"
#include "tests/platform/TestSupport.h"

namespace {

using ObjectCountTest = OwnershipTest;

struct Creation {
    char const* name;
    std::function<void const*()> create;
    std::function<void(void const*)> dispose;
};

void const* NewTicket() {
    static PMTicketRef sTicket;
    PMTicketCreate(CFSTR("t"), &sTicket);
    return sTicket == 0 ? nullptr : &sTicket;
}

template <typename Object>
Object* Unconst(void const* object) {
    return static_cast<Object*>(const_cast<void*>(object));
}

Creation const kCreations[] = {
    {"string", [] { return CFStringCreateWithCString(nullptr, "a", 0); }, CFRelease},
    {"mutable string", [] { return CFStringCreateMutable(nullptr, 0); }, CFRelease},
    {"data", [] { return CFDataCreate(nullptr, nullptr, 0); }, CFRelease},
    {"array", [] { return CFArrayCreateMutable(nullptr, 0); }, CFRelease},
    {"dictionary", [] { return CFDictionaryCreateMutable(nullptr, 0); }, CFRelease},
    {"URL", [] { return CFURLCreateFromFileSystemRepresentation(nullptr, Bytes("/"), 1, true); },
     CFRelease},
    {"UUID", [] { return CFUUIDCreate(nullptr); }, CFRelease},
    {"handle", [] { return NewHandle(1); },
     [](void const* made) { DisposeHandle(Unconst<char*>(made)); }},
    {"collection", [] { return NewCollection(); },
     [](void const* made) { DisposeCollection(Unconst<OpaqueCollection>(made)); }},
    {"converter",
     [] {
         TECObjectRef converter = nullptr;
         TECCreateConverter(&converter, 0, 256);
         return converter;
     },
     [](void const* made) { TECDisposeConverter(Unconst<OpaqueTECObject>(made)); }},
    {"session",
     [] {
         PMPrintSession session = nullptr;
         PMCreateSession(&session);
         return session;
     },
     [](void const* made) { PMDisposeSession(Unconst<OpaquePMPrintSession>(made)); }},
    {"ticket", NewTicket,
     [](void const* made) { PMTicketReleaseAndClear(Unconst<PMTicketRef>(made)); }},
};

TEST_F(ObjectCountTest, EveryKindOfObjectIsCountedAndCanFailToBeMade) {
    for (auto const& creation : kCreations) {
        long const before = LiveObjectCount();
        FailCreationAfter(0);
        EXPECT_EQ(creation.create(), nullptr) << creation.name;
        EXPECT_EQ(LiveObjectCount(), before) << creation.name;
        auto const* made = creation.create();  // only one fails
        ASSERT_NE(made, nullptr) << creation.name;
        EXPECT_GT(LiveObjectCount(), before) << creation.name;
        creation.dispose(made);
        EXPECT_EQ(LiveObjectCount(), before) << creation.name;
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
