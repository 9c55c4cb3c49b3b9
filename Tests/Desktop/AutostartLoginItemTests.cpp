#include "Core/Services/LoginItem.h"
#include "Platform/Linux/AutostartLoginItem.h"
#include "Platform/Simulated/MemoryDefaults.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace kelmoth {

/// A home of the test's own, and programs in it.
class AutostartLoginItemTest : public testing::Test {
protected:
    AutostartLoginItemTest()
    {
        qputenv("HOME", home.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toUtf8());
    }
    ~AutostartLoginItemTest() override
    {
        qputenv("PATH", m_pathBefore);
        qunsetenv("XDG_CURRENT_DESKTOP");
    }

    QString program(const QString &name, const QByteArray &text = "#!/bin/sh\n") const
    {
        const auto path = home.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        write(path, text);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    static void write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
        file.write(text);
    }
    QString entryPath() const
    {
        return home.filePath(QStringLiteral("config/autostart/com.kelmoth.app.desktop"));
    }

    QTemporaryDir home;

    /// What the desktop's own checker says of the entry.
    std::string complaints() const
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral("desktop-file-validate"), {entryPath()});
        return process.waitForFinished() ? process.readAll().toStdString() : "did not run";
    }

private:
    QByteArray m_pathBefore = qgetenv("PATH");
};

/// What comes of a request that this process does itself, at once.
template <auto request> static std::optional<std::string> failureOf(AutostartLoginItem &item)
{
    auto result = std::optional<std::string>("no answer");
    (item.*request)([&](auto failure) { result = std::move(failure); });
    return result;
}
constexpr auto registering = failureOf<&AutostartLoginItem::registerItem>;
constexpr auto unregistering = failureOf<&AutostartLoginItem::unregisterItem>;

TEST_F(AutostartLoginItemTest, AnyPathIsQuotedInTheEntry)
{
    for (const auto &name :
         {"plain", "with space/kelmoth", "a\"b", "c'd", "100%/%U", "back\\slash\\\\", "$HOME `id`",
          "zażółć gęślą", "tab\there", "line\nbreak", "return\r", "a=b", "#;&|<>()*?~!", " "}) {
        const auto path = program(QStringLiteral("apps/") + QString::fromUtf8(name),
                                  "#!/bin/sh\nprintf %s \"$0\" > $HOME/new\nmv $HOME/new $HOME/started\n");
        AutostartLoginItem item(path);
        ASSERT_EQ(registering(item), std::nullopt) << name;
        EXPECT_EQ(item.status(), LoginItemStatus::enabled) << name;
        EXPECT_EQ(complaints(), "") << name;
        EXPECT_EQ(QProcess::execute(QStringLiteral("gio"), {QStringLiteral("launch"), entryPath()}), 0);
        QFile started(home.filePath(QStringLiteral("started")));
        ASSERT_TRUE(QTest::qWaitFor([&] { return started.open(QIODevice::ReadOnly); })) << name;
        EXPECT_EQ(QString::fromUtf8(started.readAll()), path);
        started.remove();

        // The entry holds on to that very program: without it there is none to start.
        QFile::remove(path);
        EXPECT_EQ(item.status(), LoginItemStatus::notFound) << name;
        EXPECT_NE(registering(item), std::nullopt) << name;
    }
}

TEST_F(AutostartLoginItemTest, StatusFollowsTheEntry)
{
    AutostartLoginItem item(program(QStringLiteral("kelmoth")));
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(unregistering(item), std::nullopt);
    ASSERT_EQ(registering(item), std::nullopt);
    QFile entry(entryPath());
    EXPECT_TRUE(entry.open(QIODevice::ReadOnly) &&
                entry.readAll().contains("\nComment[pl]=Konfiguruje myszy"));

    const QByteArray sound = "[Desktop Entry]\nType=Application\nName=K\nExec=/bin/sh -c 'true %%' %U\n";
    const std::vector<std::pair<QByteArray, LoginItemStatus>> rows{
        {sound, LoginItemStatus::enabled},
        {"# by hand\n\n" + sound + "Hidden = false\n[Other]\nHidden=true\n", LoginItemStatus::enabled},
        {sound + "Hidden=true\n", LoginItemStatus::requiresApproval},
        {"[Desktop Entry]\nType=Application\nExec=env A=b sh\n", LoginItemStatus::enabled},
        {"[Desktop Entry]\nType=Application\nExec=env A=b\n", LoginItemStatus::notFound},
        {sound + "X-GNOME-Autostart-enabled=false\n", LoginItemStatus::requiresApproval},
        {sound + "X-MATE-Autostart-enabled=false\n", LoginItemStatus::requiresApproval},
        {sound + "TryExec=/bin/nothing\nHidden=true\n", LoginItemStatus::notFound},
        {"[Desktop Entry]\nHidden=true\n", LoginItemStatus::requiresApproval},
        {"[Desktop Entry]\nType=Application\n", LoginItemStatus::notFound},
        {"[Desktop Entry]\nType=Link\nExec=/bin/sh\n", LoginItemStatus::notFound},
        {"[Desktop Entry]\nType=Application\nExec=\"/bin/sh\n", LoginItemStatus::notFound},
        {"[Desktop Entry]\nType=Application\nExec=\n", LoginItemStatus::notFound},
        {"[Desktop Entry]\nType=Application\nExec=/bin\n", LoginItemStatus::notFound},
        {"Exec=/bin/sh\n", LoginItemStatus::notFound},
        {sound + QByteArray("\xFF\xFE\0garbage", 10), LoginItemStatus::notFound},
        {sound + QByteArray(1'000'000, '#'), LoginItemStatus::notFound},
        {"", LoginItemStatus::notFound},
    };
    for (const auto &[text, status] : rows) {
        write(entryPath(), text);
        EXPECT_EQ(item.status(), status) << text.left(200).toStdString();
    }
    QFile::remove(entryPath());
    ASSERT_EQ(::mkfifo(QFile::encodeName(entryPath()).constData(), 0600), 0);
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    EXPECT_EQ(registering(item), "File exists");
    EXPECT_EQ(unregistering(item), "File exists");
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    QFile::remove(entryPath());
    // A link is ours to take away, what it leads to is not.
    const auto target = home.filePath(QStringLiteral("target"));
    write(target, "another's\n");
    for (const auto &other : {target, home.path(), QStringLiteral("/nowhere")}) {
        for (const bool registers : {true, false}) {
            QFile::link(other, entryPath());
            EXPECT_EQ(item.status(), LoginItemStatus::notFound);
            EXPECT_EQ(registers ? registering(item) : unregistering(item), std::nullopt);
            EXPECT_EQ(item.status(), registers ? LoginItemStatus::enabled : LoginItemStatus::notRegistered);
            QFile::remove(entryPath());
        }
    }
    EXPECT_EQ(QFileInfo(target).size(), 10);
}

TEST_F(AutostartLoginItemTest, TheEntryIsRepairedOnlyWhenNeeded)
{
    const auto installed = program(QStringLiteral(".local/opt/a b/kelmoth"));
    const auto link = home.filePath(QStringLiteral("link"));
    QFile::link(installed, link);
    const auto defaults = std::make_shared<MemoryDefaults>();
    const auto at = [&](const QString &path) {
        return LoginItem(std::make_shared<AutostartLoginItem>(path), defaults);
    };
    const auto stored = [&] { return defaults->dataForKey(LoginItem::registeredPathKey); };
    // Whether the entry was left as it is since the last question.
    const auto isKept = [&] {
        QFile entry(entryPath());
        const bool isMarked = entry.open(QIODevice::ReadWrite) && entry.readAll().endsWith("# kept\n");
        return entry.write("# kept\n") > 0 && isMarked;
    };
    defaults->setData(LoginItem::registeredPathKey, "/old");
    const auto fails = [&](bool enabled) {
        bool isDone = false;
        at(link).setEnabled(enabled, [&](const auto &error) { isDone = !error; });
        return !isDone;
    };
    EXPECT_FALSE(fails(false));
    EXPECT_EQ(stored(), std::nullopt);

    EXPECT_FALSE(fails(true));
    EXPECT_EQ(stored(), link.toStdString());
    EXPECT_FALSE(isKept());
    defaults->removeObject(LoginItem::registeredPathKey);
    EXPECT_FALSE(fails(true));
    EXPECT_EQ(stored(), link.toStdString());
    EXPECT_TRUE(isKept());
    at(link).repairIfNeeded();
    at(program(QStringLiteral("build/kelmoth"))).repairIfNeeded();
    EXPECT_TRUE(isKept());
    for (const auto *before : {"/old", ""}) {
        defaults->setData(LoginItem::registeredPathKey, before);
        at(installed).repairIfNeeded();
        EXPECT_EQ(stored(), installed.toStdString());
        EXPECT_FALSE(isKept());
    }
}

TEST_F(AutostartLoginItemTest, ReportsErrors)
{
    AutostartLoginItem item(program(QStringLiteral("kelmoth")));
    QDir().mkpath(entryPath());
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    EXPECT_EQ(registering(item), "Is a directory");
    EXPECT_EQ(unregistering(item), "Is a directory");
    const QDir autostart(home.filePath(QStringLiteral("config/autostart")));
    EXPECT_EQ(autostart.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);

    write(home.filePath(QStringLiteral("file")), "");
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("file")).toUtf8());
    EXPECT_EQ(registering(item), "Not a directory");
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartLoginItemTest, InstalledIsDecidedWithLinksResolved)
{
    const auto installed = program(QStringLiteral(".local/opt/kelmoth/kelmoth"));
    const auto built = program(QStringLiteral(".local/src/kelmoth/build/bin/kelmoth"));
    write(home.filePath(QStringLiteral(".local/src/kelmoth/build/CMakeCache.txt")), "");
    const auto link = home.filePath(QStringLiteral("link"));
    QFile::link(installed, link);
    QFile::link(built, home.filePath(QStringLiteral(".local/built")));
    const std::pair<QString, bool> rows[]{
        // What is found below /usr by way of a link of another name is installed too.
        {QStandardPaths::findExecutable(QStringLiteral("sh")), true},
        {installed, true},
        {link, true},
        {built, false},
        {home.filePath(QStringLiteral(".local/built")), false},
        {program(QStringLiteral("bin/kelmoth")), false},
        {home.filePath(QStringLiteral(".local/nothing")), false},
    };
    for (const auto &[path, isInstalled] : rows) {
        EXPECT_EQ(AutostartLoginItem(path).isInApplicationsFolder(), isInstalled) << qPrintable(path);
    }
    EXPECT_EQ(AutostartLoginItem(link).bundlePath(), link.toStdString());
}

TEST_F(AutostartLoginItemTest, ProgramPathIsThatOfTheStart)
{
    const auto own = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    const auto link = home.filePath(QStringLiteral("link"));
    QFile::link(own, link);
    qputenv("PATH", home.path().toUtf8());
    const auto relative = QDir::current().relativeFilePath(link);
    EXPECT_EQ(startedProgramPath(link.toUtf8().constData()), link);
    EXPECT_EQ(startedProgramPath(("./" + relative.toUtf8()).constData()), link);
    EXPECT_EQ(startedProgramPath("link"), link);
    for (const auto *stranger : {"", "sh", "/bin/sh", "/no/where"}) {
        EXPECT_EQ(startedProgramPath(stranger), own) << stranger;
    }
}

TEST_F(AutostartLoginItemTest, OpensTheDesktopsSettingsElseTheDirectory)
{
    QFile record(home.filePath(QStringLiteral("record")));
    qputenv("PATH", home.filePath(QStringLiteral("tools")).toUtf8());
    const auto folder = "xdg-open " + QFileInfo(entryPath()).path().toStdString();
    // The desktop, a tool that is installed before, and what is started.
    const std::tuple<const char *, const char *, std::string> rows[]{
        {"", "xdg-open", folder},
        {"ubuntu:GNOME", "systemsettings5", folder},
        {"ubuntu:GNOME", "gnome-tweaks", "gnome-tweaks"},
        {"ubuntu:GNOME", "gnome-session-properties", "gnome-session-properties"},
        {"KDE", "any", "systemsettings5 kcm_autostart"},
    };
    for (const auto &[desktop, tool, started] : rows) {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        program(QStringLiteral("tools/") + QString::fromLatin1(tool),
                "#!/bin/sh\necho \"${0##*/} $*\" > $HOME/new\n/bin/mv $HOME/new $HOME/record\n");
        AutostartLoginItem(QStringLiteral("/bin/sh")).openLoginItemsSettings();
        ASSERT_TRUE(QTest::qWaitFor([&] { return record.open(QIODevice::ReadOnly); }));
        EXPECT_EQ(record.readAll().trimmed().toStdString(), started);
        record.remove();
    }
}

} // namespace kelmoth
