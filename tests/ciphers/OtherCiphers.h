// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gcrypt.h>
#include <openssl/evp.h>

#include <cstdint>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// The same algorithms from elsewhere: OpenSSL and libgcrypt.

using ByteVector = std::vector<std::uint8_t>;

inline ByteVector FromHex(std::string_view text) {
    ByteVector bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        bytes.push_back(
            static_cast<std::uint8_t>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
}

inline std::string ToHex(ByteVector const& bytes) {
    std::string text;
    for (std::uint8_t const byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

inline std::mt19937 Random() {
    constexpr unsigned kSeed = 20260101;
    std::cout << "seed " << kSeed << '\n';
    return std::mt19937(kSeed);
}

inline ByteVector RandomBytes(std::mt19937& random, std::size_t size) {
    ByteVector bytes(size);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

// libgcrypt, whole blocks without padding; an empty vector for ECB.
inline ByteVector Gcrypt(int algorithm, bool decrypt, ByteVector const& key,
                         ByteVector const& vector, ByteVector const& in) {
    if (gcry_check_version(nullptr) == nullptr) {
        throw std::runtime_error("libgcrypt doesn't start");
    }
    gcry_cipher_hd_t handle = nullptr;
    ByteVector out(in.size());
    int const mode = vector.empty() ? GCRY_CIPHER_MODE_ECB : GCRY_CIPHER_MODE_CBC;
    bool isDone = gcry_cipher_open(&handle, algorithm, mode, 0) == 0;
    // Weak keys are keys, and are said to be weak when they are set.
    gcry_cipher_ctl(handle, GCRYCTL_SET_ALLOW_WEAK_KEY, nullptr, 1);
    auto const keyError = gcry_err_code(gcry_cipher_setkey(handle, key.data(), key.size()));
    isDone = isDone && (keyError == GPG_ERR_NO_ERROR || keyError == GPG_ERR_WEAK_KEY);
    if (!vector.empty()) {
        isDone = isDone && gcry_cipher_setiv(handle, vector.data(), vector.size()) == 0;
    }
    auto* const work = decrypt ? gcry_cipher_decrypt : gcry_cipher_encrypt;
    isDone =
        isDone && (in.empty() || work(handle, out.data(), out.size(), in.data(), in.size()) == 0);
    gcry_cipher_close(handle);
    return isDone ? out : throw std::runtime_error("libgcrypt refuses");
}

// OpenSSL's AES-256-CBC without padding of its own.
inline ByteVector OpenSSLAES(ByteVector const& key, ByteVector const& vector,
                             ByteVector const& in) {
    EVP_CIPHER_CTX* const context = EVP_CIPHER_CTX_new();
    ByteVector out(in.size() + 16);
    int length = 0;
    bool const isDone =
        EVP_EncryptInit_ex(context, EVP_aes_256_cbc(), nullptr, key.data(), vector.data()) == 1 &&
        EVP_CIPHER_CTX_set_padding(context, 0) == 1 &&
        EVP_EncryptUpdate(context, out.data(), &length, in.data(), static_cast<int>(in.size())) ==
            1;
    EVP_CIPHER_CTX_free(context);
    out.resize(static_cast<std::size_t>(length));
    return isDone ? out : throw std::runtime_error("OpenSSL refuses");
}

inline ByteVector OpenSSLSHA1(ByteVector const& in) {
    ByteVector digest(20);
    unsigned length = 0;
    EVP_Digest(in.data(), in.size(), digest.data(), &length, EVP_sha1(), nullptr);
    return digest;
}
