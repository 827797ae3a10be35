/* main.cpp - xcontrols-view: shows a plugin screen described in a JSON file and prints
** the user's answers when the screen is closed by its CLOSE action. */
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "kx.h"
#include "screencheck.h"
#include "screenfile.h"
#include "viewer.h"

namespace {

const char *kUsage =
    "usage: xcontrols-view [--png PATH] [--trace] [--size WxH] [--updates PATH] SCREEN.json\n"
    "       xcontrols-view --check SCREEN.json...\n"
    "\n"
    "Shows the plugin screen described in SCREEN.json (see docs/screen-format.md);\n"
    "\"-\" reads it from standard input.\n"
    "When a CLOSE action fires, prints the job id and the value of every item as one\n"
    "JSON document and exits 0; closing the window otherwise exits 1 and prints nothing.\n"
    "\n"
    "  --png PATH   render the screen to PATH once it is laid out, print PATH, exit 0\n"
    "  --layout PATH  once the screen is shown, write each item's place on the screen\n"
    "               to PATH as {\"<id>\": [x, y, width, height], ...} (root pixels)\n"
    "  --trace      write the library's trace lines to standard error\n"
    "  --size WxH   window size in pixels (default: the file's, else the screen's own)\n"
    "  --updates PATH  apply the update documents of PATH, one per line, to the shown\n"
    "               screen as they arrive (\"-\": standard input; a named pipe works)\n"
    "  --check      check the files without showing them: every problem as\n"
    "               FILE:LINE:COLUMN: message; exit 0 when all are clean, else 2\n"
    "  --help       show this text\n"
    "\n"
    "Exit status: 0 answered or rendered, 1 closed without answer, 2 bad arguments or\n"
    "bad screen file, 3 no display, an X error, the library could not build the screen\n"
    "or the PNG could not be written.\n";

struct Arguments {
    viewer::Options options;
    bool trace = false;
    bool help = false;
    bool check = false;
    std::string file;
    std::vector<std::string> checked; /* the files of --check */
};

bool parseSize(const std::string &text, int &width, int &height) {
    char x = 0, end = 0;
    return std::sscanf(text.c_str(), "%d%c%d%c", &width, &x, &height, &end) == 3 &&
           (x == 'x' || x == 'X') && width > 0 && height > 0 && width <= 32767 &&
           height <= 32767;
}

/* Reads the command line; on a mistake returns false with the reason. */
bool parseArguments(int argc, char **argv, Arguments &args, std::string &error) {
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        auto value = [&](std::string &out) {
            if (i + 1 >= argc) {
                error = "option " + arg + " needs a value";
                return false;
            }
            out = argv[++i];
            return true;
        };
        std::string size;
        if (arg == "--help" || arg == "-h") {
            args.help = true;
        } else if (arg == "--trace") {
            args.trace = true;
        } else if (arg == "--check") {
            args.check = true;
        } else if (arg == "--png") {
            if (!value(args.options.pngPath)) return false;
        } else if (arg == "--updates") {
            if (!value(args.options.updatesPath)) return false;
        } else if (arg == "--layout") {
            if (!value(args.options.layoutPath)) return false;
        } else if (arg == "--size") {
            if (!value(size)) return false;
            if (!parseSize(size, args.options.width, args.options.height)) {
                error = "--size wants WIDTHxHEIGHT in pixels, such as 640x480, not \"" + size + "\"";
                return false;
            }
        } else if (arg.size() > 1 && arg[0] == '-') {
            error = "unknown option " + arg;
            return false;
        } else if (args.check) {
            args.checked.push_back(arg);
        } else if (!args.file.empty()) {
            error = "one screen file only (got \"" + args.file + "\" and \"" + arg + "\")";
            return false;
        } else {
            args.file = arg;
        }
    }
    if (args.check && !args.file.empty()) args.checked.insert(args.checked.begin(), args.file);
    if (args.file.empty() && args.checked.empty() && !args.help) error = "no screen file given";
    return error.empty();
}

/* The screen file's text; "-" reads standard input. */
bool readFile(const std::string &path, std::string &text, std::string &error) {
    std::error_code ec;
    if (path != "-" && std::filesystem::is_directory(path, ec)) {
        error = "it is a directory";
        return false;
    }
    std::ifstream file;
    if (path != "-") {
        file.open(path, std::ios::binary);
        if (!file) {
            error = std::strerror(errno);
            return false;
        }
    }
    std::istream &in = path == "-" ? std::cin : file;
    // One byte more than a screen file may have tells a file that is too large (or
    // endless, such as a device) without reading all of it.
    text.resize(screenfile::kMaxFileBytes + 1);
    in.read(&text[0], static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<size_t>(in.gcount()));
    if (in.bad()) {
        error = "read error";
        return false;
    }
    if (text.size() > screenfile::kMaxFileBytes) {
        error = "larger than " + std::to_string(screenfile::kMaxFileBytes >> 20) +
                " MiB, the most a screen file may have";
        return false;
    }
    return true;
}

/* "FILE:LINE:COLUMN: message", the form editors and build tools read. */
std::string located(const std::string &file, const screenfile::Problem &problem) {
    return file + ":" + std::to_string(problem.place.line) + ":" +
           std::to_string(problem.place.column) + ": " + problem.message;
}

/* --check: prints every problem of every file; 0 when all files are clean. */
int checkFiles(const std::vector<std::string> &files) {
    bool clean = true;
    for (const std::string &file : files) {
        std::string text, error;
        if (!readFile(file, text, error)) {
            std::fprintf(stderr, "xcontrols-view: cannot read %s: %s\n", file.c_str(), error.c_str());
            clean = false;
            continue;
        }
        for (const screenfile::Problem &problem : screenfile::checkText(text)) {
            std::printf("%s\n", located(file, problem).c_str());
            clean = false;
        }
    }
    return clean ? 0 : viewer::kBadInput;
}

} // namespace

int main(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!parseArguments(argc, argv, args, error)) {
        std::fprintf(stderr, "xcontrols-view: %s\n%s", error.c_str(), kUsage);
        return viewer::kBadInput;
    }
    if (args.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (args.check) return checkFiles(args.checked);

    std::string text;
    if (!readFile(args.file, text, error)) {
        std::fprintf(stderr, "xcontrols-view: cannot read %s: %s\n", args.file.c_str(), error.c_str());
        return viewer::kBadInput;
    }
    screenfile::Loaded screen;
    if (!screenfile::parse(text, screen, error)) {
        std::fprintf(stderr, "xcontrols-view: %s: %s\n", args.file.c_str(), error.c_str());
        return viewer::kBadInput;
    }
    for (const screenfile::Problem &problem : screenfile::check(screen))
        std::fprintf(stderr, "xcontrols-view: warning: %s\n", located(args.file, problem).c_str());

    if (args.trace) TraceSetSink("stderr");
    // Only the program's name goes on to Xt: the options are all ours.
    return viewer::show(screen, args.options, 1, argv);
}
