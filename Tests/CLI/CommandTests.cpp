// The commands of kelmothctl on simulated mice, in a time that nobody has to wait for.

#include "CLI/Reports/MouseReport.h"
#include "CLI/Reports/ReadReport.h"
#include "CLI/SettingPlan.h"
#include "Core/HID/RazerProtocol.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Linux/ChangeLock.h"
#include "Tests/Manager/SimulatedMachineTest.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sys/stat.h>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::ElementsAreArray;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A file for a program to write to.
class OutputFile : public QTemporaryFile {
public:
    OutputFile() { EXPECT_TRUE(open()); }
    std::string text() { return seek(0) ? readAll().toStdString() : "?"; }
};

/// Commands on simulated mice.
class CommandTest : public SimulatedMachineTest {
protected:
    using JSON = nlohmann::ordered_json;

    SimulatedMouse &plugInOnly(const std::string &model)
    {
        mice.clear();
        return plugIn(model);
    }

    static Vocabulary ownWords(const BasiliskModel &model)
    {
        RazerDevice device;
        device.vendorID = razerVendorID;
        device.productID = rawValue(model.productID);
        return Vocabulary::of(device);
    }

    struct Result {
        ExitStatus status;
        std::string output;
        std::string complaints;

        /// The output as the one JSON document that it has to be.
        JSON json() const { return JSON::parse(output); }
    };

    /// Runs a line of words as the program gets them. What makes no sense is a complaint.
    Result run(const std::string &line)
    {
        const auto words = QByteArray::fromStdString("kelmothctl " + line).trimmed().split(' ');
        const std::vector<const char *> arguments(words.begin(), words.end());
        const auto commands = allCommands();
        const auto parsed = parseArguments(static_cast<int>(arguments.size()), arguments.data(), commands,
                                           [](const auto &) { return Vocabulary::ofAll(); });
        if (const auto *failure = std::get_if<Failure>(&parsed)) {
            return {statusOf(*failure), {}, failure->message + '\n' + failure->remedy};
        }
        if (const auto *information = std::get_if<Information>(&parsed)) {
            return {ExitStatus::done, information->text, {}};
        }
        const auto &invocation = std::get<Invocation>(parsed);
        OutputFile standardOutput;
        OutputFile standardError;
        Output output(standardOutput.handle(), standardError.handle());
        auto status = ExitStatus::failed;
        {
            Session session(invocation.options, platform(), &output);
            status = QCoro::waitFor(invocation.command->run(&session));
        }
        QCoreApplication::processEvents();
        output.showComplaints();
        return {status, standardOutput.text(), standardError.text()};
    }
};

TEST_F(CommandTest, AWrongWordListsTheAllowedOnesAndSendsNothing)
{
    const struct {
        const char *line;
        const char *answer;
        const char *model = "basilisk-v3";
    } rows[]{
        {"", "list, read, get, set, reset, export, import, watch, doctor, help"},
        {"lst", "no command \"lst\"; did you mean \"list\"?"},
        {"help lights", "Try \"kelmothctl --help\""},
        {"set ligt logo", "did you mean \"light\"?"},
        {"set light", "Try \"kelmothctl set light --help\""},
        {"get", "dpi, stage, stages, light, button, lift-off, battery, charging"},
        {"get battery", "the Razer Basilisk V3 has no battery"},
        {"get charging", "no way to say", "basilisk-v3-x-hyperspeed"},
        {"--product 0x10000 list", "0x10000"},
        {"set dpi 99999999999999999999", "\"99999999999999999999\" is not 1 to 99999"},
        {"set dpi 26100", "takes 100 to 26000 DPI in steps of 100, not 26100"},
        {"set dpi 900 --stage 1.5", "\"1.5\" is not 1 to 5"},
        {"set stage 0", "\"0\" is not 1 to 5, next or previous"},
        {"set light logo --brightness 100.1", "\"100.1\" is not 0 to 100"},
        {"set light logo --brightness nan", "\"nan\" is not 0 to 100"},
        {"set light logo", "--effect, --color or --brightness"},
        {"set button dpiup2 disabled", "did you mean \"dpi-up\"?"},
        {"set button back jump",
         "double-click, disabled, dpi-cycle, dpi-stage:1..5, profile-switch, profile:1..5"},
        {"set button back dpi-stage:6", "dpi-stage:1..5"},
        {"set button back dpiChange:7", "0..6"},
        {"set button back profile", "profile:1..5"},
        {"set button back key:ctrl+f13", "f12, esc, tab"},
        {"set button back macroPlay:m", "cannot hold macros"},
        {"set button back raw:0102", "14 hexadecimal digits"},
        {"set button left disabled", "the left button always stays the left click"},
        {"set lift-off Lo", "low, medium, high"},
        {"reset colours --yes", "allowed are dpi, lighting, buttons"},
        {"reset", "say --yes"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        auto &mouse = plugInOnly(row.model);
        const auto result = run(row.line);
        EXPECT_EQ(result.status, ExitStatus::usage);
        EXPECT_THAT(result.complaints, HasSubstr(row.answer));
        EXPECT_THAT(result.output, IsEmpty());
        EXPECT_THAT(mouse.takeTransfers(), IsEmpty());
    }
}

/// The words of all models are tried on each: those of its own are taken, the others send nothing.
TEST_F(CommandTest, EachModelTakesItsOwnWords)
{
    const auto all = Vocabulary::ofAll();
    for (const auto &model : basiliskModels()) {
        SCOPED_TRACE(model.commandLineName);
        auto &mouse = plugInOnly(std::string(model.commandLineName));
        const auto own = ownWords(model);
        const auto attempt = [&](const std::string &line, bool isOffered, const Words &offered) {
            const auto result = run(line);
            EXPECT_EQ(result.status, isOffered ? ExitStatus::done : ExitStatus::usage) << line;
            EXPECT_EQ(result.complaints.find(joined(offered)) != std::string::npos, !isOffered) << line;
            EXPECT_NE(mouse.takeTransfers().empty(), isOffered) << line;
        };
        const auto attemptEach = [&](const auto &tried, const auto &offered, const std::string &before,
                                     const std::string &after = "") {
            for (const auto value : tried) {
                attempt(joined({before, wordOf(value), after}, ""), std::ranges::count(offered, value) > 0,
                        wordsOf(offered));
            }
        };
        attemptEach(allCases<RGBZone>(), own.zones, "get light ");
        attemptEach(allCases<RGBZone>(), own.zones, "set light ", " --color 010203");
        attemptEach(allCases<RGBEffect>(), own.effects, "set light all --effect ");
        attemptEach(allCases<MouseButton>(), own.buttons, "get button ");
        attemptEach(allCases<MouseButton>(), own.buttons, "set button ", " left-click");
        for (const auto &action : all.actions()) {
            const auto concrete =
                std::regex_replace(std::regex_replace(action, std::regex(":1..5|:KEY"), ":3"),
                                   std::regex(":BYTES"), ":01010500000000");
            attempt("set button back " + concrete, std::ranges::count(own.actions(), action) > 0,
                    own.actions());
        }
    }
}

TEST_F(CommandTest, GetPrintsWhatReadShows)
{
    const std::pair<const char *, const char *> rows[]{
        {"dpi", "/dpi/stages/1"},
        {"stage", "/dpi/active"},
        {"stages", "/dpi/stages"},
        {"light scroll-wheel", "/lighting/scroll-wheel"},
        {"button dpi-up", "/buttons/dpi-up"},
        {"lift-off", "/liftOff"},
        {"battery", "/battery/level"},
        {"charging", "/battery/charging"},
    };
    for (const auto &model : basiliskModels()) {
        auto &mouse = plugInOnly(std::string(model.commandLineName));
        EXPECT_EQ(run("set stage 2").status, ExitStatus::done);
        const auto all = run("read --json").json();
        const bool reportsCharging = DeviceCapabilities::forDevice(rawValue(model.productID)).reportsCharging;
        for (const auto &[what, where] : rows) {
            SCOPED_TRACE(std::string(model.commandLineName) + ": " + what);
            mouse.takeTransfers();
            const auto result = run(std::string("get ") + what + " --json");
            const JSON::json_pointer member(where);
            const bool isThere =
                std::string_view(what) == "charging" ? reportsCharging : all.contains(member);
            EXPECT_EQ(result.status, isThere ? ExitStatus::done : ExitStatus::usage);
            EXPECT_EQ(result.json().value("value", JSON()), isThere ? all[member] : JSON());
            EXPECT_LE(mouse.takeTransfers().size(), 4) << "no more than is printed";
        }
    }
}

TEST_F(CommandTest, ProductSelectsTheMouse)
{
    plugIn("basilisk-v3-pro-wired").addFault({.kind = Kind::denied, .times = -1});
    plugIn("basilisk-v3");
    EXPECT_EQ(run("list --json").json()[0]["reason"], "permission");
    const auto refused = run("set stage 1 --json");
    EXPECT_EQ(refused.status, ExitStatus::noPermission);
    EXPECT_EQ(refused.json()["error"]["code"], "no-permission");
    EXPECT_THAT(run("read").complaints, HasSubstr("\"--product 0x0099\" chooses the Razer Basilisk V3"));
    for (const auto *product : {"0x99", "0099", "153"}) {
        EXPECT_EQ(run(std::string("read --json --product ") + product).json()["device"]["productID"], 0x0099);
    }
}

TEST_F(CommandTest, ReportsWhyAMouseIsNotConfigurable)
{
    plugIn("basilisk-v3-pro:bluetooth");
    plugIn("unknown");
    EXPECT_EQ(run("list --json").json()[0]["reason"], "bluetooth");
    for (const auto *line : {"read", "get dpi", "set stage 1", "export", "reset --yes"}) {
        const auto result = run(line);
        EXPECT_EQ(result.status, ExitStatus::noMouse) << line;
        EXPECT_THAT(result.complaints, AllOf(HasSubstr("Bluetooth: use the cable"), HasSubstr("--simulate")));
    }
    const auto doctor = run("doctor --simulate x --json");
    EXPECT_EQ(doctor.status, ExitStatus::noMouse);
    EXPECT_EQ(doctor.json()["canConfigure"], false);
}

TEST_F(CommandTest, ReadMarksUnansweredItems)
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
    EXPECT_EQ(json.dump(),
              R"j({"schema":1,"device":{"productID":170,"name":"Razer Basilisk V3 Pro (Wired)",)j"
              R"("connection":"usb-cable","transport":"USB","path":"simulated:0/0"},)"
              R"("battery":null,"dpi":null,"lighting":{"scroll-wheel":{"effect":"static",)"
              R"("color":"#00ff00","brightness":100},"logo":null,"underglow":{"effect":"static",)"
              R"("color":"#00ff00","brightness":100}},"buttons":{"left":"left-click",)"
              R"("right":"right-click","middle":"middle-click","forward":"forward",)"
              R"("back":"back","dpi-up":"dpi-cycle","dpi-down":"wheel-mode",)"
              R"("scroll-up":"scroll-up","scroll-down":"scroll-down","clutch":null,)"
              R"("profile":"profile-switch"},"liftOff":null,"unanswered":["dpi",)"
              R"("lighting.logo","buttons.clutch","liftOff","battery"]})");
    EXPECT_THAT(read("read").output,
                AllOf(HasSubstr("Battery     no answer"), HasSubstr("DPI stages\n  no answer"),
                      HasSubstr("Logo          no answer"), HasSubstr("Clutch             no answer")));
}

TEST_F(CommandTest, PrintsNothingWithoutAnAnswer)
{
    const struct {
        const char *line;
        SimulatedFault fault;
        const char *complaint;
        const char *code;
    } rows[]{
        {"read", {.kind = Kind::rejected, .times = -1}, "Pro (Wired) does not answer", "no-answer"},
        {"get dpi", {.kind = Kind::rejected, .times = -1}, "Pro (Wired) did not answer", "no-answer"},
        {"read", {.kind = Kind::unplug, .skip = 20}, "was unplugged while it was read", "unplugged"},
        {"set dpi 900", {Kind::unplug, 0x04, 0x06}, "was unplugged while it was changed", "unplugged"},
        {"set dpi 900", {Kind::rejected, 0x04, 0x06}, "Failed to set DPI", "refused"},
        {"set dpi 900", {Kind::noAnswer, 0x04, 0x06, 0, -1}, "Failed to set DPI", "no-answer"},
    };
    for (const auto &row : rows) {
        plugInOnly("basilisk-v3-pro-wired").addFault(row.fault);
        const auto result = run(std::string(row.line) + " --json");
        EXPECT_EQ(result.status, ExitStatus::failed);
        EXPECT_EQ(result.json()["error"]["code"], row.code) << row.line;
        EXPECT_THAT(result.complaints, HasSubstr(row.complaint));
    }
}

TEST(OutputTest, JSONEscapesControlCharacters)
{
    OutputFile file;
    EXPECT_TRUE(Output(file.handle(), STDERR_FILENO).printJSON("caf\u00e9 \u009b31m\x1b[0m \x7f \xff"));
    EXPECT_EQ(file.text(), "\"caf\\u00e9 \\u009b31m\\u001b[0m \\u007f \\ufffd\"\n");
}

TEST(DiagnosticLogTest, KeepsTheLastLines)
{
    OutputFile file;
    DiagnosticLog log(file.handle(), false);
    for (std::size_t line = 0; line < DiagnosticLog::capacity + 3; ++line) {
        log.write(std::to_string(line));
    }
    log.show();
    EXPECT_THAT(file.text(), testing::StartsWith("(3 earlier lines left out; --verbose shows them)\n3\n4\n"));
}

TEST(MouseChangesTest, AreOrderedByDetachThenList)
{
    const RazerDevice gone;
    RazerDevice stays;
    stays.batteryLevel = 50;
    auto charged = stays;
    charged.isCharging = true;
    RazerDevice comes;
    comes.batteryLevel = 7; // read before anyone looked
    using enum MouseChange::Kind;
    const auto is = [](MouseChange::Kind kind, const RazerDevice &device) {
        return AllOf(Field(&MouseChange::kind, kind), Field(&MouseChange::device, device));
    };
    const auto all = {is(detached, gone), is(battery, charged), is(attached, comes), is(battery, comes)};
    EXPECT_THAT(changesBetween({gone, stays}, {charged, comes}), ElementsAreArray(all));
    EXPECT_THAT(changesBetween({stays}, {stays}), IsEmpty());
}

class ChangeTest : public CommandTest {
protected:
    /// Puts this text into the file, or says what is in it.
    void write(const std::string &text) const { std::ofstream(path) << text; }
    std::string contents() const
    {
        std::ifstream file(path);
        return {std::istreambuf_iterator(file), {}};
    }

    const QTemporaryDir directory;
    const std::string path = directory.filePath(QStringLiteral("settings.json")).toStdString();
};

TEST_F(ChangeTest, PrintsTheNewSetting)
{
    const std::pair<const char *, const char *> rows[]{
        {"set stage 4", "active stage is now 4, 3200 DPI\n"},
        {"set stage next", "active stage is now 5, 6400 DPI\n"},
        {"set stage NEXT", "active stage is now 1, 400 DPI\n"},
        {"set stage previous", "active stage is now 5, 6400 DPI\n"},
        {"set dpi 26000", "DPI of stage 5 is now 26000\n"},
        {"get dpi", "26000\n"},
        {"get stage", "5\n"},
        {"get stages", "400 800 1600 3200 26000\n"},
        {"set light logo --color #FF0080", "lighting of logo is now static #ff0080, 100 %\n"},
        {"get light LOGO", "static #ff0080 100\n"},
        {"set light logo --effect wave --brightness 0", "lighting of logo is now wave, 0 %\n"},
        {"get light logo", "wave 0\n"},
        {"set light All --brightness 11.4 --effect Static --color 010203",
         "lighting of scroll-wheel is now static #010203, 11.4 %\nlighting of logo is now static #010203, "
         "11.4 %\nlighting of underglow is now static #010203, 11.4 %\n"},
        {"set button back keyPress:Shift+CTRL+Return", "button back is now key:ctrl+shift+enter\n"},
        {"set button back KEY:Super+z", "button back is now key:cmd+z\n"},
        {"set button back key:alt+meta+z", "button back is now key:alt+cmd+z\n"},
        {"set button Scroll_Up leftClick", "button scroll-up is now left-click\n"},
        {"set button dpiDown dpi_stage:3 --profile 5", "button dpi-down is now dpi-stage:3\n"},
        {"set button dpi-down dpiChange:0", "button dpi-down is now dpi-cycle\n"},
        {"set button dpi-down dpiChange:1", "button dpi-down is now dpi-change:1\n"},
        {"set button dpi-down profileSwitch:2", "button dpi-down is now profile:2\n"},
        {"set button dpi-down scrollModeToggle", "button dpi-down is now wheel-mode\n"},
        {"set button back disabled --hypershift", "button back with hypershift is now disabled\n"},
        {"set button back other:01010500000000", "button back is now forward\n"},
        {"set button back raw:01010500000009", "button back is now raw:01010500000009\n"},
        {"get button back", "forward\n"},
        {"set lift_off High", "lift-off distance is now high\n"},
        {"get liftOff", "high\n"},
    };
    plugIn("basilisk-v3");
    for (const auto &[line, outcome] : rows) {
        const auto result = run(line);
        EXPECT_EQ(result.status, ExitStatus::done) << result.complaints;
        EXPECT_EQ(result.output, outcome);
    }
    const auto json = run("set lift-off medium --json").json();
    EXPECT_EQ(json["liftOff"], "medium");
    EXPECT_EQ(json, run("read --json").json());
}

TEST_F(ChangeTest, PrintsRefusalsAndKeepsUnreadSettings)
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
    auto held = mouse.state();
    held.dpiStages.resize(3);
    mouse.setState(held);
    for (const auto *line : {"set stage 4", "set dpi 900 --stage 4"}) {
        const auto result = run(line);
        EXPECT_EQ(result.status, ExitStatus::usage);
        EXPECT_EQ(result.complaints, "kelmothctl: the mouse has 3 DPI stages: there is no stage 4\n");
    }
}

TEST_F(ChangeTest, ResetRestoresTheModelsDefaults)
{
    for (const auto &model : basiliskModels()) {
        SCOPED_TRACE(model.commandLineName);
        auto &mouse = plugInOnly(std::string(model.commandLineName));
        const auto zone = ownWords(model).zones.back();
        const auto fresh = mouse.state();
        auto held = fresh;
        held.dpiStages[1] = 900;
        held.lights[zone].brightness = 3;
        held.buttons[{0, MouseButton::back, false}] = {};
        held.liftOff = 2;
        mouse.setState(held);
        EXPECT_EQ(run("reset Lighting --yes").output,
                  "lighting of " + wordOf(zone) + ": static #00ff00, 1.2 % -> static #00ff00, 100 %: done\n");
        EXPECT_EQ(mouse.state().dpiStages, held.dpiStages);
        const auto results = run("reset --yes --json").json()["results"];
        EXPECT_EQ(results.size(), 3) << results; // the active stage too
        EXPECT_EQ(mouse.state().dpiStages, fresh.dpiStages);
        EXPECT_EQ(mouse.state().buttons, fresh.buttons);
        EXPECT_EQ(mouse.state().liftOff, 2);
    }
}

TEST(SettingWordsTest, EachPrintedBrightnessGivesTheSameByte)
{
    for (int byte = 0; byte <= 255; ++byte) {
        const auto percent = percentOf(byte / 255.0);
        EXPECT_EQ(RazerProtocol::brightnessByte(percent / 100), byte) << percent;
        EXPECT_NEAR(percent, byte / 2.55, 0.5);
    }
}

TEST_F(ChangeTest, ExportAndImportRoundTrip)
{
    auto &mouse = plugIn("basilisk-v3");
    auto held = mouse.state();
    held.dpiStages = {500, 800, 1600, 3200, 25000};
    held.activeStage = 5;
    held.liftOff = 2;
    held.lights[RGBZone::scrollWheel].parameters = {0, 0, 1, 9, 8, 7};
    held.lights[RGBZone::logo] = {.effect = 3};
    held.lights[RGBZone::underglow].brightness = 29;
    held.buttons[{0, MouseButton::back, false}] = ButtonAction::keyPress("ctrl+f5").toButtonFunction();
    mouse.setState(held);
    write("something older");
    EXPECT_EQ(run("export " + path).complaints, "");
    auto stored = defaults->dataForKey("com.kelmoth.deviceState.153").value();
    stored.back() = ',';
    EXPECT_EQ(contents(), stored + "\"liftOffLevel\":2}\n");
    EXPECT_EQ(run("export").output, contents());
    auto record = *decodeDeviceState(contents());
    record.rgbSettings[RGBZone::logo] = {RGBEffect::spectrum, {1, 2, 3}, RGBColor{4, 5, 6}, 1.0, 0.9};
    record.rgbSettings[RGBZone::underglow].brightness += 0.001;
    auto alike = encode(record).value();
    alike.back() = ',';
    write(alike + "\"liftOffLevel\":2}"); // the mouse is sent the same bytes for it
    EXPECT_EQ(run("import " + path).output, "the mouse has these settings already\n");

    auto &other = plugInOnly("basilisk-v3");
    other.addFault({Kind::rejected, 0x0B, 0x0B});
    const auto import = run("import " + path);
    EXPECT_EQ(import.status, ExitStatus::failed);
    EXPECT_EQ(import.output, R"(DPI of stage 1: 400 -> 500: done
DPI of stage 5: 6400 -> 25000: done
active stage: 1 -> 5: done
lighting of scroll-wheel: static #00ff00, 100 % -> static #090807, 100 %: done
lighting of logo: static #00ff00, 100 % -> spectrum, 100 %: done
lighting of underglow: static #00ff00, 100 % -> static #00ff00, 11.4 %: done
button back: back -> key:ctrl+f5: done
lift-off distance: medium -> high: failed (Failed to set lift-off distance)
)");
    EXPECT_EQ(run("import " + path).output, "lift-off distance: medium -> high: done\n");
    EXPECT_EQ(other.state().dpiStages, held.dpiStages);
    EXPECT_EQ(other.state().buttons, held.buttons);
    EXPECT_EQ(other.state().liftOff, held.liftOff);
}

TEST_F(ChangeTest, TheChangeLockExcludesOtherProcesses)
{
    const auto home = qgetenv("XDG_DATA_HOME").toStdString() + "/com.kelmoth.app.set.lock";
    const auto before = qgetenv("TMPDIR");
    qputenv("TMPDIR", directory.path().toUtf8());
    for (const bool isPlanted : {false, true}) {
        if (isPlanted) {
            std::filesystem::remove(home);
            std::filesystem::create_symlink(path, home);
        }
        std::optional<ChangeLock> first(std::in_place);
        ChangeLock second;
        qputenv("XDG_RUNTIME_DIR", directory.path().toUtf8());
        EXPECT_EQ(QCoro::waitFor(first->take()), std::nullopt);
        qunsetenv("XDG_RUNTIME_DIR"); // as for cron
        auto waiting = second.take();
        EXPECT_FALSE(waiting.isReady());
        first.reset();
        EXPECT_EQ(QCoro::waitFor(std::move(waiting)), std::nullopt);
        EXPECT_FALSE(std::filesystem::exists(path)) << "the link was followed";
    }
    std::filesystem::remove(home);
    qputenv("TMPDIR", before);
}

TEST_F(ChangeTest, AnyRecordIsSafeToImport)
{
    auto &mouse = plugIn("basilisk-v3");
    auto record = decodeDeviceState(run("export").output).value();
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
    write(encode(record).value());
    const auto result = run("import --json " + path);
    EXPECT_EQ(result.status, ExitStatus::done);
    EXPECT_EQ(result.json()["results"][0].dump(), R"({"setting":"number of DPI stages","from":5,"to":6,)"
                                                  R"("result":"unsupported","reason":null})");
    EXPECT_THAT(result.output,
                AllOf(HasSubstr(R"("DPI of stage 1","from":400,"to":-100,"result":"unsupported")"),
                      HasSubstr(R"("to":"disabled","result":"unsupported","reason":"the left button)"),
                      HasSubstr(R"("to":"macro:m","result":"unsupported","reason":"the mouse cannot)"),
                      HasSubstr(R"("to":"smart-reel","result":"unsupported")"), Not(HasSubstr("done"))));
    EXPECT_THAT(run("import " + path).output, AllOf(HasSubstr("key:"), Not(HasSubstr("\x1b"))));
    EXPECT_EQ(mouse.takeTransfers().size(), 2 * 2 * 19) << "only the full reads";
}

TEST_F(ChangeTest, AnUnusableFileChangesNothing)
{
    auto &mouse = plugIn("basilisk-v3");
    write(R"({"dpiStages":[{"index":0,"dpi":1,"color":"\u001b[2Jpink"}]})");
    const std::pair<std::string, const char *> rows[]{
        {path, "dpiStages[0].color: "},
        {directory.path().toStdString(), "is a directory"},
        {"/nonexistent", "/nonexistent: No such file"},
        {"/dev/zero", "too large"},
    };
    for (const auto &[name, complaint] : rows) {
        EXPECT_EQ(run("import " + name).status, ExitStatus::usage);
        EXPECT_THAT(run("import " + name).complaints, AllOf(HasSubstr(complaint), Not(HasSubstr("\x1b"))));
    }
    for (const auto *level : {"3", "-1", "\"high\""}) {
        auto text = encode(DeviceState::defaultState()).value();
        text.back() = ',';
        write(text + "\"liftOffLevel\":" + level + '}');
        EXPECT_EQ(run("import " + path).status, ExitStatus::usage);
        EXPECT_THAT(run("import " + path).complaints, HasSubstr(path + ": liftOffLevel: "));
    }
    write("{\n}}");
    EXPECT_THAT(run("import " + path).complaints, HasSubstr(path + ": parse error at line 2, column 2: "));

    write("older");
    EXPECT_THAT(run("export /nonexistent/file").complaints, HasSubstr("No such file"));
    const auto other = path + ".socket";
    ASSERT_EQ(::mknod(other.c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_THAT(run("export " + other).complaints, HasSubstr("Is a socket"));
    EXPECT_THAT(run("export " + directory.path().toStdString()).complaints, HasSubstr("Is a directory"));
    EXPECT_THAT(mouse.takeTransfers(), IsEmpty());
    mouse.addFault({Kind::rejected, 0x04});
    EXPECT_THAT(run("export " + path).complaints, HasSubstr("did not answer for DPI stages: nothing was"));
    EXPECT_EQ(contents(), "older");
    mouse.addFault({Kind::rejected, 0x0B}); // of which the record says nothing
    const auto result = run("export " + path);
    EXPECT_EQ(result.status, ExitStatus::done);
    EXPECT_THAT(result.complaints, HasSubstr("lift-off distance: it is left out"));
    EXPECT_THAT(contents(), testing::EndsWith("\"scrollWheelMode\":\"tactile\"}\n"));
}

} // namespace
} // namespace kelmoth
