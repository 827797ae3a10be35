/* screenfile_fuzz.cpp - libFuzzer target: any bytes through the screen file loader. A
** refusal names a place and leaves nothing; a screen that loads gives an answer document
** that is JSON; either way every pool block comes back. */
#include <cstdint>
#include <cstdlib>
#include <string>

#include <nlohmann/json.hpp>

#include "kx.h"
#include "screenfile.h"

static void check(bool ok) {
    if (!ok) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const int64_t liveBefore = MemLiveCountAllPools();
    {
        screenfile::Loaded screen;
        std::string error;
        if (screenfile::parse(std::string(reinterpret_cast<const char *>(data), size), screen,
                              error)) {
            check(screen.tree() != nullptr);
            check(nlohmann::json::accept(screenfile::answers(screen.tree(), screen.jobId)));
        } else { // "<place>: <reason>"
            check(screen.tree() == nullptr && error.find(": ") != std::string::npos);
        }
    }
    check(MemLiveCountAllPools() == liveBefore);
    return 0;
}
