#include "firmware_loader/system_information.h"

#include "driver/cellweft.h"

namespace zv {

namespace {
constexpr int kStateFile = 5;
} // namespace

std::string titleSuffix(int hardwareState)
{
    switch (hardwareState) {
    case 0x6699:
        return " [System]";
    case 0xFA99:
        return " [Normal]";
    case -1:
        return " [Error]";
    default:
        return {};
    }
}

int verificationCode(std::optional<double> applicationVersion, std::optional<double> dataVersion)
{
    const bool applicationMissing = applicationVersion.value_or(0) == 0;
    const bool dataMissing = dataVersion.value_or(0) == 0;
    if (applicationMissing && dataMissing)
        return kNeitherVerified;
    if (applicationMissing)
        return kApplicationNotVerified;
    if (dataMissing)
        return kDataNotVerified;
    return kVerifiedOk;
}

VerificationMessage verificationMessage(int code)
{
    using platform::Icon;
    switch (code) {
    case kVerifiedOk:
        return { "Verification completed OK", Icon::Information };
    case kApplicationNotVerified:
        return { "Application memory failed to verify", Icon::Critical };
    case kDataNotVerified:
        return { "Data memory failed to verify", Icon::Critical };
    case kNeitherVerified:
        return { "Application and Data memory failed to verify", Icon::Critical };
    default:
        return { "Unable to verify", Icon::Critical };
    }
}

SystemInformation readSystemInformation(clsCellWeft& driver, int hardwareState)
{
    SystemInformation info;
    info.hardwareState = hardwareState;
    std::string text;
    if (!driver.GetFile(kStateFile, text))
        return info;
    info.read = true;
    const auto& display = driver.Parameters.display;
    const auto number = [&](const char* name) -> std::optional<double> {
        const clsSMBusParameter* parameter = driver.GatewayParameters.FindByName(name);
        return parameter ? parameter->value.asNumber(display.locale) : std::nullopt;
    };
    for (const auto& field : kSystemInfoFields) {
        const clsSMBusParameter* parameter = driver.GatewayParameters.FindByName(field.parameter);
        std::string shown;
        if (parameter)
            shown = field.asText ? parameter->ToString(3, display) : parameter->value.toText(display.locale);
        info.fields.emplace_back(field.control, shown);
    }
    info.verification = verificationCode(number("Application F File Version"), number("F File Version"));
    return info;
}

} // namespace zv
