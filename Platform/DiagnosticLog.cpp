#include "Platform/DiagnosticLog.h"

#include "Platform/FileDescriptor.h"

namespace kelmoth {

DiagnosticLog::DiagnosticLog(int descriptor, bool live) : m_descriptor(descriptor), m_live(live) {}

void DiagnosticLog::write(std::string_view line)
{
    auto text = printable(line) + '\n';
    const std::scoped_lock lock(m_mutex);
    if (m_live) {
        writeAll(m_descriptor, text);
        return;
    }
    if (m_lines.size() == capacity) {
        m_lines.pop_front();
        ++m_dropped;
    }
    m_lines.push_back(std::move(text));
}

void DiagnosticLog::show()
{
    const std::scoped_lock lock(m_mutex);
    std::string text;
    if (m_dropped > 0) {
        text = "(" + std::to_string(m_dropped) + " earlier lines left out; --verbose shows them)\n";
    }
    for (const auto &line : m_lines) {
        text += line;
    }
    writeAll(m_descriptor, text);
    m_lines.clear();
    m_dropped = 0;
}

} // namespace kelmoth
