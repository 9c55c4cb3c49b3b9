#include "Core/HID/RazerProtocol.h"
#include "Core/HID/USBRazerDevice.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Simulated/ManualTime.h"

#include <gmock/gmock.h>

#include <deque>

namespace kelmoth {
namespace {

using std::chrono::microseconds;
using testing::ElementsAre;

/// A device that does as it is told, and notes what it is asked.
struct Script {
    int matchStatus = 0;
    bool isPresent = true;
    int interfaceStatus = 0;
    bool hasInterface = true;
    int openStatus = 0;
    int exchangeStatus = 0;
    int setStatus = 0;
    std::deque<Data> answers{}; ///< an empty one fails the transfer with EPIPE; the last is repeated

    struct Request {
        std::uint8_t bmRequestType;
        std::uint8_t bRequest;
        std::uint16_t wValue;
        std::uint16_t wIndex;
        Data data;
        bool isExclusive;
    };
    std::vector<Request> requests{};
    int openInterface = -1;
    int closes = 0;
    bool isExclusive = false;
};

class ScriptedInterface : public USBDeviceInterface {
public:
    explicit ScriptedInterface(Script &script) : m_script(script) {}
    int open(std::uint16_t number) override
    {
        m_script.openInterface = number;
        return m_script.openStatus;
    }
    void close() override { ++m_script.closes; }
    int beginExchange() override
    {
        m_script.isExclusive = m_script.exchangeStatus == 0;
        return m_script.exchangeStatus;
    }
    void endExchange() override { m_script.isExclusive = false; }
    int deviceRequest(const USBControlRequest &request) override
    {
        m_script.requests.push_back({request.bmRequestType, request.bRequest, request.wValue, request.wIndex,
                                     Data(request.data.begin(), request.data.end()), m_script.isExclusive});
        if (request.bmRequestType == 0x21) {
            return m_script.setStatus;
        }
        const Data answer = m_script.answers.front();
        if (m_script.answers.size() > 1) {
            m_script.answers.pop_front();
        }
        std::ranges::copy(answer, request.data.begin());
        return answer.empty() ? EPIPE : 0;
    }

private:
    Script &m_script;
};

class ScriptedUSB : public USBService, public USBDevice {
public:
    explicit ScriptedUSB(Script &script) : m_script(script) {}
    Matches matchingDevices(std::uint16_t, std::uint16_t) override
    {
        Matches matches{m_script.matchStatus, {}};
        if (m_script.isPresent) {
            matches.devices.push_back(std::make_shared<ScriptedUSB>(m_script));
        }
        return matches;
    }
    InterfaceResult createInterface() override
    {
        return {m_script.interfaceStatus,
                m_script.hasInterface ? std::make_unique<ScriptedInterface>(m_script) : nullptr};
    }

private:
    Script &m_script;
};

const Data request = [] {
    RazerDevice device;
    device.productID = 0x0099;
    return RazerProtocol::createReport(command::getLiftOff{}, device);
}();

Data answer(std::uint8_t status, std::uint8_t commandID = 0x8B)
{
    Data report = request;
    report[0] = status;
    report[7] = commandID;
    return report;
}

class USBRazerDeviceTest : public testing::Test {
protected:
    ~USBRazerDeviceTest() override { Platform::setCurrent({}); }

    std::shared_ptr<USBRazerDevice> device() { return m_device; }
    std::vector<std::string> lines() { return m_log->takeLines(); }

    Script script;
    std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();

private:
    std::shared_ptr<RecordedLog> m_log = RecordedLog::install();
    std::shared_ptr<USBRazerDevice> m_device =
        std::make_shared<USBRazerDevice>(std::make_shared<ScriptedUSB>(script), time, 0x1532, 0x0099, 3);
};

TEST_F(USBRazerDeviceTest, OpensOrSaysWhyNot)
{
    constexpr auto failed = "❌ Failed to open USB device VID:0x1532 PID:0x0099";
    constexpr auto opened = "✅ USB device opened: VID:0x1532 PID:0x0099 reportIndex:0x03";
    script.matchStatus = ENOMEM;
    EXPECT_FALSE(device()->open());
    EXPECT_THAT(lines(), ElementsAre("❌ IOServiceGetMatchingServices failed: 0xC", failed));
    script = {.isPresent = false};
    EXPECT_FALSE(device()->open());
    EXPECT_THAT(lines(), ElementsAre("❌ No USB device found", failed));
    script = {.interfaceStatus = EACCES};
    EXPECT_FALSE(device()->open());
    EXPECT_THAT(lines(), ElementsAre("❌ IOCreatePlugInInterfaceForService failed: 0xD", failed));
    script = {.hasInterface = false};
    EXPECT_FALSE(device()->open());
    EXPECT_THAT(lines(), ElementsAre("❌ QueryInterface for device failed", failed));
    script = {.openStatus = EBUSY};
    EXPECT_TRUE(device()->open());
    EXPECT_THAT(lines(), ElementsAre("⚠️ USBDeviceOpen: 0x10 (device may be in use)", opened));
    EXPECT_EQ(script.openInterface, 3);
}

TEST_F(USBRazerDeviceTest, PutsBothRequestsOnTheWireWithinOneExchange)
{
    script.answers = {answer(0x02)};
    ASSERT_TRUE(device()->open());
    lines();
    const auto result = device()->transact(request, 10'000);
    EXPECT_EQ(result.kind, TransactResult::Kind::success);
    EXPECT_EQ(result.response, answer(0x02));
    ASSERT_EQ(script.requests.size(), 2U);
    const auto &set = script.requests[0];
    EXPECT_EQ(std::tie(set.bmRequestType, set.bRequest, set.wValue, set.wIndex, set.data),
              std::tuple(0x21, 0x09, 0x0300, 3, request));
    const auto &get = script.requests[1];
    EXPECT_EQ(std::tie(get.bmRequestType, get.bRequest, get.wValue, get.wIndex, get.data),
              std::tuple(0xA1, 0x01, 0x0300, 3, Data(90)));
    EXPECT_TRUE(set.isExclusive && get.isExclusive && !script.isExclusive);
    EXPECT_THAT(time->takePauses(), ElementsAre(microseconds(10'000)));
    EXPECT_THAT(lines(), ElementsAre("📤 USB Report sent: 00 1F 00 00 00 04 0B 8B 00 04 00 00 00 00 00 00",
                                     "📥 USB Response: 02 1F 00 00 00 04 0B 8B 00 04 00 00 00 00 00 00"));
}

TEST_F(USBRazerDeviceTest, PadsAShortReportAndSendsALongOneWhole)
{
    ASSERT_TRUE(device()->open());
    lines();
    EXPECT_TRUE(device()->sendRazerReport(Data(60, 0xAB)));
    EXPECT_TRUE(device()->sendRazerReport(Data(95, 0xAB)));
    EXPECT_TRUE(device()->sendRazerReport(Data{0x01, 0x02}));
    Data padded(60, 0xAB);
    padded.resize(90);
    EXPECT_EQ(script.requests[0].data, padded);
    EXPECT_EQ(script.requests[1].data, Data(95, 0xAB));
    EXPECT_EQ(lines().back(), "📤 USB Report sent: 01 02");
}

TEST_F(USBRazerDeviceTest, GivesUpAfterFiveFailures)
{
    struct Row {
        bool isOpen;
        int setStatus;
        int exchangeStatus;
        std::string firstLine;
    };
    for (const auto &row : {Row{false, 0, 0, "❌ USB SET_REPORT failed: 0x6B"}, // not open
                            Row{true, ENODEV, 0, "❌ USB SET_REPORT failed: 0x13"},
                            Row{true, 0, EBUSY, "❌ USB SET_REPORT failed: 0x10"}}) {
        script = {.exchangeStatus = row.exchangeStatus, .setStatus = row.setStatus};
        if (row.isOpen) {
            ASSERT_TRUE(device()->open());
        }
        lines();
        time->takePauses();
        EXPECT_EQ(device()->transact(request, 60'000).kind, TransactResult::Kind::noResponse);
        const auto logged = lines();
        ASSERT_EQ(logged.size(), 10U);
        EXPECT_EQ(logged.front(), row.firstLine);
        EXPECT_EQ(logged.back(), "⚠️ USB command 0x0B/0x8B: no matching response (attempt 5/5)");
        EXPECT_THAT(time->takePauses(),
                    testing::AllOf(testing::SizeIs(5), testing::Each(microseconds(10'000))));
        EXPECT_EQ(script.requests.size(), row.isOpen && row.exchangeStatus == 0 ? 5U : 0U);
    }
}

TEST_F(USBRazerDeviceTest, ClosesWhatItOpened)
{
    {
        USBRazerDevice other(std::make_shared<ScriptedUSB>(script), time, 0x1532, 0x00AA, 0);
        EXPECT_TRUE(other.open());
    }
    EXPECT_EQ(script.closes, 1);
}

} // namespace
} // namespace kelmoth
