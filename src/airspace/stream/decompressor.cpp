// SPDX-License-Identifier: MIT
#include <airspace/decompressor.h>

#include <algorithm>
#include <new>
#include <zlib.h>
#include <zstd.h>

namespace quorvel::airspace {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;

class Gunzip : public Decompressor {
public:
    Gunzip() {
        if (inflateInit2(&_stream, kGzipWindow) != Z_OK) throw std::bad_alloc();
    }
    ~Gunzip() override { inflateEnd(&_stream); }
    Gunzip(Gunzip const&) = delete;
    Gunzip& operator=(Gunzip const&) = delete;

    bool unpack(std::string_view& packed, std::string& plain) override {
        if (_isWhole && packed.empty()) return true;
        if (_isWhole && inflateReset(&_stream) != Z_OK) return false; // one member after another
        auto const before = plain.size();
        plain.resize(before + kPieceBytes);
        _stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
        auto const taken = static_cast<uInt>(std::min<std::size_t>(packed.size(), kMostTaken));
        _stream.avail_in = taken;
        _stream.next_out = reinterpret_cast<Bytef*>(plain.data() + before);
        _stream.avail_out = kPieceBytes;
        auto const result = inflate(&_stream, Z_NO_FLUSH);
        packed.remove_prefix(taken - _stream.avail_in);
        plain.resize(plain.size() - _stream.avail_out);
        _isWhole = result == Z_STREAM_END;
        return result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR;
    }

    bool isWhole() const override { return _isWhole; }

private:
    static constexpr int kGzipWindow = 15 + 16;
    static constexpr std::size_t kMostTaken = 1U << 30; // at once: zlib counts in 32 bits

    z_stream _stream{};
    bool _isWhole = false;
};

class Unzstd : public Decompressor {
public:
    Unzstd() : _stream(ZSTD_createDStream()) {
        if (_stream == nullptr) throw std::bad_alloc();
    }
    ~Unzstd() override { ZSTD_freeDStream(_stream); }
    Unzstd(Unzstd const&) = delete;
    Unzstd& operator=(Unzstd const&) = delete;

    bool unpack(std::string_view& packed, std::string& plain) override {
        if (_isWhole && packed.empty()) return true; // without more bytes no other frame can start
        auto const before = plain.size();
        plain.resize(before + kPieceBytes);
        ZSTD_inBuffer in{packed.data(), packed.size(), 0};
        ZSTD_outBuffer out{plain.data() + before, kPieceBytes, 0};
        auto const result = ZSTD_decompressStream(_stream, &out, &in);
        packed.remove_prefix(in.pos);
        plain.resize(before + out.pos);
        _isWhole = result == 0;
        return ZSTD_isError(result) == 0;
    }

    bool isWhole() const override { return _isWhole; }

private:
    ZSTD_DStream* _stream;
    bool _isWhole = false;
};

} // namespace

Decompressor::~Decompressor() = default;

std::unique_ptr<Decompressor> Decompressor::forStream(std::string_view beginning) {
    if (beginning.starts_with("\x1F\x8B")) return std::make_unique<Gunzip>();
    if (beginning.starts_with("\x28\xB5\x2F\xFD")) return std::make_unique<Unzstd>();
    return {};
}

} // namespace quorvel::airspace
