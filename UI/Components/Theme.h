#pragma once

#include "UI/Components/Palette.h"

#include <QColor>
#include <QObject>
#include <QQmlEngine>

namespace kelmoth {

/// The semantic colours and the user's wishes about looks, for QML. They change while the program runs.
/// Main thread.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY changed)
    /// Nothing moves or fades.
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed)
    /// True while all colours become those of another scheme: they fade for other reasons only.
    Q_PROPERTY(bool changing READ isChanging NOTIFY changingChanged)
    /// Nothing shines through.
    Q_PROPERTY(bool reduceTransparency READ reduceTransparency NOTIFY changed)
    /// A font with round ends, where one is installed; else the program's own.
    Q_PROPERTY(QString roundedFamily READ roundedFamily CONSTANT)
    Q_PROPERTY(QColor label READ label NOTIFY changed)
    Q_PROPERTY(QColor secondaryLabel READ secondaryLabel NOTIFY changed)
    Q_PROPERTY(QColor tertiaryLabel READ tertiaryLabel NOTIFY changed)
    Q_PROPERTY(QColor windowBackground READ windowBackground NOTIFY changed)
    Q_PROPERTY(QColor controlBackground READ controlBackground NOTIFY changed)
    Q_PROPERTY(QColor underPageBackground READ underPageBackground NOTIFY changed)
    /// For symbols, text, tints and glows; not under white text.
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    /// The accent as a surface under white text; where a gradient begins; and the lighter end of that.
    Q_PROPERTY(QColor accentPlain READ accentPlain NOTIFY changed)
    Q_PROPERTY(QColor accentFill READ accentFill NOTIFY changed)
    Q_PROPERTY(QColor accentFillEnd READ accentFillEnd NOTIFY changed)
    Q_PROPERTY(QColor separator READ separator NOTIFY changed)
    Q_PROPERTY(QColor outline READ outline NOTIFY changed)
    /// Covers what is behind it: cards, toasts.
    Q_PROPERTY(QColor regularMaterial READ regularMaterial NOTIFY changed)
    /// A tint of what is behind it: bars, badges. A sheet needs `windowBackground` under it.
    Q_PROPERTY(QColor ultraThinMaterial READ ultraThinMaterial NOTIFY changed)
    /// Laid over a control under the pointer.
    Q_PROPERTY(QColor hover READ hover NOTIFY changed)
    Q_PROPERTY(QColor press READ press NOTIFY changed)
    Q_PROPERTY(QColor knob READ knob NOTIFY changed)
    Q_PROPERTY(QColor red READ red NOTIFY changed)
    Q_PROPERTY(QColor orange READ orange NOTIFY changed)
    Q_PROPERTY(QColor yellow READ yellow NOTIFY changed)
    Q_PROPERTY(QColor green READ green NOTIFY changed)
    Q_PROPERTY(QColor blue READ blue NOTIFY changed)
    Q_PROPERTY(QColor purple READ purple NOTIFY changed)
    Q_PROPERTY(QColor cyan READ cyan NOTIFY changed)
    Q_PROPERTY(QColor white READ white NOTIFY changed)
    Q_PROPERTY(QColor gray READ gray NOTIFY changed)

public:
    explicit Theme(QObject *parent = nullptr);

    bool isDark() const { return m_scheme.dark; }
    bool reduceMotion() const { return m_reduceMotion; }
    bool isChanging() const { return m_isChanging; }
    bool reduceTransparency() const { return m_scheme.opaque; }
    static QString roundedFamily();
    QColor label() const { return m_palette.label; }
    QColor secondaryLabel() const { return m_palette.secondaryLabel; }
    QColor tertiaryLabel() const { return m_palette.tertiaryLabel; }
    QColor windowBackground() const { return m_palette.windowBackground; }
    QColor controlBackground() const { return m_palette.controlBackground; }
    QColor underPageBackground() const { return m_palette.underPageBackground; }
    QColor accent() const { return m_palette.accent; }
    QColor accentPlain() const { return m_palette.accentPlain; }
    QColor accentFill() const { return m_palette.accentFill; }
    QColor accentFillEnd() const { return m_palette.accentFillEnd; }
    QColor separator() const { return m_palette.separator; }
    QColor outline() const { return m_palette.outline; }
    QColor regularMaterial() const { return m_palette.regularMaterial; }
    QColor ultraThinMaterial() const { return m_palette.ultraThinMaterial; }
    QColor hover() const { return m_palette.hover; }
    QColor press() const { return m_palette.press; }
    QColor knob() const { return m_palette.knob; }
    QColor red() const { return m_palette.red; }
    QColor orange() const { return m_palette.orange; }
    QColor yellow() const { return m_palette.yellow; }
    QColor green() const { return m_palette.green; }
    QColor blue() const { return m_palette.blue; }
    QColor purple() const { return m_palette.purple; }
    QColor cyan() const { return m_palette.cyan; }
    QColor white() const { return m_palette.white; }
    QColor gray() const { return m_palette.gray; }

    /// The colour of a DPI stage by its stored name ("red" to "white"); grey for any other name.
    Q_INVOKABLE QColor stage(const QString &name) const;

    /// `color` at an opacity of 0 to 1; its own alpha is replaced.
    Q_INVOKABLE QColor alpha(const QColor &color, double opacity) const;

    /// `color`, darker or lighter where text in it would be hard to read on the panel.
    Q_INVOKABLE QColor readable(const QColor &color) const;

    /// The same for symbols, which may be fainter than text.
    Q_INVOKABLE QColor readableSymbol(const QColor &color) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void changed();
    void changingChanged();

private:
    void update();
    void setChanging(bool isChanging);

    Scheme m_scheme;
    bool m_reduceMotion = false;
    bool m_isChanging = false;
    Palette m_palette;
};

} // namespace kelmoth
