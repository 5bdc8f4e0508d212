// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXElement.h"

#include <memory>
#include <utility>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "ZUBUtils/PPDUtils/ZUBAssert.h"

namespace {

constexpr long kSavedNameSize = 512;
constexpr long kBytesPerUnit = 4;  // no encoding takes more for a UTF-16 unit

long SaveText(Settings& settings, unsigned long tag, long id, CString const& text) {
    return settings.Add(tag, id, text.GetCharData(), static_cast<long>(text.Size()));
}

long SaveName(Settings& settings, long id, CFStringRef name) {
    long size = 0;
    std::unique_ptr<unsigned char[]> const external(CFStringToExternal(name, &size));
    return settings.Add(ArchiveTags::kName, id, external.get(), size);
}

// Of a text that is owned here, and goes; without a buffer for null.
CString TakeText(CString* owned) {
    std::unique_ptr<CString> const text(owned);
    return text != nullptr ? std::move(*text) : CString();
}

CString* NameText(CFStringRef name, long size) {
    if (CFStringGetLength(name) == 0) {
        return new CString("");
    }
    auto const text = std::make_unique<char[]>(static_cast<std::size_t>(size));
    TextConverter::CFStringToCstring(name, text.get(), size);
    return new CString(text.get());
}

}  // namespace

PPDXElement::PPDXElement() = default;

PPDXElement::PPDXElement(char const* keyword, CFStringRef localName, bool const& visible)
    : mKeyword(keyword != nullptr && *keyword != '\0' ? keyword : nullptr),
      mLocalName(localName),
      mVisible(visible ? 1 : 0) {
    ZUB_ASSERT(localName != nullptr, "inLocalName != NULL", "PPDX/PPDObjects/PPDXElement", 86);
    CFRetain(mLocalName);
}

PPDXElement::PPDXElement(Settings& settings, long const& id)
    : mKeyword(TakeText(GetSettingsString(settings, ArchiveTags::kKeyword, id))),
      mLocalName(GetSettingsCFString(settings, ArchiveTags::kName, id)),
      mParentName(GetSettingsString(settings, ArchiveTags::kParent, id)) {
    GetSettingsField(settings, ArchiveTags::kVisible, id, &mVisible, sizeof mVisible);
}

PPDXElement::~PPDXElement() {
    delete mUserName;
    CFRelease(mLocalName);
    delete mParentName;
}

bool PPDXElement::OkayToDisplay(_DISPLAY_OPTIONS_ const& options) {
    switch (options) {
        case kDisplayPlacedAndVisible:
            return IsVisible() && !IsOrphan();
        case kDisplayOrphans:
            return IsVisible();
        case kDisplayHidden:
            return !IsOrphan();
        default:
            return true;
    }
}

short PPDXElement::Save(Settings& settings, long const& id) {
    if (Keyword() != nullptr) {
        SaveText(settings, ArchiveTags::kKeyword, id, mKeyword);
    }
    if (mLocalName != nullptr) {
        if (mUserName == nullptr) {
            mUserName = NameText(mLocalName, kSavedNameSize);
        }
        SaveText(settings, ArchiveTags::kNameText, id, *mUserName);
        SaveName(settings, id, mLocalName);
    }
    long status = settings.Add(ArchiveTags::kVisible, id, &mVisible, sizeof mVisible);
    if (mParent != nullptr && mParent->Keyword() != nullptr) {
        status = SaveText(settings, ArchiveTags::kParent, id, mParent->mKeyword);
    }
    return static_cast<short>(status);
}

char const* PPDXElement::UserName() {
    if (mUserName == nullptr) {
        mUserName = CFStringToCString(mLocalName);
    }
    return mUserName == nullptr ? nullptr : mUserName->GetCharData();
}

bool PPDXElement::operator==(PPDXElement const& other) const {
    return *this == other.Keyword();
}

bool PPDXElement::operator==(char const* keyword) const {
    return mKeyword == keyword;
}

CString* PPDXElement::TakeParentName() {
    return std::exchange(mParentName, nullptr);
}

void PPDXElement::SetUserName(CFStringRef localName, CString* userName) {
    CFRetain(localName);
    CFRelease(std::exchange(mLocalName, localName));
    if (userName != mUserName) {
        delete std::exchange(mUserName, userName);
    }
}

CString* CFStringToCString(CFStringRef string) {
    return string == nullptr ? nullptr
                             : NameText(string, kBytesPerUnit * CFStringGetLength(string));
}

char const* UserName(PPDXElement* element) {
    return element == nullptr ? nullptr : element->UserName();
}

char const* Keyword(PPDXElement* element) {
    return element == nullptr ? nullptr : element->Keyword();
}

bool IsVisible(PPDXElement* element) {
    return element != nullptr && element->IsVisible();
}

bool IsOrphan(PPDXElement* element) {
    return element != nullptr && element->IsOrphan();
}

PPDXElement* GetParent(PPDXElement* element) {
    return element == nullptr ? nullptr : element->GetParent();
}

bool EqualsElement(PPDXElement* element, PPDXElement* other) {
    return element != nullptr && other != nullptr && *element == *other;
}

bool EqualsKeyWord(PPDXElement* element, char const* keyword) {
    return element != nullptr && *element == keyword;
}
