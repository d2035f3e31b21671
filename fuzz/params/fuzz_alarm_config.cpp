// Any Alarm.cfg: every entry of the map ends as -1, -2 or a bit number 0 to 15.

#include "answering_dialogs.h"
#include "params/configuration_reader.h"

#include <cstdlib>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zv::fuzz::AnsweringDialogs dialogs;
    zv::ParameterList gateway;
    zv::NodeList nodes;
    zv::DirectoryElements directory;
    zv::ConfigurationReader reader(dialogs, gateway, nodes, directory);
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    if (!reader.readAlarmText(in)) {
        std::abort();
    }
    for (const auto destination : reader.AlarmMap) {
        if (destination < -2 || destination > 15) {
            std::abort();
        }
    }
    return 0;
}
