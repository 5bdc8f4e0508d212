// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "platform/CFRef.h"

using Json = nlohmann::ordered_json;

// How texts stand in a JSON document. Bytes are written one code point each, the one of the same
// value, so that none is lost; strings are written as the Unicode text they are. What is absent is
// null.
class JsonText {
  public:
    static Json Bytes(std::string_view bytes);
    static Json Bytes(char const* text);                        // null for null
    static Json Bytes(unsigned char const* code, long length);  // null for a null code
    static Json Text(CFStringRef string);

    // Null for what isn't UTF-8.
    static CFRef<CFStringRef> FromUTF8(std::string_view text);
    // UTF-8; a lone surrogate becomes a question mark.
    static std::string ToUTF8(CFStringRef string);
    static std::string BytesToUTF8(std::string_view bytes);
};
