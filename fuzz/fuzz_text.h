#pragma once
// Turning a fuzzer's bytes into the inputs of a parser, and a scratch file for parsers that read
// a path.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace zv::fuzz {

inline std::string text(const std::uint8_t* data, std::size_t size)
{
    return std::string(reinterpret_cast<const char*>(data), size);
}

// The input cut at each NUL: the words of a command line, the lines of a conversation.
inline std::vector<std::string> pieces(std::string_view input, char separator = '\0')
{
    std::vector<std::string> parts;
    while (true) {
        const auto at = input.find(separator);
        parts.emplace_back(input.substr(0, at));
        if (at == std::string_view::npos)
            return parts;
        input.remove_prefix(at + 1);
    }
}

// A file of this process, written anew for each input.
inline std::string scratchFile(std::string_view name, std::string_view contents)
{
    const std::string path = "/tmp/zv-fuzz-" + std::to_string(::getpid()) + "-" + std::string(name);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
    return path;
}

} // namespace zv::fuzz
