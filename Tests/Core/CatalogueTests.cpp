#include "Core/Device/RazerDevice.h"
#include "Platform/Log.h"

#include <gmock/gmock.h>

namespace kelmoth {
namespace {

TEST(RazerDevice, IsRecognisedByProductIDAndOverBluetoothByName)
{
    const std::string bt = "Bluetooth";
    using Row =
        std::tuple<std::uint16_t, std::string, std::optional<std::string>, std::string, std::string, Int>;
    for (const auto &[productID, transport, advertised, name, label, maxDPI] : {
             Row{0x00AB, "USB", {}, "Razer Basilisk V3 Pro (Wireless)", "2.4 GHz receiver", 30000},
             Row{0x00BA, "bluetooth le", {}, "Razer Basilisk V3 X HyperSpeed", bt, 18000},
             Row{0x1, "BLUETOOTH", "BASILISK V3 X HYPERSPEED", "Razer Basilisk V3 X HyperSpeed", bt, 18000},
             Row{0x1, bt, "Basilisk V3 Pro 35K", "Razer Basilisk V3 Pro (Wireless)", bt, 30000},
             Row{0x1, bt, "my basilisk v3", "Razer Basilisk V3", bt, 26000},
             Row{0x1, bt, "Basilisk Ultimate", "Basilisk Ultimate", bt, 16000},
             Row{0x1, "USB", "Basilisk V3", "Basilisk V3", "USB", 16000}, // its own word for it
             Row{0x1, "USB", {}, "Unknown Razer Device", "USB", 16000},
         }) {
        RazerDevice device{{}, razerVendorID, productID, {}, transport, advertised, {}};
        EXPECT_EQ(device.name(), name);
        EXPECT_EQ(device.connectionLabel(), label) << name;
        EXPECT_EQ(device.capabilities().maxDPI, maxDPI) << name;
        EXPECT_EQ(device.isConfigurable(), productID == 0x00AB) << name;
        device.vendorID = otherVendorID;
        EXPECT_FALSE(device.isConfigurable()) << name;
    }
}

/// Names and all other texts come from hardware.
TEST(RazerDevice, EscapesControlCharacters)
{
    EXPECT_EQ(printable("✅ 100% %s\x1B[2J\nc\td\x7F\xC2\x9B;"), "✅ 100% %s␛[2J␊c␉d\uFFFD\uFFFD;");
    EXPECT_EQ(printable("bad\xFF\xC3 \u202Eevil\u2066\u2028"), "bad\uFFFD\uFFFD \uFFFDevil\uFFFD\uFFFD");
}

} // namespace
} // namespace kelmoth
