#include "Core/Device/DeviceDefaults.h"
#include "Core/Device/RazerDevice.h"

#include <gmock/gmock.h>

#include <vector>

namespace kelmoth {
namespace {

RazerDevice device(std::uint16_t productID, std::string transport = "USB",
                   std::optional<std::string> advertisedName = std::nullopt)
{
    RazerDevice made;
    made.vendorID = razerVendorID;
    made.productID = productID;
    made.transport = std::move(transport);
    made.advertisedName = std::move(advertisedName);
    return made;
}

TEST(RazerDevice, IsRecognisedByProductIDAndOverBluetoothByName)
{
    struct Row {
        RazerDevice device;
        std::optional<BasiliskProductID> model;
        std::string name;
        std::string label;
    };
    using enum BasiliskProductID;
    const std::vector<Row> rows{
        {device(0x00AB), basiliskV3ProWireless, "Razer Basilisk V3 Pro (Wireless)", "2.4 GHz receiver"},
        {device(0x0099), basiliskV3, "Razer Basilisk V3", "USB cable"},
        {device(0x00BA, "bluetooth le"), basiliskV3XHyperSpeed2, "Razer Basilisk V3 X HyperSpeed",
         "Bluetooth"},
        {device(0x00AE, "BLUETOOTH", "RAZER BASILISK V3 X HYPERSPEED"), basiliskV3XHyperSpeed,
         "Razer Basilisk V3 X HyperSpeed", "Bluetooth"},
        {device(0x00AE, "Bluetooth", "Basilisk V3 Pro 35K"), basiliskV3ProWireless,
         "Razer Basilisk V3 Pro (Wireless)", "Bluetooth"},
        {device(0x00AE, "Bluetooth", "my basilisk v3"), basiliskV3, "Razer Basilisk V3", "Bluetooth"},
        {device(0x00AE, "Bluetooth", "Basilisk Ultimate"), std::nullopt, "Basilisk Ultimate", "Bluetooth"},
        {device(0x00AE, "Bluetooth"), std::nullopt, "Unknown Razer Device", "Bluetooth"},
        {device(0x00AE, "USB", "Razer Basilisk V3"), std::nullopt, "Razer Basilisk V3", "USB"},
        {device(0x00AE), std::nullopt, "Unknown Razer Device", "USB"},
    };
    for (const auto &row : rows) {
        const auto about = row.name + " " + row.device.transport;
        EXPECT_EQ(row.device.model(), row.model) << about;
        EXPECT_EQ(row.device.name(), row.name) << about;
        EXPECT_EQ(row.device.connectionLabel(), row.label) << about;
        EXPECT_EQ(row.device.isConfigurable(), row.model && row.label != "Bluetooth") << about;
    }
    auto stranger = device(0x0099);
    stranger.vendorID = otherVendorID;
    EXPECT_FALSE(stranger.isConfigurable());
}

TEST(RazerDevice, IsItselfWhateverItsBatterySays)
{
    const auto first = device(0x00AA);
    auto later = first;
    later.batteryLevel = 40;
    later.isCharging = true;
    EXPECT_EQ(first, later);
    EXPECT_NE(first, device(0x00AA));
}

TEST(DeviceCapabilities, BelongToTheModelAndOnlyElseToTheProductID)
{
    // A Bluetooth product ID that is not listed, recognised by name: the model's row counts.
    EXPECT_EQ(device(0x00AE, "Bluetooth", "Basilisk V3 Pro").capabilities().maxDPI, 30000);
    EXPECT_EQ(device(0x00AE).capabilities().maxDPI, 16000);
    EXPECT_EQ(DeviceCapabilities::forDevice(0x0000).rgbEffects,
              (std::vector{RGBEffect::off, RGBEffect::staticColor}));
}

/// The tables of a model must agree with each other, whatever they say.
TEST(DeviceCapabilities, AgreeWithTheDefaultsOfEachModel)
{
    std::vector<std::uint16_t> productIDs{0x0000};
    for (const auto &model : basiliskModels()) {
        productIDs.push_back(rawValue(model.productID));
        EXPECT_EQ(&basiliskModel(model.productID), &model);
    }
    for (const auto productID : productIDs) {
        const auto mouse = device(productID);
        const auto &capabilities = mouse.capabilities();
        const auto state = createDefaultState(mouse);
        EXPECT_EQ(std::ssize(state.buttonMappings), capabilities.buttonCount) << productID;
        EXPECT_EQ(std::ssize(state.dpiStages), capabilities.dpiStages) << productID;
        EXPECT_EQ(std::ssize(state.rgbSettings), std::ssize(capabilities.rgbZones)) << productID;
        EXPECT_THAT(capabilities.dpiQuickPresets, testing::Each(testing::Le(capabilities.maxDPI)));
        EXPECT_THAT(capabilities.pollingRates, testing::Contains(state.pollingRate));
        EXPECT_EQ(state.buttonMappings.contains(MouseButton::dpiDown), capabilities.hasHyperScroll);
        EXPECT_TRUE(capabilities.hasBattery || !capabilities.reportsCharging);
        for (const auto &[button, action] : state.buttonMappings) {
            EXPECT_THAT(buttonActionChoices(capabilities.hasHyperScroll),
                        testing::Contains(testing::Field(&ButtonActionChoice::action, action)))
                << productID << " " << label(button);
        }
    }
}

} // namespace
} // namespace kelmoth
