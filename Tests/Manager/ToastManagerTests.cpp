#include "Core/Services/ToastManager.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTimer>
#include <gmock/gmock.h>

namespace kelmoth {
namespace {

TEST(ToastManager, ATimerHidesItsToastAndNeverItsSuccessor)
{
    ToastManager manager;
    QSignalSpy changes(&manager, &ToastManager::currentToastChanged);
    manager.show(ToastType::error, "first", 0.0);
    // When its time is up, and its going is queued, the second one comes.
    QTimer next;
    next.setSingleShot(true);
    next.callOnTimeout([&] { manager.error("second"); });
    next.start(0);
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(manager.isShowing());
    EXPECT_EQ(manager.currentToast()->message, "second");
    EXPECT_EQ(manager.currentToast()->duration, 4.0);
    manager.show(ToastType::info, "third", 0.0);
    EXPECT_TRUE(changes.wait());
    EXPECT_EQ(manager.currentToast(), std::nullopt);
    EXPECT_EQ(changes.count(), 4);
}

} // namespace
} // namespace kelmoth
