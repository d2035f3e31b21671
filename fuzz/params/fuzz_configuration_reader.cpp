// Any gateway or cell configuration file: the reader ends with a result code, never a crash,
// and a failed read shows exactly one box.

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
    for (int i = 0; i < 40; ++i) {
        directory.Add("file").FileAccess = static_cast<std::uint32_t>(i * 0x11);
    }
    nodes.Add();
    nodes.Add();
    zv::ConfigurationReader reader(dialogs, gateway, nodes, directory);
    reader.locale.decimalSeparator = size > 0 && data[0] % 2 ? ',' : '.';

    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto kind = size > 0 && data[0] % 3 == 0 ? zv::ConfigurationReader::FileKind::Cell
                                                   : zv::ConfigurationReader::FileKind::Gateway;
    std::istringstream in(text);
    const int result = reader.parseConfigText(in, kind);
    if (result != 0 && result != 2 && result != 3 && result != 4) {
        std::abort();
    }
    if ((result == 4) != (dialogs.boxes == 1) || dialogs.boxes > 1) {
        std::abort();
    }
    if (kind == zv::ConfigurationReader::FileKind::Cell && result == 0) {
        std::abort(); // two nodes: a good cell file asks for copies
    }
    return 0;
}
