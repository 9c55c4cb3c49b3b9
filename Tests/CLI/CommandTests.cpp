#include "CLI/DoctorReport.h"
#include "CLI/MouseChanges.h"
#include "CLI/Table.h"
#include "Core/Device/DeviceState.h"
#include "Tests/CLI/CommandFixture.h"

#include <cerrno>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST_F(CommandTest, AWrongWordIsAnsweredWithThoseThatAreAllowedAndNothingIsSent)
{
    const struct {
        const char *line;
        const char *answer;
        const char *notOffered = "\n\n\n";
        const char *model = "basilisk-v3";
    } rows[]{
        {"", "list, read, set, export, import, watch, doctor"},
        {"lst", "\"lst\""},
        {"set --json colour", "\"set colour\""},
        {"import", "FILE"},
        {"--product 0x10000 list", "0x10000"},
        {"set dpi 99999999999999999999", "99999999999999999999"},
        {"set dpi 26100", "takes 100 to 26000 DPI in steps of 100, not 26100"},
        {"set stage 0", "\"0\" is not 1 to 5"},
        {"set light logo --color #12345g", "12345g"},
        {"set light logo --brightness 101", "\"101\" is not 0 to 100"},
        {"set light logo", "--effect, --color or --brightness"},
        {"set light logo --effect off", "allowed are scroll_wheel", ", logo", "basilisk-v3-x-hyperspeed"},
        {"set light logo --effect reactive", "off, static, spectrum, wave", "starlight"},
        {"set button back disabled --profile 6", "\"6\" is not 0 to 5"},
        {"set button clutch disabled", "back, dpi_up", ", clutch", "basilisk-v3-x-hyperspeed"},
        {"set button back jump", "doubleClick, disabled, dpiChange:0..6, profileSwitch:0..5"},
        {"set button back leftClick:1", "leftClick, rightClick"},
        {"set button back dpiChange:7", "0 to 6"},
        {"set button back keyPress:ctrl+f13", "f12, esc, tab"},
        {"set button back macroPlay:m", "cannot hold macros"},
        {"set button back other:0102", "14 hexadecimal digits"},
        {"set lift-off Low", "low, medium, high"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        auto &mouse = plugInOnly(row.model);
        const auto result = run(row.line);
        EXPECT_EQ(result.status, ExitStatus::usage);
        EXPECT_THAT(result.complaints, AllOf(HasSubstr(row.answer), Not(HasSubstr(row.notOffered))));
        EXPECT_THAT(result.output, IsEmpty());
        for (const auto &transfer : mouse.takeTransfers()) {
            EXPECT_EQ(transfer.bytes[6], 0x07) << "only the battery is read";
        }
    }
}

TEST_F(CommandTest, SayWhyAMouseCannotBeConfigured)
{
    plugIn("basilisk-v3-pro:bluetooth");
    plugIn("unknown");
    const auto list = run("list --json").json();
    ASSERT_EQ(list.size(), 1);
    EXPECT_EQ(list[0]["connection"], "Bluetooth");
    EXPECT_EQ(list[0]["configurable"], false);
    EXPECT_EQ(list[0]["reason"], "Bluetooth: use the cable or the receiver");
    for (const auto *line : {"read --json", "set stage 1", "export", "doctor --simulate x"}) {
        const auto result = run(line);
        EXPECT_EQ(result.status, ExitStatus::noMouse) << line;
        EXPECT_THAT(result.complaints, AllOf(HasSubstr("Bluetooth: use the cable"), HasSubstr("--simulate")));
    }
}

TEST_F(CommandTest, NothingIsSentWithoutPermission)
{
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    mouse.addFault({.kind = Kind::denied, .times = -1});
    plugIn("basilisk-v3");
    const auto list = run("list --json");
    EXPECT_EQ(list.status, ExitStatus::done);
    EXPECT_THAT(list.json()[0]["reason"].get<std::string>(), HasSubstr("no permission"));
    for (const auto *line : {"read", "set stage 1 --product 0xaa"}) {
        EXPECT_EQ(run(line).status, ExitStatus::noPermission) << "the first is the one that is meant";
        EXPECT_THAT(run(line).complaints, AllOf(HasSubstr("simulated:0/0"), HasSubstr("70-kelmoth.rules")));
    }
    EXPECT_THAT(run("read").complaints, HasSubstr("\"--product 0x0099\" chooses the Razer Basilisk V3"));
    EXPECT_EQ(run("read --json --product 0x99").json()["device"]["productID"], 0x0099);
    EXPECT_THAT(mouse.takeTransfers(), IsEmpty());
}

TEST_F(CommandTest, ReadTellsWhatWasAnsweredFromWhatWasNot)
{
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    const auto read = [&](const char *line) {
        for (const auto &[commandID, skip] :
             {std::pair{0x80, 0}, {0x86, 0}, {0x84, 1}, {0x8C, 9}, {0x8B, 0}}) {
            mouse.addFault({Kind::rejected, {}, static_cast<std::uint8_t>(commandID), skip});
        }
        const auto result = run(line);
        mouse.clearFaults();
        EXPECT_EQ(result.status, ExitStatus::failed);
        EXPECT_THAT(result.complaints,
                    HasSubstr("DPI stages, lighting of logo, button clutch, lift-off distance, battery"));
        return result;
    };
    const auto json = read("read --json").json();
    EXPECT_EQ(json["device"]["batteryLevel"], nullptr);
    EXPECT_EQ(json["liftOffLevel"], nullptr);
    const auto state = decodeDeviceState(json["state"].dump()).value();
    EXPECT_THAT(state.dpiStages, IsEmpty());
    EXPECT_FALSE(state.rgbSettings.contains(RGBZone::logo));
    EXPECT_FALSE(state.buttonMappings.contains(MouseButton::clutch));
    EXPECT_EQ(state.buttonMappings.size(), 10);
    EXPECT_THAT(read("read").output,
                AllOf(HasSubstr("Battery     no answer"), HasSubstr("Lift-off    no answer"),
                      HasSubstr("DPI stages\n  no answer"), HasSubstr("Logo          no answer"),
                      HasSubstr("Clutch             no answer")));
}

TEST_F(CommandTest, NothingIsPrintedOfAMouseThatSaysNothing)
{
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    for (const auto &[fault, complaint] :
         {std::pair{SimulatedFault{.kind = Kind::rejected, .times = -1}, "Pro (Wired) does not answer"},
          {SimulatedFault{.kind = Kind::unplug, .skip = 20}, "was unplugged"}}) {
        mouse.clearFaults();
        mouse.addFault(fault);
        const auto read = run("read");
        EXPECT_EQ(read.status, ExitStatus::failed);
        EXPECT_THAT(read.output, IsEmpty());
        EXPECT_THAT(read.complaints, HasSubstr(complaint));
    }
}

TEST(OutputTest, NoNameSteersATerminal)
{
    const std::string name = "caf\u00e9 \u009b31m\x1b[0m \x7f \xff";
    OutputFile file;
    EXPECT_TRUE(Output(file.handle(), STDERR_FILENO).printJSON({{"name", name}}));
    EXPECT_EQ(file.text(), "{\"name\":\"caf\\u00e9 \\u009b31m\\u001b[0m \\u007f \\ufffd\"}\n");
    Table table;
    table.addRow({{"x\x1b[31my"}, {"1", Style::plain, true}, {"a", Style::good}});
    table.addRow({{"鼠标"}, {"100", Style::plain, true}, {"b"}});
    EXPECT_EQ(table.render({.hasColor = true}), "x␛[31my    1  \x1b[32ma\x1b[0m\n鼠标     100  b\n");
}

TEST(MouseChangesTest, OrderWhatHappenedBetweenTwoLists)
{
    RazerDevice gone;
    RazerDevice stays;
    RazerDevice charging;
    charging.batteryLevel = 50;
    auto charged = charging;
    charged.isCharging = true;
    RazerDevice comes;
    comes.batteryLevel = 7; // read before anyone looked
    std::vector<std::pair<MouseChange::Kind, QUuid>> seen;
    for (const auto &change : changesBetween({gone, stays, charging}, {charged, stays, comes})) {
        seen.emplace_back(change.kind, change.device.id);
    }
    using enum MouseChange::Kind;
    EXPECT_THAT(seen, ElementsAre(std::pair(detached, gone.id), std::pair(battery, charging.id),
                                  std::pair(attached, comes.id), std::pair(battery, comes.id)));
}

TEST(DoctorReportTest, JudgesByTheNodeThatTakesCommands)
{
    Examination examination;
    auto &node = examination.hidNodes.emplace_back();
    node.vendorID = 0x1532;
    node.productID = 0x0099;
    node.name = "Mouse\x1b[2J\nA mouse can be configured.";
    node.transport = "USB";
    node.interface = 3;
    node.maxFeatureReportSize = 91;
    const auto good = node;
    EXPECT_EQ(verdict(examination), ExitStatus::done);
    for (const auto &spoil : std::vector<std::function<void()>>{
             [&] { node.access = EIO; }, [&] { node.maxFeatureReportSize = 16; },
             [&] { node.maxFeatureReportSize = {}; }, [&] { node.transport = "Bluetooth"; },
             [&] { node.vendorID = 0x068E; }, [&] { node.productID = 0x10099; }}) {
        spoil();
        EXPECT_EQ(verdict(examination), ExitStatus::noMouse);
        node = good;
    }
    node.access = EACCES;
    EXPECT_EQ(verdict(examination), ExitStatus::noPermission);
    using enum DoctorProblem::Kind;
    examination.problems = {{noAccess, "One is refused.", "Do it."}, {rulesMissing, "No rule.", "Do it."}};
    EXPECT_THAT(renderExamination(examination, {}),
                AllOf(HasSubstr("interface 3, takes commands"), HasSubstr("no permission"),
                      HasSubstr("One is refused.\nNo rule.\n  Do it.\n"), HasSubstr("you may not open it"),
                      Not(HasSubstr("\x1b")), Not(HasSubstr("\nA mouse can"))));
    EXPECT_EQ(examinationJSON(examination)["canConfigure"], false);
    // One mouse that works makes up for another that does not.
    examination.hidNodes.push_back(good);
    EXPECT_EQ(verdict(examination), ExitStatus::done);
}

} // namespace
} // namespace kelmoth
