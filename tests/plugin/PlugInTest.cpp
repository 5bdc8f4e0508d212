// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>

#include <cstring>

#include "platform/PlugInHost.h"
#include "tests/VelonFeatures/Project/Core/TestSession.h"

namespace {

// The plug-in's entry, from the executable of the bundle.
PlugInFactoryFunction LoadEntry() {
    void* const library = dlopen(ZUB_PLUGIN_DIR "/Contents/MacOS/ZUB", RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(nullptr, library) << dlerror();
    return library == nullptr ? nullptr
                              : reinterpret_cast<PlugInFactoryFunction>(
                                    dlsym(library, "PrinterInfoPluginFactory"));
}

TEST(PlugInTest, AHostThatKnowsOnlyTheEntryPrints) {
    PlugInFactoryFunction const entry = LoadEntry();
    ASSERT_NE(nullptr, entry);
    CFRef<CFBundleRef> const bundle(CFBundleCreate(nullptr, FileURL(ZUB_PLUGIN_DIR, true)));
    ASSERT_TRUE(bundle);
    CFRef<CFUUIDRef> const type(CFUUIDCreateFromString(nullptr, CFSTR(kPrinterInfoTypeID)));
    auto* const factory = static_cast<PlugInFactory*>(entry(nullptr, type));
    ASSERT_NE(nullptr, factory);

    CFRef<CFUUIDRef> const wanted(CFUUIDCreateFromString(nullptr, CFSTR(kPrinterInfoInterfaceID)));
    void* result = nullptr;
    ASSERT_EQ(0, factory->table->QueryInterface(factory, CFUUIDGetUUIDBytes(wanted), &result));
    auto* instance = static_cast<PrinterInfoInterface*>(result);
    ASSERT_NE(nullptr, instance);
    PrinterInfoTable const& table = *instance->table;
    ASSERT_EQ(noErr, table.Retain(instance));
    PrinterInfoAPIVersion version = {9, 9, 9, 9};
    EXPECT_EQ(noErr, table.GetAPIVersion(instance, &version));
    PrinterInfoAPIVersion const expected = {1, 0, 1, 0};
    EXPECT_EQ(0, std::memcmp(&expected, &version, sizeof(version)));

    PlugInContext context = nullptr;
    OSType creator = 0;
    CFRef<CFStringRef> kind;
    CFStringRef title = nullptr;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    ASSERT_EQ(noErr, table.Prologue(&context, &creator, kind.Receive(), &title, &width, &height));
    EXPECT_EQ("Printer Features", Text(title));
    EXPECT_EQ(0x5A554232U, creator);
    EXPECT_EQ(TestSession::kBundleID, Text(kind));
    EXPECT_EQ(525U, width);
    EXPECT_EQ(200U, height);

    TestSession session;
    session.SetPPD(TestSession::Head() + TestSession::Popup("Duplex"), "plugintest.ppd");
    std::uint32_t flags = 7;
    ASSERT_EQ(noErr, table.Initialize(context, &flags, 1, nullptr, session.Get()));
    ASSERT_EQ(noErr, table.Sync(context, session.Get(), false));
    TestSession::Pairs const job = session.TakeJob();
    ASSERT_GE(job.size(), 2U);
    EXPECT_EQ((std::pair<int, std::string>(-9, "*Duplex")), job[0]);
    EXPECT_EQ(
        (std::pair<int, std::string>(81, "%%BeginFeature: *Duplex A\nDuplex A\n%%EndFeature\n")),
        job[1]);

    EXPECT_EQ(noErr, table.Close(context));
    EXPECT_EQ(noErr, table.Terminate(context, noErr));
    unlink("/tmp/plugintest.ppd");  // the session data keeps it until the next dialog
    PrinterInfoInterface* retained = instance;
    instance->table->Release(&retained);
    instance->table->Release(&instance);
    EXPECT_EQ(0U, factory->table->Release(factory));
}

}  // namespace
