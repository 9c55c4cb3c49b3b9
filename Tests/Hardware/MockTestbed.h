#pragma once

#include <umockdev.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace kelmoth {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T> using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

/// An ioctl that a program is waiting for. On the testbed's own thread, within the handler.
class MockIoctl {
public:
    explicit MockIoctl(UMockdevIoctlClient *client) : m_client(client) {}

    unsigned long request() const { return umockdev_ioctl_client_get_request(m_client); }

    /// The `size` bytes that the argument points to.
    GObjectPtr<UMockdevIoctlData> argument(std::size_t size) const;
    /// The `size` bytes behind the pointer at `offset` of other data.
    static GObjectPtr<UMockdevIoctlData> pointee(UMockdevIoctlData *data, std::size_t offset,
                                                 std::size_t size);
    static std::vector<std::uint8_t> bytes(UMockdevIoctlData *data);
    /// Puts bytes into the program's memory.
    static void write(UMockdevIoctlData *data, std::span<const std::uint8_t> bytes, std::size_t offset = 0);

    /// Lets the program go on: with a result, or with the errno that a negative one stands for.
    void complete(int result);

private:
    UMockdevIoctlClient *m_client;
};

/// Makes this process a user without rights for as long as it lives. A process that has none to begin with
/// stays as it is.
class WithoutRights {
public:
    WithoutRights();
    ~WithoutRights();
    WithoutRights(const WithoutRights &) = delete;
    WithoutRights &operator=(const WithoutRights &) = delete;

private:
    const unsigned m_user;
};

/// A /sys and a /dev of this test's own, for this process and those it starts. Real libudev and real ioctls
/// see it in place of the machine's, as long as the test runs under umockdev-wrapper.
class MockTestbed {
public:
    using Handler = std::function<void(MockIoctl &)>;
    using Pairs = std::vector<std::pair<std::string, std::string>>;

    MockTestbed();
    MockTestbed(const MockTestbed &) = delete;
    MockTestbed &operator=(const MockTestbed &) = delete;

    /// Whether the mock stands in for the machine. Where it does not, the test must be skipped.
    bool isEffective() const;

    /// Where "/dev/…" or "/sys/…" of the mock really lies.
    std::string path(const std::string &mocked) const { return m_root + mocked; }

    /// Adds a device without an event; gives its path in /sys.
    std::string addDevice(const std::string &subsystem, const std::string &name, const std::string &parent,
                          const Pairs &attributes, const Pairs &properties);
    void setBinaryAttribute(const std::string &syspath, const std::string &name,
                            std::vector<std::uint8_t> value);
    void setDriver(const std::string &syspath, const std::string &driver);
    /// Removes a device and all below it, without an event.
    void removeDevice(const std::string &syspath);
    /// Sends the event to every monitor.
    void sendEvent(const std::string &syspath, const std::string &action);

    /// Creates a device node with these contents, open to everyone; its ioctls go to `handler`, on the
    /// testbed's own thread, one at a time for all nodes.
    void addNode(const std::string &node, std::span<const std::uint8_t> contents, Handler handler);
    void setMode(const std::string &node, unsigned mode);
    /// Removes the node from /dev. A program that has it open keeps it, and its ioctls still go to the
    /// handler.
    void removeNode(const std::string &node);

private:
    GObjectPtr<UMockdevTestbed> m_testbed;
    std::string m_root;
};

} // namespace kelmoth
