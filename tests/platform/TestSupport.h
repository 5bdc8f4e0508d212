// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/CFRef.h"
#include "platform/CoreFoundation.h"
#include "platform/Testing.h"

inline std::uint8_t const* Bytes(std::string_view text) {
    return reinterpret_cast<std::uint8_t const*>(text.data());
}

inline CFRef<CFStringRef> Str(std::string_view utf8) {
    return CFRef<CFStringRef>(CFStringCreateWithBytes(
        nullptr, Bytes(utf8), static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

inline CFRef<CFDataRef> Data(std::string_view bytes) {
    return CFRef<CFDataRef>(
        CFDataCreate(nullptr, Bytes(bytes), static_cast<CFIndex>(bytes.size())));
}

inline CFRef<CFNumberRef> Number(std::int32_t value) {
    return CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberSInt32Type, &value));
}

// UTF-8, or "(null)".
inline std::string Text(CFStringRef string) {
    if (string == nullptr) {
        return "(null)";
    }
    std::string text(static_cast<std::size_t>(CFStringGetLength(string)) * 3 + 1, '\0');
    CFIndex used = 0;
    CFStringGetBytes(string, {0, CFStringGetLength(string)}, kCFStringEncodingUTF8, '?', false,
                     reinterpret_cast<std::uint8_t*>(text.data()),
                     static_cast<CFIndex>(text.size()), &used);
    text.resize(static_cast<std::size_t>(used));
    return text;
}

inline std::string Text(CFDataRef data) {
    auto const* bytes = CFDataGetBytePtr(data);
    return data == nullptr ? "(null)" : std::string(bytes, bytes + CFDataGetLength(data));
}

inline CFRef<CFURLRef> FileURL(std::string const& path, bool isDirectory = false) {
    return CFRef<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        nullptr, Bytes(path), static_cast<CFIndex>(path.size()), isDirectory));
}

// The deleter that calls a function.
template <auto kFunction>
struct Calls {
    void operator()(auto* object) const { kFunction(object); }
};

// What a shell command prints.
inline std::string OutputOf(std::string const& command) {
    std::unique_ptr<FILE, Calls<pclose>> const output(popen(command.c_str(), "r"));
    std::string text;
    for (int c = std::fgetc(output.get()); c != EOF; c = std::fgetc(output.get())) {
        text += static_cast<char>(c);
    }
    return text;
}

// Calls `work` where no file may grow beyond `size` bytes, which stands in for a full disk: a write
// stops in the middle. `handler` is for the signal that comes with it.
template <typename Work>
bool OnSmallDisk(rlim_t size, decltype(SIG_DFL) handler, Work&& work) {
    struct rlimit old {};
    getrlimit(RLIMIT_FSIZE, &old);
    auto const oldHandler = std::signal(SIGXFSZ, handler);
    struct rlimit const small = {size, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    bool const result = work();
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    return result;
}

// Every test gives back what it made.
class OwnershipTest : public testing::Test {
  protected:
    void TearDown() override {
        FailCreationAfter(-1);
        SetSystemTextEncoding(0xFFFF);
        EXPECT_EQ(LiveObjectCount(), mAtStart);
    }

  private:
    long mAtStart = LiveObjectCount();
};

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "platform-XXXXXX").string();
        mPath = mkdtemp(pattern.data());
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(mPath); }

    std::string Path(std::string const& name = "") const {
        return name.empty() ? mPath : mPath + '/' + name;
    }
    // Makes the folders on the way.
    void Write(std::string const& name, std::string const& content) const {
        std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
        std::ofstream(Path(name), std::ios::binary) << content;
    }
    std::string Read(std::string const& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    long CountEntries() const {
        std::filesystem::directory_iterator const entries(mPath);
        return std::distance(begin(entries), end(entries));
    }

  private:
    std::string mPath;
};

// Sets an environment variable, or removes it, for the length of a scope.
class ScopedVariable {
  public:
    ScopedVariable(char const* name, char const* value) : mName(name) {
        if (char const* old = std::getenv(name); old != nullptr) {
            mOld = old;
        }
        Set(value);
    }
    ScopedVariable(ScopedVariable const&) = delete;
    ScopedVariable& operator=(ScopedVariable const&) = delete;
    ~ScopedVariable() { Set(mOld ? mOld->c_str() : nullptr); }

  private:
    void Set(char const* value) const {
        value == nullptr ? unsetenv(mName) : setenv(mName, value, 1);
    }

    char const* mName;
    std::optional<std::string> mOld;
};
