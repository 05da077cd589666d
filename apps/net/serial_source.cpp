// SPDX-License-Identifier: MIT
#include "net/reconnecting.h"
#include "net/source_makers.h"

#include <asio/serial_port.hpp>

namespace quorvel::net {

namespace {

class SerialSource : public Reconnecting<asio::serial_port> {
public:
    SerialSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context)
        : Reconnecting(std::move(common), context), _spec(spec) {}

private:
    void connect() override {
        asio::serial_port port(_context);
        std::error_code error;
        port.open(_spec.path, error);
        if (!error) port.set_option(asio::serial_port::baud_rate(_spec.baud), error);
        if (error) return failed("cannot open " + _spec.path + ": " + error.message());
        connected(std::move(port));
    }

    SourceSpec _spec;
};

} // namespace

std::unique_ptr<LiveSource> makeSerialSource(SourceSpec const& spec, SourceCommon common, asio::io_context& context) {
    return std::make_unique<SerialSource>(spec, std::move(common), context);
}

} // namespace quorvel::net
