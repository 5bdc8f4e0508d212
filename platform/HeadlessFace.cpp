// SPDX-License-Identifier: Apache-2.0
#include "platform/HeadlessFace.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/RunLoop.h"

using platform::RunLoop;

namespace {

double Thousandths(double seconds) {
    return std::round(seconds * 1000);
}

}  // namespace

void HeadlessFace::WindowChanged(WindowRef) {}
void HeadlessFace::ControlsChanged(std::vector<ControlRef> const&) {}
void HeadlessFace::WindowGone(WindowRef) {}
void HeadlessFace::ControlGone(ControlRef) {}

FloatSize HeadlessFace::MeasureText(CFStringRef text, std::int16_t size, std::int16_t) {
    constexpr double kUnitWidth = 7;
    constexpr double kLeading = 3;
    double const length = static_cast<double>(CFStringGetLength(text));
    return {std::ceil(length * kUnitWidth * size / kSystemFontSize), size + kLeading};
}

void HeadlessFace::CommandPosted(OSType command) {
    std::lock_guard const lock(mPostedMutex);
    mPosted.push_back(command);
}

int HeadlessFace::TakeBeeps() {
    return std::exchange(mBeeps, 0);
}

std::vector<OSType> HeadlessFace::TakePosted() {
    std::lock_guard const lock(mPostedMutex);
    return std::exchange(mPosted, {});
}

// Sums of tenths miss the times that they mean by the last bit: what the clock's thousandth reaches
// has come.
bool HeadlessFace::Turn() {
    if (auto const due = RunLoop::NextDue(); due && Thousandths(*due) <= Thousandths(mNow)) {
        mNow = std::max(mNow.load(), *due);
    }
    return RunLoop::Turn();
}

void HeadlessFace::Settle() {
    while (Turn()) {
    }
}

void HeadlessFace::Advance(double seconds) {
    double const end = mNow + std::max(0.0, seconds);
    Settle();
    for (auto due = RunLoop::NextDue(); due && Thousandths(*due) <= Thousandths(end);
         due = RunLoop::NextDue()) {
        mNow = std::max(mNow.load(), *due);
        Settle();
    }
    mNow = std::max(mNow.load(), end);
}

bool HeadlessFace::RunUntil(std::function<bool()> const& done) {
    while (!done()) {
        if (Turn()) {
            continue;
        }
        // A step may run a loop that replaces the steps.
        Step const next = mNextStep;
        if (!next || !next()) {
            return done();
        }
    }
    return true;
}

void HeadlessFace::Wait(double seconds) {
    mNow = mNow + std::max(0.0, seconds);
}
