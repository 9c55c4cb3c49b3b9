#pragma once

#include "CLI/Terminal.h"

#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// Rows of text in aligned columns. A plain value.
class Table {
public:
    struct Cell {
        std::string text; ///< UTF-8, untrusted: escaped when rendered
        Style style = Style::plain;
        bool alignRight = false;
        std::optional<RGBColor> swatch = std::nullopt; ///< shown before the text, in true colour
    };

    void addRow(std::vector<Cell> cells) { m_rows.push_back(std::move(cells)); }

    /// One line per row, indented by `indent` spaces; no trailing spaces.
    std::string render(const Terminal &terminal, std::size_t indent = 0) const;

private:
    std::vector<std::vector<Cell>> m_rows;
};

/// The heading on its own line, then the rows, indented.
std::string underHeading(const std::string &heading, const Table &table, const Terminal &terminal);

} // namespace kelmoth
