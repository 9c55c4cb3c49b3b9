#include "Platform/Simulated/SimulatedMouse.h"

#include "Platform/Simulated/SimulatedFirmware.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kelmoth {

namespace {

namespace code = RazerProtocol::code;
namespace offset = RazerProtocol::offset;
using Kind = SimulatedFault::Kind;
using Report = SimulatedFirmware::Report;
using Status = SimulatedFirmware::Status;

constexpr std::size_t shortReadLength = 40;
constexpr std::size_t maxTransfers = 10000;

bool concerns(const SimulatedFault &fault, const std::optional<Report> &request)
{
    const auto fits = [&](const std::optional<std::uint8_t> &wanted, std::size_t position) {
        return !wanted || (request && (*request)[position] == *wanted);
    };
    return fits(fault.commandClass, offset::commandClass) && fits(fault.commandID, offset::commandID);
}

Report answerToAnotherCommand(const Report &request)
{
    const auto &other = request[offset::commandClass] == code::getBatteryLevel.commandClass
                            ? code::getDPIStages
                            : code::getBatteryLevel;
    Report report = request;
    report[offset::commandClass] = other.commandClass;
    report[offset::commandID] = other.commandID;
    report[offset::dataSize] = other.dataSize;
    return SimulatedFirmware::echo(report, Status::accepted);
}

} // namespace

SimulatedMouse::SimulatedMouse(SimulatedModel model, Clock clock)
    : m_model(std::move(model)),
      m_clock(std::move(clock)),
      m_firmware(std::make_unique<SimulatedFirmware>(m_model, m_clock()))
{
}

SimulatedMouse::~SimulatedMouse() = default;

std::uint16_t SimulatedMouse::protocolInterface() const
{
    return m_firmware->reportIndex().value_or(0);
}

int SimulatedMouse::setReport(std::uint16_t wIndex, std::span<const std::uint8_t> report)
{
    std::unique_lock lock(m_mutex);
    const bool wasAttached = m_isAttached;
    const int status = takeRequest(wIndex, report);
    record({true, wIndex, {report.begin(), report.end()}, status});
    finish(std::move(lock), wasAttached);
    return status;
}

FeatureReportRead SimulatedMouse::getReport(std::uint16_t wIndex, std::span<std::uint8_t> buffer)
{
    std::unique_lock lock(m_mutex);
    const bool wasAttached = m_isAttached;
    const auto read = giveAnswer(wIndex, buffer);
    const auto given = buffer.first(read.length);
    record({false, wIndex, {given.begin(), given.end()}, read.status});
    finish(std::move(lock), wasAttached);
    return read;
}

int SimulatedMouse::takeRequest(std::uint16_t wIndex, std::span<const std::uint8_t> report)
{
    if (!m_isAttached) {
        return ENODEV;
    }
    Report request{};
    const bool isRefused = stalls(wIndex) || report.size() != request.size();
    if (isRefused) {
        const auto fault = nextFault({Kind::failedTransfer, Kind::unplug}, std::nullopt);
        return fault ? fail(*fault) : EPIPE;
    }
    std::ranges::copy(report, request.begin());
    const auto fault =
        nextFault({Kind::failedTransfer, Kind::unplug, Kind::noAnswer, Kind::rejected}, request);
    if (fault && (fault->kind == Kind::failedTransfer || fault->kind == Kind::unplug)) {
        return fail(*fault);
    }
    m_lastRequest = request;
    if (fault && fault->kind == Kind::noAnswer) {
        return 0;
    }
    const auto now = m_clock();
    const auto answer =
        fault ? SimulatedFirmware::echo(request, Status{fault->status}) : m_firmware->answer(request, now);
    m_exchange.reset();
    if (answer) {
        m_exchange = {request, *answer, now + m_firmware->answerTime()};
    }
    return 0;
}

FeatureReportRead SimulatedMouse::giveAnswer(std::uint16_t wIndex, std::span<std::uint8_t> buffer)
{
    if (!m_isAttached) {
        return {ENODEV, 0};
    }
    if (stalls(wIndex)) {
        const auto fault = nextFault({Kind::failedTransfer, Kind::unplug}, std::nullopt);
        return {fault ? fail(*fault) : EPIPE, 0};
    }
    const auto fault =
        nextFault({Kind::failedTransfer, Kind::unplug, Kind::notReady, Kind::otherCommand, Kind::shortRead},
                  m_lastRequest);
    if (fault && (fault->kind == Kind::failedTransfer || fault->kind == Kind::unplug)) {
        return {fail(*fault), 0};
    }
    auto report = currentAnswer();
    auto length = std::min(buffer.size(), report.size());
    if (fault && fault->kind == Kind::shortRead) {
        length = std::min(length, shortReadLength);
    } else if (fault && m_lastRequest) {
        report = fault->kind == Kind::notReady ? SimulatedFirmware::echo(*m_lastRequest, Status::notReady)
                                               : answerToAnotherCommand(*m_lastRequest);
    }
    std::ranges::copy(std::span{report}.first(length), buffer.begin());
    return {0, length};
}

int SimulatedMouse::fail(const SimulatedFault &fault)
{
    if (fault.kind == Kind::unplug) {
        detach();
        return ENODEV;
    }
    return fault.error != 0 ? fault.error : EIO;
}

SimulatedMouse::Report SimulatedMouse::currentAnswer() const
{
    if (!m_exchange) {
        return {};
    }
    if (m_clock() < m_exchange->readyAt) {
        return SimulatedFirmware::echo(m_exchange->request, Status::notReady);
    }
    return m_exchange->answer;
}

bool SimulatedMouse::stalls(std::uint16_t wIndex) const
{
    return m_firmware->reportIndex() != wIndex;
}

std::optional<SimulatedFault> SimulatedMouse::nextFault(std::initializer_list<Kind> kinds,
                                                        const std::optional<Report> &request)
{
    for (auto &fault : m_faults) {
        const bool matches = std::ranges::find(kinds, fault.kind) != kinds.end() && concerns(fault, request);
        if (!matches || fault.times == 0) {
            continue;
        }
        if (fault.skip > 0) {
            --fault.skip;
            continue;
        }
        if (fault.times > 0) {
            --fault.times;
        }
        ++m_metFaults[fault.kind];
        return fault;
    }
    return std::nullopt;
}

int SimulatedMouse::openStatus()
{
    const std::lock_guard lock(m_mutex);
    if (!m_isAttached) {
        return ENODEV;
    }
    return nextFault({Kind::denied}, m_lastRequest) ? EACCES : 0;
}

void SimulatedMouse::addFault(SimulatedFault fault)
{
    const std::lock_guard lock(m_mutex);
    m_faults.push_back(fault);
}

void SimulatedMouse::clearFaults()
{
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
}

std::map<Kind, int> SimulatedMouse::metFaults() const
{
    const std::lock_guard lock(m_mutex);
    return m_metFaults;
}

bool SimulatedMouse::isAttached() const
{
    const std::lock_guard lock(m_mutex);
    return m_isAttached;
}

int SimulatedMouse::attachment() const
{
    const std::lock_guard lock(m_mutex);
    return m_attachment;
}

void SimulatedMouse::unplug()
{
    std::unique_lock lock(m_mutex);
    const bool wasAttached = m_isAttached;
    detach();
    finish(std::move(lock), wasAttached);
}

void SimulatedMouse::replug()
{
    std::unique_lock lock(m_mutex);
    const bool wasAttached = m_isAttached;
    if (!wasAttached) {
        m_isAttached = true;
        ++m_attachment;
    }
    finish(std::move(lock), wasAttached);
}

void SimulatedMouse::detach()
{
    m_isAttached = false;
    m_lastRequest.reset();
    m_exchange.reset();
    m_firmware->restart();
}

/// Ends a call: tells of a change of the attachment, with the lock given back.
void SimulatedMouse::finish(std::unique_lock<std::mutex> lock, bool wasAttached)
{
    const bool isAttachedNow = m_isAttached;
    const auto callback = isAttachedNow != wasAttached ? m_attachmentCallback : nullptr;
    lock.unlock();
    if (callback) {
        callback(isAttachedNow);
    }
}

void SimulatedMouse::setAttachmentCallback(std::function<void(bool)> callback)
{
    const std::lock_guard lock(m_mutex);
    m_attachmentCallback = std::move(callback);
}

void SimulatedMouse::record(Transfer transfer)
{
    m_transfers.push_back(std::move(transfer));
    if (m_transfers.size() > maxTransfers) {
        m_transfers.pop_front();
    }
}

std::vector<SimulatedMouse::Transfer> SimulatedMouse::takeTransfers()
{
    const std::lock_guard lock(m_mutex);
    std::vector<Transfer> transfers{std::make_move_iterator(m_transfers.begin()),
                                    std::make_move_iterator(m_transfers.end())};
    m_transfers.clear();
    return transfers;
}

SimulatedMouse::State SimulatedMouse::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_firmware->state(m_clock());
}

void SimulatedMouse::setState(State state)
{
    const std::lock_guard lock(m_mutex);
    m_firmware->setState(std::move(state), m_clock());
}

} // namespace kelmoth
