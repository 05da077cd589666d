// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace quorvel::files {

/// An error to report to the user: one line that says what went wrong and with what.
class HostError : public std::runtime_error {
public:
    explicit HostError(std::string const& text, int code = 0) : std::runtime_error(text), _code(code) {}

    /// The `errno` of a failed system call, 0 for other failures.
    int code() const { return _code; }

private:
    int _code;
};

/// The program was called with wrong arguments: the user must change the call.
class UsageError : public HostError {
public:
    using HostError::HostError;
};

/// The run failed, and the user already knows why.
class AlreadyReported : public HostError {
public:
    using HostError::HostError;
};

/// A stream whose encoding is not recognized.
class UnknownEncoding : public HostError {
public:
    /// `looksLike` is what the content looks like; empty when that is not known either.
    explicit UnknownEncoding(std::string const& name, std::string looksLike = {});

    std::string const& looksLike() const { return _looksLike; }

private:
    std::string _looksLike;
};

/// "cannot WHAT NAME: reason", with the reason of `errno`.
HostError systemError(std::string const& what, std::string const& name);

} // namespace quorvel::files
