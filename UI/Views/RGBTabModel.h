#pragma once

#include "Core/Services/Preferences.h"
#include "UI/Views/RowsModel.h"
#include "UI/Views/TabModel.h"

#include <QColor>
#include <QStringList>

namespace kelmoth {

/// The lighting page. The view shows of it:
/// - a segmented picker of `zoneTitles` (keys) at `zoneIndex`, while `showsZonePicker`; a pick is
///   `pickZone(index)`;
/// - the preview: grey at `previewOpacity` while `isOff`, else `currentColor` at `previewOpacity` with a
/// glow;
/// - `effects`: a button for each row of `label` (a key), `icon`, `selected`; a tap is `pickEffect(row)`;
/// - `presets`: a swatch for each row of `presetColor`, `label` (its accessible name, ready to show),
///   `selected`; a tap is `pickPreset(row)`;
/// - the hue strip at `hue`: `dragHue(position)` any number of times, then `endHueDrag()`, which writes; the
///   brightness strip at `brightness` with `dragBrightness`, `endBrightnessDrag()` and `brightnessText`
///   ("25%"). Positions are fractions of the strip's width; outside 0 to 1 its nearer end counts.
/// All of it is disabled while not `isEnabled`.
class RGBTabModel : public kelmoth::TabModel { // in full: for qmllint
    Q_OBJECT
    Q_PROPERTY(QStringList zoneTitles READ zoneTitles NOTIFY zonesChanged)
    Q_PROPERTY(int zoneIndex READ zoneIndex NOTIFY zonesChanged)
    Q_PROPERTY(bool showsZonePicker READ showsZonePicker NOTIFY zonesChanged)
    Q_PROPERTY(bool isOff READ isOff NOTIFY lightChanged)
    Q_PROPERTY(QColor currentColor READ currentColor NOTIFY lightChanged)
    Q_PROPERTY(double previewOpacity READ previewOpacity NOTIFY lightChanged)
    Q_PROPERTY(double hue READ hue NOTIFY lightChanged)
    Q_PROPERTY(double brightness READ brightness NOTIFY lightChanged)
    Q_PROPERTY(QString brightnessText READ brightnessText NOTIFY lightChanged)
    Q_PROPERTY(kelmoth::RowsModel *effects READ effects CONSTANT)
    Q_PROPERTY(kelmoth::RowsModel *presets READ presets CONSTANT)

public:
    RGBTabModel(DeviceManager &deviceManager, Preferences &preferences, QObject *parent = nullptr);

    void reset() override;
    void shown() override;

    /// The zone that is edited.
    RGBZone zone() const { return m_view.zone; }
    QStringList zoneTitles() const;
    /// The place of the zone in the picker; -1 when the mouse has no such zone.
    int zoneIndex() const;
    bool showsZonePicker() const { return zones().size() > 1; }

    RGBEffect selectedEffect() const { return m_view.selectedEffect; }
    bool isOff() const { return m_view.selectedEffect == RGBEffect::off; }

    /// 0.0 to 1.0
    double hue() const { return m_view.hue; }
    double brightness() const { return m_view.brightness; }
    /// In whole per cent, cut off.
    QString brightnessText() const;

    /// The highlighted swatch; none when the hue was set freely.
    std::optional<int> selectedPresetIndex() const { return m_view.selectedPresetIndex; }

    /// The colour that is edited, as it is shown and as it is sent.
    QColor currentColor() const;
    RGBColor currentRGB() const;
    double previewOpacity() const;

    RowsModel *effects() { return &m_effects; }
    RowsModel *presets() { return &m_presets; }

    Q_INVOKABLE void pickZone(int index);
    Q_INVOKABLE void pickEffect(int row);
    Q_INVOKABLE void pickPreset(int row);
    Q_INVOKABLE void dragHue(double position);
    Q_INVOKABLE void endHueDrag();
    Q_INVOKABLE void dragBrightness(double position);
    Q_INVOKABLE void endBrightnessDrag();

Q_SIGNALS:
    void zonesChanged();
    void lightChanged();

private:
    /// What lives as long as the page.
    struct ViewState {
        double hue = 0.65;
        double brightness = 0.25;
        RGBEffect selectedEffect = RGBEffect::staticColor;
        std::optional<int> selectedPresetIndex = 3;
        RGBZone zone = RGBZone::scrollWheel;
    };

    std::vector<RGBZone> zones() const;
    RGBZone firstZone() const;
    std::vector<RGBEffect> supportedEffects() const;
    void loadFromDeviceState();
    void loadColor(const RGBColor &color);
    void applySettings();
    void followDevice();
    void followState();
    void updateEffects();
    void namePresets();
    void updatePresets();
    void publishLight();

    ViewState m_view;
    std::optional<QUuid> m_knownDevice;               ///< the one that the zones were last taken from
    std::map<RGBZone, RGBSetting> m_knownRGBSettings; ///< as they were when they last changed
    QStringList m_presetNames;
    RowsModel m_effects{{"label", "icon", "selected"}};
    RowsModel m_presets{{"presetColor", "label", "selected"}};
};

} // namespace kelmoth
