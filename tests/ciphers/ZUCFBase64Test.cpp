// SPDX-License-Identifier: Apache-2.0
#include "ciphers/ZUCFBase64.h"

#include "tests/platform/TestSupport.h"

namespace {

using ZUCFBase64Test = OwnershipTest;

std::string Encoded(std::string_view bytes) {
    return Text(CFRef<CFStringRef>(ZUCFBase64CreateEncodedString(Data(bytes))));
}

std::string Decoded(std::string_view text) {
    return Text(CFRef<CFDataRef>(ZUCFBase64CreateDecodedData(Str(text))));
}

TEST_F(ZUCFBase64Test, ThePublishedExamplesGoBothWays) {
    struct Case {
        char const* bytes;
        char const* text;
    };
    for (auto const& [bytes, text] :
         {Case{"", ""}, Case{"f", "Zg=="}, Case{"fo", "Zm8="}, Case{"foo", "Zm9v"},
          Case{"foob", "Zm9vYg=="}, Case{"fooba", "Zm9vYmE="}, Case{"foobar", "Zm9vYmFy"}}) {
        EXPECT_EQ(Encoded(bytes), text);
        EXPECT_EQ(Decoded(text), bytes);
    }
    EXPECT_EQ(Text(CFRef<CFStringRef>(ZUCFBase64CreateEncodedString(nullptr))), "");
    EXPECT_EQ(Text(CFRef<CFDataRef>(ZUCFBase64CreateDecodedData(nullptr))), "");
}

TEST_F(ZUCFBase64Test, EveryByteComesBackAndNoLineIsBroken) {
    std::string bytes;
    for (int byte = 255; byte >= 0; --byte) {
        bytes += static_cast<char>(byte);
    }
    for (std::size_t length : {256U, 255U, 254U}) {
        std::string const text = Encoded(bytes.substr(0, length));
        EXPECT_EQ(text.size(), (length + 2) / 3 * 4);
        EXPECT_EQ(text.find('\n'), text.npos);
        EXPECT_EQ(Decoded(text), bytes.substr(0, length));
    }
    EXPECT_EQ(Encoded("\xFB\xFF\xBF"), "+/+/");
}

TEST_F(ZUCFBase64Test, WhatIsNoBase64IsDecodedAllTheSame) {
    using namespace std::string_literals;
    struct Case {
        char const* text;
        std::string bytes;
    };
    Case const cases[] = {
        {"Zm8", ""},                      // fewer than four characters
        {"Zm9vYg", "foob"},               // no padding
        {"Zm9vY", "foo"},                 // a digit too many
        {"Zg===", "f\0"s},                // of the padding two go; one more counts as a digit
        {"====", "\0"s},                  //
        {"Z=9v", "d\x0F\x6F"},            // padding inside
        {"Zm9 v", "fo\x40"},              // a blank isn't skipped
        {"\xC3\xA9m9v", "\x02\x6F\x6F"},  // nor is what isn't ASCII
        {"Zm9\xF0\x9F\x98\x80", "fo"},    // one that pads at the end
        {"-_-_", "\0\0\0"s},              // another alphabet
    };
    for (auto const& [text, bytes] : cases) {
        EXPECT_EQ(Decoded(text), bytes) << text;
    }
}

}  // namespace
