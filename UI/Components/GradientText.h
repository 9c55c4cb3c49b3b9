#pragma once

#include "UI/Components/PictureItem.h"

#include <QColor>
#include <QFont>
#include <QQmlEngine>

namespace kelmoth {

/// A line of text in the system's font, its colour running from the leading to the trailing edge.
class GradientText : public kelmoth::PictureItem { // in full: for qmllint, as in Symbol
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER m_text WRITE setText NOTIFY lookChanged)
    Q_PROPERTY(int size MEMBER m_size WRITE setFontSize NOTIFY lookChanged)
    /// A Font.Weight
    Q_PROPERTY(int weight MEMBER m_weight WRITE setWeight NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor NOTIFY lookChanged)
    Q_PROPERTY(QColor color2 MEMBER m_color2 WRITE setColor2 NOTIFY lookChanged)

public:
    explicit GradientText(QQuickItem *parent = nullptr);

    void setText(const QString &text);
    void setFontSize(int size);
    void setWeight(int weight);
    void setColor(const QColor &color);
    void setColor2(const QColor &color);

Q_SIGNALS:
    void lookChanged();

protected:
    QByteArray pictureKey() const override;
    Picture paintPicture(double scale) const override;

private:
    QFont font() const;
    void relook();

    QString m_text;
    int m_size = 13;
    int m_weight = QFont::Normal;
    QColor m_color = Qt::black;
    QColor m_color2 = Qt::black;
};

} // namespace kelmoth
