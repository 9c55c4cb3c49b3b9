#include "CLI/MouseChanges.h"
#include "Tests/CLI/CommandFixture.h"

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
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
        {"--product 0x10000 list", "0x10000"},
        {"set dpi 99999999999999999999", "99999999999999999999"},
        {"set dpi 26100", "takes 100 to 26000 DPI in steps of 100, not 26100"},
        {"set stage 0", "\"0\" is not 1 to 5"},
        {"set light logo --brightness 101", "\"101\" is not 0 to 100"},
        {"set light logo", "--effect, --color or --brightness"},
        {"set light logo --effect off", "allowed are scroll_wheel", ", logo", "basilisk-v3-x-hyperspeed"},
        {"set light logo --effect reactive", "off, static, spectrum, wave", "starlight"},
        {"set button clutch disabled", "back, dpi_up", ", clutch", "basilisk-v3-x-hyperspeed"},
        {"set button back jump", "doubleClick, disabled, dpiChange:0..6, profileSwitch:0..5"},
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

TEST_F(CommandTest, AreOfTheFirstMouseThatIsMeant)
{
    plugIn("basilisk-v3-pro-wired").addFault({.kind = Kind::denied, .times = -1});
    plugIn("basilisk-v3");
    EXPECT_THAT(run("list --json").json()[0]["reason"].get<std::string>(), HasSubstr("no permission"));
    EXPECT_EQ(run("set stage 1").status, ExitStatus::noPermission);
    EXPECT_THAT(run("read").complaints, HasSubstr("\"--product 0x0099\" chooses the Razer Basilisk V3"));
    EXPECT_EQ(run("read --json --product 0x99").json()["device"]["productID"], 0x0099);
}

TEST_F(CommandTest, SayWhyAMouseCannotBeConfigured)
{
    plugIn("basilisk-v3-pro:bluetooth");
    plugIn("unknown");
    EXPECT_EQ(run("list --json").json()[0]["reason"], "Bluetooth: use the cable or the receiver");
    for (const auto *line : {"read --json", "set stage 1", "export", "doctor --simulate x"}) {
        const auto result = run(line);
        EXPECT_EQ(result.status, ExitStatus::noMouse) << line;
        EXPECT_THAT(result.complaints, AllOf(HasSubstr("Bluetooth: use the cable"), HasSubstr("--simulate")));
    }
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
    EXPECT_EQ(json["state"]["dpiStages"], JSON::array());
    EXPECT_EQ(json["state"]["rgbSettings"].size(), 2 * 2);
    EXPECT_EQ(json["state"]["buttonMappings"].size(), 2 * 10);
    EXPECT_THAT(read("read").output,
                AllOf(HasSubstr("Battery     no answer"), HasSubstr("DPI stages\n  no answer"),
                      HasSubstr("Logo          no answer"), HasSubstr("Clutch             no answer")));
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

TEST(OutputTest, JSONSteersNoTerminal)
{
    OutputFile file;
    EXPECT_TRUE(Output(file.handle(), STDERR_FILENO).printJSON("caf\u00e9 \u009b31m\x1b[0m \x7f \xff"));
    EXPECT_EQ(file.text(), "\"caf\\u00e9 \\u009b31m\\u001b[0m \\u007f \\ufffd\"\n");
}

TEST(MouseChangesTest, OrderWhatHappenedBetweenTwoLists)
{
    const RazerDevice gone;
    const RazerDevice stays;
    RazerDevice charging;
    charging.batteryLevel = 50;
    auto charged = charging;
    charged.isCharging = true;
    RazerDevice comes;
    comes.batteryLevel = 7; // read before anyone looked
    using enum MouseChange::Kind;
    const auto is = [](MouseChange::Kind kind, const RazerDevice &device) {
        return AllOf(Field(&MouseChange::kind, kind), Field(&MouseChange::device, device));
    };
    EXPECT_THAT(
        changesBetween({gone, stays, charging}, {charged, stays, comes}),
        ElementsAre(is(detached, gone), is(battery, charged), is(attached, comes), is(battery, comes)));
}

} // namespace
} // namespace kelmoth
