// SPDX-License-Identifier: MIT
#include "airspace/sky/registration_of_address.h"

namespace quorvel::airspace {

namespace {

constexpr std::string_view kLetters = "ABCDEFGHJKLMNPQRSTUVWXYZ";
constexpr auto kLetterCount = static_cast<std::uint32_t>(kLetters.size());

// How many registrations begin with so many digits: the digits alone, with one or two letters, or with more digits.
constexpr std::uint32_t kSuffixes = 1 + kLetterCount * (1 + kLetterCount);
constexpr std::uint32_t kOfFourDigits = 1 + kLetterCount + 10; // a fifth character is a letter or a digit
constexpr std::uint32_t kOfThreeDigits = kSuffixes + 10 * kOfFourDigits;
constexpr std::uint32_t kOfTwoDigits = kSuffixes + 10 * kOfThreeDigits;
constexpr std::uint32_t kOfOneDigit = kSuffixes + 10 * kOfTwoDigits;

constexpr std::uint32_t kFirst = 0xA00001;
constexpr std::uint32_t kLast = 0xADF7C7;
static_assert(kFirst + 9 * kOfOneDigit - 1 == kLast);

char digit(std::uint32_t value) { return static_cast<char>('0' + value); }

// None, a letter, or two.
void appendSuffix(std::uint32_t number, Registration& registration) {
    if (number == 0) return;
    auto const first = (number - 1) / (1 + kLetterCount);
    auto const second = (number - 1) % (1 + kLetterCount);
    registration.append(kLetters[first]);
    if (second != 0) registration.append(kLetters[second - 1]);
}

void appendFifth(std::uint32_t number, Registration& registration) {
    if (number == 0) return;
    registration.append(number <= kLetterCount ? kLetters[number - 1] : digit(number - 1 - kLetterCount));
}

} // namespace

Registration registrationOfAddress(std::uint32_t address) {
    Registration registration;
    if (address < kFirst || address > kLast) return registration;
    auto number = address - kFirst;
    registration.append('N');
    registration.append(digit(1 + number / kOfOneDigit));
    number %= kOfOneDigit;
    for (auto const size : {kOfTwoDigits, kOfThreeDigits, kOfFourDigits}) {
        if (number < kSuffixes) {
            appendSuffix(number, registration);
            return registration;
        }
        number -= kSuffixes;
        registration.append(digit(number / size));
        number %= size;
    }
    appendFifth(number, registration);
    return registration;
}

} // namespace quorvel::airspace
