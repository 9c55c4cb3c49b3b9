// Starts a tray program as its tray host, clicks its item like a user, and prints in milliseconds and KiB:
// bench_shell PROGRAM [ARGUMENT]...
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto timeout = 20s;
constexpr std::uint16_t panelWidth = 340;
constexpr std::uint16_t panelHeight = 610;
constexpr std::uint32_t itemSide = 24;
constexpr int laterOpenings = 3;

template <class T> struct Freed : std::unique_ptr<T, decltype(&std::free)> {
    explicit Freed(T *memory) : std::unique_ptr<T, decltype(&std::free)>(memory, &std::free) {}
};

[[noreturn]] void giveUp(const char *why)
{
    std::fprintf(stderr, "bench_shell: %s\n", why);
    std::exit(1);
}

/// An X server with nothing on it but a system tray, ours, and the program under measurement.
class Screen {
public:
    Screen()
    {
        m_connection = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(m_connection) != 0) {
            giveUp("no X server");
        }
        const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_root = screen->root;
        m_tray = xcb_generate_id(m_connection);
        const std::uint32_t isOverride = 1;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_tray, m_root, 900, 900, itemSide, itemSide, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_OVERRIDE_REDIRECT,
                          &isOverride);
        xcb_map_window(m_connection, m_tray);
        xcb_set_selection_owner(m_connection, m_tray, atom("_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
        m_opcode = atom("_NET_SYSTEM_TRAY_OPCODE");
        xcb_flush(m_connection);
    }

    /// Waits for an item and takes it in.
    void dock()
    {
        waitFor("the item", [this] {
            const Freed<xcb_generic_event_t> event(xcb_poll_for_event(m_connection));
            if (!event || (event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) {
                return false;
            }
            const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(*event);
            if (message.type != m_opcode || message.data.data32[1] != 0) {
                return false;
            }
            embed(message.data.data32[2]);
            return true;
        });
    }

    void click()
    {
        xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_root, 912, 912, 0);
        xcb_test_fake_input(m_connection, XCB_BUTTON_PRESS, 1, XCB_CURRENT_TIME, m_root, 0, 0, 0);
        xcb_test_fake_input(m_connection, XCB_BUTTON_RELEASE, 1, XCB_CURRENT_TIME, m_root, 0, 0, 0);
        xcb_flush(m_connection);
    }

    void waitForPanel()
    {
        waitFor("the panel", [this] {
            const auto panel = findPanel();
            return panel && isPainted(*panel);
        });
    }

    void waitForNoPanel()
    {
        waitFor("the panel to go", [this] { return !findPanel(); });
    }

private:
    static void waitFor(const char *what, const std::function<bool()> &condition)
    {
        const auto end = Clock::now() + timeout;
        while (!condition()) {
            if (Clock::now() > end) {
                giveUp((std::string("waited in vain for ") + what).c_str());
            }
            std::this_thread::sleep_for(500us);
        }
    }

    xcb_atom_t atom(std::string_view name)
    {
        const auto cookie =
            xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const Freed<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        return reply ? reply->atom : XCB_NONE;
    }

    void embed(xcb_window_t item)
    {
        xcb_reparent_window(m_connection, item, m_tray, 0, 0);
        const std::array<std::uint32_t, 2> size{itemSide, itemSide};
        xcb_configure_window(m_connection, item, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             size.data());
        xcb_map_window(m_connection, item);
        xcb_client_message_event_t notify{};
        notify.response_type = XCB_CLIENT_MESSAGE;
        notify.format = 32;
        notify.window = item;
        notify.type = atom("_XEMBED");
        notify.data.data32[3] = m_tray;
        xcb_send_event(m_connection, 0, item, 0, reinterpret_cast<const char *>(&notify));
        xcb_flush(m_connection);
    }

    /// The top-level window that is large enough.
    std::optional<xcb_window_t> findPanel()
    {
        const Freed<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr));
        const auto *windows = tree ? xcb_query_tree_children(tree.get()) : nullptr;
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
            const auto sizeCookie = xcb_get_geometry(m_connection, windows[i]);
            const auto stateCookie = xcb_get_window_attributes(m_connection, windows[i]);
            const Freed<xcb_get_geometry_reply_t> size(
                xcb_get_geometry_reply(m_connection, sizeCookie, nullptr));
            const Freed<xcb_get_window_attributes_reply_t> state(
                xcb_get_window_attributes_reply(m_connection, stateCookie, nullptr));
            if (size && state && state->map_state == XCB_MAP_STATE_VIEWABLE && size->width >= panelWidth &&
                size->height >= panelHeight) {
                return windows[i];
            }
        }
        return std::nullopt;
    }

    /// The bare server shows black where nothing has been drawn.
    bool isPainted(xcb_window_t panel)
    {
        const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, panel, panelWidth / 2,
                                          panelHeight - 8, 1, 1, 0xFFFFFF);
        const Freed<xcb_get_image_reply_t> image(xcb_get_image_reply(m_connection, cookie, nullptr));
        const auto *pixel = image ? xcb_get_image_data(image.get()) : nullptr;
        return pixel && (pixel[0] | pixel[1] | pixel[2]) != 0;
    }

    xcb_connection_t *m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    xcb_window_t m_tray = XCB_NONE;
    xcb_atom_t m_opcode = XCB_NONE;
};

double since(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Proportional set size: what of the memory is the process's own, and its share of the rest.
long proportionalKilobytes(pid_t process)
{
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string line; std::getline(rollup, line);) {
        if (line.starts_with("Pss:")) {
            return std::stol(line.substr(4));
        }
    }
    giveUp("the program has ended");
}

double timeOpening(Screen &screen)
{
    const auto start = Clock::now();
    screen.click();
    screen.waitForPanel();
    return since(start);
}

void close(Screen &screen)
{
    std::this_thread::sleep_for(700ms); // no double click, and animations at rest
    screen.click();
    screen.waitForNoPanel();
    std::this_thread::sleep_for(700ms);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fputs("Usage: bench_shell PROGRAM [ARGUMENT]...\n", stderr);
        return 2;
    }
    Screen screen;
    pid_t process = 0;
    const auto start = Clock::now();
    if (posix_spawn(&process, argv[1], nullptr, nullptr, argv + 1, environ) != 0) {
        giveUp("the program does not start");
    }
    screen.dock();
    std::printf("start %.1f\n", since(start));
    std::this_thread::sleep_for(2500ms); // the mouse has been read
    std::printf("memory-before %ld\n", proportionalKilobytes(process));
    std::printf("first-opening %.1f\n", timeOpening(screen));
    for (int i = 0; i < laterOpenings; ++i) {
        close(screen);
        std::printf("later-opening %.1f\n", timeOpening(screen));
    }
    close(screen);
    std::printf("memory-hidden %ld\n", proportionalKilobytes(process));
    ::kill(process, SIGTERM);
    int status = 0;
    ::waitpid(process, &status, 0);
    return 0;
}
