#pragma once

#include <QAccessible>
#include <QBasicTimer>
#include <QQuickItem>

namespace kelmoth {

/// An item that assistive tools can operate; in their tree it is a leaf. What they ask for is told by
/// signals, and only while the item is enabled. (The toolkit's own interface of items does not tell that one
/// is disabled.) An item is in the tree once `Accessible.role` is set on it.
class Operable : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The name: what is to be seen on it, or what its symbol means.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QString description READ description WRITE setDescription NOTIFY descriptionChanged)
    /// Whether its owner lets it be used: it is disabled while not, and looks so. What is disabled from
    /// above, for a while or under a veil, keeps its looks. An item that has the keyboard's focus keeps it:
    /// it only counts as disabled, and becomes so once the focus leaves.
    Q_PROPERTY(bool usable READ isUsable WRITE setUsable NOTIFY usableChanged)
    /// Whether it looks so: only after a while, since a moment's pause is not worth a flicker.
    Q_PROPERTY(bool dimmed READ isDimmed NOTIFY dimmedChanged)
    /// An Accessible.Role; Accessible.Slider has a value.
    Q_PROPERTY(int role READ role WRITE setRole NOTIFY roleChanged)
    Q_PROPERTY(bool selectable MEMBER m_selectable WRITE setSelectable NOTIFY selectableChanged)
    Q_PROPERTY(bool selected READ isSelected WRITE setSelected NOTIFY selectedChanged)
    Q_PROPERTY(bool checkable MEMBER m_checkable WRITE setCheckable NOTIFY checkableChanged)
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY checkedChanged)
    /// Whether pressing shows or hides what belongs to it, and whether that is shown.
    Q_PROPERTY(bool expandable MEMBER m_expandable NOTIFY expandableChanged)
    Q_PROPERTY(bool expanded READ isExpanded WRITE setExpanded NOTIFY expandedChanged)
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(double minimumValue MEMBER m_minimumValue NOTIFY rangeChanged)
    Q_PROPERTY(double maximumValue MEMBER m_maximumValue NOTIFY rangeChanged)
    Q_PROPERTY(double stepSize MEMBER m_stepSize NOTIFY rangeChanged)

public:
    explicit Operable(QQuickItem *parent = nullptr);

    /// Lets assistive tools find the items of this type. Once or more, before the first of them is shown.
    static void announce();

    QString text() const { return m_text; }
    QString description() const { return m_description; }
    bool isUsable() const { return m_usable; }
    /// Whether it reacts: it is enabled, from above, too, and may be used.
    bool isOperable() const { return isEnabled() && m_usable; }
    bool isDimmed() const { return m_dimmed; }
    int role() const { return m_role; }
    bool isSelected() const { return m_selected; }
    bool isChecked() const { return m_checked; }
    bool isExpandable() const { return m_expandable; }
    bool isExpanded() const { return m_expanded; }
    double value() const { return m_value; }
    double minimumValue() const { return m_minimumValue; }
    double maximumValue() const { return m_maximumValue; }
    double stepSize() const { return m_stepSize; }
    bool isSelectable() const { return m_selectable; }
    bool isCheckable() const { return m_checkable; }

    /// Gives it the keyboard's focus, also while it may not be used.
    Q_INVOKABLE void takeFocus();

    void setText(const QString &text);
    void setDescription(const QString &description);
    void setUsable(bool usable);
    void setRole(int role);
    void setSelectable(bool selectable);
    void setSelected(bool selected);
    void setCheckable(bool checkable);
    void setChecked(bool checked);
    void setExpanded(bool expanded);
    void setValue(double value);

Q_SIGNALS:
    void textChanged();
    void descriptionChanged();
    void usableChanged();
    void dimmedChanged();
    void roleChanged();
    void selectableChanged();
    void selectedChanged();
    void checkableChanged();
    void checkedChanged();
    void expandableChanged();
    void expandedChanged();
    void valueChanged();
    void rangeChanged();

    /// A tool presses or toggles it.
    void pressWished();
    /// A tool wants another value; it may be out of range.
    void valueWished(double wish);

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void setDimmed(bool dimmed);
    void tellOperable();

    QString m_text;
    QString m_description;
    bool m_usable = true;
    bool m_wasOperable = true; ///< as assistive tools know it
    bool m_dimmed = false;
    QBasicTimer m_dimming;
    int m_role = QAccessible::Button;
    bool m_selectable = false;
    bool m_selected = false;
    bool m_checkable = false;
    bool m_checked = false;
    bool m_expandable = false;
    bool m_expanded = false;
    double m_value = 0;
    double m_minimumValue = 0;
    double m_maximumValue = 1;
    double m_stepSize = 0.05;
};

} // namespace kelmoth
