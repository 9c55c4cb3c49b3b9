#include "Core/Services/ToastManager.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <gmock/gmock.h>

namespace kelmoth {
namespace {

TEST(ToastManager, ShowsOneMessageForItsTime)
{
    ToastManager manager;
    QSignalSpy changes(&manager, &ToastManager::currentToastChanged);
    manager.error("first");
    EXPECT_EQ(manager.currentToast()->duration, 4.0);
    const auto first = manager.currentToast()->id;
    manager.success("second");
    EXPECT_EQ(manager.currentToast()->type, ToastType::success);
    EXPECT_EQ(manager.currentToast()->message, "second");
    EXPECT_EQ(manager.currentToast()->duration, 2.5);
    EXPECT_NE(manager.currentToast()->id, first);
    manager.hide();
    EXPECT_EQ(manager.currentToast(), std::nullopt);
    EXPECT_EQ(changes.count(), 3);
    manager.show(ToastType::info, "short", 0.001);
    EXPECT_TRUE(changes.wait());
    EXPECT_TRUE(changes.count() == 5 || changes.wait());
    EXPECT_FALSE(manager.isShowing());
}

TEST(ToastManager, ATimerNeverHidesTheSuccessorOfItsToast)
{
    ToastManager manager;
    QSignalSpy changes(&manager, &ToastManager::currentToastChanged);
    // The first one's time is up, and its going is queued, when the second one comes.
    manager.show(ToastType::error, "first", 0.0);
    QMetaObject::invokeMethod(
        &manager, [&manager] { manager.show(ToastType::error, "second", 60.0); }, Qt::QueuedConnection);
    for (int turn = 0; turn < 10; ++turn) {
        QCoreApplication::processEvents();
        if (manager.currentToast() && manager.currentToast()->message == "first") {
            // The time-out has been handled now, if it was due: replace before the queue is run.
            manager.show(ToastType::error, "second", 60.0);
        }
    }
    ASSERT_TRUE(manager.isShowing());
    EXPECT_EQ(manager.currentToast()->message, "second");
}

} // namespace
} // namespace kelmoth
