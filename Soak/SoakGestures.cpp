#include "Soak/SoakGestures.h"

#include <QWindow>

#include <algorithm>
#include <array>

namespace kelmoth {

int SoakGestures::upTo(int last)
{
    return std::uniform_int_distribution(0, std::max(last, 0))(m_random);
}

double SoakGestures::fraction()
{
    return std::uniform_real_distribution(0.0, 1.0)(m_random);
}

bool SoakGestures::turnPages(ContentModel &panel, QWindow &window)
{
    switch (upTo(9)) {
    case 0:
        panel.openAbout();
        break;
    case 1:
        panel.dismiss();
        break;
    case 2:
        window.hide();
        break;
    default:
        panel.selectTab(upTo(3));
        return true;
    }
    return false;
}

std::optional<SoakGestures::Gesture> SoakGestures::use(ContentModel &panel)
{
    const std::array use{&SoakGestures::useDPI, &SoakGestures::useLight, &SoakGestures::useButtons,
                         &SoakGestures::useSettings};
    return (this->*use.at(static_cast<std::size_t>(panel.selectedTab())))(panel);
}

std::optional<SoakGestures::Gesture> SoakGestures::useDPI(ContentModel &panel)
{
    auto &page = *panel.dpiTab();
    if (!page.isEnabled()) {
        return std::nullopt;
    }
    switch (upTo(2)) {
    case 0:
        page.pickStage(upTo(page.stages()->count() - 1));
        break;
    case 1:
        page.startEditing();
        page.moveSlider(fraction() * page.maxDPI());
        page.moveSlider(fraction() * page.maxDPI());
        page.endEditing();
        break;
    default:
        page.pickPreset(page.presets()->value(upTo(page.presets()->count() - 1), "value").toInt());
    }
    return Gesture{&page, "DPI stages", 1};
}

std::optional<SoakGestures::Gesture> SoakGestures::useLight(ContentModel &panel)
{
    auto &page = *panel.rgbTab();
    if (!page.isEnabled()) {
        return std::nullopt;
    }
    switch (upTo(4)) {
    case 0:
        page.pickZone(upTo(static_cast<int>(page.zoneTitles().size()) - 1));
        break;
    case 1:
        page.pickEffect(upTo(page.effects()->count() - 1));
        break;
    case 2:
        page.pickPreset(upTo(page.presets()->count() - 1));
        break;
    case 3:
        page.dragHue(fraction());
        page.dragHue(fraction());
        page.endHueDrag();
        break;
    default:
        page.dragBrightness(fraction());
        page.endBrightnessDrag();
    }
    return Gesture{&page, "lighting", 3};
}

std::optional<SoakGestures::Gesture> SoakGestures::useButtons(ContentModel &panel)
{
    auto &page = *panel.buttonsTab();
    if (!page.isEnabled() || page.buttons()->count() == 0) {
        return std::nullopt;
    }
    const int row = upTo(page.buttons()->count() - 1);
    const int number = page.buttons()->value(row, "button").toInt();
    page.toggleButton(number);
    page.handleActionSelection(number, upTo(page.actions()->count() - 1));
    if (page.buttons()->value(row, "showsKeyInput").toBool()) {
        page.toggleModifier(upTo(3));
        const auto keys = page.pickerKeys();
        page.commitPickedKey(keys.at(upTo(static_cast<int>(keys.size()) - 1)));
    } else if (page.buttons()->value(row, "showsProfilePicker").toBool()) {
        page.pickProfile(1 + upTo(4));
    }
    return Gesture{&page, "button", 3};
}

std::optional<SoakGestures::Gesture> SoakGestures::useSettings(ContentModel &panel)
{
    auto &page = *panel.settingsTab();
    const auto any = [this](RowsModel &rows) { return rows.value(upTo(rows.count() - 1), "value").toInt(); };
    const int choice = upTo(9);
    if (choice == 0) {
        page.pickAppearance(any(*page.appearanceChoices()));
    } else if (choice == 1) {
        page.pickLanguage(any(*page.languageChoices()));
    } else if (page.liftOffEnabled()) {
        page.pickLiftOff(any(*page.liftOffChoices()));
        return Gesture{&page, "lift-off distance", 3};
    }
    return std::nullopt;
}

} // namespace kelmoth
