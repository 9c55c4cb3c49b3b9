// The transport with its real nodes and locks, on plain threads.

#include "Core/HID/RazerProtocol.h"
#include "Core/HID/USBRazerDevice.h"
#include "Platform/Linux/ExchangeLock.h"
#include "Platform/Linux/LinuxUSBInterface.h"
#include "Tests/Hardware/MockHidraw.h"
#include "Tests/Simulated/ManualTime.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <fstream>
#include <latch>
#include <linux/hidraw.h>
#include <semaphore>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>

namespace kelmoth {
namespace {

/// The kernel's side of one hidraw node, within this program: `ioctl` below replaces the system's for this
/// node, which is a real file with real locks. There is no other process and no library between, so that a
/// thread sanitizer sees all there is.
struct FakeKernel {
    explicit FakeKernel(std::shared_ptr<SimulatedMouse> mouse) : hidraw(std::move(mouse), 0)
    {
        std::ofstream(node).put('\n');
        current = this;
    }
    ~FakeKernel() { current = nullptr; }
    FakeKernel(const FakeKernel &) = delete;
    FakeKernel &operator=(const FakeKernel &) = delete;

    bool owns(int fd) const
    {
        struct ::stat mine{};
        struct ::stat theirs{};
        return ::stat(node.c_str(), &mine) == 0 && ::fstat(fd, &theirs) == 0 && mine.st_ino == theirs.st_ino;
    }

    const QTemporaryDir directory;
    const std::string node = directory.filePath(QStringLiteral("hidraw0")).toStdString();
    MockHidraw hidraw;
    std::function<void()> onTransfer; ///< within each report's transfer; set while there are none

    static std::atomic<FakeKernel *> current;
};

std::atomic<FakeKernel *> FakeKernel::current;

/// A system in which one mouse is attached, with its first hidraw node.
class OneMouse : public USBService, public USBDevice, public std::enable_shared_from_this<OneMouse> {
public:
    OneMouse(std::string node, std::shared_ptr<Sleeper> sleeper)
        : m_nodes(sleeper), m_node(std::move(node)), m_sleeper(std::move(sleeper))
    {
    }

    Matches matchingDevices(std::uint16_t, std::uint16_t) override { return {0, {shared_from_this()}}; }

    InterfaceResult createInterface() override
    {
        // No device node of USB: nothing can be claimed.
        return {0, std::make_unique<LinuxUSBInterface>(
                       "", [this](std::uint16_t) { return hidraw(); }, m_sleeper)};
    }

    std::shared_ptr<Hidraw> hidraw()
    {
        return m_nodes.node("attach", m_node, {.vendorID = 0x1532, .productID = 0x00AC});
    }

private:
    HidrawNodes m_nodes;
    const std::string m_node;
    const std::shared_ptr<Sleeper> m_sleeper;
};

/// The time of the mouse moves on as a transport sleeps, and others get to run.
class YieldingTime : public ManualTime {
public:
    void sleep(std::chrono::microseconds duration) override
    {
        ManualTime::sleep(duration);
        std::this_thread::sleep_for(std::chrono::microseconds{50});
    }
};

class TransportTest : public testing::Test {
protected:
    /// A process of its own, as far as open files go.
    std::shared_ptr<USBRazerDevice> openTransport()
    {
        auto transport = std::make_shared<USBRazerDevice>(std::make_shared<OneMouse>(kernel.node, time), time,
                                                          0x1532, 0x00AC, 0);
        EXPECT_TRUE(transport->open());
        return transport;
    }

    FileDescriptor openNode() const
    {
        return FileDescriptor(::open(kernel.node.c_str(), O_RDWR | O_CLOEXEC));
    }

    static Data brightnessRequest(RGBZone zone)
    {
        return RazerProtocol::createReport(command::getBrightness{zone}, {});
    }

    std::shared_ptr<YieldingTime> time = std::make_shared<YieldingTime>();
    std::shared_ptr<SimulatedMouse> mouse =
        std::make_shared<SimulatedMouse>(*SimulatedModel::named("basilisk-v3-pro"), time->clock());
    FakeKernel kernel{mouse};
};

TEST_F(TransportTest, TwoProcessesNeverGetEachOthersAnswers)
{
    constexpr int rounds = 60;
    const auto ask = [](const std::shared_ptr<USBRazerDevice> &transport, RGBZone zone) {
        const auto request = brightnessRequest(zone);
        for (int i = 0; i < rounds; ++i) {
            const auto result = transport->transact(request, 60000);
            ASSERT_EQ(result.kind, TransactResult::Kind::success);
            // Both ask for a brightness: only the zone tells the answers apart.
            ASSERT_EQ(result.response[9], request[9]);
        }
    };
    std::thread other([&, transport = openTransport()] { ask(transport, RGBZone::logo); });
    ask(openTransport(), RGBZone::scrollWheel);
    other.join();
    const auto transfers = mouse->takeTransfers();
    EXPECT_EQ(transfers.size(), 4U * rounds) << "each at the first attempt";
}

TEST_F(TransportTest, ATransportMayBeDroppedAndItsDeviceVanishDuringATransfer)
{
    auto transport = openTransport();
    const auto system = std::make_shared<OneMouse>(kernel.node, time);
    const auto node = system->hidraw();
    std::latch isUnderWay(2);
    std::latch goOn(1);
    kernel.onTransfer = [&] {
        isUnderWay.count_down();
        goOn.wait();
    };
    std::thread transfers([held = transport] {
        EXPECT_EQ(held->transact(brightnessRequest(RGBZone::logo), 60000).kind,
                  TransactResult::Kind::success);
    });
    std::thread reader([&] {
        Data answer(90);
        EXPECT_EQ(node->getFeatureReport(answer).length, 90U);
    });
    isUnderWay.wait();
    transport.reset();
    node->fail();
    EXPECT_EQ(node->open(), ENODEV);
    EXPECT_NE(system->hidraw(), node) << "the next attach";
    goOn.count_down();
    transfers.join();
    reader.join();
}

TEST_F(TransportTest, AllOpenTheNodeOnce)
{
    const auto system = std::make_shared<OneMouse>(kernel.node, time);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            const auto node = system->hidraw();
            EXPECT_EQ(node->open(), 0);
            EXPECT_EQ(node->setFeatureReport(brightnessRequest(RGBZone::logo)), 0);
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    EXPECT_EQ(mouse->takeTransfers().size(), 4U);
}

using ExchangeLockTest = TransportTest;

TEST_F(ExchangeLockTest, WhoHasJustFinishedQueuesBehindWhoWaits)
{
    const auto first = openNode();
    const auto second = openNode();
    ASSERT_EQ(takeExchange(first.get(), *time), 0);

    /// Lets its thread and another meet when it first has to wait.
    struct Meeting : Sleeper {
        void sleep(std::chrono::microseconds) override
        {
            if (!std::exchange(hasMet, true)) {
                meet();
            }
        }
        std::function<void()> meet;
        bool hasMet = false;
    };
    std::binary_semaphore isWaiting{0};
    std::binary_semaphore isAskedForAgain{0};
    std::atomic<bool> waiterHadIt = false;
    std::thread waiter([&] {
        Meeting sleeper;
        sleeper.meet = [&] {
            isWaiting.release();
            isAskedForAgain.acquire();
        };
        EXPECT_EQ(takeExchange(second.get(), sleeper), 0);
        waiterHadIt = true;
        releaseExchange(second.get());
    });
    isWaiting.acquire();
    releaseExchange(first.get());
    Meeting sleeper;
    sleeper.meet = [&] {
        isAskedForAgain.release();
        waiter.join();
    };
    EXPECT_EQ(takeExchange(first.get(), sleeper), 0);
    EXPECT_TRUE(waiterHadIt);
    if (waiter.joinable()) {
        releaseExchange(first.get());
        sleeper.meet();
    }
}

TEST_F(ExchangeLockTest, IsWaitedForTwoSecondsAndEndsWithItsProcess)
{
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const ::pid_t holder = ::fork();
    if (holder == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const auto node = openNode();
        const char status = takeExchange(node.get(), *time) == 0 ? 'y' : 'n';
        (void)!::write(ready[1], &status, 1);
        for (;;) {
            ::pause();
        }
    }
    char status = '?';
    ASSERT_EQ(::read(ready[0], &status, 1), 1);
    EXPECT_EQ(status, 'y');
    ManualTime clock;
    const auto node = openNode();
    EXPECT_EQ(takeExchange(node.get(), clock), EBUSY);
    EXPECT_EQ(clock.now(), std::chrono::seconds{2});
    // Nor does who waits at the gate wait longer.
    const auto another = openNode();
    EXPECT_EQ(takeExchange(another.get(), clock), EBUSY);
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);
    EXPECT_EQ(takeExchange(node.get(), clock), 0);
    EXPECT_EQ(takeExchange(-1, clock), EBADF);
}

} // namespace
} // namespace kelmoth

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    auto *const argument = va_arg(arguments, std::uint8_t *);
    va_end(arguments);
    auto *const kernel = kelmoth::FakeKernel::current.load();
    if (kernel == nullptr || !kernel->owns(fd)) {
        return static_cast<int>(::syscall(SYS_ioctl, fd, request, argument));
    }
    if (request != HIDIOCGRAWINFO && kernel->onTransfer) {
        kernel->onTransfer();
    }
    const int result = kernel->hidraw.ioctl(request, {argument, _IOC_SIZE(request)});
    errno = result < 0 ? -result : errno;
    return result < 0 ? -1 : result;
}
