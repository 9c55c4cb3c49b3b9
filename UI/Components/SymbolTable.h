#pragma once

#include <span>
#include <string_view>

namespace kelmoth {

/// How one symbol is drawn.
struct SymbolIcon {
    static constexpr int grid = 16; ///< units of height; lines are one wide

    enum Kind {
        solid,
        line,
        fine,  ///< lines so close that stronger ones would run together
        cutOut ///< a solid with a sign cut out of it, which is what is stronger
    };

    std::string_view name; ///< as the design calls it
    std::string_view icon; ///< of bootstrap-icons, or our own
    Kind kind = solid;     ///< how it is made stronger
    int width = grid;      ///< units
    int charge = 0;        ///< of a battery, in percent: filled so far
    int turn = 0;          ///< degrees clockwise
};

/// All symbols, sorted as they are used.
std::span<const SymbolIcon> symbolTable();

/// The row of a symbol; none for an unknown name.
const SymbolIcon *symbolNamed(std::string_view name);

} // namespace kelmoth
