// Any adapter names in sysfs: the first byte splits the input into the name searched for and the
// names of up to four buses; a bus found is one of them and holds the name searched for.

#include "fuzz_text.h"
#include "usb/i2c_bus_lookup.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>

namespace {

std::string lower(std::string text)
{
    std::ranges::transform(
        text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string input = zv::fuzz::text(data + 1, size - 1);
    const std::size_t split = std::min<std::size_t>(data[0] % 32, input.size());
    const std::string wanted = input.substr(0, split);
    const auto names = zv::fuzz::pieces(std::string_view(input).substr(split), '\n');

    namespace fs = std::filesystem;
    const fs::path root = fs::temp_directory_path() / ("zv-fuzz-sys-" + std::to_string(::getpid()));
    fs::remove_all(root);
    for (std::size_t i = 0; i < names.size() && i < 4; ++i) {
        const fs::path bus = root / "class/i2c-dev" / ("i2c-" + std::to_string(i * 3));
        fs::create_directories(bus);
        std::ofstream(bus / "name", std::ios::binary) << names[i];
    }
    if (const auto found = zv::findI2cBus(wanted, root.string())) {
        if (lower(found->name).find(lower(wanted)) == std::string::npos)
            std::abort();
        if (found->device.rfind("/dev/i2c-", 0) != 0)
            std::abort();
    }
    (void)zv::i2cBusName("/dev/i2c-3", root.string());
    fs::remove_all(root);
    return 0;
}
