// usbip_mouse: an emulated mouse on the kernel's virtual USB host controller (vhci_hcd), which speaks USB/IP
// over one end of a socket pair. Takes a command a line from stdin; answers each with what it prints and a
// line
// "." when it is done:
//
//   plug MODEL                   as mice are named for --simulate; it keeps its settings until the end
//   unplug
//   fault KIND [SKIP [TIMES]]    stall, hang, silent or unplug: at the transfer (silent: request) after so
//   many mend                         no more faults move on|off                  whether the pointer moves
//   log                          each report since the last time: microseconds since the boot, the setup
//   packet,
//                                the bytes, the status: negative an errno, -110 never completed

#include "Testbed/UsbDescriptors.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <sstream>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace kelmoth {

namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

/// A message's head: twelve words in the network's byte order, the last two the setup packet of a control
/// transfer.
struct Head {
    std::uint32_t command = 0;
    std::uint32_t sequence = 0;
    std::uint32_t device = 0;
    std::uint32_t direction = 0; ///< 1: to the host
    std::uint32_t endpoint = 0;
    std::uint32_t flags = 0; ///< of an answer: its status; of an unlink: the sequence of what it takes back
    std::uint32_t length = 0;
    std::array<std::uint32_t, 3> unused{};
    std::array<std::uint8_t, 8> setup{};
};
static_assert(sizeof(Head) == 48);
enum Command : std::uint32_t { submit = 1, unlink = 2, submitted = 3, unlinked = 4 };

Head inOtherByteOrder(Head head)
{
    for (auto *word : {&head.command, &head.sequence, &head.device, &head.direction, &head.endpoint,
                       &head.flags, &head.length}) {
        *word = htonl(*word);
    }
    return head;
}

std::chrono::microseconds now()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

class Plug {
public:
    void plug(const std::string &name, std::optional<SimulatedFault> fault)
    {
        unplug();
        auto &mouse = m_mice[name];
        if (!mouse) {
            mouse = std::make_unique<SimulatedMouse>(SimulatedModel::named(name).value(), now);
        }
        m_mouse = mouse.get();
        m_mouse->replug();
        if (fault) {
            m_mouse->addFault(*fault);
        }
        std::array<int, 2> ends{};
        if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0) {
            std::perror("socketpair");
            std::exit(1);
        }
        // The kernel may not have let go yet of the port used last: take the next, of the eight that are not
        // for USB 3. The speed is 2, full.
        m_port = (m_port + 1) % 8;
        std::ofstream attach("/sys/devices/platform/vhci_hcd.0/attach");
        attach << m_port << ' ' << ends[1] << ' ' << 0x00010002 << " 2" << std::flush;
        if (!attach) {
            std::cout << "port " << m_port << " is not free\n";
        }
        ::close(ends[1]);
        m_socket = ends[0];
    }

    void unplug()
    {
        if (m_socket >= 0) {
            ::close(m_socket);
            m_socket = -1;
            m_mouse->unplug();
            m_waiting.clear();
        }
    }

    void command(const std::string &line)
    {
        std::istringstream words(line);
        std::string verb, what;
        words >> verb;
        if (verb == "plug") {
            words >> what;
            plug(what, fault(words));
        } else if (verb == "unplug") {
            unplug();
        } else if (verb == "fault") {
            m_mouse->addFault(fault(words).value());
        } else if (verb == "mend") {
            for (const auto &each : m_mice) {
                each.second->clearFaults();
            }
        } else if (verb == "move") {
            words >> what;
            m_isMoving = what == "on";
        } else if (verb == "log") {
            std::cout << std::exchange(m_log, {});
        } else {
            std::cout << "unknown: " << line << '\n';
        }
        std::cout << "." << '\n' << std::flush;
    }

    /// Handles the kernel's next message.
    void handle()
    {
        Head head;
        if (!receive(&head, sizeof head)) {
            return unplug();
        }
        head = inOtherByteOrder(head);
        if (head.command == unlink) {
            const bool isWaiting =
                std::erase_if(m_waiting, [&](const Head &urb) { return urb.sequence == head.flags; }) > 0;
            return answer(head, unlinked, isWaiting ? -ECONNRESET : 0, {});
        }
        Bytes data(head.direction == 0 ? head.length : 0);
        if (!receive(data.data(), data.size())) {
            return unplug();
        }
        if (head.endpoint != 0) {
            m_waiting.push_back(head); // an interrupt transfer lasts until there is something to tell
        } else {
            control(head, std::move(data));
        }
    }

    void move()
    {
        const auto pointer = std::ranges::find(m_waiting, 1U, &Head::endpoint);
        if (m_isMoving && pointer != m_waiting.end()) {
            const auto head = *pointer;
            m_waiting.erase(pointer);
            answer(head, submitted, 0, pointerMoved);
        }
    }

    int socket() const { return m_socket; }

private:
    /// None where the words are at their end.
    static std::optional<SimulatedFault> fault(std::istringstream &words)
    {
        using enum SimulatedFault::Kind;
        static const std::map<std::string, SimulatedFault> kinds{
            {"stall", {.kind = failedTransfer, .error = EPIPE}},
            {"hang", {.kind = failedTransfer, .error = ETIMEDOUT}},
            {"silent", {.kind = noAnswer}},
            {"unplug", {.kind = SimulatedFault::Kind::unplug}},
        };
        std::string kind;
        if (!(words >> kind)) {
            return std::nullopt;
        }
        auto fault = kinds.at(kind);
        words >> fault.skip >> fault.times;
        return fault;
    }

    bool receive(void *target, std::size_t size) const
    {
        return size == 0 || ::recv(m_socket, target, size, MSG_WAITALL) == static_cast<ssize_t>(size);
    }

    /// `data` only to the host; `length` bytes moved.
    void answer(const Head &of, Command command, int status, const Bytes &data,
                std::optional<std::size_t> length = std::nullopt) const
    {
        Head head{.command = command,
                  .sequence = of.sequence,
                  .flags = static_cast<std::uint32_t>(status),
                  .length = static_cast<std::uint32_t>(length.value_or(data.size()))};
        head = inOtherByteOrder(head);
        Bytes bytes(sizeof head + data.size());
        std::memcpy(bytes.data(), &head, sizeof head);
        std::ranges::copy(data, bytes.begin() + sizeof head);
        ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }

    void control(const Head &head, Bytes data)
    {
        const auto &setup = head.setup;
        const auto wIndex = static_cast<std::uint16_t>(setup[4] | setup[5] << 8);
        const bool isReport =
            (setup[0] & 0x60) == 0x20 && (setup[1] == 0x01 || setup[1] == 0x09) && setup[3] == 0x03;
        const auto time = now();
        int status = 0;
        if (isReport && head.direction == 0) {
            status = m_mouse->setReport(wIndex, data);
        } else if (isReport) {
            data.resize(head.length);
            const auto read = m_mouse->getReport(wIndex, data);
            data.resize(read.length);
            status = read.status;
        } else if (setup[1] == 6) {
            auto descriptor = usbDescriptor(*m_mouse, setup[3], setup[2], wIndex);
            status = descriptor ? 0 : EPIPE;
            data = std::move(descriptor).value_or(Bytes{});
        } else if (head.direction == 1) {
            data.resize(head.length); // GET_STATUS and the like: nothing special
        }
        data.resize(std::min<std::size_t>(data.size(), head.length));
        if (isReport) {
            m_log += std::to_string(time.count()) + ' ' + hex(setup) + ' ' + hex(data) + ' ' +
                     std::to_string(-status) + '\n';
        }
        if (status == ENODEV) {
            unplug();
        } else if (status == ETIMEDOUT) {
            m_waiting.push_back(head);
        } else {
            answer(head, submitted, -status, head.direction == 1 ? data : Bytes{},
                   status == 0 ? data.size() : 0);
        }
    }

    static std::string hex(std::span<const std::uint8_t> bytes)
    {
        std::string text;
        for (const auto byte : bytes) {
            std::array<char, 3> digits{};
            std::snprintf(digits.data(), digits.size(), "%02x", unsigned{byte});
            text += digits.data();
        }
        return text.empty() ? "-" : text;
    }

    std::map<std::string, std::unique_ptr<SimulatedMouse>> m_mice; ///< all that have been plugged in so far
    SimulatedMouse *m_mouse = nullptr;                             ///< the latest of them
    int m_socket = -1;                                             ///< -1 while none is plugged in
    int m_port = 0;
    std::vector<Head> m_waiting; ///< transfers that are not complete
    bool m_isMoving = false;
    std::string m_log;
};

} // namespace

} // namespace kelmoth

int main()
{
    kelmoth::Plug plug;
    std::cout << "." << '\n' << std::flush; // from now on it listens
    std::string input;
    while (true) {
        std::array<pollfd, 2> files{{{STDIN_FILENO, POLLIN, 0}, {plug.socket(), POLLIN, 0}}};
        if (::poll(files.data(), files.size(), 20) == 0) {
            plug.move();
        }
        if (files[1].revents != 0) {
            plug.handle();
        }
        std::array<char, 256> bytes{};
        if (files[0].revents != 0) {
            const auto size = ::read(STDIN_FILENO, bytes.data(), bytes.size());
            if (size <= 0) {
                return 0;
            }
            input.append(bytes.data(), static_cast<std::size_t>(size));
            for (auto end = input.find('\n'); end != std::string::npos; end = input.find('\n')) {
                plug.command(input.substr(0, end));
                input.erase(0, end + 1);
            }
        }
    }
}
