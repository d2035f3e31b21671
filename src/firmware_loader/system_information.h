#pragma once
// What the device reports about its images: the ten parameters of file 5 the loader shows, the
// verification code worked out from the two version parameters, and the title suffix of the
// hardware state.

#include "platform/dialogs.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zv {

class clsCellWeft;

struct SystemInfoField {
    const char* parameter;
    const char* control;
    bool asText; // the parameter's hexadecimal text, else its value
};

inline constexpr std::array<SystemInfoField, 10> kSystemInfoFields { {
    { "Application F File Version", "lblAppFFileVersion", false },
    { "Application System Version", "lblAppSysVersion", false },
    { "Data CRC", "lblDataCRC", true },
    { "F Directory CRC", "lblFDirCRC", true },
    { "F File Version", "lblFFileVersion", false },
    { "Firmware Version", "lblFW", false },
    { "Firmware CRC", "lblFWCRC", true },
    { "System CRC", "lblSystemCRC", true },
    { "System Status", "lblSystemStatus", true },
    { "System Version", "lblSystemVersion", false },
} };

inline constexpr const char* kLoaderTitle = "Zentavia BootStrap Loader";

// Verification codes.
inline constexpr int kVerifiedOk = 0;
inline constexpr int kApplicationNotVerified = 1;
inline constexpr int kDataNotVerified = 2;
inline constexpr int kNeitherVerified = 3;
inline constexpr int kUnableToVerify = -1;

struct SystemInformation {
    bool read = false; // file 5 was read
    int hardwareState = -1;
    std::vector<std::pair<std::string, std::string>> fields; // control name, shown text
    int verification = kUnableToVerify;
};

// " [System]" for 0x6699, " [Normal]" for 0xFA99, " [Error]" for -1, else nothing.
[[nodiscard]] std::string titleSuffix(int hardwareState);

// From "Application F File Version" (A) and "F File Version" (F); unread values count as 0.
[[nodiscard]] int verificationCode(
    std::optional<double> applicationVersion, std::optional<double> dataVersion);

struct VerificationMessage {
    std::string text;
    platform::Icon icon;
};
[[nodiscard]] VerificationMessage verificationMessage(int code);

// Reads file 5 and fills the fields from the driver's gateway parameters; the hardware state is
// the caller's.
[[nodiscard]] SystemInformation readSystemInformation(clsCellWeft& driver, int hardwareState);

} // namespace zv
