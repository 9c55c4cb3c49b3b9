#include "Core/Device/DeviceState.h"
#include "Platform/Qt/SettingsUserDefaults.h"
#include "Tests/Core/RecordedLog.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <fstream>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
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
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

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
        defaults.flush();
        EXPECT_THAT(log->takeLines(), ElementsAre(HasSubstr("⚠️ Settings could not be saved")));
        EXPECT_EQ(contents(), before);
    }

    const QTemporaryDir home;
    QString path = home.filePath(QStringLiteral("app/defaults.ini"));
    std::shared_ptr<RecordedLog> log = RecordedLog::install();
};

TEST_F(SettingsUserDefaultsTest, KeepsValuesForTheirOwnerOnly)
{
    const auto record = encode(DeviceState::defaultState()).value();
    {
        SettingsUserDefaults defaults(path);
        EXPECT_FALSE(defaults.hasObjectForKey(key));
        defaults.setData(key, record);
        defaults.setInteger("languageMode", 1);
        EXPECT_EQ(defaults.dataForKey(key), record); // at once
        defaults.setData("path", "/somewhere");
        defaults.removeObject("path");
        defaults.removeObject("never stored");
        EXPECT_FALSE(defaults.hasObjectForKey("path")); // at once
    }
    SettingsUserDefaults defaults(path);
    EXPECT_FALSE(defaults.hasObjectForKey("path")); // for good
    EXPECT_EQ(defaults.dataForKey(key), record);
    EXPECT_EQ(defaults.integerForKey("languageMode"), 1);
    // A number is no record, and a record no number.
    EXPECT_EQ(defaults.dataForKey("languageMode"), std::nullopt);
    EXPECT_EQ(defaults.integerForKey(key), 0);
    EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(SettingsUserDefaultsTest, SeesWhatAnotherProgramWroteAndLosesNothingOfIt)
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

TEST_F(SettingsUserDefaultsTest, ReadsAFileThatIsNoneAsEmptyAndReplacesIt)
{
    const std::vector<QByteArray> files{
        "",
        "\0\xFF\xFE garbage [[[ = = \n\x01",
        "[General",
        "[General]\ncom.kelmoth.deviceState.170=@Variant(\\0\\0\\0\\x7f\\xff\\xff\\xff\\xff)\n",
        "[General]\ncom.kelmoth.deviceState.170=a, b, c\n",
        "[General]\ncom.kelmoth.deviceState.170=\"" + QByteArray(10'000'000, 'x') + "\"\n",
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

TEST_F(SettingsUserDefaultsTest, SaysThatItCouldNotSaveAndLeavesTheOldFileWhole)
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
        QLockFile other(path + QStringLiteral(".lock"));
        ASSERT_TRUE(other.lock());
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
TEST_F(SettingsUserDefaultsTest, AKillAtAnyMomentLeavesAWholeRecord)
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

TEST_F(SettingsUserDefaultsTest, DoesNotWaitForeverForAnotherProgram)
{
    SettingsUserDefaults(path).setData(key, "old");
    QLockFile other(path + QStringLiteral(".lock"));
    ASSERT_TRUE(other.lock());
    expectUnsaved();
}

} // namespace
} // namespace kelmoth
