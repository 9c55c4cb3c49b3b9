#include "UI/Views/DPITabModel.h"

#include "Core/Device/DPIRange.h"
#include "Core/Services/L10n.h"
#include "UI/Views/Texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

namespace kelmoth {

namespace {

// What is shown while no mouse says anything else.
constexpr Int usualDPI = 1600;
constexpr Int usualMaxDPI = 18000;
constexpr std::array<Int, 8> usualPresets{400, 800, 1600, 2400, 3200, 6400, 12000, 18000};

} // namespace

DPITabModel::DPITabModel(DeviceManager &manager, Preferences &preferences, QObject *parent)
    : TabModel(manager, parent)
{
    connect(&manager, &DeviceManager::deviceStateChanged, this, &DPITabModel::followState);
    connect(&manager, &DeviceManager::connectedDeviceChanged, this, [this] {
        updateRows();
        Q_EMIT limitsChanged();
    });
    connect(&preferences, &Preferences::languageModeChanged, this, &DPITabModel::stageTextChanged);
    followState();
    setSliderDPI(static_cast<double>(currentStageDPI()));
}

void DPITabModel::reset()
{
    TabModel::reset();
    shown();
}

void DPITabModel::shown()
{
    setSliderEditing(false);
    setSliderDPI(static_cast<double>(currentStageDPI()));
}

int DPITabModel::maxDPI() const
{
    const auto &device = deviceManager().connectedDevice();
    return static_cast<int>(device ? device->capabilities().maxDPI : usualMaxDPI);
}

QString DPITabModel::maxDPIText() const
{
    return panelText(shortDPI(maxDPI()));
}

std::optional<Int> DPITabModel::activeStageDPI() const
{
    const auto &state = deviceManager().deviceState();
    if (state.currentDPIStage < 0 || state.currentDPIStage >= std::ssize(state.dpiStages)) {
        return std::nullopt;
    }
    return state.dpiStages[static_cast<std::size_t>(state.currentDPIStage)].dpi;
}

Int DPITabModel::currentStageDPI() const
{
    return activeStageDPI().value_or(usualDPI);
}

QString DPITabModel::shownDPIText() const
{
    return panelText(formattedDPI(m_sliderEditing ? static_cast<Int>(m_sliderDPI) : currentStageDPI()));
}

QString DPITabModel::stageText() const
{
    return panelText(L10n::text("Stage")) + QLatin1Char(' ') +
           QString::number(deviceManager().deviceState().currentDPIStage + 1);
}

void DPITabModel::startEditing()
{
    setSliderEditing(true);
}

void DPITabModel::moveSlider(double value)
{
    if (!m_sliderEditing || !std::isfinite(value)) {
        return;
    }
    const double step = dpiStep;
    setSliderDPI(std::clamp(std::round(value / step) * step, double{lowestDPI}, double(maxDPI())));
}

void DPITabModel::endEditing()
{
    if (!m_sliderEditing) {
        return;
    }
    setSliderEditing(false);
    writeDPI(static_cast<Int>(m_sliderDPI));
}

void DPITabModel::pickStage(int stage)
{
    perform([stage](DeviceManager &manager) { return manager.setDPIStage(stage); });
}

void DPITabModel::pickPreset(int dpi)
{
    writeDPI(dpi);
}

void DPITabModel::writeDPI(Int dpi)
{
    const Int stage = deviceManager().deviceState().currentDPIStage;
    perform([dpi, stage](DeviceManager &manager) { return manager.setDPI(dpi, stage); });
}

void DPITabModel::perform(Write write)
{
    TabModel::perform(std::move(write), [this](bool, bool isSamePage) {
        if (isSamePage) {
            setSliderDPI(static_cast<double>(currentStageDPI()));
        }
    });
}

void DPITabModel::followState()
{
    const auto &state = deviceManager().deviceState();
    if (state.dpiStages == m_knownStages && state.currentDPIStage == m_knownStage) {
        return; // another setting has changed
    }
    m_knownStages = state.dpiStages;
    m_knownStage = state.currentDPIStage;
    if (!m_sliderEditing) {
        setSliderDPI(static_cast<double>(currentStageDPI()));
    }
    updateRows();
    Q_EMIT shownDPIChanged();
    Q_EMIT stageTextChanged();
}

void DPITabModel::updateRows()
{
    const auto &state = deviceManager().deviceState();
    RowsModel::Rows stages;
    for (const auto &stage : state.dpiStages) {
        stages.append({static_cast<int>(stage.index), QString::number(stage.index + 1),
                       panelText(shortDPI(stage.dpi)), panelText(rawValue(stage.color)),
                       stage.index == state.currentDPIStage});
    }
    m_stages.setRows(std::move(stages));

    const auto &device = deviceManager().connectedDevice();
    RowsModel::Rows presets;
    const auto offered = device ? std::span<const Int>(device->capabilities().dpiQuickPresets)
                                : std::span<const Int>(usualPresets);
    for (const Int dpi : offered) {
        presets.append({static_cast<int>(dpi), panelText(shortDPI(dpi)), dpi == activeStageDPI()});
    }
    m_presets.setRows(std::move(presets));
}

void DPITabModel::setSliderDPI(double dpi)
{
    // Also when it is the same: a control that was moved elsewhere comes back to it.
    m_sliderDPI = dpi;
    Q_EMIT sliderDPIChanged();
    if (m_sliderEditing) {
        Q_EMIT shownDPIChanged();
    }
}

void DPITabModel::setSliderEditing(bool isEditing)
{
    if (isEditing == m_sliderEditing) {
        return;
    }
    m_sliderEditing = isEditing;
    Q_EMIT sliderEditingChanged();
    Q_EMIT shownDPIChanged();
}

} // namespace kelmoth
