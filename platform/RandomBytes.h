// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

// Fills the bytes from the operating system's generator, which is fit for keys. False, with zeros
// in all of them, when it has none to give.
bool FillWithRandomBytes(void* bytes, std::size_t size);
