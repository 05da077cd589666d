// SPDX-License-Identifier: MIT
#include "run/aircraft_file.h"

#include "files/host_error.h"
#include "files/replaced_file.h"
#include "terminal/stderr_log.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <optional>
#include <unistd.h>
#include <utility>

namespace quorvel::run {

namespace {

namespace fs = std::filesystem;

constexpr char kRead[] = "read the aircraft database";
constexpr char kWrite[] = "write the aircraft database";

bool isOrdinary(std::string const& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

template <class Step> void attempt(char const* what, std::string const& path, Step const& step) {
    errno = 0;
    try {
        step();
    } catch (std::ios_base::failure const&) {
        throw files::systemError(what, path);
    }
}

std::string contentOf(std::string const& path) {
    std::string content;
    attempt(kRead, path, [&] {
        std::ifstream file;
        file.exceptions(std::ios_base::failbit | std::ios_base::badbit);
        file.open(path, std::ios_base::binary);
        content.assign(std::istreambuf_iterator<char>(file), {});
    });
    return content;
}

void requireReadable(std::string const& path, files::ParsedAircraft const& file) {
    auto const first = std::ranges::find_if(file.findings, &files::Finding::isLoss);
    if (first == file.findings.end()) return;
    auto const more = std::count_if(std::next(first), file.findings.end(), std::mem_fn(&files::Finding::isLoss));
    throw files::HostError(
        path + ":" + std::to_string(first->line) + ": " + first->text +
        (more == 0 ? "" : ", and " + std::to_string(more) + (more == 1 ? " more fault" : " more faults")) +
        "; the file stays as it is (\"trevallo db mend\" keeps what is good)");
}

std::string withoutReturns(std::string content) {
    for (auto at = content.find("\r\n"); at != std::string::npos; at = content.find("\r\n", at)) content.erase(at, 1);
    return content;
}

} // namespace

/// A file for content that the library would not read as it is.
class AircraftFile::TemporaryFile {
public:
    TemporaryFile() : _path((fs::temp_directory_path() / "trevallo-XXXXXX").string()) {
        int const file = ::mkstemp(_path.data());
        if (file < 0) throw files::systemError("write", _path);
        ::close(file);
    }
    ~TemporaryFile() { ::unlink(_path.c_str()); }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    std::string const& path() const { return _path; }

    void write(std::string const& content) const {
        errno = 0;
        std::ofstream file(_path, std::ios::binary);
        file << content;
        file.close();
        if (!file) throw files::systemError("write", _path);
    }

private:
    std::string _path;
};

void requireReadable(std::string const& path) {
    if (isOrdinary(path)) requireReadable(path, files::parseAircraft(contentOf(path)));
}

void replaceWithBackup(std::string const& path, Backup backup, std::function<void()> const& replace) {
    if (!isOrdinary(path)) return replace();
    std::error_code error;
    auto const file = fs::canonical(path, error); // the backup lies beside the file that a link leads to
    auto const kept = fs::path(file) += ".bak";
    auto const require = [&] {
        if (error) throw files::HostError("cannot keep " + path + " as " + kept.string() + ": " + error.message());
    };
    require();
    files::ReplacedFile replaced(kept.string());
    auto const& copy = replaced.path();
    fs::copy_file(file, copy, fs::copy_options::overwrite_existing, error);
    require();
    replace();
    std::error_code ignored;
    bool const isShrunk = fs::file_size(file, ignored) * 2 < fs::file_size(copy, ignored);
    if (isShrunk || backup == Backup::Always) replaced.commit();
}

AircraftFile::AircraftFile(std::string path) : _path(std::move(path)) {
    std::error_code error;
    auto const status = fs::status(_path, error);
    _isRead = fs::exists(status) && !fs::is_other(status);
    if (_isRead) load(contentOf(_path));
}

AircraftFile::~AircraftFile() = default;

// A file as the library writes it is read by the library. Any other is rewritten as one that it can read.
void AircraftFile::load(std::string const& content) {
    auto const file = files::parseAircraft(content);
    if (file.findings.empty()) return attempt(kRead, _path, [&] { _aircraft.load(_path); });
    terminal::StderrLog::Mute const muted; // what is wrong is reported elsewhere
    _prepared = std::make_unique<TemporaryFile>();
    _prepared->write(withoutReturns(content));
    attempt(kRead, _path, [&] {
        _aircraft.load(_prepared->path());
        addUnknown(file.aircraft);
        _aircraft.save(_prepared->path());
    });
}

void AircraftFile::addUnknown(files::AircraftByAddress const& aircraft) {
    for (auto const& [address, known] : aircraft) {
        if (_aircraft.findAircraft(address)) continue;
        auto const added = _aircraft.createAircraft(address);
        added->setMopsVersion(static_cast<modes::MOPSVersion>(known.version));
        added->setAirline(known.airline);
    }
}

void AircraftFile::serve(airspace::CoreSky& sky) {
    terminal::StderrLog::Mute const muted; // what is wrong with the file was reported when it was read
    if (_isRead) sky.tracker().setAircraftDbFile(_prepared ? _prepared->path() : _path);
    sky.onDropped([this](auto const& target) { _aircraft.updateAircraft(target); });
}

void AircraftFile::save() {
    if (isOrdinary(_path)) {
        auto const file = files::parseAircraft(contentOf(_path));
        requireReadable(_path, file);
        addUnknown(file.aircraft);
    }
    files::makeFolderOf(_path, kWrite);
    replaceWithBackup(_path, Backup::IfShrunk, [&] { attempt(kWrite, _path, [&] { _aircraft.save(_path); }); });
}

} // namespace quorvel::run
