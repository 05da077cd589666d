// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/counts.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// Removes the doubling from a Beast stream. Receivers send every 0x1A inside a record twice, so that a
/// single one always starts a record.
///
/// The stream may be cut anywhere. What comes out are whole plain records of frames and identities, one after
/// the other; records of the receiver's own, broken ones and bytes between them are counted and dropped.
class BeastUndoubler {
public:
    /// Takes the next bytes of the stream and appends the records that are complete to `plain`.
    void undouble(std::string_view bytes, std::string& plain, Counts& counts);

    /// Takes note of the end of the stream: a record that it cut off is broken.
    void finish(Counts& counts);

private:
    void step(char byte, std::string& plain, Counts& counts);
    void beginRecord(char type, Counts& counts);
    void endRecord(std::string& plain, Counts& counts);
    void giveUpRecord(Counts& counts);

    std::string _record;          // being read, 0x1A and type first; empty between records
    std::size_t _recordBytes = 0; // how long it will be
    bool _escaped = false;        // the byte before was a 0x1A whose meaning is open
};

/// Cuts the whole records of frames and identities out of a Beast stream without doubling, by their lengths,
/// and appends them to `plain`. What may become a record with the next bytes stays in `stream`; at the end of
/// the stream (`isEnd`) nothing stays.
void cutPlainRecords(std::string& stream, std::string& plain, Counts& counts, bool isEnd);

/// Bytes of the record at the beginning of `plain`, which holds whole records only.
std::size_t plainRecordBytes(std::string_view plain);

/// How many bytes of a sample are records that follow each other without a gap, read as plain or as doubled.
std::size_t chainedBytes(std::string_view sample, bool doubled);

} // namespace quorvel::airspace
