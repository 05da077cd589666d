// SPDX-License-Identifier: MIT
#include "outputs/live_view.h"

#include "outputs/columns.h"
#include "outputs/details.h"
#include "outputs/output_text.h"
#include "outputs/shown_aircraft.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <numeric>
#include <string_view>
#include <vector>

namespace quorvel::outputs {

namespace {

using Mode = ViewState::Mode;
using Rows = std::vector<Aircraft const*>;

constexpr int kHeadLines = 3; // counts, sources, headings
constexpr int kFootLines = 2; // keys
constexpr std::size_t kLongestFilter = 40;

constexpr terminal::Style kPlain{};
constexpr terminal::Style kDim{.dim = true};
constexpr terminal::Style kBold{.bold = true};

int tableRows(int rows) { return std::max(1, rows - kHeadLines - kFootLines); }

// Lines between the first, which is a title, and the last, which lists the keys.
int pageRows(int rows) { return std::max(1, rows - 2); }

// Letters in capitals, whatever the locale.
std::string capitals(std::string text) {
    for (char& character : text) {
        if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
    }
    return text;
}

// Which aircraft are in the table, and in which order.

bool matches(Aircraft const& aircraft, std::string const& filter) {
    auto const has = [&](std::string const& text) { return capitals(text).find(filter) != std::string::npos; };
    return filter.empty() || has(aircraft.name()) || has(aircraft.source) ||
           (aircraft.callsign.value && has(*aircraft.callsign.value)) ||
           (aircraft.registration.value && has(*aircraft.registration.value)) || has(aircraft.type) ||
           (aircraft.squawk.value && has(textOf(*aircraft.squawk.value)));
}

Column const& sortColumn(ViewState const& state) {
    auto const columns = allColumns();
    auto const column =
        std::find_if(columns.begin(), columns.end(), [&](Column const& each) { return each.key == state.sortKey; });
    return column == columns.end() ? columns.front() : *column;
}

struct SortedRow {
    Aircraft const* aircraft;
    std::string text;
    double number;
};

// Aircraft without a value come last in either direction.
Rows rowsOf(Picture const& picture, ViewState const& state) {
    auto const& column = sortColumn(state);
    std::vector<SortedRow> sorted;
    for (auto const& aircraft : picture.aircraft) {
        if (!isLive(aircraft) || !matches(aircraft, state.filter)) continue;
        sorted.push_back({&aircraft, column.text(aircraft), column.number ? column.number(aircraft) : 0});
    }
    auto const isBefore = [&](SortedRow const& a, SortedRow const& b) {
        if (a.text.empty() || b.text.empty()) return !a.text.empty() && b.text.empty();
        auto const& first = state.isReversed ? b : a;
        auto const& second = state.isReversed ? a : b;
        return column.number ? first.number < second.number : first.text < second.text;
    };
    std::stable_sort(sorted.begin(), sorted.end(), isBefore);
    Rows rows;
    for (auto const& row : sorted) rows.push_back(row.aircraft);
    return rows;
}

// Selection

bool isSelected(Aircraft const& aircraft, ViewState const& state) {
    return aircraft.source == state.selected.first && aircraft.name() == state.selected.second;
}

// The row of the selected aircraft; where it was when it is gone.
std::size_t selectedRow(Rows const& rows, ViewState const& state) {
    auto const row =
        std::find_if(rows.begin(), rows.end(), [&](Aircraft const* each) { return isSelected(*each, state); });
    if (row != rows.end()) return static_cast<std::size_t>(row - rows.begin());
    return rows.empty() ? 0 : std::min(state.selectedRow, rows.size() - 1);
}

void select(ViewState& state, Rows const& rows, std::ptrdiff_t row) {
    if (rows.empty()) return;
    auto const last = static_cast<std::ptrdiff_t>(rows.size()) - 1;
    state.selectedRow = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(row, 0, last));
    auto const& aircraft = *rows[state.selectedRow];
    state.selected = {aircraft.source, aircraft.name()};
}

// The details remain when the aircraft has left the table.
Aircraft const* selectedAircraft(Picture const& picture, ViewState const& state) {
    auto const aircraft = std::find_if(picture.aircraft.begin(), picture.aircraft.end(),
        [&](Aircraft const& each) { return isSelected(each, state); });
    return aircraft == picture.aircraft.end() ? nullptr : &*aircraft;
}

// Status

std::string counted(std::size_t count, std::string const& what) { return std::to_string(count) + " " + what; }

std::string countsText(Picture const& picture, ViewState const& state) {
    auto const& all = picture.aircraft;
    auto const live = static_cast<std::size_t>(std::count_if(all.begin(), all.end(), isLive));
    auto const located = static_cast<std::size_t>(std::count_if(all.begin(), all.end(), showsPosition));
    auto const& counters = picture.counters;
    auto text = counted(live, "aircraft, ") + counted(located, "with position  ") + fixed(state.framesPerSecond, 0) +
                " frames/s  " + counted(counters.repaired, "repaired  ") + counted(counters.outputDropped, "dropped");
    auto const refused = counters.positionsOutOfRange + counters.positionsTooFast + counters.positionsImpossible +
                         counters.positionsAmbiguous;
    if (refused > 0) text += "  " + counted(refused, "positions refused");
    if (counters.tableFull > 0) text += "  " + counted(counters.tableFull, "lost: table full");
    return text;
}

std::string timeText(Picture const& picture) {
    auto time = modes::ADSBTargetReport::timeToString(picture.now);
    if (time.empty()) return time;
    auto const toSeconds = time.substr(0, time.find('.'));
    return timeKnown(picture) ? toSeconds + "Z" : toSeconds.substr(toSeconds.find('T') + 1) + "Z of an unknown day";
}

std::string sourcesText(Picture const& picture) {
    std::string text;
    for (auto const& source : picture.sources) {
        text += (text.empty() ? "" : ", ") + files::printable(source.name) + " " + files::printable(source.state);
    }
    return text;
}

// Which rows are visible, if not all are.
std::string rowsText(std::size_t first, std::size_t end, std::size_t count) {
    if (end - first == count) return {};
    return "rows " + std::to_string(first + 1) + "-" + std::to_string(end) + " of " + std::to_string(count);
}

std::string statusText(std::initializer_list<std::string> parts) {
    std::string text;
    for (auto const& part : parts) text += (text.empty() || part.empty() ? "" : "  ") + part;
    return text;
}

// The table

std::size_t widthOf(std::vector<Column const*> const& columns) {
    std::size_t width = columns.size() - 1; // blanks between
    for (auto const* column : columns) width += static_cast<std::size_t>(column->width);
    return width;
}

std::vector<Column const*> fittingColumns(Picture const& picture, std::size_t width) {
    auto columns = columnsOf(picture);
    while (columns.size() > 1 && widthOf(columns) > width) {
        auto const last = (*std::max_element(columns.begin(), columns.end(), [](auto const* a, auto const* b) {
            return a->rank < b->rank;
        }))->rank;
        std::erase_if(columns, [&](Column const* column) { return column->rank == last; });
    }
    return columns;
}

std::string cell(std::string text, Column const& column) {
    auto const width = static_cast<std::size_t>(column.width);
    if (text.size() > width) text.resize(width);
    return aligned(text, width, column.leftAligned);
}

bool isAlarming(Aircraft const& aircraft) {
    auto const squawk = aircraft.squawk.value.value_or(airspace::Squawk{});
    return squawk.emergency() != airspace::Emergency::None || aircraft.alertStatus.value.value_or(false);
}

terminal::Style styleOf(Aircraft const& aircraft) {
    if (isAlarming(aircraft)) return {.colour = terminal::Colour::Red, .bold = true};
    if (aircraft.groundStatus.value.value_or(false)) return {.colour = terminal::Colour::Yellow, .dim = true};
    return kPlain;
}

terminal::ScreenLine aircraftLine(Aircraft const& aircraft, std::vector<Column const*> const& columns, bool selected) {
    auto row = styleOf(aircraft);
    row.reverse = selected;
    bool const fades = aircraft.age(aircraft.position.updated) > kPositionFades;
    terminal::ScreenLine line;
    for (auto const* column : columns) {
        auto style = row;
        style.dim = style.dim || (column->isPosition && fades);
        auto const* const blank = line.empty() ? "" : " ";
        line.push_back({blank + cell(column->text(aircraft), *column), style});
    }
    return line;
}

terminal::ScreenLine headingLine(std::vector<Column const*> const& columns, ViewState const& state) {
    terminal::ScreenLine line;
    for (auto const* column : columns) {
        auto const style = column->key == state.sortKey ? terminal::Style{.bold = true, .reverse = true} : kBold;
        if (!line.empty()) line.push_back({" ", kBold});
        line.push_back({cell(column->brief, *column), style});
    }
    return line;
}

terminal::ScreenLine sortHelp(std::vector<Column const*> const& columns) {
    terminal::ScreenLine line{{"Sort", kDim}};
    for (auto const* column : columns) {
        line.push_back({std::string(" ") + column->key, kBold});
        line.push_back({std::string(":") + column->brief, kDim});
    }
    return line;
}

terminal::ScreenLine keyHelp(ViewState const& state) {
    switch (state.mode) {
    case Mode::Filter: return {{"Enter keeps the filter  Esc drops it", kDim}};
    case Mode::Detail:
    case Mode::Help: return {{"Up/Down PgUp/PgDn scroll  Esc or q back", kDim}};
    default: return {{"Up/Down j/k PgUp/PgDn select  Enter details  / filter  r reverse  ? help  q quit", kDim}};
    }
}

terminal::ScreenLine filterLine(ViewState const& state) {
    bool const isTyped = state.mode == Mode::Filter;
    terminal::ScreenLine line{{"Filter: ", kBold}, {state.filter, kPlain}};
    if (isTyped) line.push_back({" ", {.reverse = true}});
    return line;
}

void drawTable(terminal::Screen& screen, Picture const& picture, ViewState const& state, int columns, int rows) {
    auto const fitting = fittingColumns(picture, static_cast<std::size_t>(columns));
    auto const aircraft = rowsOf(picture, state);
    auto const selected = selectedRow(aircraft, state);
    auto const height = static_cast<std::size_t>(tableRows(rows));
    auto const first = selected / height * height; // page by page
    auto const end = std::min(first + height, aircraft.size());

    screen.push_back({{countsText(picture, state), kBold}});
    screen.push_back(
        {{statusText({timeText(picture), rowsText(first, end, aircraft.size()), sourcesText(picture)}), kPlain}});
    screen.push_back(headingLine(fitting, state));
    for (auto row = first; row < end; ++row) {
        screen.push_back(aircraftLine(*aircraft[row], fitting, row == selected));
    }
    screen.resize(static_cast<std::size_t>(kHeadLines) + height);
    bool const showsFilter = state.mode == Mode::Filter || !state.filter.empty();
    screen.push_back(showsFilter ? filterLine(state) : sortHelp(fitting));
}

// Details and help

terminal::Screen helpLines() {
    terminal::Screen lines{
        {{"Up, k        the aircraft above", kPlain}},
        {{"Down, j      the aircraft below", kPlain}},
        {{"PgUp, PgDn   a page up or down", kPlain}},
        {{"Home, End    the first or the last aircraft", kPlain}},
        {{"Enter        all that is known of the selected aircraft", kPlain}},
        {{"/            show only aircraft with a text in callsign, address, squawk or source", kPlain}},
        {{"Esc          drop the filter, or go back", kPlain}},
        {{"r            reverse the order", kPlain}},
        {{"Ctrl-L       redraw the screen", kPlain}},
        {{"q            go back, or quit", kPlain}},
        {},
        {{"Red          emergency (squawk 7500, 7600, 7700) or alert",
            {.colour = terminal::Colour::Red, .bold = true}}},
        {{"Brown        on the ground", {.colour = terminal::Colour::Yellow, .dim = true}}},
        {{"Dim          position older than 15 s; after 60 s the aircraft leaves the table", kDim}},
        {},
        {{"Keys that sort by a column:", kBold}},
    };
    for (auto const& column : allColumns()) {
        auto const unit = std::string(column.unit);
        lines.push_back(
            {{column.key + std::string(12, ' ') + column.heading + (unit.empty() ? "" : " (" + unit + ")"), kPlain}});
    }
    return lines;
}

terminal::Screen detailLines(Picture const& picture, ViewState const& state, int columns) {
    auto const* aircraft = selectedAircraft(picture, state);
    if (aircraft == nullptr) return {{{"It was dropped: it was not heard for too long.", kPlain}}};
    return details(*aircraft, columns);
}

terminal::Screen pageLines(Picture const& picture, ViewState const& state, int columns) {
    return state.mode == Mode::Help ? helpLines() : detailLines(picture, state, columns);
}

std::string pageTitle(ViewState const& state) {
    if (state.mode == Mode::Help) return "Keys and colours";
    auto const source = files::printable(state.selected.first);
    return "Aircraft " + state.selected.second + (source.empty() ? "" : " heard by " + source);
}

int lastScroll(terminal::Screen const& lines, int rows) {
    return std::max(0, static_cast<int>(lines.size()) - pageRows(rows));
}

void drawPage(terminal::Screen& screen, Picture const& picture, ViewState const& state, int columns, int rows) {
    auto const lines = pageLines(picture, state, columns);
    auto const first = std::min(state.scroll, lastScroll(lines, rows));
    auto const last = std::min(first + pageRows(rows), static_cast<int>(lines.size()));
    screen.push_back({{pageTitle(state), kBold}});
    screen.insert(screen.end(), lines.begin() + first, lines.begin() + last);
    screen.resize(static_cast<std::size_t>(pageRows(rows)) + 1);
}

void clip(terminal::ScreenLine& line, std::size_t columns) {
    for (auto& span : line) {
        if (span.text.size() > columns) span.text.resize(columns);
        columns -= span.text.size();
    }
}

bool isPage(ViewState const& state) { return state.mode == Mode::Detail || state.mode == Mode::Help; }

// Keys

// How far a key moves, in rows; 0 for those that move nothing. Ends are as far as anything goes.
std::ptrdiff_t movement(terminal::Key key, int page) {
    constexpr std::ptrdiff_t kVeryFar = 1'000'000;
    switch (key.kind) {
    case terminal::Key::Kind::Up: return -1;
    case terminal::Key::Kind::Down: return 1;
    case terminal::Key::Kind::PageUp: return -page;
    case terminal::Key::Kind::PageDown: return page;
    case terminal::Key::Kind::Home: return -kVeryFar;
    case terminal::Key::Kind::End: return kVeryFar;
    case terminal::Key::Kind::Character: return key.character == 'k' ? -1 : key.character == 'j' ? 1 : 0;
    default: return 0;
    }
}

void openPage(ViewState& state, Mode mode) {
    state.mode = mode;
    state.scroll = 0;
}

void pressedInPage(ViewState& state, terminal::Key key, Picture const& picture, int rows) {
    bool const leaves =
        key.kind == terminal::Key::Kind::Escape || (key.kind == terminal::Key::Kind::Character && key.character == 'q');
    if (leaves) {
        state.mode = Mode::Table;
        return;
    }
    constexpr int kAnyWidth = 80; // the number of lines does not depend on it
    auto const last = lastScroll(pageLines(picture, state, kAnyWidth), rows);
    auto const scroll = std::min(state.scroll, last) + movement(key, pageRows(rows));
    state.scroll = static_cast<int>(std::clamp<std::ptrdiff_t>(scroll, 0, last));
}

void pressedInFilter(ViewState& state, terminal::Key key) {
    switch (key.kind) {
    case terminal::Key::Kind::Escape: state.filter.clear(); [[fallthrough]];
    case terminal::Key::Kind::Enter: state.mode = Mode::Table; break;
    case terminal::Key::Kind::Backspace:
        if (!state.filter.empty()) state.filter.pop_back();
        break;
    case terminal::Key::Kind::Character:
        if (state.filter.size() < kLongestFilter) state.filter += capitals(std::string(1, key.character));
        break;
    default: break;
    }
}

void pressedLetter(ViewState& state, char letter) {
    auto const columns = allColumns();
    switch (letter) {
    case 'q': state.wantsToQuit = true; return;
    case 'r': state.isReversed = !state.isReversed; return;
    case '/': state.mode = Mode::Filter; return;
    case '?': openPage(state, Mode::Help); return;
    default: break;
    }
    bool const sorts =
        std::any_of(columns.begin(), columns.end(), [&](Column const& column) { return column.key == letter; });
    if (sorts) state.sortKey = letter;
}

void pressedInTable(ViewState& state, terminal::Key key, Picture const& picture, int rows) {
    auto const aircraft = rowsOf(picture, state);
    auto const row = static_cast<std::ptrdiff_t>(selectedRow(aircraft, state));
    if (auto const moved = movement(key, tableRows(rows)); moved != 0) {
        select(state, aircraft, row + moved);
    } else if (key.kind == terminal::Key::Kind::Enter && !aircraft.empty()) {
        select(state, aircraft, row);
        openPage(state, Mode::Detail);
    } else if (key.kind == terminal::Key::Kind::Escape) {
        state.filter.clear();
    } else if (key.kind == terminal::Key::Kind::Character) {
        pressedLetter(state, key.character);
    }
}

} // namespace

terminal::Screen draw(Picture const& picture, ViewState const& state, int columns, int rows) {
    columns = std::max(columns, 1);
    rows = std::max(rows, 1);
    terminal::Screen screen;
    if (isPage(state)) {
        drawPage(screen, picture, state, columns, rows);
    } else {
        drawTable(screen, picture, state, columns, rows);
    }
    screen.push_back(keyHelp(state));
    screen.resize(static_cast<std::size_t>(rows));
    for (auto& line : screen) clip(line, static_cast<std::size_t>(columns));
    return screen;
}

ViewState afterKey(ViewState state, terminal::Key key, Picture const& picture, int rows) {
    switch (state.mode) {
    case Mode::Table: pressedInTable(state, key, picture, rows); break;
    case Mode::Filter: pressedInFilter(state, key); break;
    case Mode::Detail:
    case Mode::Help: pressedInPage(state, key, picture, rows); break;
    }
    return state;
}

ViewState afterPicture(ViewState state, Picture const& picture) {
    // those taken, not those read: a recording is read ahead
    auto const& taken = picture.counters.byFormat;
    auto const frames = std::accumulate(taken.begin(), taken.end(), Counters::Count{0});
    bool const goesOn = state.now != 0 && picture.now > state.now && frames >= state.frames;
    if (goesOn) {
        state.framesPerSecond = static_cast<double>(frames - state.frames) / seconds(picture.now - state.now);
    } else if (picture.now != state.now) {
        state.framesPerSecond = 0; // the first picture, or another time
    }
    if (picture.now != state.now) {
        state.frames = frames;
        state.now = picture.now;
    }
    return state;
}

} // namespace quorvel::outputs
