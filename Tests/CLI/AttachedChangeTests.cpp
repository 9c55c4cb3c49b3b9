// The built program changes settings of an attached mouse, and what it leaves on the disk.

#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"
#include "Tests/CLI/AttachedMouseFixture.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <nlohmann/json.hpp>

#include <fstream>

namespace kelmoth {
namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;
using JSON = nlohmann::ordered_json;
using RazerProtocol::CommandCode;

constexpr auto legacyKey = "com.kelmoth.deviceState";
constexpr auto migratedKey = "com.kelmoth.deviceState.migrated";

RazerDevice deviceOf(const BasiliskModel &model)
{
    RazerDevice device;
    device.vendorID = razerVendorID;
    device.productID = rawValue(model.productID);
    device.transport = "USB";
    return device;
}

/// Class and id of each command that was sent. The battery is left out: it is read in its own time.
std::vector<std::pair<int, int>> commandsOf(SimulatedMouse &mouse)
{
    std::vector<std::pair<int, int>> commands;
    for (const auto &transfer : mouse.takeTransfers()) {
        if (transfer.isSet && transfer.bytes[6] != RazerProtocol::code::getBatteryLevel.commandClass) {
            commands.emplace_back(transfer.bytes[6], transfer.bytes[7]);
        }
    }
    return commands;
}

/// What a full read of a model sends, in order.
std::vector<std::pair<int, int>> fullRead(const RazerDevice &device)
{
    using namespace RazerProtocol::code;
    std::vector<std::pair<int, int>> commands;
    const auto add = [&commands](const CommandCode &code) {
        commands.emplace_back(code.commandClass, code.commandID);
    };
    add(getDPIStages);
    for (std::size_t i = 0; i < device.capabilities().rgbZones.size(); ++i) {
        add(getRGB);
        add(getBrightness);
    }
    for (std::size_t i = 0; i < defaultButtonMappings(device).size(); ++i) {
        add(getButtonMapping);
    }
    add(getLiftOff);
    return commands;
}

/// A configuration directory of its own, with the file of settings in it.
class Configuration {
public:
    std::string path() const { return m_directory.path().toStdString(); }
    QString file() const { return m_directory.filePath(QStringLiteral("com.kelmoth.app/defaults.ini")); }
    QString value(const std::string &key) const
    {
        return QSettings(file(), QSettings::IniFormat).value(QString::fromStdString(key)).toString();
    }

    /// Writes the file as someone would by hand.
    void write(const std::vector<std::pair<std::string, std::string>> &values) const
    {
        QDir().mkpath(QFileInfo(file()).path());
        std::ofstream stream(file().toStdString());
        stream << "[General]\n";
        for (const auto &[key, text] : values) {
            stream << key << "=\"";
            for (const char c : text) {
                stream << (c == '"' ? "\\" : "") << c;
            }
            stream << "\"\n";
        }
    }

private:
    const QTemporaryDir m_directory;
};

TEST_F(AttachedMouseTest, EachChangeIsReadByAnotherProcess)
{
    using namespace RazerProtocol::code;
    const struct {
        std::string arguments;
        JSON::json_pointer where;
        JSON value;
        std::vector<CommandCode> commands;
    } rows[]{
        {"dpi 900 --stage 2", JSON::json_pointer("/state/dpiStages/1/dpi"), 900, {setDPIStages}},
        {"stage 4", JSON::json_pointer("/state/currentDPIStage"), 3, {setDPIStages}},
        {"light scroll_wheel --effect static --color 010203",
         JSON::json_pointer("/state/rgbSettings/1/color"),
         {{"r", 1}, {"g", 2}, {"b", 3}},
         {setBrightness, setRGB}},
        {"button back keyPress:ctrl+f5 --profile 2",
         JSON::json_pointer("/state/buttonMappings/9"),
         {{"keyPress", {{"_0", "ctrl+f5"}}}},
         {setButtonMapping, setButtonMapping, getButtonMapping}},
        {"lift-off high", JSON::json_pointer("/liftOffLevel"), 2, {prepareLiftOff, setLiftOff, getLiftOff}},
    };
    for (const auto *name : {"basilisk-v3", "basilisk-v3-pro", "basilisk-v3-x-hyperspeed"}) {
        auto &mouse = plugIn(name).mouse();
        const auto &model = *std::ranges::find(basiliskModels(), name, &BasiliskModel::commandLineName);
        for (const auto &row : rows) {
            SCOPED_TRACE(name + (": " + row.arguments));
            auto expected = fullRead(deviceOf(model));
            for (const auto &code : row.commands) {
                expected.emplace_back(code.commandClass, code.commandID);
            }
            const auto set = shell("kelmothctl set " + row.arguments);
            EXPECT_EQ(set.status, 0) << set.error;
            EXPECT_THAT(commandsOf(mouse), ElementsAreArray(expected));
            const auto read = shell("kelmothctl read --json");
            EXPECT_EQ(JSON::parse(read.output).at(row.where), row.value) << read.output;
            EXPECT_THAT(commandsOf(mouse), ElementsAreArray(fullRead(deviceOf(model))));
        }
    }
}

TEST_F(AttachedMouseTest, SavedRecordsAreHonoured)
{
    const auto device = deviceOf(basiliskModel(BasiliskProductID::basiliskV3ProWired));
    auto state = createDefaultState(device);
    const auto record = [&state](Int pollingRate) {
        state.pollingRate = pollingRate;
        return encode(state);
    };
    const std::string deviceKey = std::string(legacyKey) + ".170";
    const struct {
        const char *what;
        std::vector<std::pair<std::string, std::string>> values;
        Int pollingRate; ///< which no mouse is asked for
        const char *migrated;
    } rows[]{
        {"nothing", {}, 1000, ""},
        {"the older record goes to the first mouse", {{legacyKey, record(500)}}, 500, "170"},
        {"which it has been given to", {{legacyKey, record(500)}, {migratedKey, "153"}}, 1000, "153"},
        {"its own record stands", {{legacyKey, record(500)}, {deviceKey, record(125)}}, 125, ""},
        {"a damaged one is none", {{legacyKey, record(500)}, {deviceKey, "{"}}, 1000, ""},
    };
    auto &mouse = plugIn("basilisk-v3-pro-wired").mouse();
    auto held = mouse.state();
    held.dpiStages = {700, 800, 1600, 3200, 6400};
    mouse.setState(held);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        const Configuration configuration;
        configuration.write(row.values);
        const auto read = shell("XDG_CONFIG_HOME=$1 kelmothctl read --json",
                                {QString::fromStdString(configuration.path())});
        EXPECT_EQ(read.status, 0) << read.error;
        const auto shown = JSON::parse(read.output).at("state");
        EXPECT_EQ(shown.at("pollingRate"), row.pollingRate);
        EXPECT_EQ(shown.at("dpiStages").at(0).at("dpi"), 700) << "the mouse knows better";
        EXPECT_EQ(configuration.value(deviceKey).toStdString(), shown.dump());
        EXPECT_EQ(configuration.value(migratedKey).toStdString(), row.migrated);
        for (const auto &[key, text] : row.values) {
            EXPECT_TRUE(key == deviceKey || configuration.value(key).toStdString() == text) << key;
        }
    }
}

TEST_F(AttachedMouseTest, AChangeThatCannotBeSavedStillHolds)
{
    auto &mouse = plugIn("basilisk-v3").mouse();
    const auto set = shell("XDG_CONFIG_HOME=/dev/null kelmothctl set stage 3 --verbose");
    EXPECT_EQ(set.status, 0);
    EXPECT_EQ(mouse.state().activeStage, 3);
    EXPECT_THAT(set.error, HasSubstr("Settings could not be saved: /dev/null/com.kelmoth.app"));
}

TEST_F(AttachedMouseTest, TwoWhoChangeAtOnceLoseNothing)
{
    constexpr int rounds = 25;
    auto &mouse = plugIn("basilisk-v3-x-hyperspeed").mouse();
    const Configuration configuration;
    const auto both = shell(R"(
export XDG_CONFIG_HOME=$1
change() {
    for ((i = 1; i <= $2; ++i)); do kelmothctl set dpi ${i}00 --stage $1 || exit; done
}
change 2 $2 & first=$!
change 4 $2 && wait $first)",
                            {QString::fromStdString(configuration.path()), QString::number(rounds)});
    EXPECT_EQ(both.status, 0) << both.error;

    // Each write brings one stage forward and keeps the other as its own loop left it.
    Int second = 0;
    Int fourth = 0;
    for (const auto &transfer : mouse.takeTransfers()) {
        if (!transfer.isSet || transfer.bytes[6] != 0x04 || transfer.bytes[7] != 0x06) {
            continue;
        }
        const auto dpis = RazerProtocol::parseDPIStages(transfer.bytes).value().dpis;
        ++(dpis[1] == (second + 1) * 100 ? second : fourth);
        EXPECT_TRUE(second == 0 || dpis[1] == second * 100);
        EXPECT_TRUE(fourth == 0 || dpis[3] == fourth * 100);
    }
    EXPECT_EQ(second, rounds);
    EXPECT_EQ(fourth, rounds);
    const auto saved = decodeDeviceState(configuration.value("com.kelmoth.deviceState.185").toStdString());
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->dpiStages[1].dpi, rounds * 100);
    EXPECT_EQ(saved->dpiStages[3].dpi, rounds * 100);
}

} // namespace
} // namespace kelmoth
