// "set", "export" and "import" on simulated mice.

#include "Core/Device/DeviceState.h"
#include "Tests/CLI/CommandFixture.h"

#include <QFile>
#include <QTemporaryDir>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ChangeTest : public CommandTest {
protected:
    /// Puts this text into the file, or says what is in it.
    void write(const std::string &text) const
    {
        QFile file(QString::fromStdString(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.c_str());
    }
    std::string contents() const
    {
        QFile file(QString::fromStdString(path));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }

    const QTemporaryDir directory;
    const std::string path = directory.filePath(QStringLiteral("settings.json")).toStdString();
};

TEST_F(ChangeTest, ItIsSaidWhatHolds)
{
    const std::pair<const char *, const char *> rows[]{
        {"set stage 4", "active stage is now 4, 3200 DPI\n"},
        {"set dpi 26000", "DPI of stage 4 is now 26000\n"},
        {"set light logo --color #FF0080", "lighting of logo is now static #FF0080, 100 %\n"},
        {"set light logo --effect wave --brightness 0", "lighting of logo is now wave, 0 %\n"},
        {"set button back keyPress:Shift+CTRL+Return", "button back is now keyPress:ctrl+shift+enter\n"},
        {"set button back dpiChange --profile 5", "button back is now dpiChange:0\n"},
        {"set button back disabled --hypershift", "button back with hypershift is now disabled\n"},
        {"set lift-off high", "lift-off distance is now high\n"},
    };
    plugIn("basilisk-v3");
    for (const auto &[line, outcome] : rows) {
        const auto result = run(line);
        EXPECT_EQ(result.status, ExitStatus::done) << result.complaints;
        EXPECT_EQ(result.output, outcome);
    }
    const auto json = run("set lift-off medium --json").json();
    EXPECT_EQ(json["liftOffLevel"], 1);
    EXPECT_EQ(json, run("read --json").json());
}

TEST_F(ChangeTest, ARefusalIsToldInTheManagersWordsAndWhatWasNotReadIsNotWrittenOver)
{
    const std::tuple<const char *, std::uint8_t, std::uint8_t, const char *> rows[]{
        {"set dpi 900", 0x04, 0x06, "kelmothctl: Failed to set DPI\n"},
        {"set lift-off low", 0x0B, 0x0B, "kelmothctl: Failed to set lift-off distance\n"},
        {"set dpi 900", 0x04, 0x86, "nothing was changed"},
        {"set light logo --brightness 1", 0x0F, 0x84, "nothing was changed"},
    };
    auto &mouse = plugIn("basilisk-v3");
    const auto before = run("read --json").output;
    for (const auto &[line, commandClass, commandID, complaint] : rows) {
        mouse.addFault({Kind::rejected, commandClass, commandID, 0, -1});
        const auto result = run(line);
        EXPECT_EQ(result.status, ExitStatus::failed);
        EXPECT_THAT(result.complaints, HasSubstr(complaint));
        EXPECT_THAT(result.output, IsEmpty());
        mouse.clearFaults();
        EXPECT_EQ(run("read --json").output, before);
    }
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
    write("something older");
    EXPECT_EQ(run("export " + path).status, ExitStatus::done);
    EXPECT_EQ(contents(), run("read --json").json()["state"].dump() + '\n');
    EXPECT_EQ(run("export").output, contents());
    EXPECT_EQ(run("import " + path).output, "the mouse has these settings already\n");

    auto &other = plugInOnly("basilisk-v3");
    EXPECT_EQ(run("import " + path).output, R"(DPI of stage 1: 400 -> 500: done
DPI of stage 5: 6400 -> 25000: done
active stage: 1 -> 5: done
lighting of logo: static #00FF00, 100 % -> static #090807, 11 %: done
button back: back -> keyPress:ctrl+f5: done
)");
    EXPECT_EQ(other.state().dpiStages, held.dpiStages);
    EXPECT_EQ(other.state().buttons, held.buttons);
}

TEST_F(ChangeTest, AnyRecordIsSafeToImport)
{
    auto &mouse = plugIn("basilisk-v3");
    auto record = *decodeDeviceState(run("read --json").json()["state"].dump());
    record.dpiStages.push_back({.index = 5, .dpi = 100});
    record.dpiStages[0].dpi = -100;
    record.currentDPIStage = std::numeric_limits<Int>::max();
    record.rgbSettings[RGBZone::logo].brightness = 1e300;
    record.rgbSettings[RGBZone::dpiLight] = {};
    record.buttonMappings.insert_or_assign(MouseButton::left, ButtonAction::disabled());
    record.buttonMappings.insert_or_assign(MouseButton::back, ButtonAction::keyPress("\x1b[2J"));
    record.buttonMappings.insert_or_assign(MouseButton::clutch, ButtonAction::macroPlay("m"));
    record.scrollWheelMode = ScrollWheelMode::smartReel;
    mouse.takeTransfers();
    write(encode(record));
    const auto result = run("import --json " + path);
    EXPECT_EQ(result.status, ExitStatus::failed) << "the left button";
    EXPECT_EQ(result.json()[0].dump(), R"({"setting":"number of DPI stages","from":5,"to":6,)"
                                       R"("result":"unsupported","reason":null})");
    EXPECT_THAT(result.output,
                AllOf(HasSubstr(R"("DPI of stage 1","from":400,"to":-100,"result":"unsupported")"),
                      HasSubstr(R"("to":"disabled","result":"failed","reason":"Left button always)"),
                      HasSubstr(R"("to":"macroPlay:m","result":"unsupported","reason":"the mouse cannot)"),
                      HasSubstr(R"("to":"smart_reel","result":"unsupported")"), Not(HasSubstr("done"))));
    EXPECT_THAT(run("import " + path).output, AllOf(HasSubstr("keyPress:"), Not(HasSubstr("\x1b"))));
    EXPECT_EQ(mouse.takeTransfers().size(), 2 * 2 * 19) << "only the full reads";
}

TEST_F(ChangeTest, NothingComesOfAnUnusableFile)
{
    auto &mouse = plugIn("basilisk-v3");
    write(R"({"dpiStages":[{"index":0,"dpi":1,"color":"pink"}]})");
    const std::pair<std::string, const char *> rows[]{
        {path, "dpiStages[0].color: "},
        {directory.path().toStdString(), "is a directory"},
        {"/nonexistent", "/nonexistent: No such file"},
        {"/dev/zero", "too large"},
    };
    for (const auto &[name, complaint] : rows) {
        EXPECT_EQ(run("import " + name).status, ExitStatus::usage);
        EXPECT_THAT(run("import " + name).complaints, HasSubstr(complaint));
    }
    EXPECT_THAT(mouse.takeTransfers(), IsEmpty());

    write("older");
    EXPECT_THAT(run("export /nonexistent/file").complaints, HasSubstr("No such file"));
    mouse.addFault({Kind::rejected, 0x04});
    const auto result = run("export " + path);
    EXPECT_EQ(result.status, ExitStatus::failed);
    EXPECT_THAT(result.complaints, HasSubstr("did not answer for DPI stages: nothing was written"));
    EXPECT_EQ(contents(), "older");
}

} // namespace
} // namespace kelmoth
