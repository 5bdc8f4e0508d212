// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "tests/Texts.h"

// A page with a pane and a roll-down on it.
constexpr char kTree[] =
    "*%ZUBPropPage Layout/Layout: True\n"
    "*%ZUBGroupName Pane1/Layout: True\n"
    "*%ZUBGroupName Finish/Finishing: True\n"
    "*%ZUBParent Pane1/Layout: True|Scrollpane\n"
    "*%ZUBParent Finish/Pane1: True|Rolldown\n";

// A file of these bytes that lives as long as the object.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::string const& bytes) {
        int const file = mkstemp(mPath.data());
        close(file);
        std::ofstream(mPath, std::ios::binary) << bytes;
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;
    ~TemporaryFile() { unlink(mPath.c_str()); }

    CFRef<CFURLRef> URL() const { return FileURL(mPath); }
    std::string const& Path() const { return mPath; }

  private:
    std::string mPath = "/tmp/ppd-test-XXXXXX";
};

// The bytes are borrowed.
inline PPDStream StreamOf(std::string const& bytes) {
    return PPDStream(bytes.data(), static_cast<long>(bytes.size()));
}

inline CFRef<CFMutableArrayRef> Names(char const* name) {
    CFRef<CFMutableArrayRef> names(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(names, CFStringConstant(name));
    return names;
}

struct ReleasePPD {
    void operator()(ZUBPPD* ppd) const { ppd->Release(); }
};
using PPDPtr = std::unique_ptr<ZUBPPD, ReleasePPD>;

constexpr char kHeader[] =
    "*PPD-Adobe: \"4.3\"\n"
    "*LanguageVersion: English\n"
    "*LanguageEncoding: ISOLatin1\n"
    "*PCFileName: \"ZUBTEST.PPD\"\n"
    "*%ZUVersion: 4.4\n";

inline PPDPtr ParseBytes(std::string const& bytes, _PARSE_OPTIONS_ options = kParseAll,
                         CFArrayRef acceptedNames = nullptr) {
    TemporaryFile const file(bytes);
    return PPDPtr(new ZUBPPD(file.URL(), options, acceptedNames));
}

// A file whose header is good, with `body` behind it.
inline PPDPtr ParseBody(std::string const& body, _PARSE_OPTIONS_ options = kParseAll) {
    return ParseBytes(kHeader + body, options);
}

// The errors as "code", "code!" for a fatal one, with the keyword behind a blank if there is one.
inline std::vector<std::string> ErrorsOf(ZUBPPD& ppd) {
    std::vector<std::string> errors;
    for (auto* error = ppd.GetErrors()->First(); error != nullptr;
         error = ppd.GetErrors()->Next()) {
        std::string text = std::to_string(error->Code()) + (error->IsFatal() ? "!" : "");
        if (error->Keyword() != nullptr) {
            text += std::string(" ") + error->Keyword();
        }
        errors.push_back(text);
    }
    return errors;
}

template <typename Control = PPDXControl>
Control* ControlOf(ZUBPPD& ppd, char const* keyword) {
    DisplayOptionsScope const all(kDisplayAll);
    CNTL_TYPE type = kControlType;
    return dynamic_cast<Control*>(ppd.GetControls()->Find(keyword, type, true));
}

inline std::string PostScriptOf(PPDXControl& control) {
    std::string text(static_cast<std::size_t>(control.PostScript(nullptr)), '\0');
    control.PostScript(reinterpret_cast<unsigned char*>(text.data()));
    return text;
}

// "(null)" for an option without a value.
inline std::string ValueOf(ZUBPPD& ppd, char const* keyword) {
    return Taken(ControlOf(ppd, keyword)->CopyCurrentControlValueString());
}
