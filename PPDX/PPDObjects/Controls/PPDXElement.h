// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CoreFoundation.h"

class Settings;

// What pages, groups and controls have in common: a keyword, a name for people, a visible flag and
// a parent. A ZUBPPD owns every element; parents and lists are borrowed views.
class PPDXElement {
  public:
    // A null or empty keyword leaves the keyword null. The name is retained and must not be null:
    // the process stops on one.
    PPDXElement(char const* keyword, CFStringRef localName, bool const& visible);
    // From the record `id` of an archive. What the record lacks stays null; the parent is known by
    // name only until the tree's links are resolved.
    PPDXElement(Settings& settings, long const& id);
    PPDXElement(PPDXElement const&) = delete;
    PPDXElement& operator=(PPDXElement const&) = delete;
    virtual ~PPDXElement() = 0;

    // Whether a walk under `options` shows this element.
    virtual bool OkayToDisplay(_DISPLAY_OPTIONS_ const& options);
    // Adds this element's values to the record `id`. The archive's status for the last value of
    // the element, 0 for success; a kind of element that adds values adds none after a failure.
    virtual short Save(Settings& settings, long const& id);

    char const* Keyword() const { return mKeyword.GetCharData(); }  // null when there is none
    std::string_view KeywordText() const { return {Keyword(), mKeyword.Size()}; }
    // The name in the system's 8-bit encoding, made at the first call; null without a name. Lives
    // as long as the element keeps its name.
    char const* UserName();
    CFStringRef CFStringUserName() const { return mLocalName; }  // borrowed
    bool IsVisible() const { return mVisible != 0; }
    PPDXElement* GetParent() const { return mParent; }
    void SetParent(PPDXElement* parent) { mParent = parent; }
    // Without a parent; one that is known by name only counts as a parent.
    bool IsOrphan() const { return mParent == nullptr && mParentName == nullptr; }
    // Exact comparison of keywords; false when either side has none.
    bool operator==(PPDXElement const& other) const;
    bool operator==(char const* keyword) const;

    // The parent's keyword as an archive gave it, until it is taken; the caller deletes it. Null
    // when there is none.
    CString* TakeParentName();

  protected:
    PPDXElement();
    // Replaces both forms of the name: the string is retained, the text is owned from here on.
    void SetUserName(CFStringRef localName, CString* userName);

  private:
    CString mKeyword;                  // without a buffer when there is none
    CString* mUserName = nullptr;      // owned; the cache of UserName()
    CFStringRef mLocalName = nullptr;  // retained
    std::int32_t mVisible = 0;
    PPDXElement* mParent = nullptr;  // not owned
    CString* mParentName = nullptr;  // owned; only between a restore and its resolution
};

// The text of a string in the system's 8-bit encoding; the caller deletes it. Null for null.
CString* CFStringToCString(CFStringRef string);

// The same for callers that hold an opaque handle; a null handle gives null or false.
extern "C" {
char const* UserName(PPDXElement* element);
char const* Keyword(PPDXElement* element);
bool IsVisible(PPDXElement* element);
bool IsOrphan(PPDXElement* element);
PPDXElement* GetParent(PPDXElement* element);
bool EqualsElement(PPDXElement* element, PPDXElement* other);
bool EqualsKeyWord(PPDXElement* element, char const* keyword);
}
