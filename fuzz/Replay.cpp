// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// Gives every file below the named folders, and each of its halves, to a fuzzer's entry, so that
// what a fuzzer has found once is tried at every test run.

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size);

int main(int argc, char** argv) {
    long files = 0;
    for (int i = 1; i < argc; ++i) {
        for (auto const& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) {
                continue;
            }
            std::ifstream stream(entry.path(), std::ios::binary);
            std::string const bytes{std::istreambuf_iterator<char>(stream), {}};
            auto const* const first = reinterpret_cast<std::uint8_t const*>(bytes.data());
            std::size_t const half = bytes.size() / 2;
            LLVMFuzzerTestOneInput(first, bytes.size());
            LLVMFuzzerTestOneInput(first, half);
            LLVMFuzzerTestOneInput(first + half, bytes.size() - half);
            ++files;
        }
    }
    std::printf("%ld files\n", files);
    return files > 0 ? 0 : 1;
}
