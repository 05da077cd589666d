// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace quorvel::host {

/// Something that the user must hear of: one line that says what went wrong and with what.
class HostError : public std::runtime_error {
public:
    explicit HostError(std::string const& text, int code = 0) : std::runtime_error(text), _code(code) {}

    /// The `errno` of a failed call of the system, 0 for other failures.
    int code() const { return _code; }

private:
    int _code;
};

/// The program was called in a way that it cannot be: the user, not the world, must change something.
class UsageError : public HostError {
public:
    using HostError::HostError;
};

/// What went wrong has been said already.
class FailureTold : public HostError {
public:
    using HostError::HostError;
};

/// A stream whose encoding cannot be told.
class UnknownEncoding : public HostError {
public:
    /// Of a stream of this name, which looks like this; empty when that cannot be told either.
    explicit UnknownEncoding(std::string const& name, std::string looksLike = {});

    std::string const& looksLike() const { return _looksLike; }

private:
    std::string _looksLike;
};

/// "cannot WHAT NAME: reason", with the reason of `errno`.
HostError systemError(std::string const& what, std::string const& name);

} // namespace quorvel::host
