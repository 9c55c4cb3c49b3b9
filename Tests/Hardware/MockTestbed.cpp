#include "Tests/Hardware/MockTestbed.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace kelmoth {

namespace {

gboolean handleIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer handler)
{
    const int result = (*static_cast<MockTestbed::Handler *>(handler))(client);
    umockdev_ioctl_client_complete(client, std::max(result, -1), std::max(-result, 0));
    return TRUE;
}

void deleteHandler(gpointer handler, GClosure *)
{
    delete static_cast<MockTestbed::Handler *>(handler);
}

} // namespace

GObjectPtr<UMockdevIoctlData> pointee(UMockdevIoctlData *data, std::size_t offset, std::size_t size)
{
    return GObjectPtr<UMockdevIoctlData>(umockdev_ioctl_data_resolve(data, offset, size, nullptr));
}

void update(UMockdevIoctlData *data, std::span<std::uint8_t> bytes, std::size_t offset)
{
    umockdev_ioctl_data_update(data, offset, bytes.data(), static_cast<gint>(bytes.size()));
}

MockTestbed::MockTestbed()
    : m_testbed(umockdev_testbed_new()), m_root(take(umockdev_testbed_get_root_dir(m_testbed.get())))
{
    // Programs under test may run as a user without rights; a monitor of theirs is a socket in there.
    fs::permissions(m_root, fs::perms::all);
    fs::permissions(path("/ioctl/_default"), fs::perms::all);
}

std::string MockTestbed::take(gchar *text)
{
    const std::string copy = text;
    g_free(text);
    return copy;
}

void MockTestbed::addNode(const std::string &node, const std::vector<std::uint8_t> &contents, Handler handler)
{
    const GObjectPtr<UMockdevIoctlBase> ioctls(umockdev_ioctl_base_new());
    g_signal_connect_data(ioctls.get(), "handle-ioctl", G_CALLBACK(handleIoctl),
                          new Handler(std::move(handler)), deleteHandler, G_CONNECT_AFTER);
    umockdev_testbed_attach_ioctl(get(), node.c_str(), ioctls.get(), nullptr);
    fs::create_directories(fs::path(path(node)).parent_path());
    std::ofstream(path(node), std::ios::binary) << std::string(contents.begin(), contents.end());
    setMode(node, 0666);
    // The ioctls of a program without rights must reach the handler too.
    fs::permissions(path("/ioctl" + node), fs::perms::all);
}

void MockTestbed::setMode(const std::string &node, unsigned mode)
{
    fs::permissions(path(node), fs::perms(mode));
}

void MockTestbed::removeNode(const std::string &node)
{
    if (fs::remove(path(node))) {
        umockdev_testbed_detach_ioctl(get(), node.c_str(), nullptr);
    }
}

} // namespace kelmoth
