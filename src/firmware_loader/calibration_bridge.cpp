#include "firmware_loader/calibration_bridge.h"

#include "core/globals.h"
#include "device_files/directory.h"
#include "driver/cellweft.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zv {

namespace {

constexpr int kFirstFile = 24;
constexpr int kSecondFile = 31;

const clsDirectoryElements* entryOf(const clsCellWeft& driver, int file)
{
    return driver.Directory.DirectoryElements.Item(file + 1);
}

std::optional<std::vector<std::uint8_t>> bytesOf(const std::string& text)
{
    if (text.size() % 2 != 0)
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        unsigned value = 0;
        if (std::sscanf(text.substr(i, 2).c_str(), "%2X", &value) != 1 || !std::isxdigit(text[i])
            || !std::isxdigit(text[i + 1]))
            return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

} // namespace

std::optional<CalibrationTexts> readCalibrationTexts(clsCellWeft& driver, bool singleFile)
{
    CalibrationTexts texts;
    auto first = driver.Transfer.readFile(kFirstFile);
    if (!first)
        return std::nullopt;
    texts.first = std::move(*first);
    if (!singleFile) {
        texts.second = driver.Transfer.readFile(kSecondFile);
        if (!texts.second)
            return std::nullopt;
    }
    return texts;
}

bool singleCalibrationFile(const AppGlobals& globals, const clsCellWeft& driver)
{
    const auto* entry = entryOf(driver, kSecondFile);
    return globals.gFirmwareVersion == 6000 && entry && entry->FileChunk != 5;
}

std::string writeCalibrationFile(const std::string& path, const CalibrationTexts& texts)
{
    std::string text = texts.first + "\r\n";
    if (texts.second)
        text += *texts.second + "\r\n";
    const std::string temporary = path + ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << text;
        if (!out.flush())
            return "The file " + path + " cannot be written.";
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    return error ? error.message() : std::string();
}

std::optional<CalibrationTexts> readCalibrationFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    CalibrationTexts texts;
    std::string line;
    const auto strip = [](std::string& s) {
        if (!s.empty() && s.back() == '\r')
            s.pop_back();
    };
    std::getline(in, texts.first);
    strip(texts.first);
    if (std::getline(in, line)) {
        strip(line);
        texts.second = line;
    }
    return texts;
}

bool calibrationMatchesDevice(const clsCellWeft& driver, const CalibrationTexts& texts)
{
    const auto* first = entryOf(driver, kFirstFile);
    const auto* second = entryOf(driver, kSecondFile);
    return first && second && texts.first.size() / 2 == first->FileSize
        && texts.second.value_or("").size() / 2 == second->FileSize;
}

bool writeCalibrationToDevice(clsCellWeft& driver, const CalibrationTexts& texts)
{
    const auto first = bytesOf(texts.first);
    if (!first || !driver.PutFile(kFirstFile, *first))
        return false;
    if (!texts.second)
        return true;
    const auto second = bytesOf(*texts.second);
    return second && driver.PutFile(kSecondFile, *second);
}

const char* calibrationMismatchTitle()
{
    return "Warning!";
}

const char* calibrationMismatchText()
{
    return "The calibration data structure you are trying to load does not match the device.\n"
           "Loading this information may produce undesired results. Do you wish to continue?";
}

const char* calibrationDownloadErrorTitle()
{
    return "Error downloading file";
}

const char* calibrationDownloadErrorText()
{
    return "An error has occurred while downloading the calibration data.\nOperation aborted";
}

const char* calibrationFilter()
{
    return "Calibration Files (*.cal)|*.cal|";
}

} // namespace zv
