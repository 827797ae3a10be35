/* bmpwrite.h - writes 256-colour uncompressed BMP files: the button pictures, and the
** test and benchmark inputs. Header only; no dependency beyond the C++ library. */
#ifndef XC_BMPWRITE_H
#define XC_BMPWRITE_H

#include <array>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace bmpw {

struct Rgb {
    uint8_t red, green, blue;
};

/* A 256-colour picture: its palette and one palette index per pixel, top row first. */
struct Indexed {
    int32_t width = 0;
    int32_t height = 0;
    std::array<Rgb, 256> palette{};
    std::vector<uint8_t> pixels;
    uint8_t padding = 0; /* the byte written into the padding at the end of each row */

    Indexed() = default;
    Indexed(int32_t w, int32_t h, uint8_t fill = 0)
        : width(w), height(h), pixels(size_t(w) * size_t(h), fill) {}
    uint8_t &at(int32_t x, int32_t y) { return pixels[size_t(y) * size_t(width) + size_t(x)]; }
    uint8_t at(int32_t x, int32_t y) const { return pixels[size_t(y) * size_t(width) + size_t(x)]; }
};

/* Bytes of a stored row: the width rounded up to a multiple of 4. */
inline uint32_t stride(int32_t width) { return (uint32_t(width) + 3u) & ~3u; }

inline void put16(std::vector<uint8_t> &out, size_t at, uint32_t v) {
    out[at] = uint8_t(v);
    out[at + 1] = uint8_t(v >> 8);
}

inline void put32(std::vector<uint8_t> &out, size_t at, uint32_t v) {
    put16(out, at, v);
    put16(out, at + 2, v >> 16);
}

/* The whole file: 14-byte file header, 40-byte info header, 256-entry palette, rows
** bottom-up. */
inline std::vector<uint8_t> encode(const Indexed &pic) {
    const uint32_t rowBytes = stride(pic.width);
    const uint32_t dataBytes = rowBytes * uint32_t(pic.height);
    std::vector<uint8_t> out(1078 + size_t(dataBytes), 0);
    out[0] = 'B';
    out[1] = 'M';
    put32(out, 2, uint32_t(out.size()));
    put32(out, 10, 1078);
    put32(out, 14, 40);
    put32(out, 18, uint32_t(pic.width));
    put32(out, 22, uint32_t(pic.height));
    put16(out, 26, 1);
    put16(out, 28, 8);
    put32(out, 30, 0);
    put32(out, 34, dataBytes);
    put32(out, 38, 2835); /* 72 dots per inch */
    put32(out, 42, 2835);
    put32(out, 46, 256);
    for (size_t i = 0; i < 256; ++i) {
        out[54 + 4 * i] = pic.palette[i].blue;
        out[54 + 4 * i + 1] = pic.palette[i].green;
        out[54 + 4 * i + 2] = pic.palette[i].red;
    }
    for (int32_t y = 0; y < pic.height; ++y) {
        const size_t row = 1078 + size_t(pic.height - 1 - y) * rowBytes;
        for (uint32_t x = 0; x < rowBytes; ++x)
            out[row + x] = x < uint32_t(pic.width) ? pic.at(int32_t(x), y) : pic.padding;
    }
    return out;
}

inline bool writeFile(const std::string &path, const std::vector<uint8_t> &bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
    return bool(file);
}

inline std::vector<uint8_t> readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(file), {});
}

} // namespace bmpw

#endif
