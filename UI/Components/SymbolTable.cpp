#include "UI/Components/SymbolTable.h"

#include <algorithm>
#include <array>

namespace kelmoth {
namespace {

using Row = SymbolIcon;

constexpr int batteryWidth = 20;

// The build reads the icons to embed from these rows: one a line. Some are our own.
constexpr std::array table{
    // header and battery
    Row{"computermouse.fill", "mouse-fill"},
    Row{"computermouse", "mouse", Row::line},
    Row{"cable.connector", "usb-plug-fill"},
    Row{"wifi", "wifi", Row::line},
    Row{"wifi.slash", "wifi-off", Row::line},
    Row{"battery.0", "battery", Row::fine, batteryWidth},
    Row{"battery.25", "battery", Row::fine, batteryWidth, 25},
    Row{"battery.50", "battery", Row::fine, batteryWidth, 50},
    Row{"battery.75", "battery", Row::fine, batteryWidth, 75},
    Row{"battery.100", "battery", Row::fine, batteryWidth, 100},
    Row{"battery.100.bolt", "battery-bolt", Row::fine, batteryWidth},
    // tabs, footer, messages
    Row{"target", "target", Row::line},
    Row{"lightbulb.fill", "lightbulb-fill"},
    Row{"hand.tap.fill", "hand-tap-fill"},
    Row{"gearshape.fill", "gear-fill"},
    Row{"info.circle", "info-circle", Row::line},
    Row{"info.circle.fill", "info-circle-fill", Row::cutOut},
    Row{"power", "power", Row::line},
    Row{"xmark.circle.fill", "x-circle-fill", Row::cutOut},
    Row{"exclamationmark.triangle.fill", "exclamation-triangle-fill", Row::cutOut},
    Row{"checkmark.circle.fill", "check-circle-fill", Row::cutOut},
    // lighting
    Row{"circle.fill", "circle-fill"},
    Row{"wind", "wind", Row::line},
    Row{"sparkles", "stars"},
    Row{"water.waves", "water", Row::line},
    Row{"bolt.fill", "lightning-charge-fill"},
    Row{"sun.min", "brightness-low", Row::line},
    Row{"sun.min.fill", "brightness-low-fill"},
    Row{"sun.max", "brightness-high", Row::line},
    Row{"sun.max.fill", "brightness-high-fill"},
    // buttons and their actions
    Row{"hand.point.up.left.fill", "cursor-fill", Row::solid, 16, 0, -90},
    Row{"hand.point.up.fill", "hand-index-fill"},
    Row{"arrow.left", "arrow-left", Row::line},
    Row{"arrow.right", "arrow-right", Row::line},
    Row{"arrow.up.arrow.down", "arrow-down-up", Row::line},
    Row{"chevron.up", "chevron-up", Row::line},
    Row{"chevron.down", "chevron-down", Row::line},
    Row{"checkmark", "check-lg", Row::line},
    Row{"dial.medium", "speedometer2", Row::fine},
    Row{"hand.raised.fill", "hand-raised-fill"},
    Row{"person.fill", "person-fill"},
    Row{"person.2", "people", Row::line},
    Row{"nosign", "slash-circle", Row::line},
    Row{"keyboard", "keyboard", Row::fine},
    // settings, about
    Row{"paintpalette.fill", "palette-fill"},
    Row{"circle.lefthalf.filled", "circle-half", Row::line},
    Row{"moon.fill", "moon-fill"},
    Row{"globe", "globe", Row::line},
    Row{"arrow.up.to.line", "arrow-bar-up", Row::line},
    Row{"checkmark.seal.fill", "patch-check-fill", Row::cutOut},
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
