// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/ControlRecord.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"

ControlRecord::ControlRecord(Settings& settings, long id, short status)
    : mSettings(settings), mID(id), mStatus(status) {}

void ControlRecord::Add(unsigned long tag, void const* bytes, long length) {
    if (mStatus == 0) {
        mStatus = static_cast<short>(mSettings.Add(tag, mID, bytes, length));
    }
}

void ControlRecord::AddMark(unsigned long tag) {
    constexpr char kMark = 1;
    Add(tag, &kMark, sizeof kMark);
}

void ControlRecord::AddNumber(unsigned long tag, std::int16_t number) {
    Add(tag, &number, sizeof number);
}

void ControlRecord::AddNumber(unsigned long tag, std::int32_t number) {
    Add(tag, &number, sizeof number);
}

void ControlRecord::AddNumber(unsigned long tag, float number) {
    Add(tag, &number, sizeof number);
}

void ControlRecord::AddText(unsigned long tag, CString const* text) {
    if (text != nullptr) {
        Add(tag, text->GetCharData(), static_cast<long>(text->Size()));
    }
}

void ControlRecord::AddBytes(unsigned long tag, void const* bytes, long length) {
    if (bytes != nullptr) {
        Add(tag, bytes, length);
    }
}

short ControlRecord::Look(unsigned long tag) const {
    long size = 0;
    return static_cast<short>(mSettings.Get(tag, mID, nullptr, size, false));
}

std::string_view ControlRecord::View(unsigned long tag) const {
    std::string_view value;
    mSettings.Look(tag, mID, value);
    return value;
}

bool ControlRecord::Read(unsigned long tag, std::int16_t& number) const {
    return GetSettingsField(mSettings, tag, mID, &number, sizeof number);
}

bool ControlRecord::Read(unsigned long tag, std::int32_t& number) const {
    return GetSettingsField(mSettings, tag, mID, &number, sizeof number);
}

bool ControlRecord::Read(unsigned long tag, float& number) const {
    return GetSettingsField(mSettings, tag, mID, &number, sizeof number);
}

CString* ControlRecord::CopyText(unsigned long tag) const {
    return GetSettingsString(mSettings, tag, mID);
}

unsigned char* ControlRecord::CopyBytes(unsigned long tag, std::int32_t& length) const {
    std::string_view const bytes = View(tag);
    length = 0;
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::int32_t>::max()) {
        return nullptr;
    }
    auto* const block = static_cast<unsigned char*>(std::malloc(bytes.size()));
    if (block == nullptr) {
        return nullptr;
    }
    std::memcpy(block, bytes.data(), bytes.size());
    length = static_cast<std::int32_t>(bytes.size());
    return block;
}
