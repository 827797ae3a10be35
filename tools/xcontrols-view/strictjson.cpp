/* strictjson.cpp - a document builder for nlohmann's SAX parser that refuses duplicate
** fields and keeps the path of every value it is inside. */
#include "strictjson.h"

#include <cctype>
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

class StrictBuilder : public nlohmann::json_sax<json> {
public:
    explicit StrictBuilder(json &root) : root_(root) {}
    std::string error;

    bool null() override { return add(nullptr) != nullptr; }
    bool boolean(bool v) override { return add(v) != nullptr; }
    bool number_integer(number_integer_t v) override { return add(v) != nullptr; }
    bool number_unsigned(number_unsigned_t v) override { return add(v) != nullptr; }
    bool number_float(number_float_t v, const string_t &) override { return add(v) != nullptr; }
    bool string(string_t &v) override { return add(v) != nullptr; }
    bool binary(binary_t &v) override { return add(json::binary(v)) != nullptr; }

    bool start_object(std::size_t) override { return open(json::object()); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t &k) override {
        Frame &top = frames_.back();
        if (top.value->contains(k)) {
            error = memberPath(top.path, k) + ": duplicate field";
            return false;
        }
        top.key = k;
        return true;
    }

    bool parse_error(std::size_t, const std::string &,
                     const nlohmann::detail::exception &ex) override {
        // "[json.exception.parse_error.101] parse error at line 3, column 5: syntax ..."
        std::string what = ex.what();
        const std::string marker = "parse error at ";
        size_t at = what.find(marker);
        error = at == std::string::npos ? what : what.substr(at + marker.size());
        return false;
    }

private:
    struct Frame {
        json *value;
        std::string path;
        std::string key; /* the field whose value comes next, in an object */
    };

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

    std::string nextPath() const {
        if (frames_.empty()) return "";
        const Frame &top = frames_.back();
        return top.value->is_array() ? indexPath(top.path, top.value->size())
                                     : memberPath(top.path, top.key);
    }

    bool open(json container) {
        std::string path = nextPath();
        frames_.push_back({add(std::move(container)), std::move(path), ""});
        return true;
    }

    bool close() {
        frames_.pop_back();
        return true;
    }

    json &root_;
    std::vector<Frame> frames_;
};

} // namespace

bool parseStrictJson(const std::string &text, json &out, std::string &error) {
    out = json();
    StrictBuilder builder(out);
    if (json::sax_parse(text, &builder)) return true;
    error = builder.error;
    out = json();
    return false;
}

} // namespace screenfile
