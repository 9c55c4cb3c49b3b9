#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/HID.h"
#include "Platform/Sleeper.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>

namespace kelmoth {

/// One hidraw node, for one attach of its interface. It is opened on first use and stays open. Transfers and
/// exchanges: one thread at a time; `open` and `fail`: any thread.
class Hidraw final : public ExchangeChannel {
public:
    /// Identifies the interface: a removed node's name may be reused for another device.
    struct Identity {
        std::int64_t vendorID = 0;
        std::int64_t productID = 0;
    };

    Hidraw(std::string path, Identity identity, std::shared_ptr<Sleeper> sleeper);

    /// Opens the node unless it is open. 0, or errno; ENODEV when the node now belongs to another device.
    /// After an attach the permission may be set later than the node: the first EACCES is retried for about
    /// 300 ms, later ones are not, so that commands without permission fail at once.
    int open();

    /// Marks the device as detached: all further calls fail with ENODEV. Never blocks.
    void fail() { m_hasFailed = true; }
    bool hasFailed() const { return m_hasFailed; }

    /// As in HIDDevice; these add and remove the report ID byte of the kernel's interface.
    int setFeatureReport(std::span<const std::uint8_t> report);
    FeatureReportRead getFeatureReport(std::span<std::uint8_t> buffer);

    int beginExchange() override;
    void endExchange() override;

private:
    int tryOpen();
    int transfer(unsigned long request, void *buffer);

    const std::string m_path;
    const Identity m_identity;
    const std::shared_ptr<Sleeper> m_sleeper;
    std::atomic<bool> m_hasFailed = false;
    std::mutex m_mutex;    ///< guards the members below; held up to 300 ms while opening
    FileDescriptor m_file; ///< never changes once it is open
    bool m_waitedForAccess = false;
};

/// The nodes in use in this process, so that all users of an interface share one open file. Any thread.
class HidrawNodes {
public:
    explicit HidrawNodes(std::shared_ptr<Sleeper> sleeper);

    /// The node at `path`; `attach` names this attach of its interface (its path in sysfs).
    std::shared_ptr<Hidraw> node(const std::string &attach, const std::string &path,
                                 Hidraw::Identity identity);

private:
    const std::shared_ptr<Sleeper> m_sleeper;
    std::mutex m_mutex;
    std::map<std::string, std::weak_ptr<Hidraw>> m_nodes; ///< by attach
};

} // namespace kelmoth
