// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "platform/internal/CFObjects.h"

namespace platform {
namespace {

// The first value above those of 64 signed bits, and exact.
constexpr double kBeyondInt64 = 9223372036854775808.0;

std::int64_t NearestInteger(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= kBeyondInt64) {
        return std::numeric_limits<std::int64_t>::max();
    }
    if (value < -kBeyondInt64) {
        return std::numeric_limits<std::int64_t>::min();
    }
    return static_cast<std::int64_t>(value);
}

bool IsExactly(double real, std::int64_t integer) {
    return real < kBeyondInt64 && real >= -kBeyondInt64 &&
           static_cast<std::int64_t>(real) == integer && std::trunc(real) == real;
}

template <typename Value>
void Store(Value value, void* target) {
    std::memcpy(target, &value, sizeof value);
}

bool EqualNumbers(CFObject const* leftObject, CFObject const* rightObject) {
    auto const* left = static_cast<CFNumberRef>(leftObject);
    auto const* right = static_cast<CFNumberRef>(rightObject);
    if (left->isFloat && right->isFloat) {
        return left->real == right->real || (std::isnan(left->real) && std::isnan(right->real));
    }
    if (left->isFloat != right->isFloat) {
        return left->isFloat ? IsExactly(left->real, right->integer)
                             : IsExactly(right->real, left->integer);
    }
    return left->integer == right->integer;
}

bool GetInteger(CFNumberRef number, std::int64_t& value) {
    value = number->isFloat ? NearestInteger(number->real) : number->integer;
    return !number->isFloat || IsExactly(number->real, value);
}

}  // namespace

constinit CFClass const kNumberClass = {kNumberTypeID, DestroyObject<__CFNumber>, EqualNumbers};
constinit CFClass const kBooleanClass = {kBooleanTypeID, [](CFObject const*) {},
                                         [](CFObject const*, CFObject const*) { return false; }};

namespace {

constinit __CFBoolean gTrue(true);
constinit __CFBoolean gFalse(false);

}  // namespace
}  // namespace platform

constinit CFBooleanRef const kCFBooleanTrue = &platform::gTrue;
constinit CFBooleanRef const kCFBooleanFalse = &platform::gFalse;

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, void const* value) {
    if (value == nullptr) {
        return nullptr;
    }
    std::int32_t narrow = 0;
    std::int64_t wide = 0;
    double real = 0;
    switch (type) {
        case kCFNumberSInt32Type:
            std::memcpy(&narrow, value, sizeof narrow);
            return platform::NewObject<__CFNumber>(std::int64_t{narrow});
        case kCFNumberSInt64Type:
            std::memcpy(&wide, value, sizeof wide);
            return platform::NewObject<__CFNumber>(wide);
        case kCFNumberFloat64Type:
            std::memcpy(&real, value, sizeof real);
            return platform::NewObject<__CFNumber>(real);
        default:
            return nullptr;
    }
}

bool CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    if (number == nullptr || value == nullptr) {
        return false;
    }
    if (type == kCFNumberFloat64Type) {
        double const real = number->isFloat ? number->real : static_cast<double>(number->integer);
        platform::Store(real, value);
        return number->isFloat || platform::IsExactly(real, number->integer);
    }
    std::int64_t integer = 0;
    bool const isExact = platform::GetInteger(number, integer);
    if (type == kCFNumberSInt64Type) {
        platform::Store(integer, value);
        return isExact;
    }
    if (type != kCFNumberSInt32Type) {
        return false;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    std::int64_t const narrow = std::clamp<std::int64_t>(integer, Limits::min(), Limits::max());
    platform::Store(static_cast<std::int32_t>(narrow), value);
    return isExact && narrow == integer;
}

bool CFNumberIsFloatType(CFNumberRef number) {
    return number != nullptr && number->isFloat;
}

bool CFBooleanGetValue(CFBooleanRef boolean) {
    return boolean != nullptr && boolean->value;
}
