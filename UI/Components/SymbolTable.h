#pragma once

#include <span>
#include <string_view>

namespace kelmoth {

/// How one symbol is drawn.
struct SymbolIcon {
    std::string_view name; ///< as the design calls it
    std::string_view icon; ///< of bootstrap-icons
    int turn = 0;          ///< degrees clockwise
    int charge = 0;        ///< of a battery, in percent: filled so far
    bool fine = false;     ///< lines so close that stronger ones would run together
};

/// All symbols, sorted as they are used.
std::span<const SymbolIcon> symbolTable();

/// The row of a symbol; none for an unknown name.
const SymbolIcon *symbolNamed(std::string_view name);

} // namespace kelmoth
