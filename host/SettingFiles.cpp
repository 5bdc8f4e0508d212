// SPDX-License-Identifier: Apache-2.0
#include "host/SettingFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "platform/Wiping.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Read without a stream, whose own buffer would keep the text. 0, or the system's error number.
int ReadAll(int file, WipedText& text) {
    std::array<char, 4096> bytes;
    WipeAtEnd const wiped(bytes);
    while (text.View().size() <= SettingFiles::kLongestText) {
        ssize_t const count = read(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count < 0 ? errno : 0;
        }
        text.Append(std::string_view(bytes.data(), static_cast<std::size_t>(count)));
    }
    return 0;
}

}  // namespace

bool SettingFiles::IsStandardInput(std::string_view file) {
    constexpr std::string_view kNames[] = {"-", "/dev/stdin", "/dev/fd/0", "/proc/self/fd/0"};
    return std::ranges::find(kNames, file) != std::ranges::end(kNames);
}

Outcome SettingFiles::ReadText(std::string const& file, std::string const& name, WipedText& text) {
    bool const isInput = IsStandardInput(file);
    int const opened = isInput ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    WipedText whole;
    int const error = opened < 0 ? errno : ReadAll(opened, whole);
    if (opened >= 0 && !isInput) {
        close(opened);
    }
    if (error != 0) {
        return Outcome::Failed("can't read " + name + ": " + HostFiles::Reason(error));
    }
    std::string_view value = whole.View();
    if (value.ends_with('\n')) {
        value.remove_suffix(value.ends_with("\r\n") ? 2 : 1);
    }
    if (value.starts_with(kByteOrderMark)) {
        value.remove_prefix(kByteOrderMark.size());
    }
    if (value.size() > kLongestText) {
        return Outcome::Failed(name + " is too long for a value, which takes " +
                               std::to_string(kLongestText) + " bytes");
    }
    text = WipedText(value);
    return Outcome::Done();
}

Outcome SettingFiles::Read(std::vector<ControlSetting>& settings, bool inputIsTaken) {
    for (ControlSetting& setting : settings) {
        if (setting.file.empty()) {
            continue;
        }
        if (IsStandardInput(setting.file) && std::exchange(inputIsTaken, true)) {
            return {ExitStatus::kUsage, "standard input can be read only once"};
        }
        // Who gives the value itself by mistake isn't to find it in a log.
        std::string const name =
            IsStandardInput(setting.file) ? "standard input" : "the file for " + setting.keyword;
        if (!IsStandardInput(setting.file) && access(setting.file.c_str(), R_OK) != 0) {
            return Outcome::Failed("can't read " + name + ": " + HostFiles::Reason(errno) +
                                   " (--set-from takes a file, not the value)");
        }
        if (Outcome outcome = ReadText(setting.file, name, setting.value); !outcome.Ok()) {
            return outcome;
        }
        std::string_view const value = setting.value.View();
        if (value.find('\0') != std::string_view::npos || !JsonText::FromUTF8(value)) {
            return Outcome::Failed(name + " isn't text in UTF-8, in which it has to be saved");
        }
    }
    return Outcome::Done();
}
