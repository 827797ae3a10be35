/* test_viewer.cpp - the viewer program run as a user runs it: bad files and arguments,
** rendering screens to PNGs, and hundreds of hostile files that must never crash it. */
#include <chrono>
#include <cstring>
#include <deque>
#include <regex>
#include <set>
#include <sstream>

#include <nlohmann/json.hpp>

#include "strictjson.h"
#include "viewerfixture.h"

namespace {

/* Width and height from a PNG's header, or {0, 0} when the file is no PNG. */
std::pair<uint32_t, uint32_t> pngSize(const std::string &path) {
    unsigned char h[24] = {};
    std::ifstream(path, std::ios::binary).read(reinterpret_cast<char *>(h), sizeof h);
    if (std::memcmp(h, "\x89PNG\r\n\x1a\n", 8) != 0) return {0, 0};
    auto word = [&](int i) {
        return uint32_t(h[i]) << 24 | h[i + 1] << 16 | h[i + 2] << 8 | h[i + 3];
    };
    return {word(16), word(20)};
}

TEST(ViewerProgram, BadInputEndsWithItsStatusAndMessage) {
    Scratch scratch;
    const std::string good = scratch.file("good.json", R"({"items": []})");
    const std::string usage = "usage: xcontrols-view [--png PATH]";
    // Status 2 for bad arguments and files; 3 for a display that cannot be opened.
    struct Case { std::vector<std::string> args; std::string env, input, err; };
    const Case cases[] = {
        {{"/none.json"}, "", "", "cannot read /none.json: No such file or directory"},
        {{"/tmp"}, "", "", "cannot read /tmp: it is a directory"},
        {{"/dev/zero"}, "", "",
         "cannot read /dev/zero: larger than 4 MiB, the most a screen file may have"},
        {{"-"}, "", R"({"items": [{"type": "Label", "id": 1, "data": {"text": 1}}]})",
         "-: items[0].data.text: expected a string or null, got an integer"},
        {{}, "", "", "no screen file given"},
        {{"--frobnicate", good}, "", "", "unknown option --frobnicate"},
        {{good, "--png"}, "", "", "option --png needs a value"},
        {{"--size", "0x10", good}, "", "",
         "--size wants WIDTHxHEIGHT in pixels, such as 640x480, not \"0x10\""},
        {{good, good}, "", "", "one screen file only (got \"" + good + "\" and \"" + good + "\")"},
        {{good}, "DISPLAY=:4095", "", "cannot open display \":4095\""}};
    for (const Case &c : cases) {
        Viewer viewer(c.args, c.env, c.input);
        SCOPED_TRACE(c.err);
        EXPECT_EQ(viewer.finish(), c.env.empty() ? 2 : 3);
        EXPECT_EQ(viewer.err.substr(0, viewer.err.find('\n')), "xcontrols-view: " + c.err);
        // Bad arguments show the usage; bad files and displays only their reason.
        EXPECT_EQ(viewer.err.find(usage) != std::string::npos, c.args.size() != 1) << viewer.err;
        EXPECT_EQ(viewer.out, "");
    }
    Viewer help({"--help"});
    EXPECT_EQ(help.finish(), 0);
    EXPECT_EQ(help.out.rfind(usage, 0), 0u);
}

TEST(ViewerProgram, ScreensRenderToAPngOfTheirSize) {
    Scratch scratch;
    const std::string png = scratch.path("shot.png"), screen = scratch.file("screen.json",
        R"({"width": 300, "height": 200, "items": [{"type": "Label", "id": 1}]})");
    // The size given overrides the file's; the trace goes to standard error.
    Viewer traced({"--png", png, "--size", "420x260", "--trace", screen});
    ASSERT_EQ(traced.finish(), 0) << traced.err;
    EXPECT_EQ(pngSize(png), std::make_pair(420u, 260u));
    EXPECT_NE(traced.err.find("Create a Label"), std::string::npos) << traced.err;
    int examples = 0;
    const std::string examplesDir = XCV_SOURCE_DIR "/examples/screens";
    for (const auto &entry : std::filesystem::directory_iterator(examplesDir)) {
        if (entry.path().extension() != ".json") continue;
        Viewer viewer({"--png", png, entry.path().string()});
        EXPECT_EQ(viewer.finish(), 0) << entry.path() << "\n" << viewer.err;
        EXPECT_EQ(viewer.out, png + "\n");
        EXPECT_EQ(viewer.err, "") << "an example screen should load without warnings";
        EXPECT_GT(std::min(pngSize(png).first, pngSize(png).second), 100u) << entry.path();
        ++examples;
    }
    EXPECT_GE(examples, 2);
}

/* A screen with a value of every kind that reaches X: sizes, offsets, grid columns. */
const char *kHostileBase = R"({"jobId": 7, "width": 400, "height": 300, "items": [
  {"type": "Label", "id": 1, "data": {"text": "Name"}, "attach": {"left": {"kind": "centre",
   "offset": 0}, "top": {"kind": "position", "position": 0, "offset": 4}}},
  {"type": "EditBox", "id": 2, "data": {"rows": 3, "columns": 20, "maxLength": 40, "text": "x"},
   "attach": {"top": {"kind": "item", "item": 1, "offset": 6}}},
  {"type": "RowColManager", "id": 3, "data": {"columns": 2},
   "attach": {"top": {"kind": "item", "item": 2, "offset": 6}}, "children": [
    {"type": "NumInput", "id": 4, "data": {"value": 5, "minimum": 0, "maximum": 9, "columns": 4}},
    {"type": "ExtendedListBox", "id": 5, "data": {"width": 10, "visible": 3}, "children": [
      {"type": "ListItem", "id": 6, "data": {"text": "a", "selected": 1}}]},
    {"type": "ComboBox", "id": 7, "data": {"selected": 1, "columns": 8}, "children": [
      {"type": "ComboItem", "id": 8, "data": {"text": "b"}}]},
    {"type": "GetPasswordBox", "id": 9, "data": {"columns": 8}},
    {"type": "DateInput", "id": 10, "data": {"date": 86400}},
    {"type": "TimeInput", "id": 11, "data": {"time": 3600}}]}]})";

/* One generated file and the status it must end with (-1: any documented one). */
struct Hostile { std::string name, content; int status; };

/* Every number of the base replaced by each hostile literal (which may be no JSON value of
** the library's range at all); the base cut short, given a NUL byte, and a byte of it
** overwritten; files at and beyond the limits that the library itself meets (the loader's
** own limits are the loader test's). */
std::vector<Hostile> hostileFiles() {
    const nlohmann::json base = nlohmann::json::parse(kHostileBase);
    const std::string text = base.dump();
    std::vector<Hostile> files;
    const nlohmann::json leaves = base.flatten();
    for (const auto &leaf : leaves.items()) {
        if (!leaf.value().is_number()) continue;
        for (const char *literal : {"-2147483648", "2147483647", "-1", "32768", "1e400", "1.5",
                                    "\"7\"", "[]", "null", "{}"}) {
            nlohmann::json doc = base;
            doc[nlohmann::json::json_pointer(leaf.key())] = "\x01";
            std::string hostile = doc.dump();
            hostile.replace(hostile.find("\"\\u0001\""), 8, literal);
            files.push_back({leaf.key() + "=" + literal, hostile, -1});
        }
    }
    for (size_t at = 0; at < text.size(); at += text.size() / 16) {
        const std::string where = " at " + std::to_string(at), head = text.substr(0, at);
        files.push_back({"cut" + where, head, 2});
        files.push_back({"NUL" + where, head + '\0' + text.substr(at), 2});
        for (const char *bytes : {"\xff", "{", "\"", "\\", "]"})
            files.push_back({"byte " + std::string(bytes) + where,
                             head + bytes + text.substr(at + 1), -1});
    }
    const auto label = [](const std::string &text, const std::string &attach) {
        return R"({"items": [{"type": "Label", "id": 1, "data": {"text": ")" + text +
               R"("}, "attach": )" + attach + "}]}";
    };
    files.insert(files.end(), {
        {"deepest items", groupChain(screenfile::kMaxItemDepth), 0},
        {"huge label", label(std::string(256 << 10, 'W'), "null"), 2},
        {"longest label", label(std::string(screenfile::kMaxTextBytes, 'W'), "null"), 0},
        {"centred far left", label("a", R"({"left": {"kind": "centre", "offset": -2147483648}})"),
         0},
        {"centred far up", label("a", R"({"top": {"kind": "centre", "offset": 2147483647}})"), 0},
        {"wide grid", R"({"items": [{"type": "RowColManager", "id": 1, "data": {"columns":
           2147483647}, "children": [{"type": "Label", "id": 2}, {"type": "Label", "id": 3}]}]})",
         0},
        {"larger than the screen", R"({"width": 32767, "height": 32767, "items": []})", 0},
        {"comment not text", R"({"items": [], "comment": {"a": 1}})", 2},
        {"not UTF-8", "{\"items\": [], \"title\": \"\xe9\"}", 2}});
    return files;
}

/* A refusal names the file or the place: "line L, column C", "top level" or a path. */
const std::regex kRefusal(R"(xcontrols-view: (cannot read [^:]+: [^\n]+\n|[^:]+: )"
    R"((line \d+, column \d+|top level|[A-Za-z_]\w*(\.\w+|\[("[^"]*"|\d+)\])*): [^\n]+\n)"
    R"((xcontrols-view: [^\n]*warning: [^\n]*\n)*))");

TEST(ViewerProgram, BadAndHostileFilesEndWithADocumentedStatusAndNeverAnXError) {
    Scratch scratch;
    const std::vector<Hostile> files = hostileFiles();
    ASSERT_GT(files.size(), 200u);
    constexpr size_t kAtOnce = 4; // most files are refused before any window exists
    for (size_t first = 0; first < files.size(); first += kAtOnce) {
        std::deque<Viewer> running; // the viewers must stay where they started
        for (size_t i = first; i < std::min(files.size(), first + kAtOnce); ++i) {
            const std::string name = "hostile" + std::to_string(i - first);
            const std::string screen = scratch.file(name + ".json", files[i].content);
            running.emplace_back(
                std::vector<std::string>{"--png", scratch.path(name + ".png"), screen});
        }
        for (size_t i = 0; i < running.size(); ++i) {
            const int status = running[i].finish();
            const std::string &err = running[i].err;
            SCOPED_TRACE(files[first + i].name + ": exit " + std::to_string(status) + "\n" +
                         err.substr(0, 300));
            EXPECT_TRUE(status == 0 || status == 2 || status == 3) << "a signal or a hang";
            EXPECT_TRUE(files[first + i].status < 0 || status == files[first + i].status);
            EXPECT_EQ(err.find("X error"), std::string::npos);
            EXPECT_TRUE(status != 2 || std::regex_match(err, kRefusal)) << "no place named";
        }
    }
}

TEST(ViewerProgram, CheckPrintsEveryProblemWithItsPlaceWithoutADisplay) {
    Scratch scratch;
    const std::string refs = scratch.file("refs.json", R"({"items": [{"type": "ComboItem", "id": 1},
  {"type": "Label", "id": 2, "actions": [{"kind": "HIDE", "target": 9}]}]})");
    const std::string broken = scratch.file("broken.json", R"({"items": [{"type": "Label"}]})");
    const std::string problems = refs + ":1:12: a ComboItem outside a ComboBox is never shown\n" +
                                 refs + ":2:59: the HIDE action aims at id 9, which no item has\n";
    Viewer check({"--check", refs, broken}, "env -u DISPLAY");
    EXPECT_EQ(check.finish(), 2);
    EXPECT_EQ(check.out, problems + broken + ":1:12: items[0]: missing field \"id\"\n");
    // The viewer warns of the same problems and shows the screen.
    Viewer shown({"--png", scratch.path("refs.png"), refs});
    EXPECT_EQ(shown.finish(), 0);
    EXPECT_EQ(shown.err, std::regex_replace(problems, std::regex("(.+\n)"), "xcontrols-view: warning: $1"));
    // The samples are clean, and so is a screen of 4000 items that refer to each other.
    std::string many = R"({"items": [)";
    for (int id = 1; id <= 4000; ++id) { // each attached to the next and hiding it
        const std::string next = std::to_string(id % 4000 + 1);
        many += R"({"type": "Label", "id": )" + std::to_string(id) + R"(, "attach": {"top": {"kind":
            "item", "item": )" + next + R"(}}, "actions": [{"kind": "HIDE", "target": )" + next + "}]},";
    }
    many.back() = ']';
    std::vector<std::string> clean = {"--check", scratch.file("many.json", many + "}")};
    for (const auto &entry : std::filesystem::directory_iterator(XCV_SOURCE_DIR "/examples/screens"))
        clean.push_back(entry.path().string());
    const auto start = std::chrono::steady_clock::now();
    Viewer all(clean, "env -u DISPLAY");
    EXPECT_EQ(all.finish(), 0);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("checked 4000 items and the samples in %.3f s\n", took.count());
    EXPECT_LT(took.count(), 1.0);
    EXPECT_EQ(all.out + all.err, "");
}

/* The schema (docs/screen.schema.json) refuses what the loader refuses and takes what it
** takes: the samples, the hostile files and a row for each kind of mistake. */
TEST(ViewerProgram, TheSchemaAndTheLoaderAgreeOnEveryFile) {
    std::vector<Hostile> files = hostileFiles();
    const auto item = [](const std::string &fields) { return R"({"items": [{)" + fields + "}]}"; };
    const std::string label = R"("type": "Label", "id": 1, )", date = R"("type": "DateInput", "id": 1, )";
    files.insert(files.end(), {
        {"unknown field", R"({"items": [], "colour": "red"})", 2}, {"no items", "{}", 2},
        {"wrong type", item(R"("type": "Label", "id": "1")"), 2},
        {"schema named", R"({"$schema": "../docs/screen.schema.json", "items": []})", 0},
        {"raw type with data", item(R"("type": 15, "id": 1, "data": {})"), 2},
        {"clear text on a Label", item(label + R"("answerClearText": true)"), 2},
        {"item with a position", item(label + R"("attach": {"left": {"kind": "position",
            "position": 5, "item": 1}})"), 2},
        {"date with a sign", item(date + R"("data": {"date": "+026-01-01"})"), 2},
        // The loader alone knows these limits and the days of a month.
        {"items too deep", groupChain(screenfile::kMaxItemDepth + 1), 2},
        {"a day that does not exist", item(date + R"("data": {"date": "2026-02-30"})"), 2},
        {"update of items", R"({"update": "items", "items": [{"type": "Label", "id": 2}]})", 0},
        {"update without a mode", R"({"items": []})", 2}});
    const std::set<std::string> loaderOnly = {"items too deep", "a day that does not exist"};
    for (const auto &entry : std::filesystem::directory_iterator(XCV_SOURCE_DIR "/examples/screens"))
        files.push_back({entry.path(), std::string(std::istreambuf_iterator<char>(
                                           std::ifstream(entry.path()).rdbuf()), {}), 0});
    Scratch scratch;
    std::string command = "/usr/bin/python3 " XCV_SOURCE_DIR "/tests/viewer/schemacheck.py "
                          XCV_SOURCE_DIR "/docs/screen.schema.json";
    for (size_t i = 0; i < files.size(); ++i) // the judge takes files named update* as updates
        command += " " + scratch.file((files[i].name.rfind("update", 0) ? "f" : "update") +
                                          std::to_string(i) + ".json", files[i].content);
    ASSERT_EQ(std::system((command + " >" + scratch.path("verdicts")).c_str()), 0)
        << "the schema's judge failed: is python3-jsonschema installed (tools/install-deps.sh)?";
    std::istringstream verdicts(scratch.read("verdicts"));
    const int64_t live = MemLiveCountAllPools();
    for (const Hostile &file : files) {
        std::string verdict, error;
        std::getline(verdicts, verdict);
        screenfile::Loaded screen;
        const bool loads = file.name.rfind("update", 0) ? screenfile::parse(file.content, screen, error)
                                                        : file.status == 0;
        EXPECT_EQ(verdict.find("\tok") != std::string::npos, loads || loaderOnly.count(file.name))
            << file.name << ": " << verdict << "; the loader: " << error;
    }
    EXPECT_EQ(MemLiveCountAllPools(), live);
}

} // namespace
