// What is where in the panel, in every language, at every scale, and while mice come and go.

#include "Tests/UI/ViewFixture.h"

namespace kelmoth {

TEST_F(ProViewTest, OnALowScreenThePageScrollsAndTheRestStaysWhole)
{
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    const auto place = [this](const char *name, Role role) {
        (void)view->grabWindow();
        auto *found = find(name, role);
        EXPECT_TRUE(found) << name;
        return found ? QRect(view->mapFromGlobal(found->rect().topLeft()), found->rect().size()) : QRect();
    };
    auto scrollDown = [this, time = 0UL]() mutable {
        const QPointF middle(170, view->height() / 2.0);
        QWheelEvent wheel(middle, view->mapToGlobal(middle), {}, {0, -2400}, {}, {}, Qt::NoScrollPhase,
                          false);
        wheel.setTimestamp(time += 1000); // a Flickable takes none at the time of the last
        QCoreApplication::sendEvent(view.get(), &wheel);
    };
    for (const int height : {610, 480, 320}) {
        SCOPED_TRACE(height);
        view->resize(340, height);
        ASSERT_TRUE(QTest::qWaitFor([&] { return view->rootObject()->height() == height; }));
        EXPECT_GT(place("Razer Basilisk V3 Pro (Wireless)", caption).top(), 0);
        const int top = place("DPI", QAccessible::PageTab).bottom();
        const int bottom = place("Quit", button).top();
        EXPECT_LT(place("Quit", button).bottom(), height);
        EXPECT_GT(place("Stage 1", radio).top(), top);
        scrollDown();
        EXPECT_TRUE(QTest::qWaitFor([&] { return place("Stage 5", radio).bottom() < bottom; }));
        panel->openAbout();
        ASSERT_TRUE(comes("Close", button));
        scrollDown();
        EXPECT_TRUE(QTest::qWaitFor([&] { return place("Close", button).bottom() < height; }));
        panel->closeAbout();
        panel->selectTab(ContentModel::rgb);
        panel->selectTab(ContentModel::dpi);
    }
}

TEST_F(ProViewTest, OnlyOnePageRemainsAfterATransition)
{
    // Without motion there is nothing to wait for.
    panel->selectTab(ContentModel::rgb);
    EXPECT_THAT(shown("place"), ElementsAre(0));
    EXPECT_FALSE(find("Stage 1", radio));
    setMotion(true);
    panel->selectTab(ContentModel::buttons);
    const auto items = view->rootObject()->findChildren<QQuickItem *>();
    EXPECT_TRUE(std::ranges::any_of(items, [](const auto *item) { return item->property("place") == -1.0; }));
    EXPECT_THAT(shown("place"), ElementsAre(0)); // one is about to enter, one to leave
    panel->selectTab(ContentModel::dpi);
    panel->selectTab(ContentModel::settings);
    panel->selectTab(ContentModel::dpi);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return find("Stage 1", radio) && shown("place") == std::vector<double>{0}; }));
}

TEST_F(ProViewTest, ALeftPageIsScrolledToItsTopAndCollapsed)
{
    const auto top = [this] {
        (void)view->grabWindow();
        auto *first = find("Left Click", button);
        return first ? std::optional(first->rect().y()) : std::nullopt;
    };
    panel->selectTab(ContentModel::buttons);
    const auto atRest = top();
    setMotion(true);
    press("Bottom Button", button);
    ASSERT_TRUE(QTest::qWaitFor([&] { return top() < *atRest - 100; })) << "the picker is in sight";
    panel->selectTab(ContentModel::dpi);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !top(); }));
    panel->selectTab(ContentModel::buttons);
    ASSERT_TRUE(QTest::qWaitFor([&] { return top().has_value(); }));
    EXPECT_FALSE(find("Wheel Mode Toggle", radio));
    EXPECT_EQ(top(), atRest);
}

/// Whatever the font, as large as desktops make it.
TEST_F(ProViewTest, NoTextIsCutOrCoveredInAnyLanguageAndScale)
{
    const auto check = [this](bool isAlone) {
        (void)view->grabWindow();
        std::vector<QRectF> places;
        QList<QQuickItem *> items{view->rootObject()};
        for (int i = 0; i < items.size(); ++i) {
            const auto *item = items.at(i);
            items += item->childItems();
            if (!item->isVisible() || !item->inherits("QQuickText") || item->implicitWidth() == 0) {
                continue;
            }
            const auto number = [item](const char *property) { return item->property(property).toDouble(); };
            const auto text = item->property("text").toString().toStdString();
            EXPECT_FALSE(item->property("truncated").toBool()) << text;
            EXPECT_LE(number("contentWidth"), item->width() + 0.5) << text;
            EXPECT_LE(number("contentHeight"), item->height() + 0.5) << text;
            auto place =
                item->mapRectToScene({0, 0, number("contentWidth"), item->height()}).adjusted(1, 1, -1, -1);
            for (const auto *around = item->parentItem(); around; around = around->parentItem()) {
                place &= around->clip() ? around->mapRectToScene(around->boundingRect()) : place;
            }
            EXPECT_GE(place.left(), 0) << text;
            EXPECT_LE(place.right(), view->width()) << text;
            const auto covers = [&](const QRectF &other) { return isAlone && other.intersects(place); };
            EXPECT_TRUE(std::ranges::none_of(places, covers)) << text;
            places.push_back(place);
        }
    };
    auto &buttons = *panel->buttonsTab();
    constexpr int row = static_cast<int>(MouseButton::forward);
    const auto screens = QGuiApplication::screens();
    for (const auto *screen : screens) {
        view->setPosition(screen->geometry().topLeft());
        for (const int language : {1, 2}) {
            SCOPED_TRACE(screen->name().toStdString() + " % in language " + std::to_string(language));
            preferences.chooseLanguage(language);
            for (const int page :
                 {ContentModel::dpi, ContentModel::rgb, ContentModel::settings, ContentModel::buttons}) {
                panel->selectTab(page);
                check(true);
            }
            buttons.toggleButton(row);
            for (const char *action : {"Keyboard Key", "Profile Switch"}) {
                const auto labels = texts(buttons.actions(), "label");
                buttons.handleActionSelection(row, int(std::ranges::find(labels, action) - labels.begin()));
                check(true);
            }
            buttons.toggleButton(row);
            panel->openAbout();
            (void)view->grabWindow(); // it is loaded meanwhile
            check(false);
            panel->closeAbout();
        }
    }
    mice[0]->unplug();
    settle();
    check(false);
}

/// It has fewer effects, and the tiles of the others go while nothing is drawn.
TEST_F(ViewTest, TheMouseMayChangeWhileThePanelIsHidden)
{
    show({"basilisk-v3", "basilisk-v3-x-hyperspeed"});
    panel->selectTab(ContentModel::rgb);
    mice[0]->unplug();
    ASSERT_TRUE(comes("Breathe", radio));
    (void)view->grabWindow();
    view->hide();
    mice[1]->unplug();
    mice[0]->replug();
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    EXPECT_FALSE(view->grabWindow().isNull());
    EXPECT_TRUE(find("Wave", radio));
    EXPECT_FALSE(find("Breathe", radio));
}

TEST_F(ViewTest, ARowMayBeRemovedWithItsPickerOpen)
{
    show({"basilisk-v3", "basilisk-v3-x-hyperspeed"});
    panel->selectTab(ContentModel::buttons);
    press("Bottom Button", button);
    EXPECT_TRUE(find("Wheel Mode Toggle", radio));
    mice[0]->unplug();
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(find("DPI Button", button));
    EXPECT_FALSE(find("Bottom Button", button)) << "this mouse has none";
    (void)view->grabWindow();
    const QRect place = find("Left Click", button)->rect();
    click("Left Click", button);
    (void)view->grabWindow();
    EXPECT_EQ(find("Left Click", button)->rect(), place) << "although the list is short";

    // The last mouse goes, which is explained in the very frame that does not show the page as it was.
    const auto notice = [this] { return find("No Device Connected", QAccessible::Heading) != nullptr; };
    const QObject watch;
    QObject::connect(view.get(), &QQuickWindow::frameSwapped, &watch,
                     [&] { EXPECT_NE(notice(), find("DPI Button", button) != nullptr); });
    mice[1]->unplug();
    EXPECT_TRUE(QTest::qWaitFor(notice));
    (void)view->grabWindow();
}

} // namespace kelmoth
