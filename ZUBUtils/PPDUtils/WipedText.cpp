// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/WipedText.h"

#include <algorithm>

#include "ZUBUtils/PPDUtils/PlainText.h"

std::string_view WipedText::View() const {
    return mBytes.empty() ? std::string_view("")
                          : std::string_view(mBytes.data(), mBytes.size() - 1);
}

void WipedText::Append(std::string_view text) {
    if (std::size_t const size = View().size() + text.size() + 1; size > mBytes.capacity()) {
        mBytes.reserve(std::max(size, 2 * mBytes.capacity()));
    }
    if (!mBytes.empty()) {
        mBytes.pop_back();
    }
    mBytes.insert(mBytes.end(), text.begin(), text.end());
    mBytes.push_back('\0');
}

void WipedText::BlankControlCharacters() {
    if (!mBytes.empty()) {
        std::replace_if(mBytes.begin(), mBytes.end() - 1, IsControlCharacter, ' ');
    }
}
