// SPDX-License-Identifier: MIT
#include <airspace/integrity.h>

#include <array>
#include <cstddef>

namespace quorvel::airspace {

namespace {

constexpr double kNone = 0.0; // no bound, or not known
constexpr double nauticalMiles(double miles) { return miles * kMetresPerNauticalMile; }

std::optional<double> boundOf(double metres) { return metres == kNone ? std::nullopt : std::optional(metres); }

enum class Bit : std::uint8_t { Zero, One, Any };

constexpr bool fits(Bit wanted, bool bit) { return wanted == Bit::Any || (wanted == Bit::One) == bit; }

// What position messages of a type code say. The first row that fits counts.
struct Row {
    std::uint8_t typeCode;
    Bit a, b, c;
    std::uint8_t category; // NUCp in version 0, NIC later
    double radiusMetres, verticalMetres;
};

using enum Bit;

// clang-format off
constexpr Row kVersion0[] = {
    { 0, Any, Any, Any, 0, kNone,               kNone},
    { 5, Any, Any, Any, 9, 7.5,                 kNone},
    { 6, Any, Any, Any, 8, 25.0,                kNone},
    { 7, Any, Any, Any, 7, nauticalMiles(0.1),  kNone},
    { 8, Any, Any, Any, 6, kNone,               kNone},
    { 9, Any, Any, Any, 9, 7.5,                 kNone},
    {10, Any, Any, Any, 8, 25.0,                kNone},
    {11, Any, Any, Any, 7, nauticalMiles(0.1),  kNone},
    {12, Any, Any, Any, 6, nauticalMiles(0.2),  kNone},
    {13, Any, Any, Any, 5, nauticalMiles(0.5),  kNone},
    {14, Any, Any, Any, 4, nauticalMiles(1.0),  kNone},
    {15, Any, Any, Any, 3, nauticalMiles(2.0),  kNone},
    {16, Any, Any, Any, 2, nauticalMiles(10.0), kNone},
    {17, Any, Any, Any, 1, nauticalMiles(20.0), kNone},
    {18, Any, Any, Any, 0, kNone,               kNone},
    {20, Any, Any, Any, 9, 7.5,                 kNone},
    {21, Any, Any, Any, 8, 25.0,                kNone},
    {22, Any, Any, Any, 0, kNone,               kNone},
};

constexpr Row kVersion1[] = {
    { 0, Any, Any, Any,  0, kNone,               kNone},
    { 5, Any, Any, Any, 11, 7.5,                 11.0},
    { 6, Any, Any, Any, 10, 25.0,                37.5},
    { 7, One, Any, Any,  9, 75.0,                112.0},
    { 7, Any, Any, Any,  8, nauticalMiles(0.1),  kNone},
    { 8, Any, Any, Any,  0, kNone,               kNone},
    { 9, Any, Any, Any, 11, 7.5,                 11.0},
    {10, Any, Any, Any, 10, 25.0,                37.5},
    {11, One, Any, Any,  9, 75.0,                112.0},
    {11, Any, Any, Any,  8, nauticalMiles(0.1),  kNone},
    {12, Any, Any, Any,  7, nauticalMiles(0.2),  kNone},
    {13, Zero, Any, Any, 6, nauticalMiles(0.5),  kNone},
    {13, Any, Any, Any,  6, nauticalMiles(0.6),  kNone},
    {14, Any, Any, Any,  5, nauticalMiles(1.0),  kNone},
    {15, Any, Any, Any,  4, nauticalMiles(2.0),  kNone},
    {16, One, Any, Any,  3, nauticalMiles(4.0),  kNone},
    {16, Any, Any, Any,  2, nauticalMiles(8.0),  kNone},
    {17, Any, Any, Any,  1, nauticalMiles(20.0), kNone},
    {18, Any, Any, Any,  0, kNone,               kNone},
    {20, Any, Any, Any, 11, 7.5,                 11.0},
    {21, Any, Any, Any, 10, 25.0,                37.5},
    {22, Any, Any, Any,  0, kNone,               kNone},
};

constexpr Row kVersion2[] = {
    { 0, Any,  Any,  Any,   0, kNone,               kNone},
    { 5, Any,  Any,  Any,  11, 7.5,                 kNone},
    { 6, Any,  Any,  Any,  10, 25.0,                kNone},
    { 7, One,  Any,  Zero,  9, 75.0,                kNone},
    { 7, Any,  Any,  Any,   8, nauticalMiles(0.1),  kNone},
    { 8, One,  Any,  One,   7, nauticalMiles(0.2),  kNone},
    { 8, One,  Any,  Zero,  6, nauticalMiles(0.3),  kNone},
    { 8, Zero, Any,  One,   6, nauticalMiles(0.6),  kNone},
    { 8, Any,  Any,  Any,   0, kNone,               kNone},
    { 9, Any,  Any,  Any,  11, 7.5,                 kNone},
    {10, Any,  Any,  Any,  10, 25.0,                kNone},
    {11, One,  One,  Any,   9, 75.0,                kNone},
    {11, Any,  Any,  Any,   8, nauticalMiles(0.1),  kNone},
    {12, Any,  Any,  Any,   7, nauticalMiles(0.2),  kNone},
    {13, Zero, One,  Any,   6, nauticalMiles(0.3),  kNone},
    {13, Zero, Zero, Any,   6, nauticalMiles(0.5),  kNone},
    {13, Any,  Any,  Any,   6, nauticalMiles(0.6),  kNone},
    {14, Any,  Any,  Any,   5, nauticalMiles(1.0),  kNone},
    {15, Any,  Any,  Any,   4, nauticalMiles(2.0),  kNone},
    {16, One,  One,  Any,   3, nauticalMiles(4.0),  kNone},
    {16, Any,  Any,  Any,   2, nauticalMiles(8.0),  kNone},
    {17, Any,  Any,  Any,   1, nauticalMiles(20.0), kNone},
    {18, Any,  Any,  Any,   0, kNone,               kNone},
    {20, Any,  Any,  Any,  11, 7.5,                 kNone},
    {21, Any,  Any,  Any,  10, 25.0,                kNone},
    {22, Any,  Any,  Any,   0, kNone,               kNone},
};
// clang-format on

constexpr std::size_t kTypeCodes = 32;
constexpr std::size_t kSupplements = 8; // combinations of three bits

// For each type code and combination of supplements the number of its row, from 1; 0 is no position.
using RowNumbers = std::array<std::array<std::uint8_t, kSupplements>, kTypeCodes>;

template <std::size_t Size> constexpr RowNumbers rowNumbers(Row const (&rows)[Size]) {
    RowNumbers numbers{};
    for (std::size_t i = Size; i-- > 0;) { // backwards, so that the first row that fits stays
        for (std::size_t s = 0; s < kSupplements; ++s) {
            bool const isFit =
                fits(rows[i].a, (s & 4) != 0) && fits(rows[i].b, (s & 2) != 0) && fits(rows[i].c, (s & 1) != 0);
            if (isFit) numbers[rows[i].typeCode][s] = static_cast<std::uint8_t>(i + 1);
        }
    }
    return numbers;
}

constexpr std::array<RowNumbers, 3> kRowNumbers{rowNumbers(kVersion0), rowNumbers(kVersion1), rowNumbers(kVersion2)};
constexpr std::array<Row const*, 3> kRows{kVersion0, kVersion1, kVersion2};

Row const* rowOf(std::size_t typeCode, std::size_t version, NicSupplements const& supplements) {
    if (typeCode >= kTypeCodes) return nullptr;
    if (version >= kRows.size()) version = kRows.size() - 1;
    std::size_t const bits = (supplements.a ? 4U : 0U) | (supplements.b ? 2U : 0U) | (supplements.c ? 1U : 0U);
    auto const number = kRowNumbers[version][typeCode][bits];
    return number == 0 ? nullptr : &kRows[version][number - 1];
}

struct AccuracyRow {
    double horizontal, vertical;
};

// By NUCp 0 to 9, in m; the vertical bound is that of GNSS heights.
constexpr AccuracyRow kNucP[] = {{kNone, kNone}, {nauticalMiles(10.0), kNone}, {nauticalMiles(5.0), kNone},
    {nauticalMiles(1.0), kNone}, {nauticalMiles(0.5), kNone}, {nauticalMiles(0.25), kNone}, {nauticalMiles(0.1), kNone},
    {nauticalMiles(0.05), kNone}, {10.0, 15.0}, {3.0, 4.0}};

// By NACp 0 to 11, in m.
constexpr AccuracyRow kNacP[] = {{kNone, kNone}, {nauticalMiles(10.0), kNone}, {nauticalMiles(4.0), kNone},
    {nauticalMiles(2.0), kNone}, {nauticalMiles(1.0), kNone}, {nauticalMiles(0.5), kNone}, {nauticalMiles(0.3), kNone},
    {nauticalMiles(0.1), kNone}, {nauticalMiles(0.05), kNone}, {30.0, 45.0}, {10.0, 15.0}, {3.0, 4.0}};

// By NACv 0 to 4, in m/s: 50, 15, 5 and 1.5 ft/s vertically.
constexpr AccuracyRow kNacV[] = {{kNone, kNone}, {10.0, 15.24}, {3.0, 4.572}, {1.0, 1.524}, {0.3, 0.4572}};

constexpr double kGva[] = {kNone, 150.0, 45.0};
constexpr double kProbabilities[] = {kNone, 1e-3, 1e-5, 1e-7}; // of SIL and SDA

template <std::size_t Size>
Accuracy accuracyOf(AccuracyRow const (&rows)[Size], std::size_t category, bool hasVertical) {
    if (category >= Size) return {};
    auto const& row = rows[category];
    return {boundOf(row.horizontal), hasVertical ? boundOf(row.vertical) : std::nullopt};
}

template <std::size_t Size> std::optional<double> boundIn(double const (&bounds)[Size], std::size_t category) {
    return category < Size ? boundOf(bounds[category]) : std::nullopt;
}

} // namespace

NavigationIntegrity navigationIntegrity(
    std::uint8_t typeCode, std::uint8_t version, NicSupplements const& supplements) {
    Row const* const row = rowOf(typeCode, version, supplements);
    if (row == nullptr) return {};
    auto const nic = version == 0 ? std::nullopt : std::optional(row->category);
    return {nic, boundOf(row->radiusMetres), boundOf(row->verticalMetres)};
}

std::optional<std::uint8_t> navigationUncertainty(std::uint8_t typeCode) {
    Row const* const row = rowOf(typeCode, 0, {});
    return row == nullptr ? std::nullopt : std::optional(row->category);
}

Accuracy accuracyOfNucP(std::uint8_t nucP) { return accuracyOf(kNucP, nucP, true); }

Accuracy accuracyOfNacP(std::uint8_t nacP, std::uint8_t version) { return accuracyOf(kNacP, nacP, version == 1); }

Accuracy accuracyOfNacV(std::uint8_t nacV, std::uint8_t version) { return accuracyOf(kNacV, nacV, version < 2); }

std::optional<double> accuracyOfGva(std::uint8_t gva) { return boundIn(kGva, gva); }

SourceIntegrity sourceIntegrity(std::uint8_t sil, std::uint8_t version, std::optional<bool> supplement) {
    auto const probability = boundIn(kProbabilities, sil);
    if (version < 2 || !supplement) return {probability, SilBasis::Unknown};
    return {probability, *supplement ? SilBasis::Sample : SilBasis::Hour};
}

std::optional<double> faultProbabilityOfSda(std::uint8_t sda) { return boundIn(kProbabilities, sda); }

} // namespace quorvel::airspace
