// SPDX-License-Identifier: MIT
#include "files/host_error.h"
#include "net/reading.h"
#include "net/source_makers.h"

#include <asio/posix/stream_descriptor.hpp>

#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace quorvel::net {

namespace {

/// A pipe, a terminal, a device: read once, to its end.
class PipeSource : public LiveSource {
public:
    PipeSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context)
        : _path(spec.path), _common(std::move(common)), _context(context) {}

    void start() override {
        int const file =
            _path == "-" ? ::dup(STDIN_FILENO) : ::open(_path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (file < 0) throw files::systemError("read", _common.name);
        _reading = std::make_unique<Reading<asio::posix::stream_descriptor>>(
            asio::posix::stream_descriptor(_context, file), _common, [this](std::error_code const&) {
                _state = "ended";
                _common.present.end();
                if (auto const unknown = _reading->unknownEncoding(_common.name)) {
                    _common.handlers.failed(std::make_exception_ptr(*unknown));
                } else {
                    _common.handlers.ended();
                }
            });
        _reading->start();
    }

    void stop() override {
        if (_reading) _reading->stop();
    }
    std::string state() const override { return _state; }
    airspace::TimeMs now() const override { return _common.present.now(); }
    airspace::TimeMs lastFrame() const override { return _common.present.lastFrame(); }
    outputs::Counters counters() const override { return _common.countersWith(_reading.get()); }

private:
    std::string _path;
    SourceCommon _common;
    asio::io_context& _context;
    std::unique_ptr<Reading<asio::posix::stream_descriptor>> _reading;
    std::string _state = "reading";
};

} // namespace

std::unique_ptr<LiveSource> makePipeSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context) {
    return std::make_unique<PipeSource>(spec, std::move(common), context);
}

} // namespace quorvel::net
