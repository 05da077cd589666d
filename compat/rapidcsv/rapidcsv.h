// SPDX-License-Identifier: MIT
#pragma once

// Stand-in for the CSV library of this name, for systems that lack it: the part of its interface that the
// aircraft database uses, with the same results. An installed rapidcsv.h takes its place.

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace rapidcsv {

/// Which row holds the names of the columns and which column those of the rows; -1 for none.
struct LabelParams {
    explicit LabelParams(int columnNameRow = 0, int rowNameColumn = -1)
        : mColumnNameIdx(columnNameRow), mRowNameIdx(rowNameColumn) {}

    int mColumnNameIdx;
    int mRowNameIdx;
};

/// How cells are separated and written.
struct SeparatorParams {
    explicit SeparatorParams(char separator = ',', bool trim = false, bool hasCR = false, bool quotedLinebreaks = false,
        bool autoQuote = true, char quoteChar = '"')
        : mSeparator(separator)
        , mTrim(trim)
        , mHasCR(hasCR)
        , mQuotedLinebreaks(quotedLinebreaks)
        , mAutoQuote(autoQuote)
        , mQuoteChar(quoteChar) {}

    char mSeparator;
    bool mTrim;
    bool mHasCR;            ///< lines are written with a carriage return before the line feed
    bool mQuotedLinebreaks; ///< a line break between quotes belongs to the cell
    bool mAutoQuote;        ///< cells are unquoted when read, and quoted when written if they need it
    char mQuoteChar;
};

/// What becomes of cells that are no numbers; the database converts its cells itself.
struct ConverterParams {
    explicit ConverterParams(bool hasDefaultConverter = false) : mHasDefaultConverter(hasDefaultConverter) {}

    bool mHasDefaultConverter;
};

/// Which lines are no rows.
struct LineReaderParams {
    explicit LineReaderParams(bool skipCommentLines = false, char commentPrefix = '#', bool skipEmptyLines = false)
        : mSkipCommentLines(skipCommentLines), mCommentPrefix(commentPrefix), mSkipEmptyLines(skipEmptyLines) {}

    bool mSkipCommentLines;
    char mCommentPrefix;
    bool mSkipEmptyLines;
};

template <class T> using ConvFunc = std::function<void(std::string const& text, T& value)>;

/// A table of text cells, read from a file or empty. Files open with failbit and badbit as exceptions: one
/// that cannot be read or written throws std::ios_base::failure.
class Document {
public:
    explicit Document(std::string const& path = std::string(), LabelParams const& labels = LabelParams(),
        SeparatorParams const& separators = SeparatorParams(), ConverterParams const& = ConverterParams(),
        LineReaderParams const& lines = LineReaderParams())
        : _labels(labels), _separators(separators), _lines(lines) {
        if (!path.empty()) parse(readFile(path));
    }

    /// Rows after the one that names the columns.
    std::size_t GetRowCount() const { return _rows.size() > labelRows() ? _rows.size() - labelRows() : 0; }

    /// The cell of a named column. Throws std::out_of_range for an unknown name and for a row that is too
    /// short.
    template <class T> T GetCell(std::string const& column, std::size_t row) const;

    template <class T> T GetCell(std::string const& column, std::size_t row, ConvFunc<T> convert) const {
        T value;
        convert(cell(column, row), value);
        return value;
    }

    void SetColumnName(std::size_t column, std::string const& name) {
        if (_labels.mColumnNameIdx < 0) throw std::out_of_range("column name row index < 0: -1");
        auto const labelRow = static_cast<std::size_t>(_labels.mColumnNameIdx);
        if (_rows.size() <= labelRow) _rows.resize(labelRow + 1);
        auto& labels = _rows[labelRow];
        if (labels.size() <= column) labels.resize(column + 1);
        labels[column] = name;
        _columns[name] = column;
    }

    /// Puts a row before the one of this number, or at the end.
    template <class T> void InsertRow(std::size_t row, std::vector<T> const& cells = {}) {
        auto const at = std::min(row + labelRows(), _rows.size());
        _rows.insert(
            _rows.begin() + static_cast<std::ptrdiff_t>(at), std::vector<std::string>(cells.begin(), cells.end()));
    }

    void Save(std::string const& path) const {
        std::ofstream file;
        file.exceptions(std::ios_base::failbit | std::ios_base::badbit);
        file.open(path, std::ios_base::binary | std::ios_base::trunc);
        for (auto const& row : _rows) writeRow(file, row);
        file.close();
    }

private:
    using Row = std::vector<std::string>;

    std::size_t labelRows() const { return static_cast<std::size_t>(_labels.mColumnNameIdx + 1); }

    static std::string readFile(std::string const& path) {
        std::ifstream file;
        file.exceptions(std::ios_base::failbit | std::ios_base::badbit);
        file.open(path, std::ios_base::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void parse(std::string const& text) {
        static std::string const byteOrderMark = "\xEF\xBB\xBF";
        std::size_t at = text.compare(0, byteOrderMark.size(), byteOrderMark) == 0 ? byteOrderMark.size() : 0;
        while (at < text.size()) {
            Row row = parseRow(text, at);
            if (isRow(row)) _rows.push_back(std::move(row));
        }
        auto const labelRow = static_cast<std::size_t>(std::max(_labels.mColumnNameIdx, 0));
        if (_labels.mColumnNameIdx < 0 || labelRow >= _rows.size()) return;
        for (std::size_t i = 0; i < _rows[labelRow].size(); ++i) _columns[_rows[labelRow][i]] = i;
    }

    // Reads one line and leaves `at` after its line feed.
    Row parseRow(std::string const& text, std::size_t& at) const {
        Row row(1);
        bool quoted = false;
        for (; at < text.size(); ++at) {
            char const character = text[at];
            if (character == '\n' && !(quoted && _separators.mQuotedLinebreaks)) {
                ++at;
                break;
            }
            if (character == _separators.mSeparator && !quoted) {
                row.emplace_back();
                continue;
            }
            if (isQuote(character) && (row.back().empty() || isQuote(row.back().front()))) quoted = !quoted;
            row.back() += character;
        }
        for (auto& field : row) field = unquoted(trimmed(field));
        return row;
    }

    bool isQuote(char character) const { return character == _separators.mQuoteChar && _separators.mAutoQuote; }

    bool isRow(Row const& row) const {
        bool const isEmpty = row.size() == 1 && row[0].empty();
        bool const isComment = !row[0].empty() && row[0][0] == _lines.mCommentPrefix;
        return !(isEmpty && _lines.mSkipEmptyLines) && !(isComment && _lines.mSkipCommentLines);
    }

    std::string trimmed(std::string const& text) const {
        if (!_separators.mTrim) return text;
        auto const first = text.find_first_not_of(" \t");
        auto const last = text.find_last_not_of(" \t");
        return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
    }

    std::string unquoted(std::string const& text) const {
        auto const quote = _separators.mQuoteChar;
        if (!_separators.mAutoQuote || text.size() < 2 || text.front() != quote || text.back() != quote) return text;
        std::string inner;
        for (std::size_t i = 1; i + 1 < text.size(); ++i) {
            inner += text[i];
            if (text[i] == quote && i + 2 < text.size() && text[i + 1] == quote) ++i; // doubled
        }
        return inner;
    }

    std::string quoted(std::string const& text) const {
        auto const quote = _separators.mQuoteChar;
        std::string const special{_separators.mSeparator, quote, ' ', '\n'};
        if (!_separators.mAutoQuote || text.find_first_of(special) == std::string::npos) return text;
        std::string result(1, quote);
        for (char const character : text) {
            result += character;
            if (character == quote) result += quote;
        }
        return result + quote;
    }

    void writeRow(std::ostream& out, Row const& row) const {
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i != 0) out << _separators.mSeparator;
            out << quoted(row[i]);
        }
        out << (_separators.mHasCR ? "\r\n" : "\n");
    }

    std::string const& cell(std::string const& column, std::size_t row) const {
        auto const found = _columns.find(column);
        if (found == _columns.end()) throw std::out_of_range("column not found: " + column);
        return _rows.at(row + labelRows()).at(found->second);
    }

    LabelParams _labels;
    SeparatorParams _separators;
    LineReaderParams _lines;
    std::vector<Row> _rows; // the row of labels among them
    std::map<std::string, std::size_t> _columns;
};

template <> inline std::string Document::GetCell(std::string const& column, std::size_t row) const {
    return cell(column, row);
}

} // namespace rapidcsv
