// Any INI text (Zentavia.ini, demo.ini, a settings file): what the reader makes of it reads back
// the same once written out, and every key it lists can be looked up.

#include "fuzz_text.h"
#include "platform/ini_file.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto ini = zv::platform::IniFile::parse(zv::fuzz::text(data, size));
    for (const auto& section : ini.sections())
        for (const auto& key : ini.keys(section))
            if (!ini.contains(section, key))
                std::abort();
    const std::string once = ini.text();
    if (zv::platform::IniFile::parse(once).text() != once)
        std::abort();
    return 0;
}
