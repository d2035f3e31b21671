#include "calibration/cal_file.h"

#include "platform/atomic_file.h"
#include "platform/text.h"

#include <cstdio>
#include <fstream>
#include <sstream>

namespace zv {

std::string formatCalFile(const CalFile& file)
{
    std::string text = file.firstLine + "\r\n";
    if (file.secondLine)
        text += *file.secondLine + "\r\n";
    return text;
}

CalFile parseCalFile(std::string_view text)
{
    CalFile file;
    const auto takeLine = [&text]() {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        return std::string(line);
    };
    file.firstLine = takeLine();
    if (!text.empty())
        file.secondLine = takeLine();
    return file;
}

std::optional<std::vector<std::uint8_t>> calLineBytes(std::string_view line)
{
    if (line.size() % 2 != 0)
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(line.size() / 2);
    for (std::size_t i = 0; i < line.size(); i += 2) {
        const int high = platform::hexDigitValue(line[i]);
        const int low = platform::hexDigitValue(line[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    return bytes;
}

std::string calLineText(std::span<const std::uint8_t> bytes)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text;
}

CalibrationDecode decodeCalFile(const CalFile& file, bool singleFile, const std::string& targetId)
{
    CalibrationDecode result;
    std::string_view secondText = kDefaultCalSecondLine;
    result.bytes.writeSecond = !singleFile;
    if (!singleFile) {
        if (file.secondLine) {
            secondText = *file.secondLine;
        } else if (targetId == "1003") {
            result.bytes.writeSecond = false;
        } else {
            result.error = kCalNoSecondLine;
            return result;
        }
    }
    auto first = calLineBytes(file.firstLine);
    auto second = calLineBytes(secondText);
    if (!first || !second) {
        result.error = kCalNotHex;
        return result;
    }
    result.bytes.first = std::move(*first);
    result.bytes.second = std::move(*second);
    return result;
}

std::string writeFileAtomically(const std::string& path, std::string_view text)
{
    try {
        writeFileReplacing(path, text);
        return {};
    } catch (const std::exception& e) {
        return e.what();
    }
}

std::optional<std::string> readTextFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

} // namespace zv
