#include "pack_configuration/pack_format_error.h"

namespace zv {

std::string invalidFileFormatText(const std::string& path, const PackFormatError& error)
{
    return "An error has occurred while reading the file '" + path + "'.\r\nPlease verify that '" + path
        + "' is a Pack Configuration File.\r\nError: " + error.what()
        + "\r\nLine: " + std::to_string(error.line());
}

} // namespace zv
