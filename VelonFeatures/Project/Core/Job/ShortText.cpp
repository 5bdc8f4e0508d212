// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/ShortText.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "VelonFeatures/Project/Core/ZUBJobTicket.h"

namespace {

std::string Formatted(char const* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    int const length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(static_cast<std::size_t>(std::max(length, 0)), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

// Empty when it doesn't fit `size` bytes with its terminator.
std::string Formatted(std::size_t size, char const* format, std::va_list arguments) {
    std::string text = Formatted(format, arguments);
    return text.size() < size ? text : "";
}

}  // namespace

std::string FormattedText(char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = Formatted(format, arguments);
    va_end(arguments);
    return text;
}

std::string ShortText(char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = Formatted(kShortTextSize, format, arguments);
    va_end(arguments);
    return text;
}

void AddShortText(ZUBJobTicket& ticket, PostScriptInjectionSite site, char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    ticket.AddText(site, Formatted(kShortTextSize, format, arguments).c_str());
    va_end(arguments);
}

void AddText(ZUBJobTicket& ticket, PostScriptInjectionSite site, char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    ticket.AddText(site, Formatted(kLongTextSize, format, arguments).c_str());
    va_end(arguments);
}
