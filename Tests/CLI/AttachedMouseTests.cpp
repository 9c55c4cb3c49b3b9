// The built program on attached mice: real udev, real ioctls, a mock of the mouse at the kernel's side.

#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"
#include "Testbed/MockMouse.h"
#include "Tests/CLI/Shell.h"
#include "Tests/Hardware/MockedMachineTest.h"

#include <QSemaphore>
#include <QSettings>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <atomic>
#include <csignal>

namespace kelmoth {

/// What a test of a model is called.
static void PrintTo(const BasiliskModel &model, std::ostream *stream)
{
    *stream << model.commandLineName;
}

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using JSON = nlohmann::ordered_json;
using Transfers = std::vector<SimulatedMouse::Transfer>;
using namespace RazerProtocol;

bool isSame(const CommandCode &code, const SimulatedMouse::Transfer &transfer)
{
    return code.commandClass == transfer.bytes.at(offset::commandClass) &&
           code.commandID == transfer.bytes.at(offset::commandID);
}

/// The requests of transfers that all went well, each with its own answer right behind it.
Transfers requests(const Transfers &transfers)
{
    Transfers sent;
    for (std::size_t i = 0; i + 1 < transfers.size(); i += 2) {
        const auto &request = transfers[i];
        const auto &answer = transfers[i + 1];
        EXPECT_TRUE(request.isSet && !answer.isSet);
        EXPECT_EQ(answer.bytes.at(0), 0x02);
        EXPECT_TRUE(std::equal(&answer.bytes.at(6), &answer.bytes.at(8), &request.bytes.at(6)));
        sent.push_back(request);
    }
    EXPECT_EQ(transfers.size(), 2 * sent.size());
    return sent;
}

class AttachedMouseTest : public MockedMachineTest {
protected:
    SimulatedMouse &plugIn(std::string_view model)
    {
        using namespace std::chrono;
        const auto now = [this] {
            if (isHanging) {
                isHung.release();
                goOn.acquire();
            }
            return duration_cast<microseconds>(steady_clock::now().time_since_epoch());
        };
        attached = std::make_unique<MockMouse>(
            testbed, std::make_shared<SimulatedMouse>(*SimulatedModel::named(model), now));
        attached->attach();
        return attached->mouse();
    }

    std::atomic<bool> isHanging = false; ///< transfers take as long as they may
    QSemaphore isHung;                   ///< one does
    QSemaphore goOn;                     ///< lets one come to its end
    std::unique_ptr<MockMouse> attached;
};

void expectEndBy(int signal, QProcess &process)
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
    EXPECT_TRUE(process.waitForFinished(waitTimeout));
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(process.exitCode(), signal);
}

class EachModelTest : public AttachedMouseTest, public testing::WithParamInterface<BasiliskModel> {};

INSTANTIATE_TEST_SUITE_P(All, EachModelTest, testing::ValuesIn(basiliskModels()));

/// Each request once, by the model's rules, and all settings as another process reads them.
TEST_P(EachModelTest, IsListedAndReadAndTakesEachChange)
{
    using namespace code;
    const auto &model = GetParam();
    const bool isBasiliskV3 = model.productID == BasiliskProductID::basiliskV3;
    RazerDevice device;
    device.vendorID = razerVendorID;
    device.productID = rawValue(model.productID);
    std::vector fullRead{getDPIStages};
    for (std::size_t i = 0; i < device.capabilities().rgbZones.size(); ++i) {
        fullRead.insert(fullRead.end(), {getRGB, getBrightness});
    }
    fullRead.insert(fullRead.end(), defaultButtonMappings(device).size(), getButtonMapping);
    fullRead.push_back(getLiftOff);
    // The line, the commands after the full read, and what another process reads: where, and the JSON text.
    const std::tuple<std::string, std::vector<CommandCode>, const char *, const char *> rows[]{
        {"set dpi 900 --stage 2", {setDPIStages}, "/dpi/stages/1", "900"},
        {"set stage 4", {setDPIStages}, "/dpi/active", "4"},
        {"set light scroll-wheel --color 010203",
         {setBrightness, setRGB},
         "/lighting/scroll-wheel/color",
         "\"#010203\""},
        {"set button back key:ctrl+f5 --profile 2",
         {setButtonMapping, setButtonMapping, getButtonMapping},
         "/buttons/back",
         "\"key:ctrl+f5\""},
        {"set lift-off high", {prepareLiftOff, setLiftOff, getLiftOff}, "/liftOff", "\"high\""},
    };
    auto &mouse = plugIn(model.commandLineName);
    const auto run = [&](const std::string &line, std::vector<CommandCode> expected) {
        SCOPED_TRACE(line);
        const auto result = shell("kelmothctl " + line);
        EXPECT_EQ(result.status, 0) << result.error;
        auto sent = requests(mouse.takeTransfers());
        for (const auto &request : sent) {
            const bool isDPI = request.bytes[offset::commandClass] == setDPIStages.commandClass;
            EXPECT_EQ(request.wIndex, isBasiliskV3 ? 3 : 0);
            EXPECT_EQ(request.bytes[offset::transactionID], isDPI && isBasiliskV3 ? 0xFF : 0x1F);
        }
        if (line.ends_with("--json")) { // the battery is read in its own time, and only to be shown
            std::erase_if(sent, [](const auto &request) {
                return request.bytes[offset::commandClass] == getBatteryLevel.commandClass;
            });
        }
        EXPECT_TRUE(std::ranges::equal(expected, sent, isSame)) << sent.size() << " for " << expected.size();
        return result.output;
    };
    const auto held = mouse.state();
    const JSON battery =
        held.battery > 0 ? JSON{{"level", held.battery * 100 / 255}, {"charging", held.isCharging}} : JSON();
    const std::string connection(model.connectionLabel);
    const JSON shown{{"productID", device.productID},
                     {"name", model.name},
                     {"connection", connection == "USB cable" ? "usb-cable" : "receiver"},
                     {"transport", "USB"},
                     {"path", attached->hidrawNode(model.reportIndex)}};
    const JSON listed{
        {"schema", 1}, {"device", shown}, {"battery", battery}, {"configurable", true}, {"reason", nullptr}};
    EXPECT_EQ(JSON::parse(run("list --json", {})), JSON::array({listed}));
    auto state = createDefaultState(device);
    state.currentDPIStage = held.activeStage - 1;
    auto record = JSON::parse(encode(state).value());
    record["liftOffLevel"] = 1;
    EXPECT_EQ(JSON::parse(run("export", fullRead)), record);
    const auto all = JSON::parse(run("read --json", fullRead));
    EXPECT_EQ(all["device"], shown);
    EXPECT_EQ(all["battery"], battery);
    EXPECT_EQ(all["dpi"]["stages"].size(), state.dpiStages.size());
    EXPECT_EQ(all["dpi"]["maximum"], device.capabilities().maxDPI);
    EXPECT_EQ(all["lighting"].size(), state.rgbSettings.size());
    EXPECT_EQ(all["buttons"].size(), state.buttonMappings.size());
    EXPECT_EQ(all["unanswered"], JSON::array());
    for (const auto &[line, commands, where, value] : rows) {
        auto expected = fullRead;
        expected.insert(expected.end(), commands.begin(), commands.end());
        run(line, expected);
    }
    const auto read = JSON::parse(run("read --json", fullRead));
    for (const auto &[line, commands, where, value] : rows) {
        EXPECT_EQ(read.at(JSON::json_pointer(where)).dump(), value) << line;
    }
}

/// Every byte stays as it was, each brightness among them.
TEST_P(EachModelTest, HoldsWhatItHeldWhenSetTakesWhatReadPrints)
{
    auto &mouse = plugIn(GetParam().commandLineName);
    auto held = mouse.state();
    std::uint8_t byte = 29;
    for (auto &[zone, light] : held.lights) {
        light.brightness = byte += 47;
    }
    const std::map<MouseButton, ButtonFunction> functions{
        {MouseButton::back, ButtonAction::keyPress("ctrl+alt+f5").toButtonFunction()},
        {MouseButton::forward, ButtonAction::dpiChange(5).toButtonFunction()},
        {MouseButton::middle, {0x0F, 0x02, 0xAB, 0xCD, 0x01}}, // has no name
    };
    for (const auto &[button, function] : functions) {
        held.buttons[{0, button, false}] = function;
    }
    mouse.setState(held);
    const auto fed = shell(R"sh(
read=$(kelmothctl read) || exit
section() { sed -n "/^$1/,/^\$/p" <<<"$read" | sed '1d;/^$/d'; }
section 'DPI stages' | sed 's/^[ *]*//' | while read -r stage dpi rest; do
    kelmothctl set dpi "$dpi" --stage "$stage" && { [[ -z $rest ]] || kelmothctl set stage "$stage"; } || exit
done || exit
section Lighting | sed 's/ %$//' |
    awk -F '  +' '{ print $2, $4, $5 ~ /^#/ ? "--color " $5 : "", "--brightness", $NF }' |
    while read -r zone effect rest; do kelmothctl set light "$zone" --effect "$effect" $rest || exit; done || exit
section Buttons | awk -F '  +' '{ print $2, $4 }' |
    while read -r button action; do kelmothctl set button "$button" "$action" || exit; done || exit
kelmothctl set lift-off "$(kelmothctl get lift-off)")sh");
    EXPECT_EQ(fed.status, 0) << fed.output << fed.error;
    const auto now = mouse.state();
    EXPECT_EQ(now.dpiStages, held.dpiStages);
    EXPECT_EQ(now.activeStage, held.activeStage);
    for (const auto &[zone, light] : held.lights) {
        EXPECT_EQ(now.lights.at(zone).effect, light.effect);
        EXPECT_EQ(now.lights.at(zone).parameters, light.parameters);
        EXPECT_EQ(now.lights.at(zone).brightness, light.brightness);
    }
    EXPECT_EQ(now.buttons, held.buttons);
    EXPECT_EQ(now.liftOff, held.liftOff);
}

TEST_F(AttachedMouseTest, WatchReportsAttachAndDetachUntilASignal)
{
    plugIn("basilisk-v3-pro-wired");
    for (const int signal : {SIGINT, SIGTERM}) {
        QProcess watch;
        watch.start(program, {QStringLiteral("watch")});
        const auto expectLine = [&watch](const char *line) {
            while (!watch.canReadLine() && watch.waitForReadyRead(waitTimeout)) {
            }
            EXPECT_EQ(watch.readLine(), line);
        };
        for (int attach = 0; attach < 2; ++attach) {
            expectLine("attached Razer Basilisk V3 Pro (Wired) (0x00AA, USB cable)\n");
            expectLine("battery Razer Basilisk V3 Pro (Wired) 78 % (charging)\n");
            attached->detach();
            expectLine("detached Razer Basilisk V3 Pro (Wired) (0x00AA, USB cable)\n");
            attached->attach();
        }
        expectEndBy(signal, watch);
    }
}

/// Nothing is waited for, and the one that comes next is not kept out.
TEST_F(AttachedMouseTest, ASignalEndsEveryCommandDuringATransfer)
{
    plugIn("basilisk-v3-pro-wired");
    const QTemporaryDir directory;
    const auto file = directory.filePath(QStringLiteral("mouse.json"));
    EXPECT_EQ(shell("kelmothctl export $1", {file}).status, 0);
    for (const auto &line : {QStringList{QStringLiteral("list")},
                             {QStringLiteral("read")},
                             {QStringLiteral("watch")},
                             {QStringLiteral("export")},
                             {QStringLiteral("import"), file},
                             {QStringLiteral("set"), QStringLiteral("stage"), QStringLiteral("1")}}) {
        SCOPED_TRACE(line.first().toStdString());
        for (const int signal : {SIGINT, SIGTERM}) {
            isHanging = true;
            QProcess command;
            command.start(program, line);
            EXPECT_TRUE(isHung.tryAcquire(1, waitTimeout));
            expectEndBy(signal, command);
            isHanging = false;
            goOn.release();
        }
    }
}

TEST_F(AttachedMouseTest, MissingPermissionFailsAtOnce)
{
    auto &mouse = plugIn("basilisk-v3-pro-wired");
    attached->permit(false);
    const std::string asNobody = ::geteuid() == 0 ? "exec setpriv --reuid=65534 --clear-groups " : "exec ";
    const auto read = shell(asNobody + "kelmothctl read");
    EXPECT_EQ(read.status, 4);
    EXPECT_THAT(read.output, IsEmpty());
    const auto judged = JSON::parse(shell(asNobody + "kelmothctl doctor --json").output);
    EXPECT_THAT(read.error, AllOf(HasSubstr(attached->hidrawNode(0)),
                                  HasSubstr(judged["problems"][0]["remedy"].get<std::string>())));
    const auto doctor = shell(asNobody + "kelmothctl doctor");
    EXPECT_EQ(doctor.status, 4);
    EXPECT_THAT(doctor.output,
                AllOf(HasSubstr("interface 0, takes commands"), HasSubstr("No permission to open"),
                      Not(HasSubstr("\x1b")), HasSubstr("but you may not open it")));
    const auto json = JSON::parse(shell("kelmothctl doctor --json").output);
    EXPECT_EQ(json["canConfigure"], ::geteuid() == 0);
    const JSON interface{{"number", 0}, {"driver", "usbhid"}, {"node", attached->hidrawNode(0)}};
    EXPECT_EQ(json["usbDevices"][0]["interfaces"][0], interface);
    EXPECT_EQ(json["hidNodes"][0]["takesCommands"], true);
    EXPECT_EQ(json["hidNodes"][1]["takesCommands"], false);
    EXPECT_THAT(mouse.takeTransfers(), IsEmpty());
}

TEST_F(AttachedMouseTest, AFailurePrintsDiagnostics)
{
    auto &mouse = plugIn("basilisk-v3");
    mouse.addFault({.kind = SimulatedFault::Kind::noAnswer, .commandID = 0x8B, .times = -1});
    const auto read = shell("kelmothctl read");
    EXPECT_EQ(read.status, 1);
    EXPECT_THAT(read.output, HasSubstr("Lift-off    no answer"));
    EXPECT_THAT(read.error,
                AllOf(HasSubstr("📤 USB Report sent: 00 1F 00 00 00 04 0B 8B"),
                      testing::EndsWith("kelmothctl: the mouse did not answer for lift-off distance\n")));
}

/// A configuration directory of its own, with the file of settings in it.
class SavedTest : public AttachedMouseTest {
protected:
    void SetUp() override
    {
        AttachedMouseTest::SetUp();
        qputenv("XDG_CONFIG_HOME", directory.path().toUtf8());
    }
    QSettings settings() const
    {
        return {directory.filePath(QStringLiteral("com.kelmoth.app/defaults.ini")), QSettings::IniFormat};
    }
    std::string value(const QString &key) const { return settings().value(key).toString().toStdString(); }

    const QTemporaryDir directory;
};

TEST_F(SavedTest, UsesOwnAndLegacyRecords)
{
    auto state = DeviceState::defaultState();
    const auto record = [&state](Int pollingRate) {
        state.pollingRate = pollingRate;
        return encode(state).value();
    };
    const auto older = QStringLiteral("com.kelmoth.deviceState");
    const auto own = QStringLiteral("com.kelmoth.deviceState.185");
    const auto mark = QStringLiteral("com.kelmoth.deviceState.migrated");
    // What is saved; the polling rate, which no mouse is asked for; the mark.
    const std::tuple<std::map<QString, std::string>, Int, const char *> rows[]{
        {{}, 1000, ""},
        {{{older, record(500)}}, 500, "185"}, // goes to the first mouse
        {{{older, record(500)}, {mark, "153"}}, 1000, "153"},
        {{{older, record(500)}, {mark, "by hand"}}, 1000, "by hand"},
        {{{older, "{}"}}, 1000, ""},
        {{{older, record(500)}, {own, record(125)}}, 125, ""},
        {{{older, record(500)}, {own, "{"}}, 1000, ""}, // a damaged one is none
        {{{older, record(500)}, {own, std::string(500'000, '[')}}, 1000, ""},
    };
    auto &mouse = plugIn("basilisk-v3-x-hyperspeed");
    auto held = mouse.state();
    held.dpiStages = {700, 800, 1600, 3200, 6400};
    mouse.setState(held);
    for (const auto &[values, pollingRate, expectedMark] : rows) {
        SCOPED_TRACE(&values - &std::get<0>(rows[0]));
        settings().clear();
        for (const auto &[key, text] : values) {
            settings().setValue(key, QString::fromStdString(text));
        }
        const auto exported = shell("kelmothctl export");
        EXPECT_EQ(exported.status, 0) << exported.error;
        auto shown = JSON::parse(exported.output);
        shown.erase("liftOffLevel");
        EXPECT_EQ(shown.at("pollingRate"), pollingRate);
        EXPECT_EQ(shown.at("dpiStages").at(0).at("dpi"), 700) << "the mouse knows better";
        EXPECT_EQ(value(own), shown.dump());
        EXPECT_EQ(value(mark), expectedMark);
        EXPECT_EQ(value(older), values.contains(older) ? values.at(older) : "") << "left as it is";
    }
}

/// KELMOTH_TEST_CHANGES: how many changes each of them makes, at most 255.
TEST_F(SavedTest, ConcurrentChangesAreNotLost)
{
    const auto given = qEnvironmentVariable("KELMOTH_TEST_CHANGES", QStringLiteral("4"));
    auto &mouse = plugIn("basilisk-v3-x-hyperspeed");
    Transfers transfers;
    const auto collect = [&] {
        std::ranges::move(mouse.takeTransfers(), std::back_inserter(transfers));
        return true;
    };
    const auto both = shell(R"(
change() {
    for ((i = 1; i <= $2; ++i)); do kelmothctl set dpi $((i % 180 + 1))00 --stage $1 || exit; done
}
change 2 $1 & first=$!
change 4 $1 && wait $first)",
                            {given}, collect);
    collect();
    EXPECT_EQ(both.status, 0) << both.error;

    // Each write brings one stage forward and keeps the other as its own loop left it.
    const auto dpi = [](Int change) { return (change % 180 + 1) * 100; };
    Int second = 0;
    Int fourth = 0;
    for (const auto &request : requests(transfers)) {
        if (isSame(code::setDPIStages, request)) {
            const auto dpis = parseDPIStages(request.bytes).value().dpis;
            ++(dpis[1] == dpi(second + 1) ? second : fourth);
            EXPECT_EQ(dpis[1], second == 0 ? 800 : dpi(second));
            EXPECT_EQ(dpis[3], fourth == 0 ? 2400 : dpi(fourth));
        }
    }
    EXPECT_EQ(second, given.toInt());
    EXPECT_EQ(fourth, given.toInt());
    const auto saved = decodeDeviceState(value(QStringLiteral("com.kelmoth.deviceState.185"))).value();
    EXPECT_EQ(saved.dpiStages[1].dpi, dpi(second));
    EXPECT_EQ(saved.dpiStages[3].dpi, dpi(fourth));
}

} // namespace
} // namespace kelmoth
