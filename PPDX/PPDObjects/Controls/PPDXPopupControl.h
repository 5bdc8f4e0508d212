// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/PopupItem.h"
#include "ZUBUtils/PPDUtils/Arena.h"
#include "ZUBUtils/PPDUtils/PointerList.h"

class CString;

// An option with a list of choices, each with PostScript of its own. Indexes of items count from
// 1; 0 means none.
//
// Two states lie side by side: each item's selected flag, of which a control for several items at
// once may have more than one set, and the current item, the one selected last, which gives the
// PostScript, the value text and what the constraint store knows.
class PPDXPopupControl : public PPDXControl {
  public:
    PPDXPopupControl();
    // The items (_PopupItem*) and the default keyword, which may be null, pass to the control; the
    // list is empty then. A constructor that throws has taken the items, not the keyword. The
    // default is selected; without one nothing is. See PPDXControl for the rest.
    PPDXPopupControl(char const* keyword, CFStringRef localName, PointerList& flags, bool visible,
                     bool multiple, bool installable, PointerList& items, CString* defaultKeyword,
                     UIConstraints* constraints);
    // From the record `id`. Selects the last item that was flagged, or the default. Never an
    // installable option. The items lie in the arena, which must outlive the control; without one
    // the control has its own.
    PPDXPopupControl(Settings& settings, long id, UIConstraints* constraints,
                     Arena* arena = nullptr);
    ~PPDXPopupControl() override;

    // Item records have the ids from 100 * id upward: a list of more than 100 items runs into
    // those of the next control.
    short Save(Settings& settings, long const& id) override;
    void ResetToDefaultValue() override;
    long PostScript(unsigned char* out) override;  // 0 without a current item
    // Reads the flags of the items by position and selects the last one that is set.
    short Restore(Settings& settings, long id) override;
    // The current item's keyword; null without a current item. In the three colour profile options
    // a keyword beyond ASCII is read as UTF-8 first, here and where a value is looked for.
    CFStringRef CopyCurrentControlValueString() override;
    // Selects the first item of this keyword; an unknown one changes nothing. The three colour
    // profile options also take an item's local name, in any case, and of a text that they don't
    // know (at most 63 bytes of UTF-8) they make a new item.
    void SetCurrentControlWithCFString(CFStringRef value) override;
    bool IsInstallableOption() override { return mInstallable != 0; }

    // Whether this is one of the three colour profile options; a new value has room for this many
    // bytes of UTF-8, terminator included.
    bool TakesUnknownValues() const;
    static constexpr long kUnknownValueSize = 64;
    // Whether the value is that of an item, so that setting it makes no new one.
    bool HasValue(CFStringRef value) { return value != nullptr && IndexOfValue(value) != 0; }
    // The current item's keyword in its bytes, borrowed; null without one.
    char const* CurrentKeyword() const;
    bool CanSelectMultipleItems() const { return mMultiple != 0; }
    long ItemCount() const { return static_cast<long>(mItems.Size()); }
    _PopupItem* FirstItem();  // null at the end; one walk at a time
    _PopupItem* NextItem();
    void AppendPopupItem(_PopupItem* item);              // the item passes to the control
    PointerList const& Items() const { return mItems; }  // _PopupItem*, to look at only

    long GetValue();                        // the first flagged item
    long DefaultValue();                    // the item of the default keyword
    char const* GetDefaultKeyword() const;  // null when there is none
    // Selects this item and unflags all others. An index of no item unflags all and leaves the
    // current item as it was.
    void SetValue(long index);
    // Gives the items of this keyword `state` as their flag and makes the last of them current.
    // In a control for one item all others lose their flag; in one for several the first match
    // ends it and the others stay. The constraint store hears of the keyword in any case. True if
    // an item matched.
    bool SetKeywordSelect(char const* keyword, bool state);
    bool IsKeywordSelected(char const* keyword);
    // The framed code of the first item of this keyword, as PostScript() gives it; 0 for none.
    long GetKeywordPSData(char const* keyword, unsigned char* out);
    // The local name of the last item of this keyword, borrowed; null for none.
    char const* GetKeywordLocalName(char const* keyword);
    CFStringRef GetKeywordCFLocalName(char const* keyword);

    // Gives the control a new list and default, which pass to it, and `name` (system encoding) as
    // its name. A selection whose keyword is in the new list survives; where it has gone the new
    // default is the current item, with its flag clear. False, with nothing taken, without a
    // current item.
    bool Rebuild(char const* name, PointerList& items, CString* defaultKeyword);

  private:
    _PopupItem* FirstItemOf(char const* keyword);
    _PopupItem* LastItemOf(char const* keyword);
    long IndexOfValue(CFStringRef value);
    void AddUnknownValue(CFStringRef value);
    void Rename(char const* name);
    void DeleteItems();
    void MakeCurrent(_PopupItem* item);
    long ItemPostScript(_PopupItem* item, unsigned char* out) const;  // 0 for null
    void ReadItems(Settings& settings, long id, long count, Arena& arena);

    std::int32_t mMultiple = 0;
    std::int32_t mInstallable = 0;
    CString* mDefaultKeyword = nullptr;  // owned, may be null
    std::unique_ptr<Arena> mOwnArena;    // null where another one holds the items
    PointerList mItems;                  // _PopupItem*, owned
    // Whether some item may hold memory outside of the PPD's arena. One that is given out may: its
    // names are made on demand.
    bool mItemsHoldMemory = false;
    PointerListItr mItemCursor;
    _PopupItem* mCurrentItem = nullptr;  // in mItems
    // The first item of the current one's keyword, whose code counts; null until it is asked for.
    _PopupItem* mCodeItem = nullptr;
};

// The same for callers that hold an opaque handle; a null handle gives null, 0 or false.
extern "C" {
_PopupItem* FirstItem(PPDXPopupControl* popup);
_PopupItem* NextItem(PPDXPopupControl* popup);
bool IsKeywordSelected(PPDXPopupControl* popup, char const* keyword);
bool SetKeywordSelect(PPDXPopupControl* popup, char const* keyword, bool state);
char const* GetKeywordLocalName(PPDXPopupControl* popup, char const* keyword);
long GetKeywordPSData(PPDXPopupControl* popup, char const* keyword, unsigned char* out);
bool CanSelectMultipleItems(PPDXPopupControl* popup);
char const* GetDefaultKeyword(PPDXPopupControl* popup);
long PopupItemCount(PPDXPopupControl* popup);
long GetPopupValue(PPDXPopupControl* popup);
void SetPopupValue(PPDXPopupControl* popup, long index);
long GetPopupDefaultValue(PPDXPopupControl* popup);
long PopupPostScript(PPDXPopupControl* popup, unsigned char* out);
}
