// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "platform/CoreFoundation.h"
#include "platform/Testing.h"
#include "tests/Surroundings.h"
#include "tests/Texts.h"

inline CFRef<CFNumberRef> Number(std::int32_t value) {
    return CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberSInt32Type, &value));
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
