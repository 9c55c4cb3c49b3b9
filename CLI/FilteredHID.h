#pragma once

#include "Platform/HID.h"

#include <cstdint>
#include <memory>

namespace kelmoth {

/// A system's HID devices, of which only those with one product ID are shown. Main thread.
class FilteredHIDService : public HIDService {
public:
    FilteredHIDService(std::shared_ptr<HIDService> whole, std::uint16_t productID);

    std::unique_ptr<HIDManager> createManager() override;

private:
    std::shared_ptr<HIDService> m_whole;
    std::uint16_t m_productID;
};

} // namespace kelmoth
