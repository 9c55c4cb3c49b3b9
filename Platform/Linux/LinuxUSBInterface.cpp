#include "Platform/Linux/LinuxUSBInterface.h"

#include "Platform/Linux/ExchangeLock.h"

#include <cerrno>
#include <utility>

namespace kelmoth {

namespace {

/// Sends a control request through a hidraw node, which supports these two only.
int requestThrough(Hidraw &node, const USBControlRequest &request)
{
    using namespace hidClassRequest;
    const auto is = [&](std::uint8_t type, std::uint8_t code) {
        return request.bmRequestType == type && request.bRequest == code && request.wValue == featureReport;
    };
    if (is(typeOut, setReport)) {
        return node.setFeatureReport(request.data);
    }
    if (is(typeIn, getReport)) {
        return node.getFeatureReport(request.data).status;
    }
    return ENOTSUP;
}

} // namespace

LinuxUSBInterface::LinuxUSBInterface(std::string usbNode, HidrawFinder findHidraw,
                                     std::shared_ptr<Sleeper> sleeper)
    : m_usbNode(std::move(usbNode)), m_findHidraw(std::move(findHidraw)), m_sleeper(std::move(sleeper))
{
}

int LinuxUSBInterface::open(std::uint16_t interfaceNumber)
{
    close();
    m_interfaceNumber = interfaceNumber;
    auto claim = UsbfsInterface::claim(m_usbNode, interfaceNumber);
    m_claimed = std::move(claim.interface);
    return claim.status;
}

void LinuxUSBInterface::close()
{
    m_claimed.reset();
    m_hidraw.reset();
}

int LinuxUSBInterface::deviceRequest(const USBControlRequest &request)
{
    if (request.wIndex != m_interfaceNumber) {
        return ENOTSUP;
    }
    if (m_claimed) {
        return m_claimed->controlTransfer(request);
    }
    const auto node = hidraw();
    return node ? requestThrough(*node, request) : ENXIO;
}

int LinuxUSBInterface::beginExchange()
{
    if (m_claimed) {
        return takeExchange(m_claimed->fileDescriptor(), *m_sleeper);
    }
    m_held = hidraw();
    return m_held ? m_held->beginExchange() : ENXIO;
}

void LinuxUSBInterface::endExchange()
{
    if (m_held) {
        m_held->endExchange();
        m_held.reset();
    } else if (m_claimed) {
        releaseExchange(m_claimed->fileDescriptor());
    }
}

std::shared_ptr<Hidraw> LinuxUSBInterface::hidraw()
{
    if (!m_hidraw || m_hidraw->hasFailed()) {
        m_hidraw = m_findHidraw(m_interfaceNumber);
    }
    return m_hidraw;
}

} // namespace kelmoth
