#include "App/AppDelegate.h"
#include "Tests/UI/PanelFixture.h"

#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmoth {

struct FakeSession : UserSession {
    std::vector<RunningApplication> running;
    std::string directory;
    std::function<void()> handler;
    std::vector<std::pair<std::string, std::string>> posts;

    std::vector<RunningApplication> runningApplications(std::string_view) const override { return running; }
    void observe(std::string_view name, std::string_view object, std::function<void()> newHandler) override
    {
        EXPECT_EQ(name, "com.kelmoth.app.reopenRunningInstance");
        EXPECT_EQ(object, "com.kelmoth.app");
        handler = std::move(newHandler);
    }
    void removeObserver() override { handler = nullptr; }
    void post(std::string_view name, std::string_view object) override { posts.emplace_back(name, object); }
    void setEndHandler(std::function<void()>) override {}
    std::string applicationSupportDirectory() const override { return directory; }
};

/// What the delegate does with its status item and popover, and what can be done to them.
struct Screen : StatusBar {
    std::optional<bool> hosted = true;
    bool isTrayDying = false; ///< it is gone once it has been asked for
    std::function<void()> click, hostChanged;
    std::vector<MenuEntry> menu;
    std::optional<ScreenRect> frame;
    std::string toolTip;
    double alpha = 1.0;
    bool isShown = false;
    Popover::Place place = {};
    std::vector<std::string> calls; ///< of the popover

    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }
    std::unique_ptr<StatusItem> statusItem() override;
};

struct FakeStatusItem : StatusItem {
    explicit FakeStatusItem(Screen &shown) : screen(shown) {}
    void setClickHandler(std::function<void()> handler) override { screen.click = std::move(handler); }
    void setMenu(std::vector<MenuEntry> menu) override { screen.menu = std::move(menu); }
    void setToolTip(const std::string &text) override { screen.toolTip = text; }
    void setAlphaValue(double alpha) override { screen.alpha = alpha; }
    std::optional<bool> isHosted() const override
    {
        return screen.isTrayDying ? std::exchange(screen.hosted, {}) : screen.hosted;
    }
    void setHostHandler(std::function<void()> handler) override { screen.hostChanged = std::move(handler); }
    std::optional<ScreenRect> frame() const override { return screen.frame; }

    Screen &screen;
};

std::unique_ptr<StatusItem> Screen::statusItem()
{
    return std::make_unique<FakeStatusItem>(*this);
}

struct FakePopover : Popover {
    explicit FakePopover(Screen &shown) : screen(shown) {}
    bool isShown() const override { return screen.isShown; }
    bool isWindow() const override { return screen.place == Place::asWindow; }
    void setAnimates(bool animates) override { screen.calls.emplace_back(animates ? "animated" : "still"); }
    void show(Place place, const std::optional<ScreenRect> &) override
    {
        static constexpr std::array names{"at item", "at pointer", "as window"};
        screen.calls.emplace_back(names.at(static_cast<std::size_t>(place)));
        if (!std::exchange(screen.isShown, true)) {
            screen.place = place;
            Q_EMIT willShow();
        }
    }
    void follow(const ScreenRect &) override { screen.calls.emplace_back("follows"); }
    void performClose() override
    {
        screen.isShown = false;
        Q_EMIT didClose();
    }
    void makeKeyAndOrderFront() override { screen.calls.emplace_back("front"); }

    Screen &screen;
};

struct FakeMonitor : EventMonitor {
    std::function<void()> handler;
    bool isUnderWay = false;
    bool isNeeded = false;

    void addGlobalMonitor(std::function<void()> newHandler) override { handler = std::move(newHandler); }
    void removeMonitor() override { handler = nullptr; }
    bool isLastPressUnderWay() override { return isUnderWay; }
    void setNeeded(bool needed) override { isNeeded = needed; }
};

class AppDelegateTest : public PanelTest {
protected:
    AppDelegateTest() { session->directory = home.path().toStdString(); }

    void launch(const std::vector<std::string> &models = {})
    {
        plugIn(models);
        auto platform = Platform::current();
        platform.session = session;
        platform.statusBar = {std::shared_ptr<void>(), &screen};
        platform.eventMonitor = presses;
        delegate = std::make_unique<AppDelegate>(AppDelegate::Parts{
            .platform = platform,
            .hidMonitor = *monitor,
            .deviceManager = *manager,
            .preferences = preferences,
            .appearance = appearance,
            .loginItem = loginItem,
            .makePopover = [this] { return std::make_unique<FakePopover>(screen); },
            .applyAppearance = [this] { appliedMode = appearance.mode(); },
            .terminate = [this] { ++ends; },
        });
        (void)takeLines();
        delegate->applicationDidFinishLaunching();
    }

    std::string lockPath() const { return home.path().toStdString() + "/com.kelmoth.app.lock"; }

    /// As another process would find the lock.
    bool isLocked() const
    {
        const int fd = ::open(lockPath().c_str(), O_RDWR);
        const bool isHeld = fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0;
        ::close(fd);
        return isHeld;
    }

    QTemporaryDir home;
    Screen screen;
    std::shared_ptr<FakeSession> session = std::make_shared<FakeSession>();
    std::shared_ptr<FakeMonitor> presses = std::make_shared<FakeMonitor>();
    std::optional<Appearance::Mode> appliedMode;
    int ends = 0;
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(AppDelegateTest, OnlyOneCopyRunsPerUser)
{
    preferences.setAppearanceMode(2);
    loginService->now = LoginItemStatus::enabled;
    launch();
    EXPECT_THAT(takeLines(),
                ElementsAre("✅ Launch at Login now points to " + loginService->path,
                            "Kelmoth v" + resourceMainBundle()->version() + " started as Menu Bar App"));
    EXPECT_EQ(appliedMode, Appearance::Mode::dark);
    EXPECT_TRUE(isLocked());
    struct stat lock{};
    ASSERT_EQ(::stat(lockPath().c_str(), &lock), 0);
    EXPECT_EQ(lock.st_mode & 0777U, 0600U);
    EXPECT_EQ(lock.st_size, 0);

    delegate->applicationWillTerminate();
    EXPECT_FALSE(isLocked()); // the file stays
    EXPECT_FALSE(session->handler || presses->handler);
    EXPECT_EQ(ends, 0);
}

TEST_F(AppDelegateTest, FollowsNoLinkToALock)
{
    const auto document = home.filePath(QStringLiteral("document"));
    ASSERT_TRUE(QFile::link(document, QString::fromStdString(lockPath())));
    launch();
    EXPECT_EQ(ends, 0); // it runs unguarded
    EXPECT_FALSE(QFile::exists(document));
}

TEST_F(AppDelegateTest, ASecondCopyOpensTheFirstOnesPanel)
{
    const struct {
        std::vector<RunningApplication> running;
        bool isLockHeld, starts;
    } rows[]{
        {{{::getpid(), false}}, false, true},
        {{{1, true}}, false, true},
        {{{1, true}, {2, false}}, false, false},
        {{}, true, false},
    };
    for (const auto &row : rows) {
        const int fd = ::open(lockPath().c_str(), O_RDWR | O_CREAT, 0600);
        ASSERT_EQ(::flock(fd, row.isLockHeld ? LOCK_EX : LOCK_UN), 0);
        session->running = row.running;
        session->posts.clear();
        ends = 0;
        launch();
        EXPECT_EQ(ends, row.starts ? 0 : 1);
        EXPECT_EQ(static_cast<bool>(screen.click), row.starts);
        if (!row.starts) {
            EXPECT_THAT(session->posts,
                        ElementsAre(std::pair("com.kelmoth.app.reopenRunningInstance", "com.kelmoth.app")));
            EXPECT_THAT(takeLines(),
                        ElementsAre("Kelmoth: another instance is running or instance lock is unavailable"));
        }
        delegate->applicationWillTerminate();
        delegate.reset();
        screen = {};
        ::close(fd);
    }
}

TEST_F(AppDelegateTest, ClicksToggleThePopover)
{
    launch();
    screen.click();
    EXPECT_THAT(screen.takeCalls(), ElementsAre("animated", "at pointer", "front"));
    EXPECT_TRUE(presses->isNeeded);
    EXPECT_EQ(screen.alpha, 0.5);
    EXPECT_TRUE(QTest::qWaitFor([this] { return screen.alpha == 1.0; }));
    screen.click();
    EXPECT_FALSE(screen.isShown || presses->isNeeded);

    // Where the press of the click has closed it, the click itself does nothing.
    screen.click();
    presses->isUnderWay = true;
    presses->handler();
    EXPECT_FALSE(screen.isShown);
    for (const bool isShown : {false, true}) {
        screen.click();
        EXPECT_EQ(screen.isShown, isShown);
    }

    // A press elsewhere is over by the time of the next click; one that closes nothing has no effect.
    presses->handler();
    presses->isUnderWay = false;
    screen.click();
    EXPECT_TRUE(screen.isShown);
    screen.click();
    presses->handler();
    presses->isUnderWay = true;
    screen.click();
    EXPECT_TRUE(screen.isShown);

    screen.alpha = 0;
    desktop->isMotionReduced = true;
    desktop->handler();
    EXPECT_NE(screen.alpha, 0); // drawn anew for what the desktop has become
    screen.click();
    (void)screen.takeCalls();
    screen.alpha = 0;
    screen.click();
    EXPECT_EQ(screen.takeCalls().front(), "still");
    EXPECT_EQ(screen.alpha, 1.0);
}

TEST_F(AppDelegateTest, HandlesTheMenuAndRequestsOfOtherCopies)
{
    launch();
    preferences.chooseLanguage(1);
    EXPECT_EQ(screen.menu[2].title, "O programie Kelmoth");
    EXPECT_EQ(screen.menu[4].keyEquivalent, "q");
    QSignalSpy abouts(delegate.get(), &AppDelegate::kelmothShowAbout);
    const auto callsAfter = [this](const std::function<void()> &action) {
        action();
        QCoreApplication::processEvents();
        return screen.takeCalls();
    };
    EXPECT_THAT(callsAfter(screen.menu[2].action), ElementsAre("animated", "at item", "front"));
    EXPECT_THAT(callsAfter(screen.menu[2].action), IsEmpty()) << "it is open";
    EXPECT_EQ(abouts.count(), 2);
    EXPECT_THAT(callsAfter(session->handler), ElementsAre("front"));
    EXPECT_THAT(callsAfter(screen.hostChanged), IsEmpty()) << "the item's place is unknown";
    screen.frame.emplace();
    EXPECT_THAT(callsAfter(screen.hostChanged), ElementsAre("follows"));
    screen.isShown = false;
    EXPECT_THAT(callsAfter(session->handler), ElementsAre("animated", "at item", "front", "front"));
    screen.isShown = false;
    EXPECT_THAT(callsAfter(screen.menu[0].action), ElementsAre("animated", "at item", "front"));
    EXPECT_EQ(ends, 0);
    screen.menu[4].action();
    EXPECT_EQ(ends, 1);
}

TEST_F(AppDelegateTest, EachOpeningReadsTheMouseOnce)
{
    launch({"basilisk-v3-pro-wired"});
    settle();
    screen.click();
    delegate->openApp();
    finishAll();
    std::vector<int> commands;
    for (const auto &transfer : mouse().takeTransfers()) {
        if (transfer.isSet) {
            commands.push_back(transfer.bytes[6] << 8 | transfer.bytes[7]);
        }
    }
    EXPECT_THAT(commands, testing::UnorderedElementsAre(0x0486, 0x0780, 0x0784));
}

TEST_F(AppDelegateTest, OpensAsAWindowWithoutATray)
{
    screen.hosted.reset();
    launch();
    delegate->openApp();
    EXPECT_FALSE(screen.isShown); // not before it is known where
    screen.hosted = false;
    screen.hostChanged();
    EXPECT_THAT(screen.takeCalls(), ElementsAre("animated", "as window", "front"));
    screen.hosted = true;
    delegate->openApp();
    EXPECT_FALSE(presses->isNeeded); // it is still a window

    screen.hosted = false;
    // By itself too, when the desktop has had its time.
    screen.isShown = false;
    EXPECT_TRUE(QTest::qWaitFor([this] { return screen.isShown; }));
    (void)screen.takeCalls();

    screen.hosted = true;
    screen.isTrayDying = true;
    delegate->openApp();
    EXPECT_THAT(screen.takeCalls(), ElementsAre("animated", "at item", "front"));
}

TEST_F(AppDelegateTest, AReplacedTrayOpensNoWindow)
{
    screen.hosted.reset();
    launch();
    screen.hosted = true;
    screen.hostChanged();
    screen.hosted = false;
    screen.hostChanged();
    EXPECT_FALSE(QTest::qWaitFor([this] { return screen.isShown; }, 2500));
}

TEST_F(AppDelegateTest, TheToolTipNamesTheMouseAndItsCharge)
{
    launch({"basilisk-v3-pro-wired"});
    EXPECT_TRUE(QTest::qWaitFor([this] { return screen.toolTip.ends_with(" %"); })) << screen.toolTip;
    EXPECT_THAT(screen.toolTip, testing::StartsWith("Razer Basilisk V3 Pro (Wired) · "));
    mouse().unplug();
    EXPECT_TRUE(QTest::qWaitFor([this] { return screen.toolTip == "Kelmoth"; }));
}

} // namespace kelmoth
