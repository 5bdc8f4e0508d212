// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/PlugInHost.h"
#include "platform/internal/CFURLObject.h"
#include "platform/internal/Locale.h"

struct __CFBundle : platform::CFObject {
    __CFBundle(std::string&& folder, CFRef<CFDictionaryRef>&& infoDictionary, long count = 1)
        : CFObject(&platform::kBundleClass, count),
          path(std::move(folder)),
          info(std::move(infoDictionary)) {}

    std::string path;  // absolute
    CFRef<CFDictionaryRef> info;
    // Tables of localised texts that were asked for and exist, by their file's path.
    std::unordered_map<std::string, CFRef<CFDictionaryRef>> tables;
    void* executable = nullptr;  // stays loaded: what was made from it may outlive the bundle
};

namespace platform {
namespace {

std::vector<CFBundleRef>& LivingBundles() {
    static auto& sBundles = *new std::vector<CFBundleRef>;
    return sBundles;
}

void DestroyBundle(CFObject const* object) {
    auto& bundles = LivingBundles();
    bundles.erase(std::remove(bundles.begin(), bundles.end(), object), bundles.end());
    DestroyObject<__CFBundle>(object);
}

// A file that holds a dictionary; null otherwise.
CFRef<CFDictionaryRef> ReadDictionaryFile(std::string const& path) {
    std::string bytes;
    if (ReadWholeFile(path, bytes) != 0) {
        return {};
    }
    CFRef<CFDataRef> const data(CFDataCreate(nullptr,
                                             reinterpret_cast<std::uint8_t const*>(bytes.data()),
                                             static_cast<CFIndex>(bytes.size())));
    CFRef<CFTypeRef> list(
        CFPropertyListCreateFromXMLData(nullptr, data, kCFPropertyListImmutable, nullptr));
    auto const* dictionary = ObjectOfType<__CFDictionary>(list, kDictionaryTypeID);
    if (dictionary == nullptr) {
        return {};
    }
    (void)list.Release();
    return CFRef<CFDictionaryRef>(dictionary);
}

CFStringRef InfoString(CFBundleRef bundle, char const* key) {
    return bundle == nullptr
               ? nullptr
               : ObjectOfType<__CFString>(CFDictionaryGetValue(bundle->info, CFStringConstant(key)),
                                          kStringTypeID);
}

// Empty without one, and for a name that leads elsewhere: its code wouldn't be the bundle's.
std::string ExecutablePath(CFBundleRef bundle) {
    std::string executable;
    bool const isInside = GetUTF8(InfoString(bundle, "CFBundleExecutable"), executable) &&
                          executable.find('/') == std::string::npos;
    return isInside ? bundle->path + "/Contents/MacOS/" + executable : std::string();
}

// ---- Localised texts ----

struct LanguageName {
    std::string_view code;
    std::string_view name;
};
constexpr LanguageName kLanguageNames[] = {
    {"en", "English"}, {"ja", "Japanese"}, {"fr", "French"}, {"de", "German"},
    {"es", "Spanish"}, {"it", "Italian"},  {"nl", "Dutch"},
};

void AddLanguage(std::string_view code, std::vector<std::string>& names) {
    for (auto const& row : kLanguageNames) {
        if (row.code == code) {
            names.emplace_back(row.name);
        }
    }
    names.emplace_back(code);
}

// Names of language folders, the best first.
std::vector<std::string> PreferredLanguages() {
    std::vector<std::string> names;
    auto const locale = LocaleName("LC_MESSAGES");
    auto const language = locale.substr(0, locale.find('_'));
    if (!language.empty() && language != "C" && language != "POSIX" &&
        locale.find('/') == std::string_view::npos) {
        if (language != locale) {
            names.emplace_back(locale);
        }
        AddLanguage(language, names);
    }
    AddLanguage("en", names);
    return names;
}

CFDictionaryRef LocalizedTable(CFBundleRef bundle, std::string const& path) {
    auto const known = bundle->tables.find(path);
    if (known != bundle->tables.end()) {
        return known->second;
    }
    auto table = ReadDictionaryFile(path);
    return table ? bundle->tables.emplace(path, std::move(table)).first->second.Get() : nullptr;
}

// Borrowed from the bundle; null when no language has the key.
CFStringRef FindLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef table) {
    std::string tableName = "Localizable";
    if (table != nullptr && (!GetUTF8(table, tableName) || tableName.find('/') != tableName.npos)) {
        return nullptr;
    }
    for (auto const& language : PreferredLanguages()) {
        std::string path = PathIn(bundle->path, "Contents/Resources/");
        path.append(language).append(".lproj/").append(tableName).append(".strings");
        auto const* text = ObjectOfType<__CFString>(
            CFDictionaryGetValue(LocalizedTable(bundle, path), key), kStringTypeID);
        if (text != nullptr) {
            return text;
        }
    }
    return nullptr;
}

std::string ExecutableFolder() {
    char path[PATH_MAX];
    ssize_t const length = readlink("/proc/self/exe", path, sizeof path);
    return length > 0 ? FolderOf(std::string(path, static_cast<std::size_t>(length))) : "/";
}

}  // namespace

constinit CFClass const kBundleClass = {kBundleTypeID, DestroyBundle,
                                        [](CFObject const*, CFObject const*) { return false; }};

}  // namespace platform

using platform::WithoutExceptions;

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef url) {
    return WithoutExceptions<CFBundleRef>(nullptr, [&]() -> CFBundleRef {
        std::string path = platform::AbsolutePath(url);
        auto info = path.empty() ? CFRef<CFDictionaryRef>()
                                 : platform::ReadDictionaryFile(path + "/Contents/Info.plist");
        if (!info) {
            return nullptr;
        }
        auto& bundles = platform::LivingBundles();
        platform::ReserveOneMore(bundles);
        auto* bundle = platform::NewObject<__CFBundle>(std::move(path), std::move(info));
        if (bundle != nullptr) {
            bundles.push_back(bundle);
        }
        return bundle;
    });
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
    if (identifier == nullptr) {
        return nullptr;
    }
    auto const& bundles = platform::LivingBundles();
    auto const found = std::find_if(bundles.rbegin(), bundles.rend(), [&](CFBundleRef bundle) {
        return CFEqual(CFBundleGetIdentifier(bundle), identifier);
    });
    if (found != bundles.rend()) {
        return *found;
    }
    CFBundleRef const application = CFBundleGetMainBundle();
    return CFEqual(CFBundleGetIdentifier(application), identifier) ? application : nullptr;
}

CFBundleRef CFBundleGetMainBundle() {
    static CFBundleRef const sApplication = new __CFBundle(
        platform::ExecutableFolder(), CFRef<CFDictionaryRef>(), platform::kConstantCount);
    return sApplication;
}

void SetMainBundleIdentifier(CFStringRef identifier) {
    CFRef<CFMutableDictionaryRef> info;
    if (identifier != nullptr) {
        info = CFRef<CFMutableDictionaryRef>(CFDictionaryCreateMutable(nullptr, 0));
        CFDictionarySetValue(info, CFSTR("CFBundleIdentifier"), identifier);
    }
    CFBundleGetMainBundle()->info = CFRef<CFDictionaryRef>(info.Release());
}

CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
    return platform::InfoString(bundle, "CFBundleIdentifier");
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
    return bundle == nullptr ? nullptr : CFDictionaryGetValue(bundle->info, key);
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
    if (bundle == nullptr) {
        return nullptr;
    }
    auto const* path = reinterpret_cast<std::uint8_t const*>(bundle->path.data());
    return CFURLCreateFromFileSystemRepresentation(nullptr, path,
                                                   static_cast<CFIndex>(bundle->path.size()), true);
}

CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef table) {
    CFStringRef text = nullptr;
    if (bundle != nullptr && key != nullptr) {
        text = WithoutExceptions<CFStringRef>(
            nullptr, [&] { return platform::FindLocalizedString(bundle, key, table); });
    }
    if (text == nullptr) {
        text = CFStringGetLength(value) > 0 ? value : key;
    }
    return CFStringCreateCopy(nullptr, text);
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
    return WithoutExceptions<CFURLRef>(nullptr, [&]() -> CFURLRef {
        std::string const path = platform::ExecutablePath(bundle);
        return path.empty() ? nullptr
                            : CFURLCreateFromFileSystemRepresentation(
                                  nullptr, reinterpret_cast<std::uint8_t const*>(path.data()),
                                  static_cast<CFIndex>(path.size()), false);
    });
}

void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name) {
    return WithoutExceptions<void*>(nullptr, [&]() -> void* {
        std::string symbol;
        std::string const path = platform::ExecutablePath(bundle);
        if (!platform::GetUTF8(name, symbol) || path.empty()) {
            return nullptr;
        }
        if (bundle->executable == nullptr) {
            bundle->executable = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        }
        return bundle->executable == nullptr ? nullptr : dlsym(bundle->executable, symbol.c_str());
    });
}
