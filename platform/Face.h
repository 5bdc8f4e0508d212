// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/CFRef.h"
#include "platform/Controls.h"
#include "platform/CoreFoundation.h"
#include "platform/DataBrowser.h"
#include "platform/Graphics.h"
#include "platform/WindowTypes.h"

// The door through which windows are shown: what a face is told, what it answers, and what it may
// read. A face shows the tree and reports the user's hands through UserInput.h; it changes nothing
// itself.

// ---- What a host installs ----

// Where a face or a driver is told or asked something (not in RunUntil), it may throw what derives
// from std::exception, std::bad_alloc above all. That goes no further than to who called: the face
// has missed it and is told so no second time, the window or the control is told again with its
// next change, and an operation that wanted an answer fails.

class ControlFace {
  public:
    virtual ~ControlFace() = default;

    // Shown, hidden, moved, titled, reordered, or its focus or buttons changed.
    virtual void WindowChanged(WindowRef window) = 0;
    // Each once, in the order in which they changed first: made, embedded elsewhere, or of another
    // look. Told when the outermost event has been dealt with, when a nested loop begins and when
    // the loop idles, so a control that changes back and forth shows nothing of it.
    virtual void ControlsChanged(std::vector<ControlRef> const& controls) = 0;
    // The references are dead already.
    virtual void WindowGone(WindowRef window) = 0;
    virtual void ControlGone(ControlRef control) = 0;

    // One line, in points; `size` is the font's.
    virtual FloatSize MeasureText(CFStringRef text, std::int16_t size, std::int16_t style) = 0;
    // Points that a menu needs beside its widest text.
    virtual double MenuMargin() = 0;
    virtual FloatRect MainDisplay() = 0;
    virtual void Beep() = 0;
    virtual void SetCursor(ThemeCursor cursor) = 0;
    // A command event was posted. Any thread.
    virtual void CommandPosted(OSType command) = 0;
};

class LoopDriver {
  public:
    virtual ~LoopDriver() = default;

    // Turns the loop (RunLoop.h) until `done`; false when there is nothing more that could make it
    // so. Nested calls end from the inside out.
    virtual bool RunUntil(std::function<bool()> const& done) = 0;
    // Something is due at that time, or at once for one that has passed. Any thread.
    virtual void Wake(double at) = 0;
    // Seconds, never going back; throws nothing. Any thread.
    virtual double Now() = 0;
    // Returns when so much time has passed; the loop isn't turned meanwhile.
    virtual void Wait(double seconds) = 0;
};

// Both are borrowed and must outlive their use: threads that post have to have ended before another
// face is installed, since they may still be calling the former one. Null goes back to a face that
// shows nothing, with the fixed metrics of HeadlessFace.h. Window numbers start at 1 again.
void InstallFace(ControlFace* face, LoopDriver* driver);

// ---- What a face may read ----

struct WindowView {
    WindowRef window = nullptr;
    std::int32_t number = 0;  // from 1 in the order of the first showing; 0: never shown
    CFRef<CFStringRef> name;  // null for none
    CFRef<CFStringRef> title;
    bool isSheet = false;
    WindowRef parent = nullptr;  // a sheet's
    bool isVisible = false;
    bool isModal = false;  // a modal loop of it runs
    Rect bounds = {};
    ControlRef root = nullptr;
    ControlRef focus = nullptr;
    ControlRef defaultButton = nullptr;
    ControlRef cancelButton = nullptr;
};

struct ItemView {
    std::uint16_t number = 0;  // from 1: the value that chooses it, UserChose's item
    CFRef<CFStringRef> title;
    bool isEnabled = true;
    CFRef<CFStringRef> help;  // null for none
};

struct ControlView {
    ControlRef control = nullptr;
    ControlRef container = nullptr;  // null for a root
    OSType kind = 0;
    ControlID id = {0, 0};
    OSType command = 0;
    CFRef<CFStringRef> title;  // null for none
    CFRef<CFStringRef> text;   // a field's and a static text's, as shown; null for other kinds
    ControlEditTextSelectionRec selection = {0, 0};
    bool isPassword = false;
    std::int32_t value = 0;
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    bool isEnabled = true;  // with what embeds it
    bool isVisible = true;
    bool isActive = true;
    std::int16_t hilite = 0;
    Rect bounds = {};
    ControlFontStyleRec font = {};
    // A popup's; a radio group's in their order, the hidden ones left out, though they count in the
    // numbers.
    std::vector<ItemView> items;
    CFRef<CFStringRef> picture;  // a pane's: the path of the image's file; null for none
};

struct ColumnView {
    DataBrowserPropertyID code = 0;
    CFRef<CFStringRef> title;
    bool isDisclosure = false;
    bool sorts = true;
};
struct RowView {
    DataBrowserItemID item = 0;
    DataBrowserItemID container = 0;
    bool isContainer = false;
    bool isOpen = false;
    bool isSelected = false;
    std::vector<CFRef<CFStringRef>> cells;  // one a column; the empty text where there is none
};
struct ListView {
    std::vector<ColumnView> columns;       // in display order
    DataBrowserPropertyID sortColumn = 0;  // 0 before the first sort
    bool isDescending = false;
    std::vector<RowView> rows;  // in display order, those in shut containers left out
};

// Front first, hidden ones too. Null without memory as an empty list.
std::vector<WindowRef> WindowsInOrder();
// The visible window in front; null for none.
WindowRef FrontWindow();
std::int32_t ModalLoopCount();
// The only window that takes input; null when no modal loop runs.
WindowRef ModalWindow();
// False for a null or foreign reference and without memory; the view is empty then.
bool DescribeWindow(WindowRef window, WindowView* view);
bool DescribeControl(ControlRef control, ControlView* view);
// What is embedded in it, in order; a radio group's buttons are its items and left out.
std::vector<ControlRef> EmbeddedControls(ControlRef control);
// Asks the list's owner for its cells. False for what is no list.
bool DescribeList(ControlRef list, ListView* view);
