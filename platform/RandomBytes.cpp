// SPDX-License-Identifier: Apache-2.0
#include "platform/RandomBytes.h"

#include <sys/random.h>

#include <cerrno>

#include "platform/Wiping.h"

bool FillWithRandomBytes(void* bytes, std::size_t size) {
    auto* const begin = static_cast<unsigned char*>(bytes);
    for (std::size_t filled = 0; filled < size;) {
        ssize_t const count = getrandom(begin + filled, size - filled, 0);
        if (count < 0 && errno != EINTR) {
            Wipe(bytes, size);
            return false;
        }
        filled += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return true;
}
