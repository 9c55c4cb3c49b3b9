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
        std::string text; ///< UTF-8, from anywhere: it is made harmless when rendered
        Style style = Style::plain;
        bool alignRight = false;
        std::optional<RGBColor> swatch = std::nullopt; ///< shown before the text, on a terminal that can
    };

    void addRow(std::vector<Cell> cells) { m_rows.push_back(std::move(cells)); }

    /// A line for each row, each begun with `indent` spaces; no spaces at line ends.
    std::string render(const Terminal &terminal, std::size_t indent = 0) const;

private:
    std::vector<std::vector<Cell>> m_rows;
};

/// The heading on a line of its own, then the rows, set in under it.
std::string underHeading(const std::string &heading, const Table &table, const Terminal &terminal);

} // namespace kelmoth
