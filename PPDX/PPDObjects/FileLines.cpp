// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/FileLines.h"

#include <algorithm>

#include "PPDX/PPDObjects/PPDFile.h"

namespace {

bool IsLineEnd(char byte) {
    return byte == '\n' || byte == '\r';
}

std::string BytesOf(PPDFile& file) {
    std::string bytes;
    long size = 0;
    if (file.openDataFork(fsRdPerm) != noErr) {
        return bytes;
    }
    if (GetEOF(file.getDataForkRefNum(), &size) == noErr && size > 0) {
        bytes.resize(static_cast<std::size_t>(size));
        unsigned long read = bytes.size();
        OSErr const error = file.dataForkRead(bytes.data(), &read);
        bytes.resize(error == noErr || error == eofErr ? read : 0);
    }
    file.closeDataFork();
    return bytes;
}

}  // namespace

FileLines::FileLines(PPDFile& file) : mBytes(BytesOf(file)) {
    for (std::size_t at = 0; at < mBytes.size(); ++at) {
        mStarts.push_back(at);
        at = mBytes.find_first_of("\n\r", at);
        if (at == mBytes.npos) {
            break;
        }
        if (mBytes[at] == '\r' && at + 1 < mBytes.size() && mBytes[at + 1] == '\n') {
            ++at;
        }
    }
}

long FileLines::NumberAt(long place) const {
    if (place <= 0) {
        return 1;
    }
    auto const last = static_cast<std::size_t>(place) - 1;
    auto const behind = std::ranges::upper_bound(mStarts, last);
    return std::max(1L, static_cast<long>(behind - mStarts.begin()));
}

std::string_view FileLines::Text(long number) const {
    if (number < 1 || number > Count()) {
        return {};
    }
    auto const index = static_cast<std::size_t>(number);
    std::size_t const end = number < Count() ? mStarts[index] : mBytes.size();
    std::string_view text(mBytes);
    text = text.substr(mStarts[index - 1], end - mStarts[index - 1]);
    while (!text.empty() && IsLineEnd(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool FileLines::IsWhole() const {
    return mBytes.empty() || IsLineEnd(mBytes.back());
}
