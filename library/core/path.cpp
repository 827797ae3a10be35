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

/* `path` made absolute and free of "." and ".." when it exists; else as it is. */
std::string resolved(const std::string &path) {
    char buffer[PATH_MAX];
    return realpath(path.c_str(), buffer) ? std::string(buffer) : path;
}

/* The home beside the directory of this shared library (whatever the current directory
** was when the library was loaded from a relative path). */
std::string homeBesideLibrary() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void *>(&PathHomeDir), &info) == 0 || info.dli_fname == nullptr)
        return std::string();
    const std::string library = info.dli_fname;
    const size_t slash = library.rfind('/');
    const std::string dir = resolved(slash == std::string::npos ? "." : library.substr(0, slash));
    return resolved(dir + "/" + KX_HOME_FROM_LIBDIR);
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
