#pragma once

#include "Core/Device/RawValues.h"
#include "Core/Device/Types.h"

namespace kelmoth {

/// The colour with which the panel marks a DPI stage; the mouse does not know it.
enum class DPIStageColor { red, orange, yellow, green, blue, purple, cyan, white };

template <> struct RawValues<DPIStageColor> {
    static constexpr std::array table{
        std::string_view{"red"},   std::string_view{"orange"}, std::string_view{"yellow"},
        std::string_view{"green"}, std::string_view{"blue"},   std::string_view{"purple"},
        std::string_view{"cyan"},  std::string_view{"white"},
    };
};

/// One DPI stage. Nothing here checks ranges: readers of stored text may meet any value.
struct DPIStage {
    Int index = 0; ///< 0-based, set when the stage is made: its identity
    Int dpi = 0;   ///< dots per inch, the same on both axes
    DPIStageColor color = DPIStageColor::red;

    Int id() const { return index; }
    bool operator==(const DPIStage &) const = default;
};

} // namespace kelmoth
