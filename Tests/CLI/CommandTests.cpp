#include "CLI/DoctorCommand.h"
#include "CLI/ListCommand.h"
#include "CLI/ReadCommand.h"
#include "Core/Device/DeviceState.h"
#include "Tests/CLI/CommandFixture.h"

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using JSON = nlohmann::ordered_json;
using Kind = SimulatedFault::Kind;

TEST_F(CommandTest, ListAndReadGiveEachModelToPrograms)
{
    for (const auto &model : basiliskModels()) {
        SCOPED_TRACE(model.commandLineName);
        mice.clear();
        auto &mouse = plugIn(model.commandLineName);
        auto held = mouse.state();
        held.activeStage = 2;
        held.liftOff = 2;
        held.buttons[{0, MouseButton::back, false}] = ButtonAction::doubleClick().toButtonFunction();
        mouse.setState(held);

        const JSON expected{{"productID", rawValue(model.productID)},
                            {"name", model.name},
                            {"connection", model.connectionLabel},
                            {"transport", "USB"},
                            {"configurable", true},
                            {"reason", nullptr},
                            {"batteryLevel", held.battery > 0 ? JSON(held.battery * 100 / 255) : JSON()},
                            {"isCharging", held.isCharging},
                            {"path", "simulated:0/" + std::to_string(model.reportIndex)}};
        EXPECT_EQ(run<ListCommand>(asJSON()).json(), JSON::array({expected}));

        const auto read = run<ReadCommand>(asJSON());
        EXPECT_EQ(read.status, ExitStatus::done);
        EXPECT_THAT(read.complaints, IsEmpty());
        const auto state = decodeDeviceState(read.json().at("state").dump());
        ASSERT_TRUE(state);
        EXPECT_EQ(read.json(),
                  (JSON{{"device", expected}, {"state", read.json()["state"]}, {"liftOffLevel", 2}}));
        EXPECT_EQ(state->dpiStages.size(), held.dpiStages.size());
        EXPECT_EQ(state->currentDPIStage, 1);
        EXPECT_EQ(state->rgbSettings.size(), held.lights.size());
        EXPECT_EQ(state->buttonMappings.at(MouseButton::back), ButtonAction::doubleClick());
    }
}

TEST_F(CommandTest, SayWhyAMouseCannotBeConfigured)
{
    plugIn("basilisk-v3-pro:bluetooth");
    plugIn("unknown");
    auto other = *SimulatedModel::named("basilisk-v3");
    other.vendorID = otherVendorID;
    mice.push_back(std::make_shared<SimulatedMouse>(other, time->clock()));

    const auto list = run<ListCommand>(asJSON()).json();
    ASSERT_EQ(list.size(), 2);
    EXPECT_EQ(list[0]["connection"], "Bluetooth");
    EXPECT_EQ(list[0]["configurable"], false);
    EXPECT_EQ(list[0]["reason"], "Bluetooth: use the cable or the receiver");
    EXPECT_EQ(list[1]["reason"], "another vendor");

    for (const auto &result : {run<ReadCommand>(asJSON()), run<DoctorCommand>({.simulate = "…"})}) {
        EXPECT_EQ(result.status, ExitStatus::noMouse);
        EXPECT_THAT(result.complaints, AllOf(HasSubstr("Bluetooth: use the cable"), HasSubstr("--simulate")));
    }
    EXPECT_THAT(run<ReadCommand>(asJSON()).output, IsEmpty());
}

TEST_F(CommandTest, NothingIsSentWithoutPermission)
{
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    mouse.addFault({.kind = Kind::denied, .times = -1});

    const auto read = run<ReadCommand>(asJSON());
    EXPECT_EQ(read.status, ExitStatus::noPermission);
    EXPECT_THAT(read.output, IsEmpty());
    EXPECT_THAT(read.complaints, AllOf(HasSubstr("simulated:0/0"), HasSubstr("70-kelmoth.rules")));
    const auto list = run<ListCommand>(asJSON());
    EXPECT_EQ(list.status, ExitStatus::done);
    EXPECT_EQ(list.json()[0]["configurable"], false);
    EXPECT_THAT(list.json()[0]["reason"].get<std::string>(), HasSubstr("no permission"));
    EXPECT_THAT(mouse.takeTransfers(), IsEmpty());

    plugIn("basilisk-v3");
    EXPECT_EQ(run<ReadCommand>(asJSON()).json()["device"]["productID"], 0x0099) << "one that may be opened";
    EXPECT_EQ(run<ReadCommand>({.productID = 0x00AA}).status, ExitStatus::noPermission);
}

TEST_F(CommandTest, ReadTellsWhatWasAnsweredFromWhatWasNot)
{
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    const auto disturb = [&mouse] {
        mouse.addFault({.kind = Kind::rejected, .commandID = 0x80});            // battery
        mouse.addFault({.kind = Kind::rejected, .commandID = 0x86});            // stages
        mouse.addFault({.kind = Kind::rejected, .commandID = 0x84, .skip = 1}); // brightness of the logo
        mouse.addFault({.kind = Kind::rejected, .commandID = 0x8C, .skip = 9}); // the clutch
        mouse.addFault({.kind = Kind::rejected, .commandID = 0x8B});            // lift-off
    };
    disturb();
    const auto read = run<ReadCommand>(asJSON());
    EXPECT_EQ(read.status, ExitStatus::failed);
    EXPECT_THAT(read.complaints,
                HasSubstr("DPI stages, lighting of logo, button clutch, lift-off distance, battery"));
    EXPECT_EQ(read.json()["device"]["batteryLevel"], nullptr);
    EXPECT_EQ(read.json()["liftOffLevel"], nullptr);
    const auto state = decodeDeviceState(read.json()["state"].dump());
    ASSERT_TRUE(state);
    EXPECT_THAT(state->dpiStages, IsEmpty());
    EXPECT_FALSE(state->rgbSettings.contains(RGBZone::logo));
    EXPECT_FALSE(state->buttonMappings.contains(MouseButton::clutch));
    EXPECT_EQ(state->buttonMappings.size(), 10);

    mouse.clearFaults();
    disturb();
    const auto text = run<ReadCommand>().output;
    for (const auto *line : {"Battery     no answer", "Lift-off    no answer", "DPI stages\n  no answer",
                             "Logo          no answer", "Clutch             no answer"}) {
        EXPECT_THAT(text, HasSubstr(line));
    }
}

TEST_F(CommandTest, ReadPrintsNothingOfAMouseThatSaysNothing)
{
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    mouse.addFault({.kind = Kind::rejected, .times = -1});
    const auto refusing = run<ReadCommand>();
    EXPECT_EQ(refusing.status, ExitStatus::failed);
    EXPECT_THAT(refusing.output, IsEmpty());
    EXPECT_THAT(refusing.complaints, HasSubstr("Pro (Wired) does not answer"));

    mouse.clearFaults();
    mouse.addFault({.kind = Kind::unplug, .skip = 20});
    const auto unplugged = run<ReadCommand>();
    EXPECT_EQ(unplugged.status, ExitStatus::failed);
    EXPECT_THAT(unplugged.output, IsEmpty());
    EXPECT_THAT(unplugged.complaints, HasSubstr("was unplugged"));
}

TEST_F(CommandTest, ListDoesNotWaitForABatteryThatFails)
{
    plugIn("basilisk-v3-x-hyperspeed").addFault({.kind = Kind::rejected, .times = -1});
    plugIn("basilisk-v3-pro");
    const auto started = std::chrono::steady_clock::now();
    const auto list = run<ListCommand>();
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(4));
    EXPECT_EQ(list.status, ExitStatus::done);
    EXPECT_THAT(list.output, AllOf(HasSubstr("2.4 GHz receiver  unknown  yes"),
                                   HasSubstr("2.4 GHz receiver  78 %     yes")));
}

} // namespace
} // namespace kelmoth
