#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kelmoth {

/// The supported models. The value of a case is its USB product ID.
enum class BasiliskProductID : std::uint16_t {
    basiliskV3 = 0x0099,
    basiliskV3ProWired = 0x00AA,
    basiliskV3ProWireless = 0x00AB,
    basiliskV3XHyperSpeed = 0x00B9,
    basiliskV3Pro = 0x00AC,
    basiliskV3XHyperSpeed2 = 0x00BA,
};

/// What the program knows of a model: its names, and how the protocol is spoken with it.
struct BasiliskModel {
    BasiliskProductID productID;
    std::string_view name;            ///< "Razer Basilisk V3"
    std::string_view connectionLabel; ///< "USB cable" or "2.4 GHz receiver", English, a translation key
    std::string_view commandLineName; ///< "basilisk-v3"
    std::uint8_t dpiTransactionID;    ///< byte 1 of the two DPI-stage commands
    std::uint16_t reportIndex;        ///< wIndex of every control request: the protocol interface
    std::uint32_t waitTimeUs;         ///< pause between write and read-back, microseconds
};

/// Every supported model.
std::span<const BasiliskModel> basiliskModels();

/// The row of one model.
const BasiliskModel &basiliskModel(BasiliskProductID productID);

/// The model with this USB product ID; none when it is not listed.
std::optional<BasiliskProductID> basiliskProductID(std::uint16_t rawID);

constexpr std::uint16_t rawValue(BasiliskProductID productID)
{
    return static_cast<std::uint16_t>(productID);
}

} // namespace kelmoth
