// SPDX-License-Identifier: Apache-2.0
#include <limits>

#include "tests/platform/TestSupport.h"

namespace {

using CFPropertyListTest = OwnershipTest;

CFRef<CFTypeRef> Parsed(std::string_view xml, CFOptionFlags mutability = kCFPropertyListImmutable) {
    return CFRef<CFTypeRef>(
        CFPropertyListCreateFromXMLData(nullptr, Data(xml), mutability, nullptr));
}

std::string Written(CFTypeRef list) {
    CFRef<CFDataRef> const data(CFPropertyListCreateXMLData(nullptr, list));
    return Text(data);
}

// One of everything.
CFRef<CFMutableDictionaryRef> SampleList() {
    CFRef<CFMutableDictionaryRef> const list(CFDictionaryCreateMutable(nullptr, 0));
    CFRef<CFMutableArrayRef> const pairs(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(pairs, Number(-3));
    CFArrayAppendValue(pairs, Data(std::string("\0\xFF%%BeginFeature", 16)));
    CFArrayAppendValue(pairs, Data(std::string(100, 'q')));
    CFArrayAppendValue(pairs, Data(""));
    CFDictionarySetValue(list, CFSTR("pairs"), pairs);
    CFDictionarySetValue(list, Str("Schlüssel <&>"), Str(" a\r\n\tb & \"c\" <d>\r"));
    CFDictionarySetValue(list, CFSTR("blank"), Str("   "));
    CFDictionarySetValue(list, CFSTR("empty"), Str(""));
    CFDictionarySetValue(list, CFSTR("yes"), kCFBooleanTrue);
    CFDictionarySetValue(list, CFSTR("no"), kCFBooleanFalse);
    std::int64_t const wide = std::numeric_limits<std::int64_t>::min();
    CFDictionarySetValue(list, CFSTR("wide"),
                         CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberSInt64Type, &wide)));
    double const real = 0.1;
    CFDictionarySetValue(list, CFSTR("real"),
                         CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberFloat64Type, &real)));
    CFRef<CFMutableDictionaryRef> const none(CFDictionaryCreateMutable(nullptr, 0));
    CFDictionarySetValue(list, CFSTR("none"), none);
    return list;
}

TEST_F(CFPropertyListTest, WritesTheUsualHeaderAndDataInShortLines) {
    CFRef<CFMutableArrayRef> const list(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(list, Number(12));
    CFArrayAppendValue(list, Data(std::string(52, 'A')));
    EXPECT_EQ(Written(list),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n"
              "<array>\n"
              "\t<integer>12</integer>\n"
              "\t<data>\n"
              "\tQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFB\n"
              "\tQQ==\n"
              "\t</data>\n"
              "</array>\n"
              "</plist>\n");
}

TEST_F(CFPropertyListTest, ReadsWhatOtherWritersMake) {
    auto const list = Parsed(
        "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?>\r\n"
        "<!-- printers --><!DOCTYPE plist [ <!ENTITY a \"b\"> ]>\r\n"
        "<plist>\r\n<dict>\r\n"
        "  <key>PC<!-- split -->FILENAME</key>\r\n"
        "  <array><string>&#65;<![CDATA[<&>]]>&lt;&amp;<![CDATA[&#0;]]><!-- &#0; "
        "-->&#x20AC;</string></array>\r\n"
        "  <key>hex</key><integer> 0x1F </integer>\r\n"
        "  <key>data</key><data> QU\r\n JD\t</data>\r\n"
        "  <key>when</key><date>2004-02-29T10:00:00Z</date>\r\n"
        "  <key>twice</key><true/><key>twice</key><false></false>\r\n"
        "  <key>real</key><real>+1.5E2</real>\r\n"
        "</dict>\r\n</plist>\r\n<!-- end -->");
    ASSERT_EQ(CFGetTypeID(list), CFDictionaryGetTypeID());
    auto const value = [&](char const* key) {
        return CFDictionaryGetValue(static_cast<CFDictionaryRef>(list.Get()), Str(key));
    };
    auto const* names = static_cast<CFArrayRef>(value("PCFILENAME"));
    ASSERT_EQ(CFArrayGetCount(names), 1);
    EXPECT_EQ(Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(names, 0))), "A<&><&&#0;€");
    EXPECT_TRUE(CFEqual(value("hex"), Number(31)));
    EXPECT_TRUE(CFEqual(value("data"), Data("ABC")));
    EXPECT_TRUE(CFEqual(value("when"), CFSTR("2004-02-29T10:00:00Z")));
    EXPECT_EQ(value("twice"), kCFBooleanFalse);
    EXPECT_TRUE(CFEqual(value("real"), Number(150)));
}

TEST_F(CFPropertyListTest, RefusesWhatIsNoPropertyListAndSaysWhy) {
    std::string const ok = "<plist><true/></plist>";
    ASSERT_TRUE(Parsed(ok));
    std::string const cases[] = {
        "",
        "<plist><true/><true/></plist>",
        ok + '\0',
        "<plist>x<true/></plist>",
        "<plist><true><string/></true></plist>",
        "<plist><truth/></plist>",
        "<plist><dict><key>a</key></dict></plist>",
        "<plist><dict><true/><key>a</key></dict></plist>",
        "<plist><dict><string>a</string><true/></dict></plist>",
        "<plist><string>\xC3</string></plist>",
        "<plist><string>\x01</string></plist>",
        "<plist><string>a&#0;</string></plist>",
        "<plist><string>&#x100000000;</string></plist>",
        "<plist><integer>+-1</integer></plist>",
        "<plist><integer>0x-1</integer></plist>",
        "<plist><integer>9223372036854775808</integer></plist>",
        "<plist><real>1,5</real></plist>",
        "<plist><data>QUJ</data></plist>",
        "<plist><data>QQ==QQ==</data></plist>",
        "<plist><data>QU-_</data></plist>",
    };
    for (auto const& xml : cases) {
        CFStringRef reason = nullptr;
        EXPECT_EQ(CFPropertyListCreateFromXMLData(nullptr, Data(xml), 0, &reason), nullptr) << xml;
        EXPECT_GT(CFStringGetLength(reason), 0) << xml;
        CFRelease(reason);
    }
}

TEST_F(CFPropertyListTest, EveryDamagedByteGivesAListOrNull) {
    CFRef<CFMutableArrayRef> const list(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(list, SampleList());
    std::string const xml = Written(list);
    long refused = 0;
    for (std::size_t at = 0; at < xml.size(); ++at) {
        for (int const change : {0x01, 0x20, 0x80, 0xFF}) {
            std::string damaged = xml;
            damaged[at] = static_cast<char>(damaged[at] ^ change);
            auto const result = Parsed(damaged);
            refused += result ? 0 : 1;
            // What was taken can be told again.
            if (result) {
                EXPECT_TRUE(CFEqual(Parsed(Written(result)), result)) << at << ' ' << change;
            }
        }
        EXPECT_FALSE(at < xml.size() - 1 && Parsed(xml.substr(0, at))) << at;
    }
    EXPECT_GT(refused, static_cast<long>(xml.size()));
}

TEST_F(CFPropertyListTest, NestingIsBoundedForReadingAndWriting) {
    CFRef<CFMutableArrayRef> list(CFArrayCreateMutable(nullptr, 0));
    std::string xml;
    for (int level = 1; level <= 1000; ++level) {
        CFRef<CFMutableArrayRef> next(CFArrayCreateMutable(nullptr, 0));
        CFArrayAppendValue(next, list);
        list = next;
        xml = "<array>" + xml + "</array>";
        if (level == 200 || level == 1000) {
            EXPECT_EQ(Written(list) != "(null)", level == 200);
            EXPECT_EQ(Parsed("<plist>" + xml + "</plist>").Get() != nullptr, level == 200);
        }
    }
}

TEST_F(CFPropertyListTest, ValuesWithoutAPlaceInAPropertyListAreNotWritten) {
    CFRef<CFMutableArrayRef> const holder(CFArrayCreateMutable(nullptr, 0));
    auto const writtenInside = [&](CFTypeRef value) {
        CFArraySetValueAtIndex(holder, 0, value);
        return Written(holder);
    };
    char16_t const lone = 0xD800;
    CFRef<CFStringRef> const surrogate(CFStringCreateWithCharacters(nullptr, &lone, 1));
    EXPECT_EQ(writtenInside(FileURL("/a")), "(null)");
    EXPECT_EQ(writtenInside(Str("a\x01")), "(null)");
    EXPECT_EQ(writtenInside(Str("\uFFFE")), "(null)");
    EXPECT_EQ(writtenInside(surrogate), "(null)");
    EXPECT_NE(writtenInside(Str("\t\r\n\x7F\uFFFD\U0010FFFF")), "(null)");
}

TEST_F(CFPropertyListTest, MutableLeavesMayBeChanged) {
    auto const list = Parsed("<plist><array><string>a</string><data>QQ==</data></array></plist>",
                             kCFPropertyListMutableContainersAndLeaves);
    auto const* array = static_cast<CFArrayRef>(list.Get());
    auto const* text = static_cast<CFStringRef>(CFArrayGetValueAtIndex(array, 0));
    CFRef<CFStringRef> const snapshot(CFStringCreateCopy(nullptr, text));
    CFStringAppend(const_cast<CFMutableStringRef>(text), CFSTR("b"));
    EXPECT_EQ(Text(text), "ab");
    EXPECT_EQ(Text(snapshot), "a");
}

TEST_F(CFPropertyListTest, MemoryThatRunsOutAnywhereGivesNullAndLeavesNothing) {
    auto const data = Data(Written(SampleList()));
    CFRef<CFTypeRef> list;
    long failures = 0;
    while (!list) {
        ASSERT_LT(failures, 1000);
        FailCreationAfter(failures++);
        list = CFRef<CFTypeRef>(CFPropertyListCreateFromXMLData(
            nullptr, data, kCFPropertyListMutableContainersAndLeaves, nullptr));
    }
    FailCreationAfter(-1);
    EXPECT_GT(failures, 20);
    EXPECT_TRUE(CFEqual(list, SampleList()));
}

}  // namespace
