// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/RecordCipher.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <ctime>

#include "ciphers/KeyMaterial.h"
#include "ciphers/Twofish.h"
#include "platform/ProcessManager.h"
#include "platform/RandomBytes.h"
#include "platform/Wiping.h"

namespace {

unsigned gSeed = 0;  // 0 until the generator is seeded

std::uint32_t ProcessNumber() {
    ProcessSerialNumber process{};
    GetCurrentProcess(&process);
    return process.lowLongOfPSN;
}

std::uint32_t TimeInSeconds() {
    return static_cast<std::uint32_t>(std::time(nullptr));
}

void SeedOnce() {
    if (gSeed == 0) {
        gSeed = TimeInSeconds() + ProcessNumber();
        std::srand(gSeed);
    }
}

}  // namespace

RecordKey FixedRecordKey() {
    RecordKey key{};
    for (std::size_t i = 0; i < kUserAuthFixedKey.size(); ++i) {
        key[i / 4] |= std::uint32_t{kUserAuthFixedKey[i]} << 8 * (i % 4);
    }
    return key;
}

// A time and a process number are soon guessed, and so is what `rand` makes of them: the operating
// system's numbers are what makes the key one.
bool MakeSessionKey(RecordKey& key) {
    key = {};
    std::array<std::uint32_t, 4> numbers{};
    WipeAtEnd const wipe(numbers);
    if (!FillWithRandomBytes(numbers.data(), sizeof numbers)) {
        return false;
    }
    SeedOnce();
    for (std::uint32_t& number : numbers) {
        number ^= static_cast<std::uint32_t>(std::rand());
    }
    auto const address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(key.data()));
    key = {numbers[0], ProcessNumber(), numbers[1], TimeInSeconds(),
           numbers[2], address,         numbers[3], numbers[0]};
    return true;
}

int CryptRecord(bool decrypt, RecordKey const& key, std::uint8_t const* in, std::size_t length,
                std::uint8_t* out) {
    if (length % kTwofishBlockSize != 0 || length > INT_MAX / 8) {
        return -1;
    }
    keyInstance instance{};
    cipherInstance cipher{};
    WipeAtEnd const wipe(instance);
    int const bits = static_cast<int>(length) * 8;
    if (makeKey(&instance, decrypt ? DIR_DECRYPT : DIR_ENCRYPT, kTwofishMaximumKeyBits, nullptr) !=
            1 ||
        cipherInit(&cipher, MODE_ECB, nullptr) != 1) {
        return -1;
    }
    instance.key32 = key;
    if (reKey(&instance) != 1) {
        return -1;
    }
    int const done = decrypt ? blockDecrypt(&cipher, &instance, in, bits, out)
                             : blockEncrypt(&cipher, &instance, in, bits, out);
    return done == bits ? 0 : -1;
}
