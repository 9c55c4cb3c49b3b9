#include "UI/Views/ButtonsTabModel.h"

#include "Core/Device/DeviceDefaults.h"
#include "Core/Device/KeyboardShortcut.h"
#include "Core/Services/Application.h"
#include "Core/Services/L10n.h"
#include "UI/Views/Texts.h"

#include <algorithm>
#include <array>

namespace kelmoth {

namespace {

constexpr Int profile = 1;
constexpr int profileCount = 5;

struct Modifier {
    std::string_view label;  ///< English, a translation key
    std::string_view prefix; ///< in the text of a shortcut
};

constexpr std::array modifierTable{
    Modifier{"⌃ Ctrl", "ctrl+"},
    Modifier{"⌥ Alt", "alt+"},
    Modifier{"⇧ Shift", "shift+"},
    Modifier{"⌘ Cmd", "cmd+"},
};

/// A key that can be assigned but is not offered.
constexpr std::string_view hiddenKey = "backspace";

/// How many buttons, from the first on, a model's list holds.
std::size_t buttonCount(const std::optional<RazerDevice> &device)
{
    const auto model = device ? device->model() : std::nullopt;
    if (!model) {
        return static_cast<std::size_t>(MouseButton::back) + 1;
    }
    switch (*model) {
    case BasiliskProductID::basiliskV3XHyperSpeed:
    case BasiliskProductID::basiliskV3XHyperSpeed2:
        return static_cast<std::size_t>(MouseButton::dpiUp) + 1;
    default:
        return allCases<MouseButton>().size();
    }
}

/// What a button does as long as nothing else is known of it: what it does on a mouse that has all of them.
const ButtonAction &smartDefault(MouseButton button)
{
    static const auto &all = []() -> const auto & {
        RazerDevice complete;
        complete.productID = rawValue(BasiliskProductID::basiliskV3);
        return defaultButtonMappings(complete);
    }();
    return all.at(button);
}

/// The name under which an action is shown: a key or a macro as it is written, whatever its text may mean.
QString shownName(const ButtonAction &action)
{
    const auto *text = std::get_if<std::string>(&action.value());
    return panelText(text && !text->empty() ? actionName(action) : L10n::text(actionName(action)));
}

/// The row of an action among those that can be picked: that of its case, whatever its value; -1 for none.
int rowOf(const ButtonAction &action, std::span<const ButtonActionChoice> choices)
{
    const auto found = std::ranges::find_if(
        choices, [&](const auto &choice) { return choice.action.which() == action.which(); });
    return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

} // namespace

ButtonsTabModel::ButtonsTabModel(DeviceManager &manager, Preferences &preferences, QObject *parent)
    : TabModel(manager, parent)
{
    static_assert(modifierTable.size() == modifierCount);
    connect(&manager, &DeviceManager::connectedDeviceChanged, this, &ButtonsTabModel::updateRows);
    connect(&manager, &DeviceManager::deviceStateChanged, this, &ButtonsTabModel::updateRows);
    connect(&preferences, &Preferences::languageModeChanged, this, &ButtonsTabModel::updateRows);
    ButtonsTabModel::shown();
}

void ButtonsTabModel::reset()
{
    TabModel::reset();
    m_view = {};
    shown();
}

void ButtonsTabModel::shown()
{
    updateRows();
    updateModifiers();
}

QStringList ButtonsTabModel::pickerKeys() const
{
    QStringList keys;
    for (const auto name : keyNames()) {
        if (name != hiddenKey) {
            keys.append(panelText(name));
        }
    }
    return keys;
}

QStringList ButtonsTabModel::profiles() const
{
    QStringList numbers;
    for (int number = 1; number <= profileCount; ++number) {
        numbers.append(panelText(L10n::formatted("%lld", std::to_string(number))));
    }
    return numbers;
}

std::vector<MouseButton> ButtonsTabModel::availableButtons() const
{
    const auto all = allCases<MouseButton>();
    const auto count = buttonCount(deviceManager().connectedDevice());
    return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count)};
}

std::span<const ButtonActionChoice> ButtonsTabModel::availableActions() const
{
    const auto &device = deviceManager().connectedDevice();
    return device ? buttonActionChoices(device->capabilities().hasHyperScroll)
                  : std::span<const ButtonActionChoice>();
}

ButtonAction ButtonsTabModel::currentAction(MouseButton button) const
{
    const auto &mappings = deviceManager().deviceState().buttonMappings;
    const auto found = mappings.find(button);
    return found == mappings.end() ? smartDefault(button) : found->second;
}

/// The button of a number that a row carries; none when it is not listed now.
std::optional<MouseButton> ButtonsTabModel::listedButton(int number) const
{
    const auto listed = availableButtons();
    const auto found =
        std::ranges::find(listed, number, [](MouseButton button) { return static_cast<int>(button); });
    return found == listed.end() ? std::nullopt : std::optional(*found);
}

void ButtonsTabModel::toggleButton(int number)
{
    const auto button = listedButton(number);
    m_view.expandedButton = button == m_view.expandedButton ? std::nullopt : button;
    updateRows();
}

bool ButtonsTabModel::closePicker()
{
    const bool isOpen = m_view.expandedButton.has_value();
    m_view.expandedButton.reset();
    updateRows();
    return isOpen;
}

void ButtonsTabModel::handleActionSelection(int number, int row)
{
    const auto button = listedButton(number);
    const auto actions = availableActions();
    if (!button || row < 0 || row >= std::ssize(actions)) {
        return;
    }
    const auto &action = actions[static_cast<std::size_t>(row)].action;
    m_view.showKeyInput = action.which() == ButtonAction::Case::keyPress;
    m_view.showProfilePicker = action.which() == ButtonAction::Case::profileSwitch;
    if (m_view.showKeyInput || m_view.showProfilePicker) {
        m_view.editingButton = button;
    } else {
        m_view.expandedButton.reset();
    }
    updateRows(); // closes the picker, whose focus goes to a row that can still take it
    if (!m_view.showKeyInput && !m_view.showProfilePicker) {
        setAction(*button, action);
    }
}

void ButtonsTabModel::toggleModifier(int modifier)
{
    if (modifier < 0 || modifier >= std::ssize(m_view.modifiers)) {
        return;
    }
    bool &isOn = m_view.modifiers[static_cast<std::size_t>(modifier)];
    isOn = !isOn;
    updateModifiers();
}

void ButtonsTabModel::commitPickedKey(const QString &key)
{
    if (!m_view.showKeyInput || !m_view.editingButton || !pickerKeys().contains(key)) {
        return;
    }
    std::string shortcut;
    for (std::size_t i = 0; i < modifierTable.size(); ++i) {
        if (m_view.modifiers[i]) {
            shortcut += modifierTable[i].prefix;
        }
    }
    m_view.modifiers = {};
    m_view.showKeyInput = false;
    m_view.expandedButton.reset();
    updateModifiers();
    updateRows();
    setAction(*m_view.editingButton, ButtonAction::keyPress(shortcut + key.toStdString()));
}

void ButtonsTabModel::pickProfile(int number)
{
    if (!m_view.showProfilePicker || !m_view.editingButton || number < 1 || number > profileCount) {
        return;
    }
    m_view.showProfilePicker = false;
    m_view.expandedButton.reset();
    updateRows();
    setAction(*m_view.editingButton, ButtonAction::profileSwitch(number));
}

void ButtonsTabModel::setAction(MouseButton button, ButtonAction action)
{
    if (isApplying()) {
        return;
    }
    m_applyingButton = button;
    perform([button, action = std::move(action)](
                DeviceManager &manager) { return manager.setButtonMapping(button, action, profile, false); },
            [](bool ok, bool) {
                if (!ok) {
                    log("⚠️ Failed to apply button mapping to device");
                }
            });
}

void ButtonsTabModel::updateRows()
{
    const auto choices = availableActions();
    RowsModel::Rows actions;
    for (const auto &choice : choices) {
        actions.append({panelText(choice.label), panelText(choice.icon)});
    }
    m_actions.setRows(std::move(actions));

    RowsModel::Rows buttons;
    for (const auto button : availableButtons()) {
        const auto action = currentAction(button);
        const bool isEdited = m_view.editingButton == button;
        buttons.append({static_cast<int>(button), panelText(label(button)), panelText(icon(button)),
                        shownName(action), m_view.expandedButton == button, rowOf(action, choices),
                        isEdited && m_view.showKeyInput, isEdited && m_view.showProfilePicker});
    }
    m_buttons.setRows(std::move(buttons));
}

void ButtonsTabModel::updateModifiers()
{
    RowsModel::Rows rows;
    for (std::size_t i = 0; i < modifierTable.size(); ++i) {
        rows.append({panelText(modifierTable[i].label), m_view.modifiers[i]});
    }
    m_modifiers.setRows(std::move(rows));
}

} // namespace kelmoth
