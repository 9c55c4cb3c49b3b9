#pragma once

#include <gtest/gtest.h>
#include <umockdev.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kelmoth {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T> using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

/// The `size` bytes behind the pointer at `offset` of an ioctl's data.
GObjectPtr<UMockdevIoctlData> pointee(UMockdevIoctlData *data, std::size_t offset, std::size_t size);
/// Puts bytes into the program's memory.
void update(UMockdevIoctlData *data, std::span<std::uint8_t> bytes, std::size_t offset = 0);

/// A /sys and a /dev of this test's own, for this process and those it starts. Real libudev and real ioctls
/// see it in place of the machine's, as long as the test runs under umockdev-wrapper.
class MockTestbed {
public:
    /// Performs an ioctl that a program waits for, on the testbed's own thread, one at a time for all nodes.
    /// Gives its result, or a negative errno.
    using Handler = std::function<int(UMockdevIoctlClient *)>;

    MockTestbed();

    UMockdevTestbed *get() const { return m_testbed.get(); }

    /// Where "/dev/…" or "/sys/…" of the mock really lies.
    std::string path(const std::string &mocked) const { return m_root + mocked; }

    /// Adds a device without an event; gives its path in /sys. Two lists of C strings, each a name and its
    /// value in turn and nullptr at the end: attributes and properties.
    std::string addDevice(const char *subsystem, const std::string &name, const std::string &parent,
                          auto... lists)
    {
        return take(umockdev_testbed_add_device(get(), subsystem, name.c_str(),
                                                parent.empty() ? nullptr : parent.c_str(), lists...));
    }

    /// Creates a device node with these contents, open to everyone.
    void addNode(const std::string &node, const std::vector<std::uint8_t> &contents, Handler handler);
    void setMode(const std::string &node, unsigned mode);
    /// Removes the node from /dev. A program that has it open keeps it, and its ioctls still go to the
    /// handler.
    void removeNode(const std::string &node);

private:
    static std::string take(gchar *text);

    const GObjectPtr<UMockdevTestbed> m_testbed;
    const std::string m_root;
};

/// A test on a machine whose devices are mocked.
class MockedMachineTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!umockdev_in_mock_environment()) {
            GTEST_SKIP() << "not run under umockdev-wrapper";
        }
    }

    const std::shared_ptr<MockTestbed> testbed = std::make_shared<MockTestbed>();
};

} // namespace kelmoth
