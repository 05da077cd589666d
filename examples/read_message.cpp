// SPDX-License-Identifier: MIT
// Reads a recording from standard input and prints what its frames say by the standards.
#include <airspace/airspace.h>

#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <variant>

using namespace quorvel::airspace;

// One value: of the type of message that has it, if it is there.
void printAltitude(Message const& message) {
    auto const* const squitter = std::get_if<ExtendedSquitter>(&message);
    if (squitter == nullptr || !squitter->isIntact()) return;
    auto const* const position = std::get_if<AirbornePosition>(&squitter->content);
    if (position == nullptr || !position->altitude.altitudeFt) return;
    std::cout << addressText(squitter->address) << " at " << *position->altitude.altitudeFt << " ft\n";
}

// All values by name.
struct Printer {
    template <class Value> void operator()(std::string_view name, Value const& value) const {
        std::cout << "  " << name << ": " << value << "\n";
    }
    void operator()(std::string_view name, RegisterNumbers const& numbers) const {
        std::cout << "  " << name << ":";
        for (auto const number : numbers) std::cout << " " << nameOf(number).text();
        std::cout << "\n";
    }
};

int main() {
    std::string const bytes(std::istreambuf_iterator<char>(std::cin), {});
    Stream stream;
    Frames frames;
    if (!stream.feed(bytes, 0, frames) || !stream.finish(0, frames)) return 1;
    for (auto const& frame : frames) {
        auto const message = read(frame);
        printAltitude(message);
        visitFields(Printer(), message);
    }
}
