#pragma once

#include "Tests/UI/NoWarnings.h"
#include "Tests/UI/PanelFixture.h"
#include "UI/Views/PanelTranslator.h"
#include "UI/Views/Views.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

namespace kelmoth {

/// The whole panel in a window, on simulated mice, found and read as assistive tools do. Nothing moves unless
/// a test wants it. Warnings fail the test.
class ViewTest : public PanelTest {
protected:
    using Role = QAccessible::Role;
    static constexpr auto button = QAccessible::PushButton;
    static constexpr auto radio = QAccessible::RadioButton;
    static constexpr auto slider = QAccessible::Slider;
    static constexpr auto caption = QAccessible::StaticText;

    ViewTest()
    {
        // What the looks see of the desktop is the program's: one for all tests.
        static const auto screen = std::make_shared<FakeDesktopSettings>();
        m_screen = screen.get();
        Platform platform = Platform::current();
        platform.desktopSettings = screen;
        Platform::setCurrent(std::move(platform));
        (void)Appearance::shared();
        setMotion(false);
    }
    ~ViewTest() override
    {
        view.reset();
        panel.reset();
    }

    void setMotion(bool moves)
    {
        m_screen->isMotionReduced = !moves;
        if (m_screen->handler) {
            m_screen->handler();
        }
    }

    void show(const std::vector<std::string> &models)
    {
        open(models);
        view = std::make_unique<QQuickView>();
        useViews(*view->engine());
        QCoreApplication::installTranslator(&m_translator);
        QObject::connect(&m_translator, &PanelTranslator::retranslate, view->engine(),
                         &QQmlEngine::retranslate);
        view->setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(panel.get())}});
        view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Kelmoth/Views/ContentView.qml")));
        ASSERT_EQ(view->status(), QQuickView::Ready);
        view->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
        view->requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
    }

    /// What is in the tree under that name and role and is to be seen; none when there is no such thing.
    QAccessibleInterface *find(const char *name, Role role) const
    {
        return find(QAccessible::queryAccessibleInterface(view.get()), QString::fromUtf8(name), role);
    }

    QAccessible::State state(const char *name, Role role) const
    {
        auto *found = find(name, role);
        EXPECT_TRUE(found) << name;
        return found ? found->state() : QAccessible::State();
    }

    void click(const char *name, Role role)
    {
        QCoreApplication::processEvents();
        (void)view->grabWindow(); // what has changed has then found its place
        auto *found = find(name, role);
        ASSERT_TRUE(found) << name;
        QTest::mouseClick(view.get(), Qt::LeftButton, {}, view->mapFromGlobal(found->rect().center()));
    }

    bool comes(const char *name, Role role) const
    {
        return QTest::qWaitFor([&] { return find(name, role) != nullptr; });
    }

    /// As an assistive tool presses it.
    void press(const char *name, Role role)
    {
        auto *found = find(name, role);
        ASSERT_TRUE(found) << name;
        found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    /// Drags along the middle of an item, from one fraction of its width to another.
    void drag(const char *name, Role role, double from, double to)
    {
        auto *found = find(name, role);
        ASSERT_TRUE(found) << name;
        const QRect rect = found->rect();
        const auto at = [&](double fraction) {
            const int x = rect.x() + qRound(fraction * rect.width());
            return view->mapFromGlobal(QPoint(x, rect.center().y()));
        };
        QTest::mousePress(view.get(), Qt::LeftButton, {}, at(from));
        for (int step = 1; step <= 4; ++step) {
            QTest::mouseMove(view.get(), at(from + (to - from) * step / 4));
        }
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, at(to));
    }

    /// The values of a property of items that are to be seen, such as one that is animated.
    std::vector<double> shown(const char *property) const
    {
        std::vector<double> values;
        for (const auto *item : view->rootObject()->findChildren<QQuickItem *>()) {
            if (item->isVisible() && item->property(property).metaType() == QMetaType::fromType<double>()) {
                values.push_back(item->property(property).toDouble());
            }
        }
        return values;
    }

    void key(Qt::Key which) { QTest::keyClick(view.get(), which); }

    /// The name of what has the keyboard's focus.
    std::string focused() const
    {
        auto *found = view->activeFocusItem() ? QAccessible::queryAccessibleInterface(view->activeFocusItem())
                                              : nullptr;
        return found ? found->text(QAccessible::Name).toStdString() : std::string();
    }

    std::unique_ptr<QQuickView> view;

private:
    NoWarnings m_noWarnings;

    static QAccessibleInterface *find(QAccessibleInterface *top, const QString &name, Role role)
    {
        if (!top || top->state().invisible) {
            return nullptr;
        }
        if (top->role() == role && top->text(QAccessible::Name) == name) {
            return top;
        }
        for (int i = 0; i < top->childCount(); ++i) {
            if (auto *found = find(top->child(i), name, role)) {
                return found;
            }
        }
        return nullptr;
    }

    FakeDesktopSettings *m_screen = nullptr;
    PanelTranslator m_translator{preferences};
};

/// The panel of the mouse that has all there is.
class ProViewTest : public ViewTest {
protected:
    void SetUp() override { show({"basilisk-v3-pro-wireless"}); }
};

} // namespace kelmoth
