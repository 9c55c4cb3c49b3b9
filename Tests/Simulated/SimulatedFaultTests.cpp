#include "Tests/Simulated/MouseOnTheBench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace kelmoth {

namespace {

using Kind = SimulatedFault::Kind;
using testing::ElementsAre;

/// What came of one exchange: "e" and the errno of the transfer that failed, else the command class and the
/// status of the answer, or its length where it is short.
std::string outcome(MouseOnTheBench &bench, const RazerCommand &command)
{
    const auto failure = [](int status) { return "e" + std::to_string(status); };
    if (const int status = bench.send(RazerProtocol::createReport(command, bench.device)); status != 0) {
        return failure(status);
    }
    bench.time.advance(std::chrono::milliseconds{60});
    Data answer(90);
    const auto read = bench.mouse->getReport(0, answer);
    if (read.status != 0) {
        return failure(read.status);
    }
    return read.length < 90 ? std::to_string(read.length)
                            : std::to_string(answer[6]) + ":" + std::to_string(answer[0]);
}

TEST(SimulatedMouseFaults, hitTheTransfersTheyAreMeantFor)
{
    const auto failed = "e" + std::to_string(EIO);
    const auto timedOut = "e" + std::to_string(ETIMEDOUT);
    const auto gone = "e" + std::to_string(ENODEV);
    struct Row {
        std::string_view what;
        std::vector<SimulatedFault> faults;
        std::vector<std::string> outcomes; ///< of battery (class 7), lift-off (11), battery
    };
    const std::vector<Row> rows{
        {"none", {}, {"7:2", "11:2", "7:2"}},
        {"no answer to the second request", {{Kind::noAnswer, {}, {}, 1}}, {"7:2", "7:2", "7:2"}},
        {"never an answer", {{Kind::noAnswer, {}, {}, 0, -1}}, {"0:0", "0:0", "0:0"}},
        {"not ready twice", {{Kind::notReady, {}, {}, 0, 2}}, {"7:1", "11:1", "7:2"}},
        {"lift-off rejected", {{Kind::rejected, 0x0B, {}, 0, 1, 0x04}}, {"7:2", "11:4", "7:2"}},
        {"the second battery level rejected", {{Kind::rejected, {}, 0x80, 1}}, {"7:2", "11:2", "7:3"}},
        {"another command's answer", {{Kind::otherCommand, {}, {}, 0, 2}}, {"4:2", "7:2", "7:2"}},
        {"the request fails", {{Kind::failedTransfer}}, {failed, "11:2", "7:2"}},
        {"the read fails", {{Kind::failedTransfer, 0x0B, {}, 1, 1, 0, ETIMEDOUT}}, {"7:2", timedOut, "7:2"}},
        {"a short read", {{Kind::shortRead}}, {"40", "11:2", "7:2"}},
        {"pulled out at the fourth transfer", {{Kind::unplug, {}, {}, 3}}, {"7:2", gone, gone}},
        {"one after the other", {{Kind::notReady}, {Kind::shortRead}}, {"7:1", "40", "7:2"}},
        {"denied opens no transfer", {{Kind::denied, {}, {}, 0, -1}}, {"7:2", "11:2", "7:2"}},
    };
    for (const auto &row : rows) {
        MouseOnTheBench bench{"basilisk-v3-pro"};
        for (const auto &fault : row.faults) {
            bench.mouse->addFault(fault);
        }
        std::vector<std::string> outcomes;
        for (const RazerCommand &command :
             {RazerCommand{command::getBatteryLevel{}}, RazerCommand{command::getLiftOff{}},
              RazerCommand{command::getBatteryLevel{}}}) {
            outcomes.push_back(outcome(bench, command));
        }
        EXPECT_EQ(outcomes, row.outcomes) << row.what;
    }
}

TEST(SimulatedMouseFaults, changeNothingInTheMouse)
{
    for (const auto kind : {Kind::rejected, Kind::noAnswer, Kind::failedTransfer}) {
        MouseOnTheBench bench{"basilisk-v3-pro"};
        bench.mouse->addFault({.kind = kind});
        const command::setDPIStages change{{{0, 900}}, 0};
        EXPECT_FALSE(bench.accepts(change));
        EXPECT_EQ(bench.mouse->state().dpiStages.size(), 5u);
        EXPECT_TRUE(bench.accepts(change));
        EXPECT_EQ(bench.mouse->state().dpiStages.size(), 1u);
    }
}

TEST(SimulatedMouseFaults, refuseToOpen)
{
    MouseOnTheBench bench{"basilisk-v3-pro"};
    bench.mouse->addFault({.kind = Kind::denied, .skip = 1, .times = 2});
    EXPECT_EQ(bench.mouse->openStatus(), 0);
    EXPECT_EQ(bench.mouse->openStatus(), EACCES);
    EXPECT_EQ(bench.mouse->openStatus(), EACCES);
    EXPECT_EQ(bench.mouse->openStatus(), 0);
    bench.mouse->addFault({.kind = Kind::denied, .times = -1});
    EXPECT_EQ(bench.mouse->openStatus(), EACCES);
    bench.mouse->clearFaults();
    EXPECT_EQ(bench.mouse->openStatus(), 0);
    bench.mouse->unplug();
    EXPECT_EQ(bench.mouse->openStatus(), ENODEV);
}

TEST(SimulatedMouseFaults, aPluggedBackMouseKeepsItsSettingsButNotItsAnswer)
{
    MouseOnTheBench bench{"basilisk-v3-pro"};
    std::vector<bool> changes;
    // Asks the mouse from within: the callback must come without its lock.
    bench.mouse->setAttachmentCallback([&](bool attached) {
        EXPECT_EQ(bench.mouse->isAttached(), attached);
        changes.push_back(attached);
    });
    ASSERT_TRUE(bench.accepts(command::setBrightness{RGBZone::logo, 0.2}));
    ASSERT_TRUE(bench.accepts(command::prepareLiftOff{}));
    bench.mouse->addFault({.kind = Kind::unplug});
    EXPECT_EQ(bench.send(Data(90)), ENODEV);
    bench.mouse->unplug();
    EXPECT_TRUE(bench.read().empty());
    bench.mouse->replug();
    bench.mouse->replug();
    EXPECT_THAT(changes, ElementsAre(false, true));
    EXPECT_EQ(bench.mouse->attachment(), 2);
    EXPECT_THAT(bench.read(), testing::Each(0));
    EXPECT_EQ(bench.ask(command::getBrightness{RGBZone::logo})[10], 51);
    EXPECT_FALSE(bench.accepts(command::setLiftOff{2})) << "the preparation was lost with the power";
}

TEST(SimulatedMouseFaults, everyTransferIsRecorded)
{
    MouseOnTheBench bench{"basilisk-v3"};
    const auto answer = bench.ask(command::getDPIStages{});
    bench.mouse->setReport(0, Data(7));
    const auto transfers = bench.mouse->takeTransfers();
    ASSERT_EQ(transfers.size(), 3u);
    EXPECT_TRUE(transfers[0].isSet && !transfers[1].isSet && transfers[2].isSet);
    EXPECT_EQ(transfers[0].wIndex, 3);
    EXPECT_EQ(transfers[1].bytes, answer);
    EXPECT_EQ(transfers[2].status, EPIPE);
    EXPECT_TRUE(bench.mouse->takeTransfers().empty());
}

} // namespace

} // namespace kelmoth
