#pragma once

#include "Platform/Log.h"

#include <memory>

namespace kelmoth {

/// Passes on the lines that tell of trouble or of the program as a whole, and drops those about each
/// transfer. Any thread.
class TerseLog final : public Log {
public:
    explicit TerseLog(std::shared_ptr<Log> sink);

    void write(std::string_view line) override;

private:
    const std::shared_ptr<Log> m_sink;
};

} // namespace kelmoth
