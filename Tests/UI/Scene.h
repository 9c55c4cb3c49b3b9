#pragma once

#include "Tests/UI/NoWarnings.h"
#include "UI/Components/Components.h"

#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <gmock/gmock.h>

#include <memory>

namespace kelmoth {

/// A window with what a text of QML describes, on screen for the length of a test. Warnings of QML fail the
/// test.
class Scene {
public:
    explicit Scene(const char *qml)
    {
        useComponents(m_engine);
        QQmlComponent component(&m_engine);
        component.setData(
            QByteArray("import QtQuick\nimport QtQuick.Layouts\nimport Kelmoth.Components\n") + qml, QUrl());
        m_root.reset(qobject_cast<QQuickItem *>(component.create()));
        EXPECT_TRUE(m_root) << component.errorString().toStdString();
        if (m_root) {
            m_window.resize(400, 300);
            m_root->setParentItem(m_window.contentItem());
            m_window.show();
            EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
            m_window.requestActivate();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        }
    }

    QQuickWindow &window() { return m_window; }
    QQuickItem *root() { return m_root.get(); }
    QQuickItem *item(const char *objectName)
    {
        auto *found = m_root->findChild<QQuickItem *>(QLatin1String(objectName));
        EXPECT_TRUE(found) << objectName;
        return found;
    }
    /// What the root's property `log` has gathered, which starts anew.
    std::string log()
    {
        const std::string text = m_root->property("log").toString().trimmed().toStdString();
        m_root->setProperty("log", QString());
        return text;
    }
    /// A point of an item, by fractions of its size, in the window.
    QPoint at(QQuickItem *item, double x = 0.5, double y = 0.5)
    {
        return item->mapToScene(QPointF(x * item->width(), y * item->height())).toPoint();
    }
    void click(QQuickItem *item) { QTest::mouseClick(&m_window, Qt::LeftButton, {}, at(item)); }
    void key(Qt::Key key) { QTest::keyClick(&m_window, key); }

private:
    NoWarnings m_noWarnings;
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace kelmoth
