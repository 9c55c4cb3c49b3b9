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

using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto key = "com.kelmoth.deviceState.170";

/// While it lives, this process can write no more than some bytes to any file.
class FullDisk {
public:
    FullDisk()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{16, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_before{};
};

class SettingsUserDefaultsTest : public testing::Test {
protected:
    ~SettingsUserDefaultsTest() override { Platform::setCurrent({}); }

    std::unique_ptr<SettingsUserDefaults> open() const
    {
        return std::make_unique<SettingsUserDefaults>(path);
    }

    void writeFile(const QByteArray &content) const
    {
        QDir().mkpath(home.filePath(QStringLiteral("app")));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QByteArray readFile() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir home;
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
        EXPECT_EQ(defaults->integerForKey("languageMode"), 1);
        defaults->setData("path", "/somewhere");
        defaults->removeObject("path");
        defaults->removeObject("never stored");
        EXPECT_FALSE(defaults->hasObjectForKey("path")); // at once
    }
    const auto defaults = open();
    EXPECT_FALSE(defaults->hasObjectForKey("path")); // for good
    EXPECT_EQ(defaults->dataForKey(key), record);
    EXPECT_EQ(defaults->integerForKey("languageMode"), 1);
    EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
    // A number is no record, and a record no number.
    EXPECT_EQ(defaults->dataForKey("languageMode"), std::nullopt);
    EXPECT_EQ(defaults->integerForKey(key), 0);
    EXPECT_TRUE(defaults->hasObjectForKey("languageMode"));
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
    const std::vector<QByteArray> contents{
        "",
        "\0\xFF\xFE garbage [[[ = = \n\x01",
        "[General",
        QByteArray(64, '\n'),
        "[General]\ncom.kelmoth.deviceState.170=@Variant(\\0\\0\\0\\x7f\\xff\\xff\\xff\\xff)\n",
        "[General]\ncom.kelmoth.deviceState.170=a, b, c\n",
        "[General]\ncom.kelmoth.deviceState.170=\"" + QByteArray(10'000'000, 'x') + "\"\n",
    };
    for (const auto &content : contents) {
        writeFile(content);
        {
            const auto defaults = open();
            EXPECT_EQ(defaults->dataForKey(key), std::nullopt) << content.left(60).toStdString();
            defaults->setData(key, "{}");
        }
        EXPECT_EQ(open()->dataForKey(key), "{}") << content.left(60).toStdString();
    }
    EXPECT_THAT(log->takeLines(), IsEmpty());
}

TEST_F(SettingsUserDefaultsTest, SaysThatItCouldNotSaveAndLeavesTheOldFileWhole)
{
    open()->setData(key, "old");
    const auto before = readFile();
    const auto couldNotSave = testing::ElementsAre(HasSubstr("⚠️ Settings could not be saved"));
    {
        const FullDisk disk;
        const auto defaults = open();
        defaults->setData(key, "new");
        EXPECT_EQ(defaults->dataForKey(key), "new"); // it holds for as long as the program runs
    }
    EXPECT_EQ(readFile(), before);
    EXPECT_THAT(log->takeLines(), couldNotSave);

    // A place where no file can be made.
    path += QStringLiteral("/below/a/file.ini");
    open()->setData(key, "new");
    EXPECT_THAT(log->takeLines(), couldNotSave);
}

TEST_F(SettingsUserDefaultsTest, DoesNotWaitForeverForAnotherProgram)
{
    open()->setData(key, "old");
    const auto before = readFile();
    QLockFile other(path + QStringLiteral(".lock"));
    ASSERT_TRUE(other.lock());
    open()->setData(key, "new");
    EXPECT_THAT(log->takeLines(), testing::ElementsAre(HasSubstr("⚠️ Settings could not be saved")));
    EXPECT_EQ(readFile(), before);
}

/// A program that writes two records in turn is killed at random moments, 200 times.
TEST_F(SettingsUserDefaultsTest, AKillAtAnyMomentLeavesAWholeRecord)
{
    auto first = DeviceState::defaultState();
    first.pollingRate = 125;
    for (int i = 0; i < 200; ++i) { // so large that it is not written in one piece
        first.dpiStages.push_back({i, 100, DPIStageColor::cyan});
    }
    const auto second = DeviceState::defaultState();
    open()->setData(key, encode(first));
    std::mt19937 random(42);
    int seconds = 0;
    for (int round = 0; round < 200; ++round) {
        const pid_t writer = ::fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            for (bool isFirst = false;; isFirst = !isFirst) {
                open()->setData(key, encode(isFirst ? first : second));
            }
        }
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 20'000)(random));
        ::kill(writer, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(writer, &status, 0), writer);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself";
        const auto record = open()->dataForKey(key);
        ASSERT_TRUE(record) << round;
        const auto state = decodeDeviceState(*record);
        ASSERT_TRUE(state == first || state == second) << round;
        seconds += state == second ? 1 : 0;
    }
    EXPECT_GT(seconds, 0); // the writers did come to write
}

} // namespace
} // namespace kelmoth
