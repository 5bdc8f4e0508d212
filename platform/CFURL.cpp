// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/internal/CFURLObject.h"

namespace platform {

constinit CFClass const kURLClass = {
    kURLTypeID, DestroyObject<__CFURL>, [](CFObject const* left, CFObject const* right) {
        return CFEqual(static_cast<CFURLRef>(left)->text, static_cast<CFURLRef>(right)->text);
    }};

namespace {

constexpr std::string_view kFileScheme = "file";
constexpr std::string_view kUnescapedInPaths =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/!$&'()*+,;=:@";

std::string PercentEncoded(std::string_view path) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (char const c : path) {
        if (kUnescapedInPaths.find(c) != std::string_view::npos) {
            text += c;
            continue;
        }
        auto const byte = static_cast<unsigned char>(c);
        text += {'%', kDigits[byte >> 4], kDigits[byte & 0x0F]};
    }
    return text;
}

int HexadecimalDigit(char c) {
    constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
    auto const at = kDigits.find(c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at % 16);
}

// Nothing for a broken escape and for one that stands for a zero byte.
std::optional<std::string> PercentDecoded(std::string_view text) {
    std::string path;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            path += text[index];
            continue;
        }
        if (text.size() - index < 3) {
            return std::nullopt;
        }
        int const high = HexadecimalDigit(text[index + 1]);
        int const low = HexadecimalDigit(text[index + 2]);
        if (high < 0 || low < 0 || high + low == 0) {
            return std::nullopt;
        }
        path += static_cast<char>((high << 4) | low);
        index += 2;
    }
    return path;
}

// The length of a scheme at the start of a URL's text, 0 without one.
std::size_t SchemeLength(std::string_view text) {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    auto const colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 ||
        kLetters.find(text[0]) == std::string_view::npos) {
        return 0;
    }
    auto const isSchemeCharacter = [&](char c) {
        return kLetters.find(c) != std::string_view::npos || (c >= '0' && c <= '9') || c == '+' ||
               c == '-' || c == '.';
    };
    for (char const c : text.substr(0, colon)) {
        if (!isSchemeCharacter(c)) {
            return 0;
        }
    }
    return colon;
}

bool IsFileScheme(std::string_view scheme) {
    return scheme.size() == kFileScheme.size() &&
           strncasecmp(scheme.data(), kFileScheme.data(), scheme.size()) == 0;
}

bool HasUnprintable(std::string_view text) {
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte <= ' ' || byte >= 0x7F) {
            return true;
        }
    }
    return false;
}

CFURLRef CreateFileURL(std::string path, bool isDirectory) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        return nullptr;
    }
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    std::string text = path[0] == '/' ? "file://" : "";
    text += PercentEncoded(path);
    if (isDirectory && path != "/") {
        text += '/';
    }
    CFRef<CFStringRef> string(CreateStringFromUTF8(text));
    auto* url = string ? NewObject<__CFURL>(std::move(path), isDirectory, string.Get()) : nullptr;
    if (url != nullptr) {
        (void)string.Release();  // the URL has it
    }
    return url;
}

CFURLRef CreateOtherURL(std::string_view text) {
    CFRef<CFStringRef> const string(CreateStringFromUTF8(text));
    return string ? NewObject<__CFURL>(string.Get()) : nullptr;
}

CFURLRef CreateFileURLFromText(std::string_view behindScheme) {
    if (behindScheme.starts_with("//")) {
        // An authority: none, or this machine.
        auto const authority = behindScheme.substr(2, behindScheme.find('/', 2) - 2);
        if (!authority.empty() && authority != "localhost") {
            return nullptr;
        }
        behindScheme.remove_prefix(2 + authority.size());
    }
    auto const path = PercentDecoded(behindScheme);
    return path ? CreateFileURL(*path, behindScheme.ends_with('/')) : nullptr;
}

// A relative file reference goes behind the base's folder, other references behind its last slash.
CFURLRef CreateRelativeURL(std::string_view text, CFURLRef base) {
    if (base->isFile) {
        auto const path = PercentDecoded(text);
        if (!path || path->empty()) {
            return nullptr;
        }
        std::string const folder = base->isDirectory ? base->path : FolderOf(base->path);
        std::string const joined = path->front() == '/' ? *path : PathIn(folder, *path);
        return CreateFileURL(joined, text.ends_with('/'));
    }
    std::string address;
    GetUTF8(base->text, address);
    auto const authority = address.find("://");
    auto const pathStart =
        authority == std::string::npos ? std::string::npos : address.find('/', authority + 3);
    if (text.starts_with('/') || pathStart == std::string::npos) {
        address.resize(std::min(pathStart, address.size()));
        address += text.starts_with('/') ? "" : "/";
    } else {
        address.resize(address.rfind('/') + 1);
    }
    return CreateOtherURL(address.append(text));
}

}  // namespace

std::string FolderOf(std::string const& path) {
    auto const slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(std::string const& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string PathIn(std::string folder, std::string_view name) {
    if (!folder.ends_with('/')) {
        folder += '/';
    }
    return folder.append(name);
}

std::string AbsolutePath(CFURLRef url) {
    if (url == nullptr || !url->isFile) {
        return {};
    }
    if (url->path[0] == '/') {
        return url->path;
    }
    std::unique_ptr<char, decltype(&std::free)> const folder(getcwd(nullptr, 0), &std::free);
    return folder == nullptr ? std::string() : PathIn(folder.get(), url->path);
}

}  // namespace platform

using platform::WithoutExceptions;

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, std::uint8_t const* path,
                                                 CFIndex length, bool isDirectory) {
    if (path == nullptr || length <= 0) {
        return nullptr;
    }
    return WithoutExceptions<CFURLRef>(nullptr, [&] {
        return platform::CreateFileURL(std::string(path, path + length), isDirectory);
    });
}

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef text, CFURLRef base) {
    return WithoutExceptions<CFURLRef>(nullptr, [&]() -> CFURLRef {
        std::string address;
        if (!platform::GetUTF8(text, address) || platform::HasUnprintable(address)) {
            return nullptr;
        }
        auto const schemeLength = platform::SchemeLength(address);
        if (schemeLength == 0) {
            return base == nullptr ? nullptr : platform::CreateRelativeURL(address, base);
        }
        std::string_view const view(address);
        return platform::IsFileScheme(view.substr(0, schemeLength))
                   ? platform::CreateFileURLFromText(view.substr(schemeLength + 1))
                   : platform::CreateOtherURL(address);
    });
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef component,
                                               bool isDirectory) {
    if (url == nullptr) {
        return nullptr;
    }
    return WithoutExceptions<CFURLRef>(nullptr, [&]() -> CFURLRef {
        std::string name;
        std::string address;
        if (!platform::GetUTF8(component, name) || !platform::GetUTF8(url->text, address)) {
            return nullptr;
        }
        name.erase(0, name.find_first_not_of('/'));
        std::string path = url->isFile ? url->path : address;
        if (!name.empty()) {
            path += path.ends_with('/') ? "" : "/";
            path += url->isFile ? name : platform::PercentEncoded(name);
        }
        return url->isFile ? platform::CreateFileURL(std::move(path), isDirectory)
                           : platform::CreateOtherURL(path);
    });
}

CFURLRef CFURLCopyAbsoluteURL(CFURLRef url) {
    if (url == nullptr) {
        return nullptr;
    }
    if (!url->isFile || url->path[0] == '/') {
        return static_cast<CFURLRef>(CFRetain(url));
    }
    return WithoutExceptions<CFURLRef>(nullptr, [&] {
        return platform::CreateFileURL(platform::AbsolutePath(url), url->isDirectory);
    });
}

bool CFURLGetFileSystemRepresentation(CFURLRef url, bool resolveAgainstBase, std::uint8_t* buffer,
                                      CFIndex size) {
    if (url == nullptr || !url->isFile || buffer == nullptr || size <= 0) {
        return false;
    }
    return WithoutExceptions(false, [&] {
        std::string const path = resolveAgainstBase ? platform::AbsolutePath(url) : url->path;
        bool const fits = !path.empty() && path.size() < static_cast<std::size_t>(size);
        std::size_t const length = fits ? path.size() : 0;
        std::memcpy(buffer, path.data(), length);
        buffer[length] = 0;
        return fits;
    });
}

CFStringRef CFURLCopyScheme(CFURLRef url) {
    if (url == nullptr) {
        return nullptr;
    }
    if (url->isFile) {
        return CFSTR("file");
    }
    auto const text = platform::TextOf(url->text);
    return CFStringCreateWithCharacters(nullptr, text.data(),
                                        static_cast<CFIndex>(text.find(u':')));
}

CFStringRef CFURLGetString(CFURLRef url) {
    return url == nullptr ? nullptr : url->text.Get();
}
