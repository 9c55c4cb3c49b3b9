#include "CLI/Table.h"

#include "Platform/Log.h"

#include <algorithm>

namespace kelmoth {

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t swatchWidth = 3;

std::size_t cellWidth(const Table::Cell &cell, const Terminal &terminal)
{
    const bool hasSwatch = cell.swatch && terminal.hasTrueColor;
    return displayWidth(printable(cell.text)) + (hasSwatch ? swatchWidth : 0);
}

std::vector<std::size_t> columnWidths(const std::vector<std::vector<Table::Cell>> &rows,
                                      const Terminal &terminal)
{
    std::vector<std::size_t> widths;
    for (const auto &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], cellWidth(row[i], terminal));
        }
    }
    return widths;
}

} // namespace

std::string Table::render(const Terminal &terminal, std::size_t indent) const
{
    const auto widths = columnWidths(m_rows, terminal);
    std::string text;
    for (const auto &row : m_rows) {
        // Write padding only before further text.
        std::size_t owed = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const auto &cell = row[i];
            const std::size_t padding = widths[i] - cellWidth(cell, terminal);
            owed += cell.alignRight ? padding : 0;
            if (!cell.text.empty()) {
                text.append(owed, ' ');
                owed = 0;
                text += cell.swatch ? terminal.swatch(*cell.swatch) : std::string{};
                text += terminal.styled(cell.text, cell.style);
            }
            owed += gap + (cell.alignRight ? 0 : padding);
        }
        text += '\n';
    }
    return text;
}

std::string underHeading(const std::string &heading, const Table &table, const Terminal &terminal)
{
    return terminal.styled(heading, Style::heading) + '\n' + table.render(terminal, 2);
}

} // namespace kelmoth
