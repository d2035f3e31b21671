#pragma once
// The target's ManufacturerAccess operations and the SMBus reads on the transport in use: the
// dongle's SMBus transactions or the USB adapter link, with the results of the dongle's.

#include <cstdint>
#include <optional>
#include <vector>

namespace zv {

class clsCellWeft;

class TargetOperations {
public:
    explicit TargetOperations(clsCellWeft& driver);

    [[nodiscard]] int UnlockDevice(); // 0 or a negative failure
    [[nodiscard]] bool EnableUlmarCommandSet();
    [[nodiscard]] bool DisableUlmarCommandSet();
    [[nodiscard]] bool LockDevice();
    [[nodiscard]] int GetHardwareState(); // -1 on failure
    [[nodiscard]] int GetTargetID(); // negative on failure
    [[nodiscard]] int GetAccessLevel(); // negative on failure
    [[nodiscard]] std::optional<int> readWord(std::uint8_t command);
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> readBlock(std::uint8_t command);

private:
    clsCellWeft& driver_;
    bool usb_;
};

} // namespace zv
