#include "UI/Components/SymbolTable.h"

#include <algorithm>
#include <array>

namespace kelmoth {
namespace {

using Row = SymbolIcon;

// The build reads the icons to embed from these rows: one a line.
constexpr std::array table{
    // header and battery
    Row{"computermouse.fill", "mouse-fill"},
    Row{"computermouse", "mouse"},
    Row{"cable.connector", "usb-plug-fill"},
    Row{"wifi", "wifi"},
    Row{"wifi.slash", "wifi-off"},
    Row{"battery.0", "battery"},
    Row{"battery.25", "battery", 0, 25},
    Row{"battery.50", "battery", 0, 50},
    Row{"battery.75", "battery", 0, 75},
    Row{"battery.100", "battery", 0, 100},
    Row{"battery.100.bolt", "battery-charging", 0, 0, true},
    // tabs, footer, messages
    Row{"target", "record-circle"},
    Row{"lightbulb.fill", "lightbulb-fill"},
    Row{"hand.tap.fill", "hand-index-thumb-fill"},
    Row{"gearshape.fill", "gear-fill"},
    Row{"info.circle", "info-circle"},
    Row{"info.circle.fill", "info-circle-fill"},
    Row{"power", "power"},
    Row{"xmark.circle.fill", "x-circle-fill"},
    Row{"exclamationmark.triangle.fill", "exclamation-triangle-fill"},
    Row{"checkmark.circle.fill", "check-circle-fill"},
    // lighting
    Row{"circle.fill", "circle-fill"},
    Row{"wind", "wind"},
    Row{"sparkles", "stars"},
    Row{"water.waves", "water"},
    Row{"bolt.fill", "lightning-charge-fill"},
    Row{"sun.min", "brightness-low"},
    Row{"sun.min.fill", "brightness-low-fill"},
    Row{"sun.max", "brightness-high"},
    Row{"sun.max.fill", "brightness-high-fill"},
    // buttons and their actions
    Row{"hand.point.up.left.fill", "cursor-fill", -90},
    Row{"hand.point.up.fill", "hand-index-fill"},
    Row{"arrow.left", "arrow-left"},
    Row{"arrow.right", "arrow-right"},
    Row{"arrow.up.arrow.down", "arrow-down-up"},
    Row{"chevron.up", "chevron-up"},
    Row{"chevron.down", "chevron-down"},
    Row{"checkmark", "check-lg"},
    Row{"dial.medium", "speedometer2", 0, 0, true},
    Row{"hand.raised.fill", "hand-thumbs-up-fill"},
    Row{"person.fill", "person-fill"},
    Row{"person.2", "people"},
    Row{"nosign", "slash-circle"},
    Row{"keyboard", "keyboard", 0, 0, true},
    // settings, about
    Row{"paintpalette.fill", "palette-fill"},
    Row{"circle.lefthalf.filled", "circle-half"},
    Row{"moon.fill", "moon-fill"},
    Row{"globe", "globe"},
    Row{"arrow.up.to.line", "arrow-bar-up"},
    Row{"checkmark.seal.fill", "patch-check-fill"},
};

} // namespace

std::span<const SymbolIcon> symbolTable()
{
    return table;
}

const SymbolIcon *symbolNamed(std::string_view name)
{
    const auto *found = std::ranges::find(table, name, &SymbolIcon::name);
    return found == table.end() ? nullptr : found;
}

} // namespace kelmoth
