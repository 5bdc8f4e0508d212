// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PlugIn/PlugInFactoryEntry.h"

#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"
#include "platform/PlugInHost.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

namespace {

class PlugInFactoryTest : public CoreFixture {
  protected:
    static PlugInFactory* MakeFactory(char const* type = kPrinterInfoTypeID) {
        CFRef<CFUUIDRef> const typeID(CFUUIDCreateFromString(nullptr, Str(type)));
        return static_cast<PlugInFactory*>(PrinterInfoPluginFactory(nullptr, typeID));
    }
    static std::int32_t Query(PlugInFactory* factory, char const* identifier, void*& result) {
        CFRef<CFUUIDRef> const uuid(CFUUIDCreateFromString(nullptr, Str(identifier)));
        return factory->table->QueryInterface(factory, CFUUIDGetUUIDBytes(uuid), &result);
    }
    static PrinterInfoInterface* MakeInterface(PlugInFactory* factory) {
        void* result = nullptr;
        EXPECT_EQ(0, Query(factory, kPrinterInfoInterfaceID, result));
        return static_cast<PrinterInfoInterface*>(result);
    }
    static void Release(PrinterInfoInterface* instance) { instance->table->Release(&instance); }
};

TEST_F(PlugInFactoryTest, OneDialogAtATime) {
    PlugInFactory* factory = MakeFactory();
    ASSERT_NE(nullptr, factory);
    PrinterInfoInterface* const instance = MakeInterface(factory);
    for (bool const byClose : {true, false}) {
        EXPECT_EQ(nullptr, MakeFactory());
        // The flag is cleared before the context is looked at.
        EXPECT_EQ(-9530, byClose ? instance->table->Close(nullptr)
                                 : instance->table->Terminate(nullptr, noErr));
        PlugInFactory* const next = MakeFactory();
        EXPECT_NE(nullptr, next);
        factory->table->Release(factory);
        factory = next;
    }
    Release(instance);
    factory->table->Release(factory);
}

TEST_F(PlugInFactoryTest, AFailedCallKeepsTheNextOneOut) {
    EXPECT_EQ(nullptr, MakeFactory("00000000-0000-0000-C000-000000000046")) << "unknown type";
    EXPECT_EQ(nullptr, MakeFactory()) << "still busy";
    ForgetDialog();
    gUseCommonPresets = true;
    EXPECT_EQ(nullptr, MakeFactory()) << "no bundle of this identity";
    EXPECT_TRUE(gFactoryBusy);
}

TEST_F(PlugInFactoryTest, FactoryAndInterfaceLiveByTheirCounts) {
    PlugInFactory* const factory = MakeFactory();
    ASSERT_NE(nullptr, factory);
    CFRef<CFUUIDRef> const factoryID(
        CFUUIDCreateFromString(nullptr, Str("7D1C9F64-2B5E-4E0B-9A37-C15D08B6F2A9")));
    EXPECT_EQ(1, CFPlugInInstanceCount(factoryID));
    void* result = factory;
    EXPECT_EQ(kNoInterface, Query(factory, kPrinterInfoTypeID, result));
    EXPECT_EQ(nullptr, result);
    EXPECT_EQ(0, Query(factory, "00000000-0000-0000-C000-000000000046", result));
    EXPECT_EQ(factory, result);
    EXPECT_EQ(3U, factory->table->AddRef(factory));

    PrinterInfoInterface* const first = MakeInterface(factory);
    EXPECT_EQ(noErr, first->table->Retain(first));
    IBNibRef const nib = gSharedNib;
    EXPECT_NE(nullptr, nib);
    PrinterInfoInterface* const second = MakeInterface(factory);
    EXPECT_EQ(noErr, second->table->Retain(second));
    EXPECT_EQ(nib, gSharedNib) << "opened once for all instances";
    Release(first);
    Release(first);
    EXPECT_EQ(nullptr, gSharedNib);
    Release(second);
    Release(second);

    EXPECT_EQ(2U, factory->table->Release(factory));
    EXPECT_EQ(1U, factory->table->Release(factory));
    EXPECT_EQ(1, CFPlugInInstanceCount(factoryID));
    EXPECT_EQ(0U, factory->table->Release(factory));
    EXPECT_EQ(0, CFPlugInInstanceCount(factoryID));
    EXPECT_EQ(nullptr, gCachedBundle);
}

TEST_F(PlugInFactoryTest, TheInterfaceChecksItsContext) {
    PlugInFactory* const factory = MakeFactory();
    ASSERT_NE(nullptr, factory);
    PrinterInfoInterface* const instance = MakeInterface(factory);
    PrinterInfoTable const& table = *instance->table;
    std::uint32_t flags = 0;
    CFArrayRef lines = nullptr;
    EXPECT_EQ(-9530, table.Initialize(nullptr, &flags, 0, nullptr, mSession.Get()));
    EXPECT_EQ(-9530, table.Sync(nullptr, mSession.Get(), true));
    EXPECT_EQ(-9530, table.GetSummaryText(nullptr, &lines, &lines));
    EXPECT_EQ(-9530, table.Open(nullptr));
    Release(instance);
    factory->table->Release(factory);
}

TEST_F(PlugInFactoryTest, WithoutItsNibABundleGivesNoContext) {
    std::string const folder = mSession.Path("Nibless.plugin");
    std::filesystem::create_directories(folder + "/Contents");
    std::filesystem::copy(ZUB_PLUGIN_DIR "/Contents/Info.plist", folder + "/Contents");
    CFRef<CFBundleRef> const bundle(CFBundleCreate(nullptr, FileURL(folder, true)));
    PlugInFactory* const factory = MakeFactory();
    ASSERT_NE(nullptr, factory);
    PrinterInfoInterface* const instance = MakeInterface(factory);
    EXPECT_NE(noErr, instance->table->Retain(instance));
    EXPECT_EQ(nullptr, gSharedNib);
    PlugInContext context = this;
    OSType creator = 0;
    CFStringRef text = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(-9530, instance->table->Prologue(&context, &creator, &text, &text, &size, &size));
    EXPECT_EQ(nullptr, context);
    ProjectPDE project;
    EXPECT_EQ(-9530, instance->table->Initialize(&project, &size, 0, nullptr, mSession.Get()));
    Release(instance);
    Release(instance);
    factory->table->Release(factory);
}

// The file chooses the identity, and with it which settings the printers share.
TEST_F(PlugInFactoryTest, ACommonPresetsFileJoinsAllPrinters) {
    CFRef<CFBundleRef> const bundle(CFBundleCreate(nullptr, FileURL(ZUB_COMMON_PLUGIN_DIR, true)));
    std::string const presets = mSession.Path("CommonPresets.txt");
    std::ofstream(presets).flush();
    char const* const path = std::exchange(gCommonPresetsPath, presets.c_str());

    PlugInFactory* const factory = MakeFactory();
    EXPECT_TRUE(gUseCommonPresets);
    ASSERT_NE(nullptr, factory);
    factory->table->Release(factory);
    std::filesystem::remove(presets);
    gFactoryBusy = false;
    PlugInFactory* const second = MakeFactory();
    EXPECT_TRUE(gUseCommonPresets) << "as long as the process lives";
    ASSERT_NE(nullptr, second);
    CFRef<CFStringRef> const identifier(CreateClientIdentifier(CFSTR(".PCKey")));
    EXPECT_EQ("com.zub.print.pde.2222.PInf.PCKey", Text(identifier));

    mSession.SetPPD(TestSession::Head() + TestSession::Popup("Duplex"));
    ProjectPDE project;
    std::uint32_t flags = 0;
    EXPECT_EQ(noErr, project.Initialize(&flags, 0, nullptr, mSession.Get()));
    EXPECT_EQ(nullptr, project.PrinterKey());
    gCommonPresetsPath = path;
    second->table->Release(second);
}

}  // namespace
