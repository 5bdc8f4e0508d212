// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

// What windows, controls, menus and events are named by, and rectangles. Coordinates are points,
// y grows downward.
//
// A reference is a number that stands for a living object; it is never an address. Once the object
// is gone its reference is refused wherever it is handed in, and no later object gets it.

struct OpaqueWindow;
using WindowRef = OpaqueWindow*;
struct OpaqueControl;
using ControlRef = OpaqueControl*;
struct OpaqueMenu;
using MenuRef = OpaqueMenu*;
struct OpaqueEventTarget;
using EventTargetRef = OpaqueEventTarget*;

struct Point {
    std::int16_t v;
    std::int16_t h;
};

struct Rect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;

    friend bool operator==(Rect const&, Rect const&) = default;
};

// As far as a coordinate goes.
constexpr std::int16_t ClampedCoordinate(int coordinate) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<int>(coordinate, Limits::min(), Limits::max()));
}
constexpr int WidthOf(Rect const& rect) {
    return rect.right - rect.left;
}
constexpr int HeightOf(Rect const& rect) {
    return rect.bottom - rect.top;
}
constexpr void OffsetRect(Rect* rect, int dx, int dy) {
    *rect = {ClampedCoordinate(rect->top + dy), ClampedCoordinate(rect->left + dx),
             ClampedCoordinate(rect->bottom + dy), ClampedCoordinate(rect->right + dx)};
}
constexpr void InsetRect(Rect* rect, int dx, int dy) {
    *rect = {ClampedCoordinate(rect->top + dy), ClampedCoordinate(rect->left + dx),
             ClampedCoordinate(rect->bottom - dy), ClampedCoordinate(rect->right - dx)};
}
// The smallest rectangle that holds both; `result` may be one of them.
constexpr void UnionRect(Rect const* one, Rect const* two, Rect* result) {
    *result = {std::min(one->top, two->top), std::min(one->left, two->left),
               std::max(one->bottom, two->bottom), std::max(one->right, two->right)};
}
// The bottom and the right edge lie outside.
constexpr bool PtInRect(Point point, Rect const* rect) {
    return point.v >= rect->top && point.v < rect->bottom && point.h >= rect->left &&
           point.h < rect->right;
}
