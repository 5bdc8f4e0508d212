// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/ShortText.h"

#include <cstdarg>
#include <cstdio>

#include "VelonFeatures/Project/Core/ZUBJobTicket.h"

namespace {

template <std::size_t kSize>
std::string Formatted(char const* format, std::va_list arguments) {
    char text[kSize];
    int const length = std::vsnprintf(text, kSize, format, arguments);
    return length >= 0 && static_cast<std::size_t>(length) < kSize ? text : "";
}

}  // namespace

std::string ShortText(char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = Formatted<kShortTextSize>(format, arguments);
    va_end(arguments);
    return text;
}

void AddShortText(ZUBJobTicket& ticket, PostScriptInjectionSite site, char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    ticket.AddText(site, Formatted<kShortTextSize>(format, arguments).c_str());
    va_end(arguments);
}

void AddText(ZUBJobTicket& ticket, PostScriptInjectionSite site, char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    ticket.AddText(site, Formatted<kLongTextSize>(format, arguments).c_str());
    va_end(arguments);
}
