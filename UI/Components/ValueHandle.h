#pragma once

#include "UI/Components/Operable.h"

#include <optional>

namespace kelmoth {

/// A value on a line along the item's width, set by dragging, by keys and by assistive tools. The owner binds
/// `value` and takes what `moved` tells; the item never changes it. A drag is one edit, and so is each key,
/// all repeats of a key that is held, and each step of a tool.
class ValueHandle : public kelmoth::Operable { // in full: so the type's description for qmllint names it
    Q_OBJECT
    QML_ELEMENT
    /// Values are whole multiples of it above the least one; 0: any value.
    Q_PROPERTY(double step MEMBER m_step NOTIFY stepChanged)
    /// How far from the item's ends the ends of the range lie.
    Q_PROPERTY(double inset MEMBER m_inset NOTIFY insetChanged)
    /// Of the knob, whose middle stands at the value and which is taken hold of where it is pressed. It may
    /// stand over the item's ends.
    Q_PROPERTY(double knobWidth MEMBER m_knobWidth NOTIFY knobWidthChanged)
    /// Whether the pointer is on the knob or drags it.
    Q_PROPERTY(bool knobHovered READ isKnobHovered NOTIFY knobHoveredChanged)
    /// Where the value lies in its range, 0 to 1.
    Q_PROPERTY(double fraction READ fraction NOTIFY fractionChanged)
    /// Whether a drag is under way, or the repeats of a key.
    Q_PROPERTY(bool editing READ isEditing NOTIFY editingChanged)

public:
    explicit ValueHandle(QQuickItem *parent = nullptr);

    double fraction() const;
    bool isEditing() const { return m_editing; }
    bool isKnobHovered() const { return m_isKnobHovered; }

    bool contains(const QPointF &point) const override;

Q_SIGNALS:
    void stepChanged();
    void insetChanged();
    void knobWidthChanged();
    void knobHoveredChanged();
    void fractionChanged();
    void editingChanged();

    void editingStarted();
    /// The user wants this value, which is in range.
    void moved(double value);
    void editingEnded();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverMoveEvent(QHoverEvent *event) override;
    void hoverLeaveEvent(QHoverEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;

private:
    std::optional<double> wishOf(int key) const;
    double possible(double wish) const;
    double valueAt(double x) const;
    double knobX() const;
    bool isOnKnob(double x) const;
    void edit(double wish);
    void setEditing(bool editing);
    void followPointer(std::optional<double> x);
    void updateKnob();

    double m_step = 0;
    double m_inset = 0;
    double m_knobWidth = 0;
    bool m_editing = false;
    int m_heldKey = 0;               ///< whose repeats are an edit; 0: none
    double m_hold = 0;               ///< where the knob is held, from its middle
    std::optional<double> m_pointer; ///< where it is, while it is on the item
    bool m_isKnobHovered = false;
};

} // namespace kelmoth
