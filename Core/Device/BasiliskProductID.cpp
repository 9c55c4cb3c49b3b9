#include "Core/Device/BasiliskProductID.h"

#include <algorithm>

namespace kelmoth {

namespace {

constexpr std::uint8_t commonTransactionID = 0x1F;
constexpr std::string_view cable = "USB cable";
constexpr std::string_view receiver = "2.4 GHz receiver";

using enum BasiliskProductID;

constexpr std::array models{
    BasiliskModel{basiliskV3, "Razer Basilisk V3", cable, "basilisk-v3", 0xFF, 3, 10'000},
    BasiliskModel{basiliskV3ProWired, "Razer Basilisk V3 Pro (Wired)", cable, "basilisk-v3-pro-wired",
                  commonTransactionID, 0, 60'000},
    BasiliskModel{basiliskV3ProWireless, "Razer Basilisk V3 Pro (Wireless)", receiver,
                  "basilisk-v3-pro-wireless", commonTransactionID, 0, 60'000},
    BasiliskModel{basiliskV3XHyperSpeed, "Razer Basilisk V3 X HyperSpeed", receiver,
                  "basilisk-v3-x-hyperspeed", commonTransactionID, 0, 60'000},
    BasiliskModel{basiliskV3Pro, "Razer Basilisk V3 Pro", receiver, "basilisk-v3-pro", commonTransactionID, 0,
                  60'000},
    BasiliskModel{basiliskV3XHyperSpeed2, "Razer Basilisk V3 X HyperSpeed", receiver,
                  "basilisk-v3-x-hyperspeed-2", commonTransactionID, 0, 60'000},
};

} // namespace

std::span<const BasiliskModel> basiliskModels()
{
    return models;
}

const BasiliskModel &basiliskModel(BasiliskProductID productID)
{
    return *std::ranges::find(models, productID, &BasiliskModel::productID);
}

std::optional<BasiliskProductID> basiliskProductID(std::uint16_t rawID)
{
    const auto *found = std::ranges::find(
        models, rawID, [](const BasiliskModel &model) { return rawValue(model.productID); });
    return found == models.end() ? std::nullopt : std::optional(found->productID);
}

} // namespace kelmoth
