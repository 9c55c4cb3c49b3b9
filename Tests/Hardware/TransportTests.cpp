// The transport with its real nodes and locks, on plain threads.

#include "Core/HID/RazerProtocol.h"
#include "Core/HID/USBRazerDevice.h"
#include "Platform/Linux/ExchangeLock.h"
#include "Platform/Linux/LinuxUSBInterface.h"
#include "Platform/Simulated/ManualTime.h"
#include "Testbed/MockHidraw.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <cstdarg>
#include <fcntl.h>
#include <fstream>
#include <latch>
#include <sys/syscall.h>
#include <thread>

namespace kelmoth {

/// The kernel's side of the test's one hidraw node, which is a real file with real locks: `ioctl` below
/// replaces the system's. There is no other process and no library between, so that a thread sanitizer sees
/// all there is.
static std::atomic<MockHidraw *> kernel;
static std::function<void()> onTransfer; ///< within each report's transfer; set while there are none

/// A system in which one mouse is attached, with its first hidraw node.
struct OneMouse : USBService, USBDevice, std::enable_shared_from_this<OneMouse> {
    OneMouse(std::string path, std::shared_ptr<Sleeper> time) : nodes(time), node(path), sleeper(time) {}

    Matches matchingDevices(std::uint16_t, std::uint16_t) override { return {0, {shared_from_this()}}; }
    InterfaceResult createInterface() override
    {
        // No device node of USB: nothing can be claimed.
        const auto find = [this](std::uint16_t) { return hidraw(); };
        return {0, std::make_unique<LinuxUSBInterface>("", find, sleeper)};
    }
    std::shared_ptr<Hidraw> hidraw() { return nodes.node("attach", node, {0x1532, 0x00AC}); }

    HidrawNodes nodes;
    const std::string node;
    const std::shared_ptr<Sleeper> sleeper;
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
    ~TransportTest() override { onTransfer = nullptr; }
    void SetUp() override
    {
        std::ofstream(path).put('\n');
        kernel = &hidraw;
    }

    std::shared_ptr<OneMouse> makeSystem() { return std::make_shared<OneMouse>(path, time); }

    /// A process of its own, as far as open files go.
    std::shared_ptr<USBRazerDevice> openTransport()
    {
        auto transport = std::make_shared<USBRazerDevice>(makeSystem(), time, 0x1532, 0x00AC, 0);
        EXPECT_TRUE(transport->open());
        return transport;
    }
    FileDescriptor openNode() const { return FileDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC)); }

    static Data request(RGBZone zone)
    {
        return RazerProtocol::createReport(command::getBrightness{zone}, {});
    }

    const QTemporaryDir directory;
    const std::string path = directory.filePath(QStringLiteral("hidraw0")).toStdString();
    const std::shared_ptr<YieldingTime> time = std::make_shared<YieldingTime>();
    const std::shared_ptr<SimulatedMouse> mouse =
        std::make_shared<SimulatedMouse>(*SimulatedModel::named("basilisk-v3-pro"), time->clock());
    MockHidraw hidraw{mouse, 0};
};

TEST_F(TransportTest, TwoProcessesGetTheirOwnAnswers)
{
    constexpr int rounds = 60;
    const auto ask = [](const std::shared_ptr<USBRazerDevice> &transport, RGBZone zone) {
        for (int i = 0; i < rounds; ++i) {
            const auto result = transport->transact(request(zone), 60000);
            ASSERT_EQ(result.kind, TransactResult::Kind::success);
            // Both ask for a brightness: only the zone tells the answers apart.
            ASSERT_EQ(result.response[9], request(zone)[9]);
        }
    };
    std::thread other([&, transport = openTransport()] { ask(transport, RGBZone::logo); });
    ask(openTransport(), RGBZone::scrollWheel);
    other.join();
    EXPECT_EQ(mouse->takeTransfers().size(), 4U * rounds) << "each at the first attempt";
}

TEST_F(TransportTest, SurvivesDetachAndDestructionDuringATransfer)
{
    auto transport = openTransport();
    const auto system = makeSystem();
    const auto node = system->hidraw();
    std::latch isUnderWay(3);
    std::latch goOn(1);
    onTransfer = [&] {
        isUnderWay.count_down();
        goOn.wait();
    };
    std::vector<std::jthread> threads;
    threads.emplace_back([held = transport] {
        EXPECT_EQ(held->transact(request(RGBZone::logo), 60000).kind, TransactResult::Kind::success);
    });
    for (int i = 0; i < 2; ++i) { // both open the node
        threads.emplace_back([&system] {
            Data answer(90);
            EXPECT_EQ(system->hidraw()->getFeatureReport(answer).length, 90U);
        });
    }
    isUnderWay.wait();
    transport.reset();
    node->fail();
    EXPECT_EQ(node->open(), ENODEV);
    EXPECT_NE(system->hidraw(), node) << "the next attach";
    goOn.count_down();
}

TEST_F(TransportTest, SendsWholeReportsAndRespectsTheLock)
{
    const auto transport = openTransport();
    EXPECT_TRUE(transport->sendRazerReport(Data(60, 1)));
    auto whole = Data(60, 1);
    whole.resize(90, 0);
    EXPECT_TRUE(std::ranges::equal(mouse->takeTransfers().at(0).bytes, whole));
    const auto other = openNode();
    ASSERT_EQ(takeExchange(other.get(), *time), 0);
    EXPECT_EQ(transport->transact(request(RGBZone::logo), 60000).kind, TransactResult::Kind::noResponse);
    EXPECT_TRUE(mouse->takeTransfers().empty());
}

using ExchangeLockTest = TransportTest;

TEST_F(ExchangeLockTest, AWaitingProcessComesFirst)
{
    const auto first = openNode();
    const auto second = openNode();
    ManualTime clock;
    ASSERT_EQ(takeExchange(first.get(), clock), 0);
    ManualTime waiting;
    waiting.duringPause(0, [&] {
        releaseExchange(first.get());
        EXPECT_EQ(takeExchange(first.get(), clock), EBUSY);
    });
    EXPECT_EQ(takeExchange(second.get(), waiting), 0);
}

TEST_F(ExchangeLockTest, TimesOutAfterTwoSecondsAndEndsWithItsHolder)
{
    auto holder = openNode();
    const auto node = openNode();
    ManualTime clock;
    ASSERT_EQ(takeExchange(holder.get(), clock), 0);
    EXPECT_EQ(takeExchange(node.get(), clock), EBUSY);
    EXPECT_EQ(clock.now(), std::chrono::seconds{2});
    holder = {};
    EXPECT_EQ(takeExchange(node.get(), clock), 0);
    EXPECT_EQ(takeExchange(-1, clock), EBADF);
}

} // namespace kelmoth

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    auto *const argument = va_arg(arguments, std::uint8_t *);
    va_end(arguments);
    if (_IOC_TYPE(request) != 'H') {
        return static_cast<int>(::syscall(SYS_ioctl, fd, request, argument));
    }
    if (request != HIDIOCGRAWINFO && kelmoth::onTransfer) {
        kelmoth::onTransfer();
    }
    const int result = kelmoth::kernel.load()->ioctl(request, {argument, _IOC_SIZE(request)});
    errno = result < 0 ? -result : errno;
    return result < 0 ? -1 : result;
}
