// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

#include "platform/Face.h"

// A face without a screen, on a clock of its own: what is shown can be read (Face.h), what was
// heard is counted, and time passes only when it is told to. A timer comes with the thousandth of a
// second in which it is due. A text is 7 points wide a UTF-16 unit at size 13, in proportion at
// others and rounded up, and size + 3 high; a menu is its widest text
// + 44.
class HeadlessFace : public ControlFace, public LoopDriver {
  public:
    // The next thing to do where nothing is due: a script's line, a test's step. Returns false when
    // there is nothing more, on which a loop that isn't done gives up. It may open windows that run
    // loops of their own, which go on with the next step.
    using Step = std::function<bool()>;

    void SetNextStep(Step step) { mNextStep = std::move(step); }
    void SetDisplay(double width, double height) { mDisplay = {{0, 0}, {width, height}}; }

    // Turns the loop until nothing is due at the present time.
    void Settle();
    // The same while the time goes on; everything comes to its time. Time that a nested loop's
    // steps let pass counts.
    void Advance(double seconds);

    // ---- What was heard ----

    int TakeBeeps();                   // since it was asked last
    std::vector<OSType> TakePosted();  // likewise, in order
    ThemeCursor Cursor() const { return mCursor; }

    void WindowChanged(WindowRef window) override;
    void ControlsChanged(std::vector<ControlRef> const& controls) override;
    void WindowGone(WindowRef window) override;
    void ControlGone(ControlRef control) override;
    FloatSize MeasureText(CFStringRef text, std::int16_t size, std::int16_t style) override;
    double MenuMargin() override { return kMenuMargin; }
    FloatRect MainDisplay() override { return mDisplay; }
    void Beep() override { ++mBeeps; }
    void SetCursor(ThemeCursor cursor) override { mCursor = cursor; }
    void CommandPosted(OSType command) override;

    bool RunUntil(std::function<bool()> const& done) override;
    void Wake(double) override {}
    double Now() override { return mNow; }
    void Wait(double seconds) override;

  private:
    bool Turn();

    static constexpr double kMenuMargin = 44;

    Step mNextStep;
    FloatRect mDisplay = {{0, 0}, {1440, 900}};
    std::atomic<double> mNow{0};  // any thread asks for it
    int mBeeps = 0;
    std::mutex mPostedMutex;  // any thread posts
    std::vector<OSType> mPosted;
    ThemeCursor mCursor = kThemeArrowCursor;
};
