/* strictjson.cpp - a document builder for nlohmann's SAX parser that refuses duplicate
** fields and what is beyond the limits, and knows where it is in the document. */
#include "strictjson.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <iterator>
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

/* Walks the text for the parser and leaves in a shared cursor the last byte that the
** parser read: a value's callback then knows where the value ended. */
class TrackedChars {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char *;
    using reference = const char &;

    TrackedChars(const char *at, const char **cursor) : at_(at), cursor_(cursor) {}
    const char &operator*() const {
        *cursor_ = at_;
        return *at_;
    }
    TrackedChars &operator++() {
        ++at_;
        return *this;
    }
    bool operator==(const TrackedChars &other) const { return at_ == other.at_; }
    bool operator!=(const TrackedChars &other) const { return at_ != other.at_; }

private:
    const char *at_;
    const char **cursor_;
};

/* The identity of a container that survives its moves while its parent array grows. */
const void *containerOf(const json &v) {
    if (v.is_object()) return v.get_ptr<const json::object_t *>();
    return v.is_array() ? v.get_ptr<const json::array_t *>() : nullptr;
}

const json *memberOf(const json &obj, const std::string &key) {
    return obj.is_object() && obj.contains(key) ? &obj.at(key) : nullptr;
}

} // namespace

LineIndex::LineIndex(const std::string &text) {
    starts_.push_back(0);
    for (size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 1))
        starts_.push_back(i + 1);
}

Place LineIndex::at(size_t offset) const {
    auto next = std::upper_bound(starts_.begin(), starts_.end(), offset);
    if (next == starts_.begin()) return {};
    return {static_cast<size_t>(next - starts_.begin()), offset - *(next - 1) + 1};
}

std::string describe(Place place) {
    return "line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
}

Place Places::of(const json &v) const {
    auto found = offsets_.find(&v);
    if (found == offsets_.end()) found = offsets_.find(containerOf(v));
    return found == offsets_.end() ? Place{} : lines_.at(found->second);
}

Place Places::ofPath(const json &doc, const std::string &path) const {
    const json *at = &doc;
    Place best = of(doc).line ? of(doc) : Place{1, 1}; // a root that is no container
    for (size_t i = 0; at && i < path.size();) {
        if (path.compare(i, 2, "[\"") == 0) {
            // A quoted key: a JSON string up to the first quote that no backslash escapes.
            size_t end = i + 2;
            while (end < path.size() && path[end] != '"') end += path[end] == '\\' ? 2 : 1;
            const json key = json::parse(path.substr(i + 1, end - i), nullptr, false);
            at = key.is_string() ? memberOf(*at, key.get<std::string>()) : nullptr;
            i = end + 2;
        } else if (path[i] == '[') {
            const size_t index = std::strtoul(path.c_str() + i + 1, nullptr, 10);
            at = at->is_array() && index < at->size() ? &(*at)[index] : nullptr;
            i = std::min(path.find(']', i), path.size() - 1) + 1;
        } else {
            i += path[i] == '.';
            const size_t end = std::min(path.find('.', i), path.find('[', i));
            const std::string key = path.substr(i, end - i);
            at = memberOf(*at, key);
            i = std::min(end, path.size());
        }
        if (at && of(*at).line) best = of(*at);
    }
    return best;
}

class StrictBuilder : public nlohmann::json_sax<json> {
public:
    StrictBuilder(json &root, const std::string &text, Places *places)
        : root_(root), text_(text), places_(places), cursor_(text.data()) {}
    std::string error;
    size_t failure = 0; /* the offset of the error */

    TrackedChars begin() { return {text_.data(), &cursor_}; }
    TrackedChars end() { return {text_.data() + text_.size(), &cursor_}; }

    bool null() override { return add(nullptr) != nullptr; }
    bool boolean(bool v) override { return add(v) != nullptr; }
    bool number_integer(number_integer_t v) override { return add(v) != nullptr; }
    bool number_unsigned(number_unsigned_t v) override { return add(v) != nullptr; }
    bool number_float(number_float_t v, const string_t &) override { return add(v) != nullptr; }
    bool string(string_t &v) override {
        if (v.size() > kMaxTextBytes) return tooLong(v.size(), nextPath(), stringStart());
        return add(v) != nullptr;
    }
    bool binary(binary_t &v) override { return add(json::binary(v)) != nullptr; }

    bool start_object(std::size_t) override { return open(json::object()); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t &k) override {
        Frame &top = frames_.back();
        keyStart_ = stringStart();
        if (k.size() > kMaxTextBytes) return tooLong(k.size(), containerPath(frames_.size()), keyStart_);
        if (top.value->contains(k)) {
            error = memberPath(containerPath(frames_.size()), k) + ": duplicate field";
            failure = keyStart_;
            return false;
        }
        top.key = k;
        return true;
    }

    bool parse_error(std::size_t position, const std::string &token,
                     const nlohmann::detail::exception &ex) override {
        // "[json.exception.parse_error.101] parse error at line 3, column 5: syntax ...": the
        // place is that of the last byte read (the library's own says column 0 after a
        // token that ends a line).
        const std::string what = ex.what();
        const size_t at = what.find("parse error at ");
        if (at != std::string::npos) {
            failure = position > 0 ? position - 1 : 0;
            error = describe(LineIndex(text_).at(failure)) + what.substr(what.find(": ", at));
        } else {
            // A number beyond a double's range (the library's text has no place).
            failure = position >= token.size() ? position - token.size() : 0;
            error = describe(LineIndex(text_).at(failure)) + ": the number " +
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

    bool tooLong(size_t size, const std::string &path, size_t start) {
        error = (path.empty() ? "top level" : path) + ": a text of " + std::to_string(size) +
                " bytes; texts are at most " + std::to_string(kMaxTextBytes);
        failure = start;
        return false;
    }

    size_t cursor() const { return static_cast<size_t>(cursor_ - text_.data()); }

    /* The opening quote of the string whose closing quote the parser read last: the first
    ** quote before it that an even number of backslashes precedes. */
    size_t stringStart() const {
        for (size_t i = cursor(); i-- > 0;) {
            if (text_[i] != '"') continue;
            size_t backslashes = 0;
            while (backslashes < i && text_[i - 1 - backslashes] == '\\') ++backslashes;
            if (backslashes % 2 == 0) return i;
        }
        return 0;
    }

    void note(const void *value, size_t offset) {
        if (places_ && value) places_->offsets_.emplace(value, offset);
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
        note(&slot, keyStart_); // a field's node stays where it is
        return &slot;
    }

    bool open(json container) {
        if (frames_.size() >= kMaxJsonDepth) {
            error = nextPath() + ": nested deeper than " + std::to_string(kMaxJsonDepth) +
                    " arrays and objects";
            failure = cursor();
            return false;
        }
        const size_t bracket = cursor();
        frames_.push_back({add(std::move(container)), ""});
        note(containerOf(*frames_.back().value), bracket);
        return true;
    }

    bool close() {
        frames_.pop_back();
        return true;
    }

    json &root_;
    const std::string &text_;
    Places *places_;
    const char *cursor_;     /* the last byte the parser read */
    size_t keyStart_ = 0;    /* where the name of the field whose value comes next begins */
    std::vector<Frame> frames_;
};

bool parseStrictJson(const std::string &text, json &out, std::string &error, Places *places) {
    out = json();
    if (places) *places = Places();
    // The parser would take a NUL byte for the end of the text and ignore what follows.
    if (size_t nul = text.find('\0'); nul != std::string::npos) {
        const Place place = LineIndex(text).at(nul);
        error = describe(place) + ": a NUL byte; a screen file is text";
        if (places) places->failure = place;
        return false;
    }
    if (places) places->lines_ = LineIndex(text);
    StrictBuilder builder(out, text, places);
    if (json::sax_parse(builder.begin(), builder.end(), &builder)) return true;
    error = builder.error;
    if (places) {
        places->failure = places->lines_.at(builder.failure);
        places->offsets_.clear();
    }
    out = json();
    return false;
}

} // namespace screenfile
