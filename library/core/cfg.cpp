/* cfg.cpp - integer values from INI-style configuration files. */
#include "kxcfg.h"
#include "kxpath.h"
#include "kxprivate.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <string>
#include <strings.h>

namespace {

bool sameName(const std::string &a, const char *b) {
    return strcasecmp(a.c_str(), b) == 0;
}

/* Where a file name without a directory is looked up. */
std::string configPath(const char *file) {
    if (std::strchr(file, '/') != nullptr) return file;
    if (const char *dir = std::getenv("KX_CONFIG_DIR"); dir != nullptr && *dir != '\0')
        return std::string(dir) + "/" + file;
    const char *home = PathHomeDir();
    if (home == nullptr) return std::string();
    return std::string(home) + "/config/" + file;
}

/* The text of the first "key = value" line of the section, read from the file now. */
std::optional<std::string> findValue(const char *file, const char *section, const char *key) {
    if (file == nullptr || *file == '\0' || section == nullptr || key == nullptr)
        return std::nullopt;
    const std::string path = configPath(file);
    std::ifstream in(path);
    if (path.empty() || !in) return std::nullopt;
    bool inSection = false;
    for (std::string line; std::getline(in, line);) {
        line = kx::trim(line);
        if (line.empty() || line[0] == ';' || line[0] == '#') continue;
        if (line[0] == '[') {
            size_t close = line.find(']');
            inSection = close != std::string::npos &&
                        sameName(kx::trim(line.substr(1, close - 1)), section);
            continue;
        }
        size_t equals = line.find('=');
        if (inSection && equals != std::string::npos && sameName(kx::trim(line.substr(0, equals)), key))
            return kx::trim(line.substr(equals + 1));
    }
    return std::nullopt;
}

/* A decimal integer with an optional sign and nothing else, within 64 bits (the text
** is already trimmed). */
std::optional<int64_t> parseInteger(const std::string &text) {
    if (text.empty()) return std::nullopt;
    const char *begin = text.c_str();
    char *end = nullptr;
    errno = 0;
    long long value = std::strtoll(begin, &end, 10);
    if (errno == ERANGE || end == begin || *end != '\0') return std::nullopt;
    return static_cast<int64_t>(value);
}

std::optional<int64_t> lookup(const char *file, const char *section, const char *key) {
    std::optional<std::string> text = findValue(file, section, key);
    return text ? parseInteger(*text) : std::nullopt;
}

} // namespace

extern "C" {

int CfgGetInteger(int32_t *value, const char *file, const char *section, const char *key,
                  int32_t reserved) {
    if (value == nullptr || reserved != 0) return 0;
    std::optional<int64_t> found = lookup(file, section, key);
    if (!found || *found != static_cast<int32_t>(*found)) return 0;
    *value = static_cast<int32_t>(*found);
    return 1;
}

int CfgGetInt64(int64_t *value, const char *file, const char *section, const char *key,
                int64_t reserved) {
    if (value == nullptr || reserved != 0) return 0;
    std::optional<int64_t> found = lookup(file, section, key);
    if (!found) return 0;
    *value = *found;
    return 1;
}

} // extern "C"
