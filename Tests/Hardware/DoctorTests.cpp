#include "Platform/Linux/Doctor.h"
#include "Tests/Hardware/HardwareTest.h"

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using Kind = DoctorProblem::Kind;

class DoctorTest : public HardwareTest {
protected:
    /// Looks as a user without rights does.
    Examination look()
    {
        const WithoutRights user;
        return examine({directory + "/none", directory});
    }

    static std::vector<Kind> kinds(const Examination &examination)
    {
        std::vector<Kind> kinds;
        for (const auto &problem : examination.problems) {
            EXPECT_FALSE(problem.what.empty() || problem.remedy.empty());
            kinds.push_back(problem.kind);
        }
        return kinds;
    }

    const std::string directory = testbed->path("/rules.d");
};

TEST_F(DoctorTest, FindsNothingWrongWithAMouseThatCanBeUsed)
{
    const auto mouse = attachMouse("basilisk-v3");
    const auto seen = look();
    EXPECT_THAT(kinds(seen), ElementsAre());
    EXPECT_EQ(seen.rulesFile, std::nullopt);

    ASSERT_EQ(seen.usbDevices.size(), 1U);
    const auto &device = seen.usbDevices[0];
    EXPECT_EQ(device.node, mouse->usbNode());
    EXPECT_EQ(device.productID, 0x0099);
    EXPECT_EQ(device.name, "Razer Basilisk V3");
    EXPECT_EQ(device.access, 0);
    ASSERT_EQ(device.interfaces.size(), 4U);
    EXPECT_EQ(device.interfaces[3].number, 3);
    EXPECT_EQ(device.interfaces[3].driver, "usbhid");
    EXPECT_EQ(device.interfaces[3].node, mouse->hidrawNode(3));

    ASSERT_EQ(seen.hidNodes.size(), 4U);
    const auto &node = seen.hidNodes[3];
    EXPECT_EQ(node.node, mouse->hidrawNode(3));
    EXPECT_EQ(node.interface, 3);
    EXPECT_EQ(node.driver, "hid-generic");
    EXPECT_EQ(node.transport, "USB");
    EXPECT_EQ(node.maxFeatureReportSize, 90);
    EXPECT_THAT(mouse->mouse().takeTransfers(), ElementsAre());
}

TEST_F(DoctorTest, NamesWhatStandsInTheWay)
{
    EXPECT_THAT(kinds(look()), ElementsAre(Kind::noDevice));
    {
        const auto mouse = attachMouse("basilisk-v3:bluetooth");
        EXPECT_THAT(kinds(look()), ElementsAre(Kind::bluetooth));
    }
    {
        const MockInterface driverless{.hasDriver = false};
        const auto mouse = attachMouse("basilisk-v3-pro", {.interfaces = std::vector{driverless}});
        EXPECT_THAT(kinds(look()), ElementsAre()) << "libusb can hold it";
        mouse->permit(false);
        EXPECT_THAT(kinds(look()), ElementsAre(Kind::noHIDNode, Kind::rulesMissing));
    }
    {
        const auto mouse = attachMouse("basilisk-v3-pro", {.interfaces = std::vector<MockInterface>{}});
        EXPECT_THAT(kinds(look()), ElementsAre(Kind::noHIDNode));
    }
    {
        const auto mouse = attachMouse("basilisk-v3-pro", {.interfaces = std::vector{MockInterface{}}});
        mouse->permit(false);
        EXPECT_THAT(kinds(look()), ElementsAre(Kind::noAccess, Kind::rulesMissing));
        std::filesystem::create_directory(directory);
        std::ofstream(directory + "/70-kelmoth.rules").put('\n');
        const auto seen = look();
        EXPECT_EQ(seen.rulesFile, directory + "/70-kelmoth.rules");
        EXPECT_THAT(kinds(seen), ElementsAre(Kind::noAccess));
        testbed->removeNode(mouse->hidrawNode(0));
        EXPECT_THAT(kinds(look()), ElementsAre(Kind::nodeFailed));
    }
}

} // namespace
} // namespace kelmoth
