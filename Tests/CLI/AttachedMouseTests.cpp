// The built program on attached mice: real udev, real ioctls, a mock of the mouse at the kernel's side.

#include "Core/Device/BasiliskProductID.h"
#include "Core/HID/RazerProtocol.h"
#include "Tests/CLI/Shell.h"
#include "Tests/Hardware/MockMouse.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <set>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class AttachedMouseTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!m_testbed->isEffective()) {
            GTEST_SKIP() << "not run under umockdev-wrapper";
        }
    }

    MockMouse &plugIn(std::string_view model)
    {
        const auto now = [] {
            return std::chrono::duration_cast<std::chrono::microseconds>(
                std::chrono::steady_clock::now().time_since_epoch());
        };
        auto mouse = std::make_shared<SimulatedMouse>(SimulatedModel::named(model).value(), now);
        m_mouse = std::make_unique<MockMouse>(m_testbed, std::move(mouse));
        m_mouse->attach();
        return *m_mouse;
    }

private:
    std::shared_ptr<MockTestbed> m_testbed = std::make_shared<MockTestbed>();
    std::unique_ptr<MockMouse> m_mouse;
};

/// What went over the wire: each request once, answered at the first read, by the model's own rules.
void expectTidyWire(SimulatedMouse &mouse, const BasiliskModel &model)
{
    using namespace RazerProtocol;
    std::set<std::vector<std::uint8_t>> requests;
    bool isAnswerDue = false;
    for (const auto &transfer : mouse.takeTransfers()) {
        EXPECT_EQ(transfer.status, 0);
        EXPECT_EQ(transfer.wIndex, model.reportIndex);
        EXPECT_NE(transfer.isSet, isAnswerDue);
        isAnswerDue = transfer.isSet;
        if (!transfer.isSet) {
            continue;
        }
        const bool isDPI = transfer.bytes[offset::commandClass] == code::getDPIStages.commandClass;
        EXPECT_EQ(transfer.bytes[offset::transactionID], isDPI ? model.dpiTransactionID : 0x1F);
        EXPECT_TRUE(requests.insert(transfer.bytes).second) << hexPrefix(transfer.bytes);
    }
    EXPECT_FALSE(isAnswerDue);
}

TEST_F(AttachedMouseTest, IsListedAndReadLikeASimulatedOne)
{
    for (const auto &model : basiliskModels()) {
        SCOPED_TRACE(model.commandLineName);
        auto &attached = plugIn(model.commandLineName);
        for (const std::string command : {"kelmothctl --json list", "kelmothctl --json read"}) {
            const auto result = shell(command);
            EXPECT_EQ(result.status, 0) << result.error;
            auto document = nlohmann::ordered_json::parse(result.output);
            auto &path = (document.is_array() ? document.at(0) : document.at("device")).at("path");
            EXPECT_EQ(path, attached.hidrawNode(model.reportIndex));
            path = "simulated:0/" + std::to_string(model.reportIndex);
            const auto simulated = shell(command + " --simulate " + std::string(model.commandLineName));
            EXPECT_EQ(document.dump() + '\n', simulated.output);
            expectTidyWire(attached.mouse(), model);
        }
        EXPECT_EQ(attached.driverDetaches(), 0);
    }
}

TEST_F(AttachedMouseTest, WatchFollowsTheCable)
{
    auto &attached = plugIn("basilisk-v3-pro-wired");
    QProcess watch;
    watch.start(program, {QStringLiteral("watch"), QStringLiteral("--json")});
    const auto next = [&watch] { return nlohmann::ordered_json::parse(nextLine(watch)); };
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(next()["event"], "attached");
        auto known = next();
        EXPECT_EQ(known["event"], "battery");
        EXPECT_EQ(known["path"], attached.hidrawNode(0));
        attached.detach();
        known["event"] = "detached";
        EXPECT_EQ(next(), known) << "what was known of it";
        attached.attach();
    }
    ::kill(static_cast<pid_t>(watch.processId()), SIGINT);
    EXPECT_TRUE(watch.waitForFinished(patience));
    EXPECT_EQ(watch.exitCode(), 0);
}

TEST_F(AttachedMouseTest, PermissionIsMissedAtOnce)
{
    auto &attached = plugIn("basilisk-v3-pro-wired");
    attached.permit(false);
    const std::string asNobody = ::geteuid() == 0 ? "exec setpriv --reuid=65534 --clear-groups " : "exec ";
    const auto started = std::chrono::steady_clock::now();
    const auto read = shell(asNobody + "kelmothctl read");
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(2));
    EXPECT_EQ(read.status, 4);
    EXPECT_THAT(read.output, IsEmpty());
    EXPECT_THAT(read.error, AllOf(HasSubstr(attached.hidrawNode(0)), HasSubstr("70-kelmoth.rules")));
    const auto doctor = shell(asNobody + "kelmothctl doctor");
    EXPECT_EQ(doctor.status, 4);
    EXPECT_THAT(doctor.output, HasSubstr("no permission"));
    EXPECT_THAT(attached.mouse().takeTransfers(), IsEmpty());
}

TEST_F(AttachedMouseTest, AFailureBringsItsDiagnostics)
{
    auto &attached = plugIn("basilisk-v3");
    attached.mouse().addFault({.kind = SimulatedFault::Kind::noAnswer, .commandID = 0x8B, .times = -1});
    const auto read = shell("kelmothctl read");
    EXPECT_EQ(read.status, 1);
    EXPECT_THAT(read.output, HasSubstr("Lift-off    no answer"));
    EXPECT_THAT(read.error,
                AllOf(HasSubstr("📤 USB Report sent: 00 1F 00 00 00 04 0B 8B"),
                      testing::EndsWith("kelmothctl: the mouse did not answer for lift-off distance\n")));
}

} // namespace
} // namespace kelmoth
