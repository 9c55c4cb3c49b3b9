#include "Core/Device/DeviceState.h"
#include "Platform/Qt/SettingsUserDefaults.h"
#include "Platform/RegularFile.h"
#include "Tests/Core/RecordedLog.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

/// Whether the file system has lost the renaming of files. What the toolkit calls is this.
static bool isRenameLost = false;

extern "C" int rename(const char *from, const char *to) noexcept
{
    static auto *const real =
        reinterpret_cast<int (*)(const char *, const char *)>(::dlsym(RTLD_NEXT, "rename"));
    errno = EIO;
    return isRenameLost ? -1 : real(from, to);
}

namespace kelmoth {

using namespace testing;

constexpr auto key = "com.kelmoth.deviceState.170";

class SettingsUserDefaultsTest : public testing::Test {
protected:
    ~SettingsUserDefaultsTest() override { Platform::setCurrent({}); }

    std::string contents() const
    {
        std::ifstream file(path.toStdString());
        return {std::istreambuf_iterator(file), {}};
    }
    void expectUnsaved()
    {
        const auto before = contents();
        SettingsUserDefaults defaults(path);
        defaults.setData(key, "new");
        EXPECT_EQ(defaults.dataForKey(key), "new"); // it holds for as long as the program runs
        EXPECT_THAT(defaults.flush(), Optional(HasSubstr(path.toStdString())));
        EXPECT_THAT(log->takeLines(), ElementsAre(HasSubstr("⚠️ Settings could not be saved")));
        EXPECT_EQ(contents(), before);
        defaults.setInteger("later", 1); // also where the writer was given up
        EXPECT_EQ(defaults.integerForKey("later"), 1);
    }

    /// As another program holds the file.
    FileDescriptor lock() const
    {
        auto file = openRegularFile(path.toStdString() + ".flock", O_RDWR | O_CREAT);
        EXPECT_EQ(::flock(file.get(), LOCK_EX), 0);
        return file;
    }

    const QTemporaryDir home;
    QString path = home.filePath(QStringLiteral("app/defaults.ini"));
    std::shared_ptr<RecordedLog> log = RecordedLog::install();
};

TEST_F(SettingsUserDefaultsTest, FilesAreReadableByTheirOwnerOnly)
{
    const auto record = encode(DeviceState::defaultState()).value();
    auto defaults = std::make_unique<SettingsUserDefaults>(path);
    EXPECT_FALSE(defaults->hasObjectForKey(key));
    defaults->setData(key, record);
    defaults->setInteger("languageMode", 1);
    defaults->setData("path", "/somewhere");
    defaults->removeObject("path");
    defaults->removeObject("never stored");
    for (const bool isAnew : {false, true}) {
        SCOPED_TRACE(isAnew);
        EXPECT_EQ(defaults->dataForKey(key), record);
        EXPECT_EQ(defaults->integerForKey("languageMode"), 1);
        EXPECT_FALSE(defaults->hasObjectForKey("path"));
        // A number is no record, and a record no number.
        EXPECT_EQ(defaults->dataForKey("languageMode"), std::nullopt);
        EXPECT_EQ(defaults->integerForKey(key), 0);
        defaults.reset();
        defaults = std::make_unique<SettingsUserDefaults>(path);
    }
    EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(SettingsUserDefaultsTest, ReadsAndKeepsAnotherProgramsValues)
{
    SettingsUserDefaults mine(path);
    mine.setInteger("mine", 1);
    SettingsUserDefaults(path).setInteger("other", 2);
    mine.setInteger("mine", 3);
    const SettingsUserDefaults later(path);
    while (later.integerForKey("mine") != 3) {
        QThread::yieldCurrentThread(); // until the writing thread has come to it
    }
    EXPECT_EQ(later.integerForKey("other"), 2);
    while (mine.integerForKey("other") != 2) {
        QThread::yieldCurrentThread(); // it looks at the file again once it has nothing more to write
    }
    EXPECT_EQ(mine.integerForKey("mine"), 3);
}

TEST_F(SettingsUserDefaultsTest, TreatsAnInvalidFileAsEmptyAndReplacesIt)
{
    const std::vector<QByteArray> files{
        "",
        "\0\xFF\xFE garbage [[[ = = \n\x01",
        "[General",
        "[General]\ncom.kelmoth.deviceState.170=@Variant(\\0\\0\\0\\x7f\\xff\\xff\\xff\\xff)\n",
        "[General]\ncom.kelmoth.deviceState.170=a, b, c\n",
    };
    QDir().mkpath(QFileInfo(path).path());
    for (const auto &content : files) {
        SCOPED_TRACE(content.left(60).toStdString());
        std::ofstream(path.toStdString()) << content.toStdString();
        EXPECT_EQ(SettingsUserDefaults(path).dataForKey(key), std::nullopt);
        SettingsUserDefaults(path).setData(key, "{}");
        EXPECT_EQ(SettingsUserDefaults(path).dataForKey(key), "{}");
    }
    EXPECT_THAT(log->takeLines(), ElementsAre());
}

TEST_F(SettingsUserDefaultsTest, FilesAreCompatibleWithQSettings)
{
    for (const auto *text : {"", " blank ", "a, b; c = \"d\" \\ '", "@home", "@ByteArray(x)",
                             "\001face\x1f\n\t", "zażółć 🖱", "[x]"}) {
        QSettings(path, QSettings::IniFormat).setValue("theirs", QString::fromUtf8(text));
        SettingsUserDefaults(path).setData("ours", text);
        EXPECT_EQ(SettingsUserDefaults(path).dataForKey("theirs"), text);
        EXPECT_EQ(SettingsUserDefaults(path).dataForKey("ours"), text);
        const QSettings theirs(path, QSettings::IniFormat);
        EXPECT_EQ(theirs.value("ours").toString().toStdString(), text);
        EXPECT_EQ(theirs.value("theirs").toString().toStdString(), text);
    }
    const std::string others = "; by hand\n[Other]\nours=1\n";
    std::ofstream(path.toStdString()) << R"(theirs="\xd83d\xdda1"\101)" << '\n' << others;
    EXPECT_EQ(SettingsUserDefaults(path).dataForKey("theirs"), "🖡A");
    SettingsUserDefaults(path).setInteger("ours", 2);
    EXPECT_THAT(contents(), AllOf(StartsWith("[General]\nours=2\n"), EndsWith(others)));
}

TEST_F(SettingsUserDefaultsTest, LeavesOtherKindsOfFilesAlone)
{
    const auto document = home.filePath(QStringLiteral("document")).toStdString();
    std::ofstream(document) << "[General]\nlanguageMode=1\n";
    const auto name = path.toStdString();
    const bool isRoot = ::geteuid() == 0;
    const auto *const at = name.c_str();
    const auto *const from = document.c_str();
    constexpr uid_t other = 65534;
    // The last two are made by root alone.
    const std::pair<const char *, std::function<int()>> rows[]{
        {"Is a symbolic link", [&] { return ::symlink(from, at); }},
        {"Is a FIFO", [&] { return ::mkfifo(at, 0600); }},
        {"Is a directory", [&] { return ::mkdir(at, 0700); }},
        {"Is larger than 1048576 bytes", [&] { return ::link(from, at) + ::truncate(at, 1'048'577); }},
        {"Is a device", [&] { return ::mknod(at, S_IFCHR | 0600, makedev(1, 3)); }},
        {"Belongs to another user", [&] { return ::link(from, at) + ::chown(at, other, other); }},
    };
    SettingsUserDefaults(path).setInteger("languageMode", 3);
    for (const auto &[why, make] : std::span(rows).first(isRoot ? 6 : 4)) {
        SCOPED_TRACE(why);
        std::filesystem::remove_all(name);
        ASSERT_EQ(make(), 0);
        struct stat before{};
        ASSERT_EQ(::lstat(at, &before), 0);
        SettingsUserDefaults defaults(path);
        EXPECT_EQ(defaults.integerForKey("languageMode"), 0);
        for (const int value : {1, 2}) {
            defaults.setInteger("languageMode", value);
            EXPECT_THAT(defaults.flush(), Optional(HasSubstr(why)));
        }
        EXPECT_EQ(defaults.integerForKey("languageMode"), 2);
        EXPECT_THAT(log->takeLines(),
                    ElementsAre(AllOf(HasSubstr("could not be read"), HasSubstr(why)))); // once
        struct stat after{};
        ASSERT_EQ(::lstat(at, &after), 0);
        EXPECT_EQ(std::tuple(after.st_ino, after.st_mode, after.st_size),
                  std::tuple(before.st_ino, before.st_mode, before.st_size));
    }
    EXPECT_TRUE(std::ifstream(document).get() == '[');
    if (!isRoot) {
        GTEST_SKIP() << "device nodes and other users' files are made by root alone";
    }
}

TEST_F(SettingsUserDefaultsTest, ReportsAFailedSaveAndKeepsTheOldFile)
{
    SettingsUserDefaults(path).setData(key, "old");
    // A full disk: no file may grow beyond some bytes.
    std::signal(SIGXFSZ, SIG_IGN);
    ::rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const ::rlimit small{16, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    expectUnsaved();
    SettingsUserDefaults defaults(path);
    defaults.setInteger("languageMode", 1);
    defaults.flush();
    ::setrlimit(RLIMIT_FSIZE, &before);
    {
        // Reading does not try to write again, which would wait for another program.
        const auto other = lock();
        std::ofstream(path.toStdString(), std::ios::app) << "another=1\n";
        EXPECT_EQ(defaults.integerForKey("languageMode"), 1);
    }
    defaults.setInteger("appearanceMode", 2);
    defaults.flush();
    EXPECT_THAT(contents(), AllOf(HasSubstr("languageMode=1"), HasSubstr("appearanceMode=2")));
    log->takeLines();
    isRenameLost = true;
    expectUnsaved();
    isRenameLost = false;
    // A directory that this user may only read.
    const auto user = ::geteuid();
    const uid_t nobody = 65534;
    for (const auto &place : {home.path(), QFileInfo(path).path(), path}) {
        EXPECT_EQ(::chmod(qUtf8Printable(place), place == path ? 0600 : 0555), 0);
        EXPECT_EQ(user == 0 ? ::chown(qUtf8Printable(place), nobody, nobody) : 0, 0);
    }
    EXPECT_EQ(::seteuid(user == 0 ? nobody : user), 0);
    expectUnsaved();
    EXPECT_EQ(::seteuid(user), 0);
    EXPECT_EQ(::chmod(qUtf8Printable(home.path()), 0755), 0);
    EXPECT_EQ(::chmod(qUtf8Printable(QFileInfo(path).path()), 0755), 0);
    // A place where no file can be made.
    path += QStringLiteral("/below/a/file.ini");
    expectUnsaved();
}

/// A program that writes two records in turn is killed at random moments, 200 times.
TEST_F(SettingsUserDefaultsTest, AKillLeavesACompleteRecord)
{
    auto first = DeviceState::defaultState();
    first.dpiStages.resize(200); // so large that it is not written in one piece
    const auto second = DeviceState::defaultState();
    SettingsUserDefaults(path).setData(key, encode(first).value());
    std::mt19937 random(42);
    int seconds = 0;
    // The longer it takes a busy machine to write once, the later the kill.
    for (int round = 0; round < 200 || seconds == 0; ++round) {
        ASSERT_LT(round, 2000) << "the writers did not come to write";
        const pid_t writer = ::fork();
        if (writer == 0) {
            for (bool isFirst = false;; isFirst = !isFirst) {
                SettingsUserDefaults(path).setData(key, encode(isFirst ? first : second).value());
            }
        }
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 20'000 + 100 * static_cast<useconds_t>(round))(
            random));
        ::kill(writer, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(writer, &status, 0), writer);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself";
        const auto state = decodeDeviceState(SettingsUserDefaults(path).dataForKey(key).value_or(""));
        ASSERT_TRUE(state == first || state == second) << round;
        seconds += state == second ? 1 : 0;
    }
}

TEST_F(SettingsUserDefaultsTest, TimesOutWhenAnotherProgramHoldsTheLock)
{
    SettingsUserDefaults(path).setData(key, "old");
    static const auto other = lock(); // the writer that was given up would go on once it is free
    expectUnsaved();
}

} // namespace kelmoth
