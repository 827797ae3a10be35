/* security.cpp - password encryption with an authenticated secret-key cipher. */
#include "kxsecurity.h"
#include "kxmem.h"
#include "kxstr.h"

#include <cstring>
#include <sodium.h>
#include <string>
#include <vector>

namespace {

/* Marks the format of the printable text: "kx1:" then base64 of nonce and ciphertext. */
constexpr const char kPrefix[] = "kx1:";
constexpr size_t kPrefixLength = sizeof kPrefix - 1;
constexpr int kBase64 = sodium_base64_VARIANT_ORIGINAL;
/* Binds the derived key to this use, so the same key argument elsewhere gives another key. */
constexpr const char kContext[] = "kx password store v1";

using Key = unsigned char[crypto_secretbox_KEYBYTES];

bool ready() {
    static const bool initialised = sodium_init() >= 0;
    return initialised;
}

void deriveKey(Key key, intptr_t keyArg) {
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, crypto_secretbox_KEYBYTES);
    crypto_generichash_update(&state, reinterpret_cast<const unsigned char *>(kContext),
                              sizeof kContext - 1);
    crypto_generichash_update(&state, reinterpret_cast<const unsigned char *>(&keyArg),
                              sizeof keyArg);
    crypto_generichash_final(&state, key, crypto_secretbox_KEYBYTES);
}

char *poolCopy(const std::string &text) {
    return StrDuplicateIntoPool(text.c_str(), MemGetDefaultPoolId());
}

} // namespace

extern "C" {

int SecurityEncryptPassword(void *ppResult, const char *clearText, intptr_t keyArg) {
    if (ppResult == nullptr) return 0;
    char **result = static_cast<char **>(ppResult);
    *result = nullptr;
    if (!ready()) return 0;
    const char *clear = clearText ? clearText : "";
    const size_t clearLength = std::strlen(clear);

    std::vector<unsigned char> sealed(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES +
                                      clearLength);
    unsigned char *nonce = sealed.data();
    randombytes_buf(nonce, crypto_secretbox_NONCEBYTES);
    Key key;
    deriveKey(key, keyArg);
    crypto_secretbox_easy(nonce + crypto_secretbox_NONCEBYTES,
                          reinterpret_cast<const unsigned char *>(clear), clearLength, nonce, key);
    sodium_memzero(key, sizeof key);

    std::string text(kPrefix);
    std::vector<char> encoded(sodium_base64_ENCODED_LEN(sealed.size(), kBase64));
    sodium_bin2base64(encoded.data(), encoded.size(), sealed.data(), sealed.size(), kBase64);
    text += encoded.data();
    *result = poolCopy(text);
    return *result != nullptr;
}

char *SecurityDecryptPassword(const char *encrypted, intptr_t keyArg) {
    if (encrypted == nullptr || !ready() ||
        std::strncmp(encrypted, kPrefix, kPrefixLength) != 0)
        return nullptr;
    const char *encoded = encrypted + kPrefixLength;
    const size_t encodedLength = std::strlen(encoded);
    std::vector<unsigned char> sealed(encodedLength / 4 * 3 + 3);
    size_t sealedLength = 0;
    if (sodium_base642bin(sealed.data(), sealed.size(), encoded, encodedLength, nullptr,
                          &sealedLength, nullptr, kBase64) != 0 ||
        sealedLength < crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES)
        return nullptr;

    const unsigned char *nonce = sealed.data();
    const size_t boxLength = sealedLength - crypto_secretbox_NONCEBYTES;
    std::string clear(boxLength - crypto_secretbox_MACBYTES, '\0');
    Key key;
    deriveKey(key, keyArg);
    const int opened = crypto_secretbox_open_easy(
        reinterpret_cast<unsigned char *>(clear.data()), nonce + crypto_secretbox_NONCEBYTES,
        boxLength, nonce, key);
    sodium_memzero(key, sizeof key);
    if (opened != 0 || clear.find('\0') != std::string::npos) return nullptr;
    return poolCopy(clear);
}

} // extern "C"
