#include "core/ini_values.h"

#include "platform/ini_file.h"

namespace zv {

std::string GetINIValue(std::string_view section, std::string_view key, const std::string& file)
{
    std::string value = platform::IniFile::load(file).value(section, key);
    if (value.size() >= kIniBufferSize)
        value.resize(kIniBufferSize - 1);
    return value;
}

bool SetINIValue(
    std::string_view section, std::string_view key, std::string_view value, const std::string& file)
{
    auto ini = platform::IniFile::load(file);
    ini.setValue(section, key, value);
    return ini.save(file);
}

} // namespace zv
