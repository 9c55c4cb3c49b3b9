#include "Core/HID/DeviceReader.h"

#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"

#include <QPointer>

#include <algorithm>

namespace kelmoth {

namespace {

/// One reading. Commands are named before they are sent: g++ 12 destroys a temporary of an aggregate twice
/// when it is made inside a co_await expression. Its coroutines are awaited one after the other by
/// `readDevice`, in whose frame it lives.
class Reader {
public:
    Reader(HIDMonitor *monitor, RazerDevice device, DeviceState base)
        : m_monitor(monitor), m_device(std::move(device)), m_capabilities(m_device.capabilities())
    {
        m_reading.state = std::move(base);
    }

    DeviceReading takeReading() { return std::move(m_reading); }

    QCoro::Task<void> readStages()
    {
        const RazerCommand getStages = command::getDPIStages{};
        const std::optional<Data> response = co_await ask(getStages);
        const auto stages = response ? RazerProtocol::parseDPIStages(*response) : std::nullopt;
        if (!stages) {
            m_reading.unanswered.dpiStages = true;
            co_return;
        }
        takeStages(*stages);
    }

    QCoro::Task<void> readLighting(std::set<RGBZone> zones)
    {
        for (const RGBZone zone : zones) {
            const auto setting = co_await readZone(zone);
            if (setting) {
                m_reading.state.rgbSettings[zone] = *setting;
            } else {
                m_reading.unanswered.zones.insert(zone);
            }
        }
    }

    QCoro::Task<void> readButtons(std::set<MouseButton> buttons)
    {
        for (const MouseButton button : buttons) {
            const RazerCommand getMapping =
                command::getButtonMapping{.button = button, .profile = 0, .hypershift = false};
            const std::optional<Data> response = co_await ask(getMapping);
            if (auto action = response ? RazerProtocol::parseButtonMapping(*response) : std::nullopt) {
                m_reading.state.buttonMappings.insert_or_assign(button, *std::move(action));
            } else {
                m_reading.unanswered.buttons.insert(button);
            }
        }
    }

    QCoro::Task<void> readLiftOff()
    {
        const RazerCommand getLiftOff = command::getLiftOff{};
        const std::optional<Data> response = co_await ask(getLiftOff);
        m_reading.liftOffLevel = response ? RazerProtocol::parseLiftOff(*response) : std::nullopt;
        m_reading.unanswered.liftOff = !m_reading.liftOffLevel;
    }

private:
    QCoro::Task<std::optional<Data>> ask(RazerCommand command)
    {
        if (!m_monitor) {
            co_return std::nullopt;
        }
        std::optional<Data> response = co_await m_monitor->send(command, m_device);
        m_reading.anyAnswer = m_reading.anyAnswer || response.has_value();
        co_return response;
    }

    QCoro::Task<std::optional<RGBSetting>> readZone(RGBZone zone)
    {
        const RazerCommand getEffect = command::getRGB{zone};
        const std::optional<Data> effect = co_await ask(getEffect);
        if (!effect) {
            co_return std::nullopt;
        }
        const RazerCommand getBrightness = command::getBrightness{zone};
        const std::optional<Data> brightness = co_await ask(getBrightness);
        if (!brightness) {
            co_return std::nullopt;
        }
        const auto known = m_reading.state.rgbSettings.find(zone);
        const auto fallback =
            known == m_reading.state.rgbSettings.end() ? defaultZoneColor : known->second.color;
        auto setting = RazerProtocol::parseRGB(*effect, *brightness, fallback);
        const auto &offered = m_capabilities.rgbEffects;
        if (setting && std::ranges::find(offered, setting->effect) == offered.end()) {
            setting->effect = RGBEffect::staticColor;
        }
        co_return setting;
    }

    /// Takes over the stages. Mice do not report stage colours; those stay.
    void takeStages(const RazerProtocol::DPIStages &stages)
    {
        auto &state = m_reading.state;
        std::vector<DPIStage> taken;
        taken.reserve(stages.dpis.size());
        for (std::size_t i = 0; i < stages.dpis.size(); ++i) {
            taken.push_back({static_cast<Int>(i), stages.dpis[i], stageColor(i)});
        }
        state.dpiStages = std::move(taken);
        state.currentDPIStage = stages.active;
    }

    QPointer<HIDMonitor> m_monitor;
    RazerDevice m_device;
    const DeviceCapabilities &m_capabilities;
    DeviceReading m_reading;
};

} // namespace

std::vector<std::string> UnansweredItems::words() const
{
    std::vector<std::string> words;
    if (dpiStages) {
        words.emplace_back("DPI stages");
    }
    for (const auto zone : zones) {
        words.push_back("lighting of " + std::string(rawValue(zone)));
    }
    for (const auto button : buttons) {
        words.push_back("button " + std::string(rawValue(button)));
    }
    if (liftOff) {
        words.emplace_back("lift-off distance");
    }
    return words;
}

DeviceState DeviceReading::answered() const
{
    auto said = state;
    if (unanswered.dpiStages) {
        said.dpiStages.clear();
        said.currentDPIStage = 0;
    }
    for (const auto zone : unanswered.zones) {
        said.rgbSettings.erase(zone);
    }
    for (const auto button : unanswered.buttons) {
        said.buttonMappings.erase(button);
    }
    return said;
}

QCoro::Task<DeviceReading> readDevice(HIDMonitor *monitor, RazerDevice device, DeviceState base, bool full)
{
    DeviceItems items{.dpiStages = true, .zones = {}, .buttons = {}, .liftOff = full};
    if (full) {
        const auto &zones = device.capabilities().rgbZones;
        items.zones = {zones.begin(), zones.end()};
        for (const auto &entry : defaultButtonMappings(device)) {
            items.buttons.insert(entry.first);
        }
    }
    return readDevice(monitor, std::move(device), std::move(base), std::move(items));
}

QCoro::Task<DeviceReading> readDevice(HIDMonitor *monitor, RazerDevice device, DeviceState base,
                                      DeviceItems items)
{
    Reader reader(monitor, std::move(device), std::move(base));
    if (items.dpiStages) {
        co_await reader.readStages();
    }
    co_await reader.readLighting(items.zones);
    co_await reader.readButtons(items.buttons);
    if (items.liftOff) {
        co_await reader.readLiftOff();
    }
    co_return reader.takeReading();
}

} // namespace kelmoth
