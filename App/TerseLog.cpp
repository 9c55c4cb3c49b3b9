#include "App/TerseLog.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelmoth {

TerseLog::TerseLog(std::shared_ptr<Log> sink) : m_sink(std::move(sink)) {}

void TerseLog::write(std::string_view line)
{
    static constexpr std::array<std::string_view, 2> wire{"📤", "📥"};
    if (std::ranges::none_of(wire, [line](auto beginning) { return line.starts_with(beginning); })) {
        m_sink->write(line);
    }
}

} // namespace kelmoth
