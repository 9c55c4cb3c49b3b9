#pragma once

#include "Core/Services/Preferences.h"
#include "UI/Views/RowsModel.h"
#include "UI/Views/TabModel.h"

#include <QStringList>

namespace kelmoth {

/// The buttons page. The view shows of it:
/// - `buttons`: a row for each of `button` (what the calls below take), `label` (a key), `icon`, `actionName`
///   (ready to show), `expanded`, `selectedAction` (a row of `actions`;
///   -1 for none), `showsKeyInput`, `showsProfilePicker`; a tap is `toggleButton(button)`;
/// - under an expanded row `actions`: a button for each row of `label` (a key) and `icon`, selected when its
///   row is the button's `selectedAction`; a tap is `handleActionSelection(button, row)`;
/// - under that, while the row says so, the key input: `modifiers`, toggles of `label` (a key) and `selected`
///   for `toggleModifier(row)`, and a button for each of `pickerKeys` (keys) for `commitPickedKey(key)`;
/// - or the profile picker: a button for each of `profiles` ("1" to "5") for `pickProfile(number)`.
/// All of it is disabled while not `isEnabled`.
class ButtonsTabModel : public kelmoth::TabModel { // in full: for qmllint
    Q_OBJECT
    Q_PROPERTY(kelmoth::RowsModel *buttons READ buttons CONSTANT)
    Q_PROPERTY(kelmoth::RowsModel *actions READ actions CONSTANT)
    Q_PROPERTY(kelmoth::RowsModel *modifiers READ modifiers CONSTANT)
    Q_PROPERTY(QStringList pickerKeys READ pickerKeys CONSTANT)
    Q_PROPERTY(QStringList profiles READ profiles CONSTANT)

public:
    ButtonsTabModel(DeviceManager &deviceManager, Preferences &preferences, QObject *parent = nullptr);

    void reset() override;
    void shown() override;

    RowsModel *buttons() { return &m_buttons; }
    RowsModel *actions() { return &m_actions; }
    RowsModel *modifiers() { return &m_modifiers; }
    QStringList pickerKeys() const;
    QStringList profiles() const;

    /// The row whose action picker is open.
    std::optional<MouseButton> expandedButton() const { return m_view.expandedButton; }
    /// The button whose write is in flight.
    std::optional<MouseButton> applyingButton() const
    {
        return isApplying() ? m_applyingButton : std::nullopt;
    }

    /// `number` is the `button` of a row.
    Q_INVOKABLE void toggleButton(int number);
    /// Closes the row that is expanded; false when none is.
    bool closePicker();
    /// Writes the action of that row, or opens the input for the value that it needs.
    Q_INVOKABLE void handleActionSelection(int number, int row);
    /// 0 Ctrl, 1 Alt, 2 Shift, 3 Cmd.
    Q_INVOKABLE void toggleModifier(int modifier);
    /// Writes the key, with the modifiers that are on, to the button that the key input is for.
    Q_INVOKABLE void commitPickedKey(const QString &key);
    Q_INVOKABLE void pickProfile(int number);

private:
    static constexpr std::size_t modifierCount = 4;

    /// What lives as long as the page.
    struct ViewState {
        std::optional<MouseButton> expandedButton;
        std::array<bool, modifierCount> modifiers{};
        bool showKeyInput = false;
        bool showProfilePicker = false;
        std::optional<MouseButton> editingButton; ///< whose key or profile is asked for
    };

    std::vector<MouseButton> availableButtons() const;
    std::span<const ButtonActionChoice> availableActions() const;
    ButtonAction currentAction(MouseButton button) const;
    std::optional<MouseButton> listedButton(int number) const;
    void setAction(MouseButton button, ButtonAction action);
    void updateRows();
    void updateModifiers();

    ViewState m_view;
    std::optional<MouseButton> m_applyingButton; ///< of the last write
    RowsModel m_buttons{{"button", "label", "icon", "actionName", "expanded", "selectedAction",
                         "showsKeyInput", "showsProfilePicker"}};
    RowsModel m_actions{{"label", "icon"}};
    RowsModel m_modifiers{{"label", "selected"}};
};

} // namespace kelmoth
