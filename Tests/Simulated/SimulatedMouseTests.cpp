#include "Core/HID/RazerProtocol.h"
#include "Platform/Simulated/ManualTime.h"

#include <QByteArray>
#include <gmock/gmock.h>

namespace kelmoth {

using namespace std::chrono_literals;

TEST(SimulatedMouse, ChecksEveryByteOfARequest)
{
    constexpr std::uint8_t unheard = 0x00; // the answer is all zeros then
    struct Row {
        std::string_view what;
        const char *bytes; ///< from the transaction id on
        std::uint8_t status;
        std::string_view model = "basilisk-v3-pro";
        std::size_t damaged = 89; ///< a byte that is changed after the CRC was made; 89: none
    };
    for (const auto &row : std::vector<Row>{
             {"a good request", "1F 000000 02 07 80", 0x02},
             {"a wrong CRC", "1F 000000 02 07 80", 0x03, "basilisk-v3-pro", 88},
             {"an unknown id", "1F 000000 02 07 81", 0x05},
             {"a wrong data size", "1F 000000 03 07 80", 0x03},
             {"bytes past the data size", "1F 000000 02 07 80 00 00 01", 0x03},
             {"a foreign transaction id", "FF 000000 02 07 80", unheard},
             {"the V3's id for its stages", "FF 000000 26 04 86 01", 0x02, "basilisk-v3"},
             {"the usual id for the V3's stages", "1F 000000 26 04 86 01", unheard, "basilisk-v3"},
             {"the V3's id for another command", "FF 000000 04 0B 8B 00 04", unheard, "basilisk-v3"},
             {"a stage count of six", "1F 000000 26 04 06 01 01 06", 0x03},
             {"a DPI beyond the model's", "1F 000000 26 04 06 01 01 01 01 7531 7531", 0x03},
             {"a light that it does not have", "1F 000000 0C 0F 82 01 04", 0x03, "basilisk-v3-x-hyperspeed"},
             {"lift-off out of the blue", "1F 000000 04 0B 0B 00 04 01 02", 0x03},
         }) {
        ManualTime time;
        SimulatedMouse mouse(*SimulatedModel::named(row.model), time.clock());
        const auto wIndex = mouse.protocolInterface();
        Data report(90);
        std::ranges::copy(QByteArray::fromHex(row.bytes), report.begin() + 1);
        report[88] = RazerProtocol::crc(report);
        report[row.damaged] ^= row.damaged == 89 ? 0x00 : 0x01;
        EXPECT_EQ(mouse.setReport(wIndex, report), 0) << row.what;
        time.advance(45ms);
        mouse.getReport(wIndex, report);
        EXPECT_EQ(int{report[0]}, row.status) << row.what;
        EXPECT_EQ(report[88], RazerProtocol::crc(report)) << row.what;
    }
}

} // namespace kelmoth
