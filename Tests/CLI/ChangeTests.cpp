// "set", "export" and "import" on simulated mice.

#include "CLI/ReadCommand.h"
#include "Core/Device/DeviceState.h"
#include "Tests/CLI/CommandFixture.h"

#include <QFile>
#include <QTemporaryDir>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Kind = SimulatedFault::Kind;

class ChangeTest : public CommandTest {
protected:
    /// What was sent that is not about the battery, which every mouse is asked for.
    static std::size_t requests(SimulatedMouse &mouse)
    {
        const auto transfers = mouse.takeTransfers();
        return static_cast<std::size_t>(
            std::ranges::count_if(transfers, [](const auto &t) { return t.isSet && t.bytes[6] != 0x07; }));
    }

    /// A file with this text; gives its path.
    std::string file(const std::string &text) const
    {
        QFile file(directory.filePath(QStringLiteral("settings.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.c_str());
        return file.fileName().toStdString();
    }

    const QTemporaryDir directory;
};

TEST_F(ChangeTest, AWrongWordIsAnsweredWithThoseOfTheModel)
{
    const struct {
        const char *model;
        const char *line;
        const char *answer;
        const char *notOffered = "\n\n";
    } rows[]{
        {"basilisk-v3", "set dpi 26100", "takes 100 to 26000 DPI in steps of 100, not 26100"},
        {"basilisk-v3-x-hyperspeed", "set dpi 18100", "takes 100 to 18000 DPI"},
        {"basilisk-v3", "set dpi 950", "in steps of 100"},
        {"basilisk-v3", "set dpi 0", "100 to"},
        {"basilisk-v3", "set light rim --effect off", "scroll_wheel, logo, underglow"},
        {"basilisk-v3-x-hyperspeed", "set light logo --effect off", "allowed are scroll_wheel", ", logo"},
        {"basilisk-v3", "set light logo --effect reactive", "off, static, spectrum, wave", "starlight"},
        {"basilisk-v3", "set light logo", "--effect, --color or --brightness"},
        {"basilisk-v3", "set button side disabled", "dpi_down, scroll_up, scroll_down, clutch, profile"},
        {"basilisk-v3-x-hyperspeed", "set button clutch disabled", "back, dpi_up", ", clutch"},
        {"basilisk-v3", "set button back jump", "doubleClick, disabled, dpiChange:0..6, profileSwitch:0..5"},
        {"basilisk-v3-x-hyperspeed", "set button back scrollModeToggle", "keyPress:KEY",
         ", scrollModeToggle"},
        {"basilisk-v3", "set button back leftClick:1", "leftClick, rightClick"},
        {"basilisk-v3", "set button back dpiChange:7", "0 to 6"},
        {"basilisk-v3", "set button back profileSwitch:x", "0 to 5"},
        {"basilisk-v3", "set button back keyPress:ctrl+f13", "f12, esc, tab"},
        {"basilisk-v3", "set button back keyPress", "f12, esc, tab"},
        {"basilisk-v3", "set button back macroPlay:m", "cannot hold macros"},
        {"basilisk-v3", "set button back other:0102", "14 hexadecimal digits"},
        {"basilisk-v3", "set lift-off Low", "low, medium, high"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        mice.clear();
        auto &mouse = plugIn(row.model);
        const auto result = runLine(row.line);
        EXPECT_EQ(result.status, ExitStatus::usage);
        EXPECT_THAT(result.complaints, AllOf(HasSubstr(row.answer), Not(HasSubstr(row.notOffered))));
        EXPECT_THAT(result.output, IsEmpty());
        EXPECT_EQ(requests(mouse), 0);
        EXPECT_THAT(defaults->values, IsEmpty());
    }
}

TEST_F(ChangeTest, ItIsSaidWhatHolds)
{
    const struct {
        const char *line;
        const char *outcome;
    } rows[]{
        {"set stage 4", "active stage is now 4, 3200 DPI\n"},
        {"set dpi 26000", "DPI of stage 4 is now 26000\n"},
        {"set light logo --color #FF0080", "lighting of logo is now static #FF0080, 100 %\n"},
        {"set light logo --effect wave --brightness 0", "lighting of logo is now wave, 0 %\n"},
        {"set button back keyPress:Shift+CTRL+Return", "button back is now keyPress:ctrl+shift+enter\n"},
        {"set button back dpiChange --profile 5", "button back is now dpiChange:0\n"},
        {"set button back other:06020303000000", "button back is now dpiChange:4\n"},
        {"set button back other:0a02030405060f", "button back is now other:0A02030405060F\n"},
        {"set button back disabled --hypershift", "button back with hypershift is now disabled\n"},
        {"set lift-off high", "lift-off distance is now high\n"},
    };
    plugIn("basilisk-v3");
    for (const auto &row : rows) {
        const auto result = runLine(row.line);
        EXPECT_EQ(result.status, ExitStatus::done) << result.complaints;
        EXPECT_EQ(result.output, row.outcome);
    }
    const auto json = runLine("set lift-off medium --json").json();
    const auto read = run<ReadCommand>(asJSON()).json();
    EXPECT_EQ(json, read);
    EXPECT_EQ(json["liftOffLevel"], 1);
}

TEST_F(ChangeTest, ARefusalIsToldInTheManagersWords)
{
    const struct {
        const char *line;
        std::uint8_t commandClass;
        std::uint8_t commandID;
        const char *complaint;
    } rows[]{
        {"set dpi 900", 0x04, 0x06, "kelmothctl: Failed to set DPI\n"},
        {"set stage 2", 0x04, 0x06, "kelmothctl: Failed to change DPI stage\n"},
        {"set light logo --brightness 1", 0x0F, 0x02, "kelmothctl: Failed to set RGB lighting\n"},
        {"set button back disabled", 0x02, 0x0C, "kelmothctl: Failed to apply button mapping\n"},
        {"set lift-off low", 0x0B, 0x0B, "kelmothctl: Failed to set lift-off distance\n"},
        // What was not read is not written over.
        {"set dpi 900", 0x04, 0x86, "nothing was changed"},
        {"set light logo --brightness 1", 0x0F, 0x84, "nothing was changed"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        mice.clear();
        auto &mouse = plugIn("basilisk-v3");
        const auto before = run<ReadCommand>(asJSON()).output;
        const auto saved = defaults->values;
        mouse.addFault({.kind = Kind::rejected,
                        .commandClass = row.commandClass,
                        .commandID = row.commandID,
                        .times = -1});
        const auto result = runLine(row.line);
        EXPECT_EQ(result.status, ExitStatus::failed);
        EXPECT_THAT(result.complaints, HasSubstr(row.complaint));
        EXPECT_THAT(result.output, IsEmpty());
        EXPECT_EQ(defaults->values, saved);
        mouse.clearFaults();
        EXPECT_EQ(run<ReadCommand>(asJSON()).output, before);
    }
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    mouse.addFault({.kind = Kind::unplug, .commandClass = 0x0B, .commandID = 0x0B});
    // That the mouse has gone may be known by then or not: the words differ.
    EXPECT_EQ(runLine("set lift-off low --product 0xaa").status, ExitStatus::failed);
}

TEST_F(ChangeTest, ProductChoosesTheMouse)
{
    auto &first = plugIn("basilisk-v3");
    auto &second = plugIn("basilisk-v3-x-hyperspeed");
    EXPECT_EQ(runLine("--product 0xb9 set stage 1").status, ExitStatus::done);
    EXPECT_EQ(requests(first), 0);
    EXPECT_EQ(second.state().activeStage, 1);
    EXPECT_THAT(defaults->values, ElementsAre(testing::Key("com.kelmoth.deviceState.185")));
}

TEST_F(ChangeTest, SettingsTravelByFile)
{
    auto &mouse = plugIn("basilisk-v3");
    auto held = mouse.state();
    held.dpiStages = {500, 800, 1600, 3200, 25000};
    held.activeStage = 5;
    held.lights[RGBZone::logo] = {.effect = 1, .parameters = {0, 0, 1, 9, 8, 7}, .brightness = 29};
    held.buttons[{0, MouseButton::back, false}] = ButtonAction::keyPress("ctrl+f5").toButtonFunction();
    mouse.setState(held);
    const auto path = file("something older");
    const auto exported = runLine("export " + path);
    EXPECT_EQ(exported.status, ExitStatus::done);
    EXPECT_THAT(exported.output, IsEmpty());
    QFile written(QString::fromStdString(path));
    EXPECT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll().toStdString(), run<ReadCommand>(asJSON()).json()["state"].dump() + '\n');
    EXPECT_EQ(runLine("import " + path).output, "the mouse has these settings already\n");

    mice.clear();
    auto &other = plugIn("basilisk-v3");
    EXPECT_EQ(runLine("import " + path).output, R"(DPI of stage 1: 400 -> 500: done
DPI of stage 5: 6400 -> 25000: done
active stage: 1 -> 5: done
lighting of logo: static #00FF00, 100 % -> static #090807, 11 %: done
button back: back -> keyPress:ctrl+f5: done
)");
    EXPECT_EQ(other.state().dpiStages, held.dpiStages);
    EXPECT_EQ(other.state().lights[RGBZone::logo].brightness, 29);
    EXPECT_EQ(other.state().buttons, held.buttons);

    mice.clear();
    auto &smaller = plugIn("basilisk-v3-x-hyperspeed");
    smaller.addFault({.kind = Kind::rejected, .commandClass = 0x04, .commandID = 0x06});
    const auto partly = runLine("import --json " + path);
    EXPECT_EQ(partly.status, ExitStatus::failed);
    const auto results = partly.json();
    EXPECT_EQ(results[0], (nlohmann::ordered_json{{"setting", "DPI of stage 1"},
                                                  {"from", 400},
                                                  {"to", 500},
                                                  {"result", "failed"},
                                                  {"reason", "Failed to set DPI"}}));
    EXPECT_THAT(
        partly.output,
        AllOf(HasSubstr(R"("to":25000,"result":"unsupported")"),
              HasSubstr(R"("setting":"active stage","from":1,"to":5,"result":"done")"),
              HasSubstr(R"("setting":"lighting of logo","from":null)"),
              HasSubstr(R"("to":"keyPress:ctrl+f5","result":"done")"),
              HasSubstr(R"("setting":"button clutch","from":null,"to":"hypershift","result":"unsup)")));
    EXPECT_EQ(smaller.state().activeStage, 5);
}

TEST_F(ChangeTest, AnyRecordIsSafeToImport)
{
    auto &mouse = plugIn("basilisk-v3");
    auto record = *decodeDeviceState(run<ReadCommand>(asJSON()).json()["state"].dump());
    record.dpiStages.push_back({.index = 5, .dpi = 100});
    record.dpiStages[0].dpi = -100;
    record.currentDPIStage = std::numeric_limits<Int>::max();
    record.rgbSettings[RGBZone::logo].brightness = 1e300;
    record.rgbSettings[RGBZone::dpiLight] = {};
    record.buttonMappings.insert_or_assign(MouseButton::left, ButtonAction::disabled());
    record.buttonMappings.insert_or_assign(MouseButton::back, ButtonAction::keyPress("\x1b[2J"));
    record.buttonMappings.insert_or_assign(MouseButton::clutch, ButtonAction::macroPlay("m"));
    record.scrollWheelMode = ScrollWheelMode::smartReel;
    requests(mouse);
    const auto before = mouse.state();
    const auto result = runLine("import " + file(encode(record)));
    EXPECT_EQ(result.status, ExitStatus::failed) << "the left button";
    EXPECT_THAT(result.output,
                AllOf(HasSubstr("number of DPI stages: 5 -> 6: not supported by this mouse\n"),
                      HasSubstr("DPI of stage 1: 400 -> -100: not supported"),
                      HasSubstr("button left: leftClick -> disabled: failed (Left button"),
                      HasSubstr("-> macroPlay:m: not supported by this mouse (the mouse cannot"),
                      HasSubstr("wheel mode: tactile -> smart_reel: not"), Not(HasSubstr("done")),
                      Not(HasSubstr("\x1b"))));
    EXPECT_EQ(requests(mouse), 19) << "only the full read";
    EXPECT_EQ(mouse.state().buttons, before.buttons);
}

TEST_F(ChangeTest, NothingComesOfAnUnusableFile)
{
    auto &mouse = plugIn("basilisk-v3");
    const std::pair<std::string, const char *> rows[]{
        {file(R"({"dpiStages":[{"index":0,"dpi":1,"color":"pink"}]})"), "dpiStages[0].color: "},
        {directory.path().toStdString(), "is a directory"},
        {"/nonexistent", "/nonexistent: No such file"},
        {"/dev/zero", "too large"},
    };
    for (const auto &[path, complaint] : rows) {
        const auto result = runLine("import " + path);
        EXPECT_EQ(result.status, ExitStatus::usage);
        EXPECT_THAT(result.complaints, HasSubstr(complaint));
    }
    EXPECT_THAT(mouse.takeTransfers(), IsEmpty());

    const auto path = file("older");
    mouse.addFault({.kind = Kind::rejected, .commandClass = 0x04});
    const auto result = runLine("export " + path);
    EXPECT_EQ(result.status, ExitStatus::failed);
    EXPECT_THAT(result.complaints, HasSubstr("did not answer for DPI stages: nothing was written"));
    QFile kept(QString::fromStdString(path));
    EXPECT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), "older");
    EXPECT_THAT(runLine("export /nonexistent/file").complaints, HasSubstr("No such file"));
    EXPECT_THAT(runLine("export").output, StartsWith("{\"dpiStages\":["));
}

} // namespace
} // namespace kelmoth
