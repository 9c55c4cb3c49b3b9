// The least that a tray program with a panel in Qt Quick can be: an item, and a scene of the panel's size
// with a few controls, built at the first click. What the real one costs is measured against it.
#include <QApplication>
#include <QPixmap>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>
#include <QSystemTrayIcon>

#include <memory>

namespace {

constexpr auto scene = R"(
import QtQuick
import QtQuick.Controls.Basic

Pane {
    width: 340
    height: 610

    Column {
        anchors.centerIn: parent
        spacing: 12

        Label {
            text: "Panel"
        }

        Slider {
            from: 100
            to: 30000
        }

        Switch {
            text: "A switch"
        }

        Repeater {
            model: 4

            Button {
                required property int index
                text: "Button " + index
            }
        }
    }
}
)";

std::unique_ptr<QQuickView> makePanel()
{
    auto view = std::make_unique<QQuickView>();
    view->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    auto *component = new QQmlComponent(view->engine(), view.get());
    component->setData(scene, QUrl());
    view->setContent(QUrl(), component, component->create());
    return view;
}

} // namespace

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap picture(22, 22);
    picture.fill(Qt::black);
    QSystemTrayIcon item{QIcon(picture)};
    std::unique_ptr<QQuickView> panel;
    QObject::connect(&item, &QSystemTrayIcon::activated, qApp, [&] {
        if (!panel) {
            panel = makePanel();
        }
        panel->setVisible(!panel->isVisible());
    });
    item.show();
    return QApplication::exec();
}
