// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/CFRef.h"

// Reads the input as a PPD, asks every control for its code, and does the same with a tree that
// went through an archive. The first byte chooses the parse options.

namespace {

// A file of these bytes without a place on disk.
class MemoryFile {
  public:
    MemoryFile(std::uint8_t const* bytes, std::size_t size)
        : mFile(memfd_create("ppd", 0)), mPath("/proc/self/fd/" + std::to_string(mFile)) {
        mWritten = write(mFile, bytes, size) == static_cast<ssize_t>(size);
    }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;
    ~MemoryFile() { close(mFile); }

    bool Written() const { return mWritten; }
    CFRef<CFURLRef> URL() const {
        return CFRef<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
            nullptr, reinterpret_cast<std::uint8_t const*>(mPath.data()),
            static_cast<CFIndex>(mPath.size()), false));
    }

  private:
    int mFile;
    std::string mPath;
    bool mWritten = false;
};

void EmitAll(ZUBPPD& ppd) {
    DisplayOptionsScope const all(kDisplayAll);
    CNTL_TYPE type = kControlType;
    std::string text;
    for (auto* control = ppd.GetControls()->First(type); control != nullptr;
         control = ppd.GetControls()->Next(type)) {
        text.resize(static_cast<std::size_t>(control->PostScript(nullptr)));
        control->PostScript(reinterpret_cast<unsigned char*>(text.data()));
        CFRelease(control->CopyCurrentControlValueString());
        control->ResetToDefaultValue();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    MemoryFile const file(bytes, size);
    if (!file.Written()) {
        return 0;
    }
    auto const options = static_cast<_PARSE_OPTIONS_>(bytes[0] & 3);
    auto* const ppd = new ZUBPPD(file.URL(), options, nullptr);
    Settings settings;
    ppd->Save(settings);
    EmitAll(*ppd);
    ppd->Release();
    auto* const rebuilt = new ZUBPPD(settings, file.URL(), nullptr);
    EmitAll(*rebuilt);
    rebuilt->Release();
    return 0;
}
