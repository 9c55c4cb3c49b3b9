#pragma once

#include <umockdev.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kelmoth {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T> using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

/// A /sys and a /dev of this test's own, for this process and those it starts. Real libudev and real ioctls
/// see it in place of the machine's, as long as the test runs under umockdev-wrapper.
class MockTestbed {
public:
    /// Performs an ioctl that a program waits for, on the testbed's own thread, one at a time for all nodes.
    /// Gives its result, or a negative errno.
    using Handler = std::function<int(UMockdevIoctlClient *)>;

    MockTestbed()
    {
        // Programs under test may run as a user without rights; a monitor of theirs is a socket in there.
        std::filesystem::permissions(m_root, std::filesystem::perms::all);
        std::filesystem::permissions(path("/ioctl/_default"), std::filesystem::perms::all);
    }

    UMockdevTestbed *get() const { return m_testbed.get(); }

    /// Where "/dev/…" or "/sys/…" of the mock really lies.
    std::string path(const std::string &mocked) const { return m_root + mocked; }

    /// Creates a device node with these contents, open to everyone.
    void addNode(const std::string &node, const std::vector<std::uint8_t> &contents, Handler handler)
    {
        if (m_removed.erase(node) > 0) {
            umockdev_testbed_detach_ioctl(get(), node.c_str(), nullptr);
        }
        const GObjectPtr<UMockdevIoctlBase> ioctls(umockdev_ioctl_base_new());
        const auto handle = [](UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer data) -> gboolean {
            const int result = (*static_cast<Handler *>(data))(client);
            umockdev_ioctl_client_complete(client, std::max(result, -1), std::max(-result, 0));
            return TRUE;
        };
        const auto destroy = [](gpointer data, GClosure *) { delete static_cast<Handler *>(data); };
        g_signal_connect_data(ioctls.get(), "handle-ioctl", G_CALLBACK(+handle),
                              new Handler(std::move(handler)), destroy, G_CONNECT_AFTER);
        umockdev_testbed_attach_ioctl(get(), node.c_str(), ioctls.get(), nullptr);
        std::filesystem::create_directories(std::filesystem::path(path(node)).parent_path());
        std::ofstream(path(node), std::ios::binary) << std::string(contents.begin(), contents.end());
        std::filesystem::permissions(path(node), std::filesystem::perms(0666));
        // The ioctls of a program without rights must reach the handler too.
        std::filesystem::permissions(path("/ioctl" + node), std::filesystem::perms::all);
    }

    /// Removes the node from /dev. A program that has it open keeps it, and its ioctls still go to the
    /// handler.
    void removeNode(const std::string &node)
    {
        // Its handler stays until the name is used again: a program that is just opening it would be ended by
        // the mock if it found nobody there.
        if (std::filesystem::remove(path(node))) {
            m_removed.insert(node);
        }
    }

    /// A text that GLib allocated; frees it.
    static std::string take(gchar *text)
    {
        return std::unique_ptr<gchar, decltype(&g_free)>(text, &g_free).get();
    }

private:
    const GObjectPtr<UMockdevTestbed> m_testbed{umockdev_testbed_new()};
    const std::string m_root = take(umockdev_testbed_get_root_dir(get()));
    std::set<std::string> m_removed; ///< nodes that are gone
};

} // namespace kelmoth
