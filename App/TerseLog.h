#pragma once

#include "Platform/Log.h"

#include <memory>

namespace kelmoth {

/// Passes on every line but those about the reports on the wire. Any thread.
class TerseLog final : public Log {
public:
    explicit TerseLog(std::shared_ptr<Log> sink);

    void write(std::string_view line) override;

private:
    const std::shared_ptr<Log> m_sink;
};

} // namespace kelmoth
