// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// Which elements a walk of the option tree lets through: bit 0 admits orphans, bit 1 admits
// hidden elements.
enum _DISPLAY_OPTIONS_ : std::int32_t {
    kDisplayPlacedAndVisible = 0,
    kDisplayOrphans = 1,
    kDisplayHidden = 2,
    kDisplayAll = 3
};

// The one display option of the process. Code that walks the tree sets it, walks, and puts the
// old value back (DisplayOptionsScope does both). ZUBPPD derives from this class, so callers above
// the reader write ZUBPPD::Options().
class DisplayOptions {
  public:
    static _DISPLAY_OPTIONS_ Options() { return sDisplayOptions; }
    static void Options(_DISPLAY_OPTIONS_ options) { sDisplayOptions = options; }
    static void IncludeOrphans() { Admit(kDisplayOrphans); }
    static void IncludeHidden() { Admit(kDisplayHidden); }
    // Each of these two puts the whole value back to 0.
    static void ExcludeOrphans() { sDisplayOptions = kDisplayPlacedAndVisible; }
    static void ExcludeHidden() { sDisplayOptions = kDisplayPlacedAndVisible; }

    static _DISPLAY_OPTIONS_ sDisplayOptions;

  private:
    static void Admit(_DISPLAY_OPTIONS_ bit) {
        sDisplayOptions = static_cast<_DISPLAY_OPTIONS_>(sDisplayOptions | bit);
    }
};

// Sets the display option for the length of a walk.
class DisplayOptionsScope {
  public:
    explicit DisplayOptionsScope(_DISPLAY_OPTIONS_ options) : mFormer(DisplayOptions::Options()) {
        DisplayOptions::Options(options);
    }
    DisplayOptionsScope(DisplayOptionsScope const&) = delete;
    DisplayOptionsScope& operator=(DisplayOptionsScope const&) = delete;
    ~DisplayOptionsScope() { DisplayOptions::Options(mFormer); }

  private:
    _DISPLAY_OPTIONS_ mFormer;
};
