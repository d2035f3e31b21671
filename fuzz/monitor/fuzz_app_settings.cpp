// Any application settings file: it reads or is refused with AppSettingsFileError, never more
// axes or colours than asked for, and what it read writes and reads back the same.

#include "monitor/app_settings_file.h"

#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    (void)zv::appSettingsVersion(text);
    try {
        const auto file = zv::readAppSettings(text, 4, 35);
        if (file.axes.size() > 4 || file.colors.size() != 35)
            std::abort();
        const auto again = zv::readAppSettings(zv::writeAppSettings(file), 4, 35);
        if (again.axes.size() != file.axes.size() || again.colors != file.colors
            || again.switches != file.switches)
            std::abort();
    } catch (const zv::AppSettingsFileError&) {
    }
    return 0;
}
