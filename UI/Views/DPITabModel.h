#pragma once

#include "Core/Services/Preferences.h"
#include "UI/Views/RowsModel.h"
#include "UI/Views/TabModel.h"

namespace kelmoth {

/// The DPI page. The view shows of it:
/// - the card: `shownDPIText` large, `stageText` under it (both ready to show), the slider (`sliderDPI` of
/// 100
///   to `maxDPI` in steps of 100) and `maxDPIText` under its right end. A drag, and each step of a key, is
///   `startEditing()`, `moveSlider(value)` any number of times, `endEditing()`, which writes;
/// - `stages`: a button for each row of `stage` (what `pickStage` takes), `number` (the text "1" and on),
///   `label` ("1.6K"), `colorName` (of a stage colour of the theme), `selected`;
/// - `presets`: a button for each row of `value` (what `pickPreset` takes), `label`, `selected`.
/// All of it is disabled while not `isEnabled`.
class DPITabModel : public kelmoth::TabModel { // in full: for qmllint
    Q_OBJECT
    Q_PROPERTY(double sliderDPI READ sliderDPI NOTIFY sliderDPIChanged)
    Q_PROPERTY(bool sliderEditing READ sliderEditing NOTIFY sliderEditingChanged)
    Q_PROPERTY(int maxDPI READ maxDPI NOTIFY limitsChanged)
    Q_PROPERTY(QString maxDPIText READ maxDPIText NOTIFY limitsChanged)
    Q_PROPERTY(QString shownDPIText READ shownDPIText NOTIFY shownDPIChanged)
    Q_PROPERTY(QString stageText READ stageText NOTIFY stageTextChanged)
    Q_PROPERTY(kelmoth::RowsModel *stages READ stages CONSTANT)
    Q_PROPERTY(kelmoth::RowsModel *presets READ presets CONSTANT)

public:
    DPITabModel(DeviceManager &deviceManager, Preferences &preferences, QObject *parent = nullptr);

    void reset() override;
    void shown() override;

    double sliderDPI() const { return m_sliderDPI; }
    bool sliderEditing() const { return m_sliderEditing; }
    int maxDPI() const;
    QString maxDPIText() const;

    /// The slider's DPI while it is dragged, else that of the active stage: "1 600".
    QString shownDPIText() const;

    /// "Stage 3", in the interface language.
    QString stageText() const;

    RowsModel *stages() { return &m_stages; }
    RowsModel *presets() { return &m_presets; }

    Q_INVOKABLE void startEditing();
    /// Takes the nearest step of the slider; nothing while it is not dragged.
    Q_INVOKABLE void moveSlider(double value);
    Q_INVOKABLE void endEditing();
    Q_INVOKABLE void pickStage(int stage);
    Q_INVOKABLE void pickPreset(int dpi);

Q_SIGNALS:
    void sliderDPIChanged();
    void sliderEditingChanged();
    void shownDPIChanged();
    void limitsChanged();
    void stageTextChanged();

private:
    /// The DPI of the active stage; 1600 when there is no such stage.
    Int currentStageDPI() const;
    std::optional<Int> activeStageDPI() const;
    void perform(Write write);
    void writeDPI(Int dpi);
    void followState();
    void updateRows();
    void setSliderDPI(double dpi);
    void setSliderEditing(bool isEditing);

    std::vector<DPIStage> m_knownStages; ///< as they were when the slider last followed them
    Int m_knownStage = 0;
    double m_sliderDPI = 0.0;
    bool m_sliderEditing = false;
    RowsModel m_stages{{"stage", "number", "label", "colorName", "selected"}};
    RowsModel m_presets{{"value", "label", "selected"}};
};

} // namespace kelmoth
