#include "App/ToolkitLooks.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

namespace kelmoth {

namespace {

QPalette paletteOf(const QColor &text, const QColor &ground, const QColor &field)
{
    QPalette palette(ground, ground);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
    }
    palette.setColor(QPalette::Base, field);
    palette.setColor(QPalette::ToolTipBase, field);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, Qt::gray);
    }
    return palette;
}

} // namespace

void applyToToolkit(Appearance::Mode mode)
{
    switch (mode) {
    case Appearance::Mode::system:
        QGuiApplication::setPalette(QPalette());
        break;
    case Appearance::Mode::light:
        QGuiApplication::setPalette(paletteOf(Qt::black, QColor(0xF0, 0xF0, 0xF2), Qt::white));
        break;
    case Appearance::Mode::dark:
        QGuiApplication::setPalette(paletteOf(Qt::white, QColor(0x2C, 0x2C, 0x2E), QColor(0x1E, 0x1E, 0x20)));
        break;
    }
}

} // namespace kelmoth
