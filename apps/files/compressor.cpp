// SPDX-License-Identifier: MIT
#include "files/compressor.h"

#include <algorithm>
#include <new>
#include <zlib.h>
#include <zstd.h>

namespace quorvel::files {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;

class Gzip : public Compressor {
public:
    Gzip() {
        auto const result =
            deflateInit2(&_stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemoryLevel, Z_DEFAULT_STRATEGY);
        if (result != Z_OK) throw std::bad_alloc();
    }
    ~Gzip() override { deflateEnd(&_stream); }
    Gzip(Gzip const&) = delete;
    Gzip& operator=(Gzip const&) = delete;

    void pack(std::string_view plain, std::string& packed) override {
        for (; !plain.empty(); plain.remove_prefix(std::min(plain.size(), kPieceBytes)))
            run(plain.substr(0, kPieceBytes), Z_NO_FLUSH, packed);
    }

    void finish(std::string& packed) override { run({}, Z_FINISH, packed); }

private:
    static constexpr int kGzipWindow = 15 + 16;
    static constexpr int kMemoryLevel = 8;

    void run(std::string_view plain, int flush, std::string& packed) {
        _stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(plain.data()));
        _stream.avail_in = static_cast<uInt>(plain.size());
        do {
            auto const before = packed.size();
            packed.resize(before + kPieceBytes);
            _stream.next_out = reinterpret_cast<Bytef*>(packed.data() + before);
            _stream.avail_out = kPieceBytes;
            deflate(&_stream, flush);
            packed.resize(packed.size() - _stream.avail_out);
        } while (_stream.avail_out == 0);
    }

    z_stream _stream{};
};

class Zstd : public Compressor {
public:
    Zstd() : _stream(ZSTD_createCStream()) {
        if (_stream == nullptr) throw std::bad_alloc();
    }
    ~Zstd() override { ZSTD_freeCStream(_stream); }
    Zstd(Zstd const&) = delete;
    Zstd& operator=(Zstd const&) = delete;

    void pack(std::string_view plain, std::string& packed) override {
        ZSTD_inBuffer in{plain.data(), plain.size(), 0};
        while (in.pos < in.size) run(in, ZSTD_e_continue, packed);
    }

    void finish(std::string& packed) override {
        ZSTD_inBuffer in{nullptr, 0, 0};
        while (run(in, ZSTD_e_end, packed) != 0) {
        }
    }

private:
    // How much of the compressed data is left.
    std::size_t run(ZSTD_inBuffer& in, ZSTD_EndDirective directive, std::string& packed) {
        auto const before = packed.size();
        packed.resize(before + kPieceBytes);
        ZSTD_outBuffer out{packed.data() + before, kPieceBytes, 0};
        auto const left = ZSTD_compressStream2(_stream, &out, &in, directive);
        if (ZSTD_isError(left) != 0) throw std::bad_alloc(); // the only thing that can fail here
        packed.resize(before + out.pos);
        return left;
    }

    ZSTD_CStream* _stream;
};

} // namespace

std::unique_ptr<Compressor> Compressor::forFile(std::string_view name) {
    if (name.ends_with(".gz")) return std::make_unique<Gzip>();
    if (name.ends_with(".zst")) return std::make_unique<Zstd>();
    return {};
}

} // namespace quorvel::files
