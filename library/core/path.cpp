/* path.cpp - the home directory and paths below it. */
#include "kxpath.h"
#include "kxmem.h"
#include "kxstr.h"
#include "kxprivate.h"

#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <string>

namespace {

/* The home beside the directory of this shared library, resolved when it exists. */
std::string homeBesideLibrary() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void *>(&PathHomeDir), &info) == 0 || info.dli_fname == nullptr)
        return std::string();
    std::string library = info.dli_fname;
    size_t slash = library.rfind('/');
    std::string dir = slash == std::string::npos ? "." : library.substr(0, slash);
    std::string home = dir + "/" + KX_HOME_FROM_LIBDIR;
    char resolved[PATH_MAX];
    return realpath(home.c_str(), resolved) ? std::string(resolved) : home;
}

} // namespace

extern "C" {

const char *PathHomeDir(void) {
    if (const char *home = std::getenv("KX_HOME"); home != nullptr && *home != '\0')
        return kx::intern(home);
    static const char *besideLibrary = kx::intern(homeBesideLibrary());
    return *besideLibrary ? besideLibrary : nullptr;
}

char *PathHomeBuild(const char *first, ...) {
    const char *home = PathHomeDir();
    if (home == nullptr) return nullptr;
    std::string path = home;
    va_list args;
    va_start(args, first);
    bool valid = true;
    for (const char *part = first; part != nullptr; part = va_arg(args, const char *)) {
        if (*part == '\0') valid = false;
        path += '/';
        path += part;
    }
    va_end(args);
    return valid ? StrDuplicateIntoPool(path.c_str(), MemGetDefaultPoolId()) : nullptr;
}

} // extern "C"
