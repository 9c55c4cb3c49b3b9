#include "Core/HID/DeviceReader.h"

#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"

#include <QPointer>

#include <algorithm>

namespace kelmoth {

namespace {

/// One reading. Its coroutines are awaited one after the other by `readDevice`, in whose frame it lives.
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
        const std::optional<Data> response = co_await ask(command::getDPIStages{});
        const auto stages = response ? RazerProtocol::parseDPIStages(*response) : std::nullopt;
        if (!stages) {
            unanswered("DPI stages");
            co_return;
        }
        takeStages(*stages);
    }

    QCoro::Task<void> readLighting()
    {
        for (const RGBZone zone : m_capabilities.rgbZones) {
            const auto setting = co_await readZone(zone);
            if (setting) {
                m_reading.state.rgbSettings[zone] = *setting;
            } else {
                unanswered("lighting of " + std::string(rawValue(zone)));
            }
        }
    }

    QCoro::Task<void> readButtons()
    {
        for (const auto &entry : defaultButtonMappings(m_device)) {
            const MouseButton button = entry.first;
            const std::optional<Data> response =
                co_await ask(command::getButtonMapping{.button = button, .profile = 0, .hypershift = false});
            if (auto action = response ? RazerProtocol::parseButtonMapping(*response) : std::nullopt) {
                m_reading.state.buttonMappings.insert_or_assign(button, *std::move(action));
            } else {
                unanswered("button " + std::string(rawValue(button)));
            }
        }
    }

    QCoro::Task<void> readLiftOff()
    {
        const std::optional<Data> response = co_await ask(command::getLiftOff{});
        m_reading.liftOffLevel = response ? RazerProtocol::parseLiftOff(*response) : std::nullopt;
        if (!m_reading.liftOffLevel) {
            unanswered("lift-off distance");
        }
    }

private:
    QCoro::Task<std::optional<Data>> ask(RazerCommand command)
    {
        if (!m_monitor) {
            co_return std::nullopt;
        }
        std::optional<Data> response = co_await m_monitor->send(std::move(command), m_device);
        m_reading.anyAnswer = m_reading.anyAnswer || response.has_value();
        co_return response;
    }

    QCoro::Task<std::optional<RGBSetting>> readZone(RGBZone zone)
    {
        const std::optional<Data> effect = co_await ask(command::getRGB{zone});
        if (!effect) {
            co_return std::nullopt;
        }
        const std::optional<Data> brightness = co_await ask(command::getBrightness{zone});
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

    /// The stages as the mouse has them, in the colours that the positions had.
    void takeStages(const RazerProtocol::DPIStages &stages)
    {
        auto &state = m_reading.state;
        std::vector<DPIStage> taken;
        for (std::size_t i = 0; i < stages.dpis.size(); ++i) {
            const auto color = i < state.dpiStages.size() ? state.dpiStages[i].color : stageColor(i);
            taken.push_back({static_cast<Int>(i), stages.dpis[i], color});
        }
        state.dpiStages = std::move(taken);
        state.currentDPIStage = stages.active;
    }

    void unanswered(std::string item) { m_reading.unanswered.push_back(std::move(item)); }

    QPointer<HIDMonitor> m_monitor;
    RazerDevice m_device;
    const DeviceCapabilities &m_capabilities;
    DeviceReading m_reading;
};

} // namespace

QCoro::Task<DeviceReading> readDevice(HIDMonitor *monitor, RazerDevice device, DeviceState base, bool full)
{
    Reader reader(monitor, std::move(device), std::move(base));
    co_await reader.readStages();
    if (full) {
        co_await reader.readLighting();
        co_await reader.readButtons();
        co_await reader.readLiftOff();
    }
    co_return reader.takeReading();
}

} // namespace kelmoth
