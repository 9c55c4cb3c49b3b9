#include "UI/Views/RGBTabModel.h"

#include "Core/Services/Application.h"
#include "Core/Services/L10n.h"
#include "UI/Views/Hue.h"
#include "UI/Views/Texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace kelmoth {

namespace {

constexpr double speed = 0.5;
constexpr double nearHue = 0.05;

constexpr int whitePreset = 9;
/// The hue of each colour preset; that of white is none.
constexpr std::array presetHues{0.35, 0.5, 0.55, 0.65, 0.75, 0.85, 0.0, 0.08, 0.15, -1.0};

struct EffectRow {
    RGBEffect effect;
    std::string_view title; ///< English, a translation key
    std::string_view icon;
};

/// The effects that can be picked.
constexpr std::array effectTable{
    EffectRow{RGBEffect::off, "Off", "power"},
    EffectRow{RGBEffect::staticColor, "Static", "circle.fill"},
    EffectRow{RGBEffect::breathing, "Breathe", "wind"},
    EffectRow{RGBEffect::spectrum, "Spectrum", "sparkles"},
    EffectRow{RGBEffect::wave, "Wave", "water.waves"},
    EffectRow{RGBEffect::reactive, "Reactive", "bolt.fill"},
};

const EffectRow *effectRow(RGBEffect effect)
{
    const auto *row = std::ranges::find(effectTable, effect, &EffectRow::effect);
    return row == effectTable.end() ? nullptr : row;
}

/// The swatch that stands for a hue.
std::optional<int> presetOfHue(double hue)
{
    const auto *found =
        std::ranges::find_if(presetHues, [hue](double preset) { return std::abs(preset - hue) < nearHue; });
    return found == presetHues.end() ? std::nullopt
                                     : std::optional(static_cast<int>(found - presetHues.begin()));
}

/// Also of what was stored, which may be any number. None at all counts as the strip's start.
double onStrip(double position)
{
    return std::isnan(position) ? 0.0 : std::clamp(position, 0.0, 1.0);
}

} // namespace

RGBTabModel::RGBTabModel(DeviceManager &manager, Preferences &preferences, QObject *parent)
    : TabModel(manager, parent)
{
    connect(&manager, &DeviceManager::connectedDeviceChanged, this, &RGBTabModel::followDevice);
    connect(&manager, &DeviceManager::deviceStateChanged, this, &RGBTabModel::followState);
    connect(&preferences, &Preferences::languageModeChanged, this, [this] {
        namePresets();
        publishLight();
    });
    namePresets();
    followDevice();
    followState();
    publishLight();
}

void RGBTabModel::reset()
{
    TabModel::reset();
    m_view = {};
    Q_EMIT zonesChanged();
    publishLight();
}

void RGBTabModel::shown()
{
    if (zoneIndex() < 0) {
        m_view.zone = firstZone();
        Q_EMIT zonesChanged();
    }
    loadFromDeviceState();
}

std::vector<RGBZone> RGBTabModel::zones() const
{
    const auto &device = deviceManager().connectedDevice();
    return device ? device->capabilities().rgbZones : std::vector{RGBZone::scrollWheel};
}

RGBZone RGBTabModel::firstZone() const
{
    const auto all = zones();
    return all.empty() ? RGBZone::scrollWheel : all.front();
}

std::vector<RGBEffect> RGBTabModel::supportedEffects() const
{
    const auto &device = deviceManager().connectedDevice();
    if (!device) {
        return {};
    }
    auto effects = device->capabilities().rgbEffects;
    std::erase_if(effects, [](RGBEffect effect) { return effectRow(effect) == nullptr; });
    return effects;
}

QStringList RGBTabModel::zoneTitles() const
{
    QStringList titles;
    for (const auto each : zones()) {
        titles.append(panelText(tableRow(each).title));
    }
    return titles;
}

int RGBTabModel::zoneIndex() const
{
    const auto all = zones();
    const auto found = std::ranges::find(all, m_view.zone);
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

QString RGBTabModel::brightnessText() const
{
    return panelText(L10n::formatted("%lld%%", std::to_string(static_cast<int>(m_view.brightness * 100))));
}

QColor RGBTabModel::currentColor() const
{
    return m_view.selectedPresetIndex == whitePreset ? QColor(Qt::white) : colorOfHue(m_view.hue);
}

RGBColor RGBTabModel::currentRGB() const
{
    return m_view.selectedPresetIndex == whitePreset ? RGBColor{255, 255, 255} : rgbOfHue(m_view.hue);
}

double RGBTabModel::previewOpacity() const
{
    return isOff() ? 0.3 : std::min(m_view.brightness + 0.3, 1.0);
}

void RGBTabModel::pickZone(int index)
{
    const auto all = zones();
    if (index < 0 || index >= std::ssize(all) || index == zoneIndex()) {
        return;
    }
    m_view.zone = all[static_cast<std::size_t>(index)];
    Q_EMIT zonesChanged();
    loadFromDeviceState();
}

void RGBTabModel::pickEffect(int row)
{
    const auto effects = supportedEffects();
    if (row < 0 || row >= std::ssize(effects)) {
        return;
    }
    const auto effect = effects[static_cast<std::size_t>(row)];
    log("🔴 RGB Button clicked: %s", std::string(rawValue(effect)).c_str());
    m_view.selectedEffect = effect;
    publishLight();
    applySettings();
}

void RGBTabModel::pickPreset(int row)
{
    if (row < 0 || row >= std::ssize(presetHues)) {
        return;
    }
    m_view.selectedPresetIndex = row;
    if (const double hue = presetHues[static_cast<std::size_t>(row)]; hue >= 0) {
        m_view.hue = hue;
    }
    publishLight();
    applySettings();
}

void RGBTabModel::dragHue(double position)
{
    m_view.hue = onStrip(position);
    m_view.selectedPresetIndex.reset();
    publishLight();
}

void RGBTabModel::endHueDrag()
{
    log("🟣 Hue slider ended: %s", fixedDecimals(m_view.hue, 2).c_str());
    applySettings();
}

void RGBTabModel::dragBrightness(double position)
{
    m_view.brightness = onStrip(position);
    publishLight();
}

void RGBTabModel::endBrightnessDrag()
{
    log("🟡 Brightness drag ended: %s", fixedDecimals(m_view.brightness, 2).c_str());
    applySettings();
}

void RGBTabModel::loadFromDeviceState()
{
    const auto &settings = deviceManager().deviceState().rgbSettings;
    const auto found = settings.find(m_view.zone);
    if (found == settings.end()) {
        return;
    }
    m_view.selectedEffect = found->second.effect;
    m_view.brightness = onStrip(found->second.brightness);
    loadColor(found->second.color);
    publishLight();
}

/// A grey has no hue: only white can be shown.
void RGBTabModel::loadColor(const RGBColor &color)
{
    if (const auto hue = hueOf(color)) {
        m_view.hue = *hue;
        m_view.selectedPresetIndex = presetOfHue(*hue);
    } else if (color.r / 255.0 > 0.9) {
        m_view.selectedPresetIndex = whitePreset;
    }
}

/// Sends what the controls show.
void RGBTabModel::applySettings()
{
    if (isApplying()) {
        return;
    }
    const RGBSetting setting{m_view.selectedEffect, currentRGB(), std::nullopt, m_view.brightness, speed};
    log("🔵 RGBTabView: applySettings() STARTED - effect=%s brightness=%s",
        std::string(rawValue(setting.effect)).c_str(), fixedDecimals(setting.brightness, 2).c_str());
    log("🔵 RGBTabView: RGB color=(%d,%d,%d)", setting.color.r, setting.color.g, setting.color.b);
    log("🔵 RGBTabView: Creating Task to call setRGB");
    perform(
        [this, setting, zone = m_view.zone, life = this->life()](DeviceManager &manager) {
            log("🔵 RGBTabView: Task started, calling deviceManager.setRGB()");
            return manager.setRGB(life == this->life() ? m_view.zone : zone, setting);
        },
        [this](bool ok, bool isSamePage) {
            log("🔵 RGBTabView: setRGB returned: %s", ok ? "✅" : "❌");
            if (!ok && isSamePage) {
                loadFromDeviceState();
            }
        });
    log("🔵 RGBTabView: applySettings() FINISHED (Task created)");
}

void RGBTabModel::followDevice()
{
    const auto &device = deviceManager().connectedDevice();
    const auto id = device ? std::optional(device->id) : std::nullopt;
    if (id == m_knownDevice) {
        return; // its battery has changed
    }
    m_knownDevice = id;
    m_view.zone = firstZone();
    Q_EMIT zonesChanged();
    updateEffects();
    loadFromDeviceState();
}

void RGBTabModel::followState()
{
    const auto &settings = deviceManager().deviceState().rgbSettings;
    if (settings == m_knownRGBSettings) {
        return; // another setting has changed
    }
    m_knownRGBSettings = settings;
    if (!isApplying()) {
        loadFromDeviceState();
    }
}

void RGBTabModel::updateEffects()
{
    RowsModel::Rows rows;
    for (const auto effect : supportedEffects()) {
        const auto *row = effectRow(effect);
        rows.append({panelText(row->title), panelText(row->icon), effect == m_view.selectedEffect});
    }
    m_effects.setRows(std::move(rows));
}

/// In the interface language. Kept, since a drag asks for them many times a second.
void RGBTabModel::namePresets()
{
    m_presetNames.clear();
    for (int number = 1; number <= whitePreset; ++number) {
        m_presetNames.append(panelText(L10n::formatted("Color preset %d", std::to_string(number))));
    }
    m_presetNames.append(panelText(L10n::text("White")));
}

void RGBTabModel::updatePresets()
{
    RowsModel::Rows rows;
    for (int i = 0; i < std::ssize(presetHues); ++i) {
        const auto color =
            i == whitePreset ? QColor(Qt::white) : colorOfHue(presetHues[static_cast<std::size_t>(i)]);
        rows.append({color, m_presetNames[i], m_view.selectedPresetIndex == i});
    }
    m_presets.setRows(std::move(rows));
}

void RGBTabModel::publishLight()
{
    updateEffects();
    updatePresets();
    Q_EMIT lightChanged();
}

} // namespace kelmoth
