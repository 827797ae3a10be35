/* screenfile_fuzz.cpp - libFuzzer target: any bytes through the screen file loader and its
** checks. A refusal names a place and leaves nothing; a screen that loads gives an answer
** document that is JSON and problems that have a line and column; either way every pool
** block comes back. */
#include <cstdint>
#include <cstdlib>
#include <string>

#include <nlohmann/json.hpp>

#include "kx.h"
#include "screencheck.h"
#include "screenfile.h"

static void check(bool ok) {
    if (!ok) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const int64_t liveBefore = MemLiveCountAllPools();
    {
        screenfile::Loaded screen;
        std::string error;
        screenfile::Place place;
        if (screenfile::parse(std::string(reinterpret_cast<const char *>(data), size), screen,
                              error, &place)) {
            check(screen.tree() != nullptr);
            check(nlohmann::json::accept(screenfile::answers(screen.tree(), screen.jobId)));
            for (const screenfile::Problem &problem : screenfile::check(screen))
                check(problem.place.line > 0 && problem.place.column > 0);
        } else { // "<place>: <reason>"
            check(screen.tree() == nullptr && error.find(": ") != std::string::npos);
            check(place.line > 0 && place.column > 0);
        }
    }
    check(MemLiveCountAllPools() == liveBefore);
    return 0;
}
