#include "Core/Device/DeviceState.h"
#include "Platform/Qt/SettingsUserDefaults.h"
#include "Tests/Core/RecordedLog.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto key = "com.kelmoth.deviceState.170";

class SettingsUserDefaultsTest : public testing::Test {
protected:
    ~SettingsUserDefaultsTest() override { Platform::setCurrent({}); }

    std::unique_ptr<SettingsUserDefaults> open() const
    {
        return std::make_unique<SettingsUserDefaults>(path);
    }

    QByteArray contents() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void expectUnsaved()
    {
        const auto before = contents();
        const auto defaults = open();
        defaults->setData(key, "new");
        EXPECT_EQ(defaults->dataForKey(key), "new"); // it holds for as long as the program runs
        defaults->flush();
        EXPECT_THAT(log->takeLines(), ElementsAre(HasSubstr("⚠️ Settings could not be saved")));
        EXPECT_EQ(contents(), before);
    }

    const QTemporaryDir home;
    QString path = home.filePath(QStringLiteral("app/defaults.ini"));
    std::shared_ptr<RecordedLog> log = RecordedLog::install();
};

TEST_F(SettingsUserDefaultsTest, KeepsValuesForTheirOwnerOnly)
{
    const auto record = encode(DeviceState::defaultState());
    {
        const auto defaults = open();
        EXPECT_FALSE(defaults->hasObjectForKey(key));
        defaults->setData(key, record);
        defaults->setInteger("languageMode", 1);
        EXPECT_EQ(defaults->dataForKey(key), record); // at once
        defaults->setData("path", "/somewhere");
        defaults->removeObject("path");
        defaults->removeObject("never stored");
        EXPECT_FALSE(defaults->hasObjectForKey("path")); // at once
    }
    const auto defaults = open();
    EXPECT_FALSE(defaults->hasObjectForKey("path")); // for good
    EXPECT_EQ(defaults->dataForKey(key), record);
    EXPECT_EQ(defaults->integerForKey("languageMode"), 1);
    // A number is no record, and a record no number.
    EXPECT_EQ(defaults->dataForKey("languageMode"), std::nullopt);
    EXPECT_EQ(defaults->integerForKey(key), 0);
    EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_THAT(log->takeLines(), IsEmpty());
}

TEST_F(SettingsUserDefaultsTest, SeesWhatAnotherProgramWroteAndLosesNothingOfIt)
{
    const auto mine = open();
    mine->setInteger("mine", 1);
    open()->setInteger("other", 2);
    mine->setInteger("mine", 3);
    const auto later = open();
    while (later->integerForKey("mine") != 3) {
        QThread::yieldCurrentThread(); // until the writing thread has come to it
    }
    EXPECT_EQ(later->integerForKey("other"), 2);
    while (mine->integerForKey("other") != 2) {
        QThread::yieldCurrentThread(); // it looks at the file again once it has nothing more to write
    }
    EXPECT_EQ(mine->integerForKey("mine"), 3);
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
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        EXPECT_EQ(open()->dataForKey(key), std::nullopt);
        open()->setData(key, "{}");
        EXPECT_EQ(open()->dataForKey(key), "{}");
    }
    EXPECT_THAT(log->takeLines(), IsEmpty());
}

TEST_F(SettingsUserDefaultsTest, SaysThatItCouldNotSaveAndLeavesTheOldFileWhole)
{
    open()->setData(key, "old");
    // A full disk: no file may grow beyond some bytes.
    std::signal(SIGXFSZ, SIG_IGN);
    ::rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const ::rlimit small{16, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    expectUnsaved();
    ::setrlimit(RLIMIT_FSIZE, &before);
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
    open()->setData(key, encode(first));
    std::mt19937 random(42);
    int seconds = 0;
    for (int round = 0; round < 200; ++round) {
        const pid_t writer = ::fork();
        ASSERT_GE(writer, 0);
        for (bool isFirst = false; writer == 0; isFirst = !isFirst) {
            open()->setData(key, encode(isFirst ? first : second));
        }
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 20'000)(random));
        ::kill(writer, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(writer, &status, 0), writer);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself";
        const auto state = decodeDeviceState(open()->dataForKey(key).value_or(""));
        ASSERT_TRUE(state == first || state == second) << round;
        seconds += state == second ? 1 : 0;
    }
    EXPECT_GT(seconds, 0); // the writers did come to write
}

TEST_F(SettingsUserDefaultsTest, DoesNotWaitForeverForAnotherProgram)
{
    open()->setData(key, "old");
    QLockFile other(path + QStringLiteral(".lock"));
    ASSERT_TRUE(other.lock());
    expectUnsaved();
}

} // namespace
} // namespace kelmoth
