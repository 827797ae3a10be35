/* strictjson.cpp - a document builder for nlohmann's SAX parser that refuses duplicate
** fields and what is beyond the limits, and knows where it is in the document. */
#include "strictjson.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

namespace screenfile {

using nlohmann::json;

std::string memberPath(const std::string &base, const std::string &key) {
    bool plain = !key.empty() && !std::isdigit(static_cast<unsigned char>(key[0]));
    for (char c : key) plain = plain && (std::isalnum(static_cast<unsigned char>(c)) || c == '_');
    if (!plain) return base + "[" + json(key).dump() + "]";
    return base.empty() ? key : base + "." + key;
}

std::string indexPath(const std::string &base, size_t index) {
    return base + "[" + std::to_string(index) + "]";
}

namespace {

/* "line L, column C" of the byte at `offset` (both counted from 1). */
std::string placeOf(const std::string &text, size_t offset) {
    offset = std::min(offset, text.size());
    size_t line = 1 + std::count(text.begin(), text.begin() + offset, '\n');
    size_t lineStart = text.rfind('\n', offset == 0 ? 0 : offset - 1);
    size_t column = lineStart == std::string::npos || offset == 0 ? offset + 1 : offset - lineStart;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

class StrictBuilder : public nlohmann::json_sax<json> {
public:
    StrictBuilder(json &root, const std::string &text) : root_(root), text_(text) {}
    std::string error;

    bool null() override { return add(nullptr) != nullptr; }
    bool boolean(bool v) override { return add(v) != nullptr; }
    bool number_integer(number_integer_t v) override { return add(v) != nullptr; }
    bool number_unsigned(number_unsigned_t v) override { return add(v) != nullptr; }
    bool number_float(number_float_t v, const string_t &) override { return add(v) != nullptr; }
    bool string(string_t &v) override {
        if (v.size() > kMaxTextBytes) return tooLong(v.size(), nextPath());
        return add(v) != nullptr;
    }
    bool binary(binary_t &v) override { return add(json::binary(v)) != nullptr; }

    bool start_object(std::size_t) override { return open(json::object()); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t &k) override {
        Frame &top = frames_.back();
        if (k.size() > kMaxTextBytes) return tooLong(k.size(), containerPath(frames_.size()));
        if (top.value->contains(k)) {
            error = memberPath(containerPath(frames_.size()), k) + ": duplicate field";
            return false;
        }
        top.key = k;
        return true;
    }

    bool parse_error(std::size_t position, const std::string &token,
                     const nlohmann::detail::exception &ex) override {
        // "[json.exception.parse_error.101] parse error at line 3, column 5: syntax ..."
        std::string what = ex.what();
        const std::string marker = "parse error at ";
        size_t at = what.find(marker);
        if (at != std::string::npos) {
            error = what.substr(at + marker.size());
        } else {
            // A number beyond a double's range (the library's text has no place).
            const size_t start = position >= token.size() ? position - token.size() : 0;
            error = placeOf(text_, start) + ": the number " +
                    (token.size() > 24 ? token.substr(0, 24) + "..." : token) +
                    " is beyond the range of a double";
        }
        return false;
    }

private:
    /* An open container. Only the key is kept (an array's index is its size), so that
    ** memory stays linear in the depth; paths are built when an error needs one. */
    struct Frame {
        json *value;
        std::string key; /* the field whose value comes next, in an object */
    };

    /* The path of the open container at `depth` (1: the outermost). */
    std::string containerPath(size_t depth) const {
        std::string path;
        // An open container is its parent's last value.
        for (size_t i = 0; i + 1 < depth; ++i) path = step(path, frames_[i], 1);
        return path;
    }
    std::string nextPath() const {
        return frames_.empty() ? "" : step(containerPath(frames_.size()), frames_.back(), 0);
    }
    /* Into `frame`'s value `back` places before its end, or to its current key. */
    static std::string step(const std::string &path, const Frame &frame, size_t back) {
        return frame.value->is_array() ? indexPath(path, frame.value->size() - back)
                                       : memberPath(path, frame.key);
    }

    bool tooLong(size_t size, const std::string &path) {
        error = (path.empty() ? "top level" : path) + ": a text of " + std::to_string(size) +
                " bytes; texts are at most " + std::to_string(kMaxTextBytes);
        return false;
    }

    /* Places a value where the parse is and returns it. A container stays at its
    ** address while it is open: its parent gets no other value until it closes. */
    json *add(json value) {
        if (frames_.empty()) {
            root_ = std::move(value);
            return &root_;
        }
        Frame &top = frames_.back();
        if (top.value->is_array()) {
            top.value->push_back(std::move(value));
            return &top.value->back();
        }
        json &slot = (*top.value)[top.key];
        slot = std::move(value);
        return &slot;
    }

    bool open(json container) {
        if (frames_.size() >= kMaxJsonDepth) {
            error = nextPath() + ": nested deeper than " + std::to_string(kMaxJsonDepth) +
                    " arrays and objects";
            return false;
        }
        frames_.push_back({add(std::move(container)), ""});
        return true;
    }

    bool close() {
        frames_.pop_back();
        return true;
    }

    json &root_;
    const std::string &text_;
    std::vector<Frame> frames_;
};

} // namespace

bool parseStrictJson(const std::string &text, json &out, std::string &error) {
    out = json();
    // The parser would take a NUL byte for the end of the text and ignore what follows.
    if (size_t nul = text.find('\0'); nul != std::string::npos) {
        error = placeOf(text, nul) + ": a NUL byte; a screen file is text";
        return false;
    }
    StrictBuilder builder(out, text);
    if (json::sax_parse(text, &builder)) return true;
    error = builder.error;
    out = json();
    return false;
}

} // namespace screenfile
