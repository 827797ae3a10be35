/* security.cpp - password encryption with an authenticated secret-key cipher. */
#include "kxsecurity.h"
#include "kxmem.h"

#include <cstring>
#include <sodium.h>
#include <vector>

namespace {

/* Marks the format of the printable text: "kx1:" then base64 of nonce and ciphertext. */
constexpr const char kPrefix[] = "kx1:";
constexpr size_t kPrefixLength = sizeof kPrefix - 1;
constexpr int kBase64 = sodium_base64_VARIANT_ORIGINAL;
/* Binds the derived key to this use, so the same key argument elsewhere gives another key. */
constexpr const char kContext[] = "kx password store v1";
constexpr size_t kSealOverhead = crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES;

bool ready() {
    static const bool initialised = sodium_init() >= 0;
    return initialised;
}

/* Bytes that hold key material or come from a secret: wiped when they go. */
class WipedBytes {
public:
    explicit WipedBytes(size_t size) : bytes_(size) {}
    ~WipedBytes() { sodium_memzero(bytes_.data(), bytes_.size()); }
    WipedBytes(const WipedBytes &) = delete;
    WipedBytes &operator=(const WipedBytes &) = delete;
    unsigned char *data() { return bytes_.data(); }
    size_t size() const { return bytes_.size(); }

private:
    std::vector<unsigned char> bytes_;
};

/* The cipher key derived from a key argument (the secret); the hash state that saw the
** argument is wiped at once, the key when it goes. */
class DerivedKey : public WipedBytes {
public:
    explicit DerivedKey(intptr_t keyArg) : WipedBytes(crypto_secretbox_KEYBYTES) {
        crypto_generichash_state state;
        crypto_generichash_init(&state, nullptr, 0, size());
        crypto_generichash_update(&state, reinterpret_cast<const unsigned char *>(kContext),
                                  sizeof kContext - 1);
        crypto_generichash_update(&state, reinterpret_cast<const unsigned char *>(&keyArg),
                                  sizeof keyArg);
        crypto_generichash_final(&state, data(), size());
        sodium_memzero(&state, sizeof state);
    }
};

/* A pool string "kx1:" + base64 of `sealed`, or null. */
char *printable(WipedBytes &sealed) {
    const size_t encodedSize = sodium_base64_ENCODED_LEN(sealed.size(), kBase64);
    char *text = static_cast<char *>(
        MemAllocateFromPool(kPrefixLength + encodedSize, MemGetDefaultPoolId()));
    if (text == nullptr) return nullptr;
    std::memcpy(text, kPrefix, kPrefixLength);
    sodium_bin2base64(text + kPrefixLength, encodedSize, sealed.data(), sealed.size(), kBase64);
    return text;
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

    WipedBytes sealed(kSealOverhead + clearLength);
    unsigned char *nonce = sealed.data();
    randombytes_buf(nonce, crypto_secretbox_NONCEBYTES);
    DerivedKey key(keyArg);
    crypto_secretbox_easy(nonce + crypto_secretbox_NONCEBYTES,
                          reinterpret_cast<const unsigned char *>(clear), clearLength, nonce,
                          key.data());
    *result = printable(sealed);
    return *result != nullptr;
}

/* Opens the box straight into the pool block that is returned, so the clear text never
** lies in a temporary; a block that turns out not to be a password is wiped as it goes. */
char *SecurityDecryptPassword(const char *encrypted, intptr_t keyArg) {
    if (encrypted == nullptr || !ready() ||
        std::strncmp(encrypted, kPrefix, kPrefixLength) != 0)
        return nullptr;
    const char *encoded = encrypted + kPrefixLength;
    const size_t encodedLength = std::strlen(encoded);
    WipedBytes sealed(encodedLength / 4 * 3 + 3);
    size_t sealedLength = 0;
    if (sodium_base642bin(sealed.data(), sealed.size(), encoded, encodedLength, nullptr,
                          &sealedLength, nullptr, kBase64) != 0 ||
        sealedLength < kSealOverhead)
        return nullptr;

    const size_t clearLength = sealedLength - kSealOverhead;
    char *clear = static_cast<char *>(MemAllocateFromPool(clearLength + 1, MemGetDefaultPoolId()));
    if (clear == nullptr) return nullptr;
    const unsigned char *nonce = sealed.data();
    DerivedKey key(keyArg);
    const int opened = crypto_secretbox_open_easy(
        reinterpret_cast<unsigned char *>(clear), nonce + crypto_secretbox_NONCEBYTES,
        sealedLength - crypto_secretbox_NONCEBYTES, nonce, key.data());
    clear[clearLength] = '\0';
    if (opened != 0 || std::memchr(clear, '\0', clearLength) != nullptr) MemFreeSecret(&clear);
    return clear;
}

} // extern "C"
