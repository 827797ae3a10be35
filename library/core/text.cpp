/* text.cpp - text helpers that the runtime's units share. */
#include "kxprivate.h"

#include <unordered_set>

namespace kx {

const char *intern(const std::string &text) {
    static auto *texts = new std::unordered_set<std::string>;
    return texts->insert(text).first->c_str();
}

std::string trim(const std::string &s) {
    const char *blanks = " \t\r\n";
    size_t begin = s.find_first_not_of(blanks);
    if (begin == std::string::npos) return std::string();
    return s.substr(begin, s.find_last_not_of(blanks) - begin + 1);
}

} // namespace kx
