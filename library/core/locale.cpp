/* locale.cpp - numbered message texts from the catalogue named by KX_MESSAGES. */
#include "kxlocale.h"
#include "kxprivate.h"

#include <cstdlib>
#include <fstream>
#include <string>
#include <unordered_map>

namespace {

using Catalogue = std::unordered_map<int32_t, const char *>;

/* Reads "number = text" lines; comments, blank lines and lines without a number are
** skipped. */
Catalogue *readCatalogue() {
    auto *catalogue = new Catalogue;
    const char *file = std::getenv("KX_MESSAGES");
    if (file == nullptr || *file == '\0') return catalogue;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        std::string text = kx::trim(line);
        size_t equals = text.find('=');
        if (text.empty() || text[0] == '#' || equals == std::string::npos) continue;
        std::string number = kx::trim(text.substr(0, equals));
        char *end = nullptr;
        long msgNo = std::strtol(number.c_str(), &end, 10);
        if (number.empty() || *end != '\0' || msgNo != static_cast<int32_t>(msgNo)) continue;
        catalogue->emplace(static_cast<int32_t>(msgNo), kx::intern(kx::trim(text.substr(equals + 1))));
    }
    return catalogue;
}

const Catalogue &catalogue() {
    static const Catalogue *c = readCatalogue();
    return *c;
}

} // namespace

extern "C" {

const char *LocaleGetString(const char *defaultText, int32_t msgNo) {
    auto it = catalogue().find(msgNo);
    if (it != catalogue().end()) return it->second;
    return kx::intern(defaultText ? defaultText : "");
}

const char *LocaleGetStaticString(const char *defaultText, int32_t msgNo) {
    return LocaleGetString(defaultText, msgNo);
}

} // extern "C"
