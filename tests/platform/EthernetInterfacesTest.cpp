// SPDX-License-Identifier: Apache-2.0
#include "platform/EthernetTesting.h"
#include "tests/platform/TestSupport.h"

namespace {

class EthernetInterfacesTest : public OwnershipTest {
  protected:
    void AddInterface(std::string const& name, char const* number, char const* address) {
        mFolder.Write("net/" + name + "/ifindex", number);
        mFolder.Write("net/" + name + "/address", address);
    }
    // The last byte of each address, the primary one's with a star.
    std::string Listed(std::string const& routes) {
        mFolder.Write("route", "Iface Destination Gateway Flags RefCnt Use Metric Mask\n" + routes);
        std::string text;
        for (auto const& each :
             ReadEthernetRegistry(mFolder.Path("net"), mFolder.Path("route")).interfaces) {
            text += std::to_string(each.address.at(5)) + (each.isPrimary ? "* " : " ");
        }
        return text;
    }

    TemporaryFolder mFolder;
};

TEST_F(EthernetInterfacesTest, ThePrimaryOneHasTheDefaultRouteOrElseTheLeastNumber) {
    EXPECT_EQ(Listed(""), "");
    AddInterface("lo", "1\n", "00:00:00:00:00:00\n");
    AddInterface("tun0", "2\n", "\n");
    AddInterface("ib0", "3\n", "02:00:00:00:00:00:00:00\n");
    AddInterface("zero", "4\n", "00:00:00:00:00:00\n");
    AddInterface("wlan0", "11\n", "02:00:00:00:00:0b\n");
    AddInterface("eth0", "9\n", "02:00:00:00:00:09\n");
    std::string const wlan = "wlan0 00000000 0102A8C0 0003 0 0 600 00000000\n";
    std::string const eth = "eth0 00000000 0102A8C0 0003 0 0 100 00000000\n";
    EXPECT_EQ(Listed(""), "9* 11 ");
    EXPECT_EQ(Listed(wlan), "9 11* ");
    EXPECT_EQ(Listed(wlan + eth), "9* 11 ");
    EXPECT_EQ(Listed("tun0 00000000 00000000 0001 0 0 0 00000000\n"), "9* 11 ");
    EXPECT_EQ(Listed("wlan0 0002A8C0 00000000 0001 0 0 0 00FFFFFF\n"), "9* 11 ");
    EXPECT_EQ(Listed("wlan0 00000000 0102A8C0 0002 0 0 0 00000000\nwlan0 0000"), "9* 11 ");
}

TEST_F(EthernetInterfacesTest, AServiceLeadsToTheControllerThatHasTheAddress) {
    EthernetRegistry const registry{{{{1, 2, 3, 4, 5, 6}, false}, {{6, 5, 4, 3, 2, 1}, true}}};
    ReplaceEthernetRegistry(&registry);
    io_iterator_t iterator = IO_OBJECT_NULL;
    ASSERT_EQ(IOServiceGetMatchingServices(IOServiceMatching("IOEthernetInterface"), &iterator), 0);
    io_object_t const first = IOIteratorNext(iterator);
    io_object_t const second = IOIteratorNext(iterator);
    EXPECT_NE(first, IO_OBJECT_NULL);
    EXPECT_EQ(IOIteratorNext(iterator), IO_OBJECT_NULL);
    io_registry_entry_t parent = 7;
    EXPECT_NE(IORegistryEntryGetParentEntry(second, "IOPower", &parent), 0);
    EXPECT_NE(IORegistryEntryGetParentEntry(iterator, "IOService", &parent), 0);
    EXPECT_EQ(parent, IO_OBJECT_NULL);
    ASSERT_EQ(IORegistryEntryGetParentEntry(second, "IOService", &parent), 0);
    EXPECT_EQ(IORegistryEntryCreateCFProperty(second, CFSTR("IOMACAddress")), nullptr);
    EXPECT_EQ(IORegistryEntryCreateCFProperty(parent, CFSTR("IOName")), nullptr);
    CFRef<CFTypeRef> const address(IORegistryEntryCreateCFProperty(parent, CFSTR("IOMACAddress")));
    EXPECT_EQ(Text(static_cast<CFDataRef>(address.Get())), "\6\5\4\3\2\1");
    for (io_object_t const object : {first, second, parent, iterator, IO_OBJECT_NULL}) {
        EXPECT_EQ(IOObjectRelease(object), 0);
    }
    EXPECT_NE(IOObjectRelease(iterator), 0);

    ASSERT_EQ(IOServiceGetMatchingServices(IOServiceMatching("IOSerial"), &iterator), 0);
    EXPECT_EQ(IOIteratorNext(iterator), IO_OBJECT_NULL);
    IOObjectRelease(iterator);
    EXPECT_NE(IOServiceGetMatchingServices(nullptr, &iterator), 0);
    ReplaceEthernetRegistry(nullptr);
}

}  // namespace
