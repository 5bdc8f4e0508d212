// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/CoreFoundation.h"

// Owns one reference to a platform object and releases it. Made from what a Create or Copy
// function returned; for a borrowed object retain first: CFRef<CFStringRef>::Retained(string).
template <typename Ref>
class CFRef {
  public:
    CFRef() = default;
    explicit CFRef(Ref object) : mObject(object) {}
    CFRef(CFRef const& other) : mObject(other.mObject) { CFRetain(mObject); }
    CFRef(CFRef&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
    CFRef& operator=(CFRef other) noexcept {
        std::swap(mObject, other.mObject);
        return *this;
    }
    ~CFRef() { CFRelease(mObject); }

    static CFRef Retained(Ref object) {
        CFRetain(object);
        return CFRef(object);
    }

    Ref Get() const { return mObject; }
    operator Ref() const { return mObject; }
    explicit operator bool() const { return mObject != nullptr; }
    // Gives the reference up to the caller.
    [[nodiscard]] Ref Release() { return std::exchange(mObject, nullptr); }
    // For out-parameters that hand over a reference; drops what was held.
    Ref* Receive() {
        CFRelease(std::exchange(mObject, nullptr));
        return &mObject;
    }

  private:
    Ref mObject = nullptr;  // one reference owned
};
