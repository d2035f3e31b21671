#include "logging/log_definition_loader.h"

#include "driver/cellweft.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zv {

namespace {

constexpr int kDefinitionFile = 30;
constexpr int kDownloadWaitMs = 3000;
constexpr const char* kLoadErrorTitle = "Error loading file";
constexpr const char* kMenuTitle = "Load logging definition file";

const char* kindTitle(LogDefinitionKind kind)
{
    switch (kind) {
    case LogDefinitionKind::Dynamic:
        return "Dynamic Data Log Definition File Error";
    case LogDefinitionKind::Static:
        return "Static Data Log Definition File Error";
    case LogDefinitionKind::Map:
        break;
    }
    return "Map Definition File Error";
}

const char* kindFileName(LogDefinitionKind kind)
{
    switch (kind) {
    case LogDefinitionKind::Dynamic:
        return "Dynamic Data Log Definition File";
    case LogDefinitionKind::Static:
        return "Static Data Log Definition File";
    case LogDefinitionKind::Map:
        break;
    }
    return "Map Definition File";
}

std::string fileName(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

} // namespace

LogDefinitionLoader::LogDefinitionLoader(LogDefinitionServices services)
    : s_(services)
{
}

bool LogDefinitionLoader::LoadDynamicLogDefinition(const std::string& path)
{
    return load(LogDefinitionKind::Dynamic, path, Mode::File);
}

bool LogDefinitionLoader::LoadStaticLogDefinition(const std::string& path)
{
    return load(LogDefinitionKind::Static, path, Mode::File);
}

bool LogDefinitionLoader::LoadMapDefinition(const std::string& path)
{
    return load(LogDefinitionKind::Map, path, Mode::File);
}

bool LogDefinitionLoader::loadChosen(const std::string& path)
{
    return load(LogDefinitionKind::Dynamic, path, Mode::Menu);
}

int LogDefinitionLoader::definitionLimit() const
{
    const auto* entry = s_.driver.Directory.DirectoryElements.Item(kDefinitionFile + 1);
    return entry ? static_cast<int>(entry->FileLength()) : 0;
}

bool LogDefinitionLoader::readLines(const std::string& path, std::string& text)
{
    std::error_code status;
    const bool regular = std::filesystem::is_regular_file(path, status);
    std::ifstream in;
    if (regular)
        in.open(path, std::ios::binary);
    if (!regular || !in) {
        const int error = errno;
        if (!regular || error == ENOENT)
            (void)s_.dialogs.messageBox("The file " + path + " is missing.\r\nError: File not found",
                platform::Buttons::OK, platform::Icon::Critical, kLoadErrorTitle);
        else
            (void)s_.dialogs.messageBox("An error has occurred while attempting to load the file " + path
                    + "\r\nError: " + std::strerror(error),
                platform::Buttons::OK, platform::Icon::Critical, kLoadErrorTitle);
        return false;
    }
    std::ostringstream all;
    all << in.rdbuf();
    text = all.str();
    return true;
}

bool LogDefinitionLoader::load(LogDefinitionKind kind, const std::string& path, Mode mode)
{
    const int limit = definitionLimit();
    std::string text;
    if (!readLines(path, text))
        return false;
    LogFile& list = s_.driver.Directory.LogFile;
    list.Clear();
    const ParsedLogDefinition parsed = parseLogDefinition(text);
    int counter = 1;
    for (const auto& entry : parsed.entries) {
        auto& element = list.Add(entry.label, std::to_string(counter++));
        element.FileNumber = static_cast<std::uint16_t>(entry.fileNumber);
        element.FileElement = static_cast<std::uint16_t>(entry.fileElement);
        element.FileDataType = entry.dataType;
    }
    list.FileCount = counter - 1;
    if (parsed.outcome == LogDefinitionOutcome::BadFieldCount) {
        (void)s_.dialogs.messageBox("Invalid File Format", platform::Buttons::OK, platform::Icon::Critical,
            mode == Mode::Menu ? "File Error" : kindTitle(kind));
        return false;
    }
    if (parsed.outcome == LogDefinitionOutcome::BadNumber) {
        (void)s_.dialogs.messageBox(
            "An error has occurred while attempting to load the file " + path + "\r\nError: " + parsed.error,
            platform::Buttons::OK, platform::Icon::Critical, kLoadErrorTitle);
        return false;
    }
    if (mode == Mode::File && kind == LogDefinitionKind::Dynamic && list.FileCount > limit) {
        (void)s_.dialogs.messageBox("The maximum number of log definitions must not exceed "
                + std::to_string(limit) + ".\r\nThere are " + std::to_string(list.FileCount)
                + " currently defined. Please reduce the number of entries.",
            platform::Buttons::OK, platform::Icon::Information, "Too Many Log Definitions");
        return false;
    }
    FileRequest request;
    request.access = 1;
    request.file = logDefinitionFile(kind);
    request.offset = 0;
    request.count = list.FileCount + 1;
    request.data = logDefinitionImage(parsed.entries);
    const bool written = s_.driver.FileAccessRequest(request).ok;
    if (mode == Mode::File) {
        s_.loop.sleep(kDownloadWaitMs);
        s_.loop.processEvents();
    }
    if (!written && mode == Mode::File) {
        (void)s_.dialogs.messageBox(
            std::string("An error has occurred while attempting to download the ") + kindFileName(kind),
            platform::Buttons::OK, platform::Icon::Critical, kLoadErrorTitle);
    }
    return written;
}

void LogDefinitionLoader::mnuLoadLoggingDefinitionFile(
    const std::string& programFolder, const std::function<void(int)>& setMousePointer)
{
    platform::FileDialogOptions options;
    options.filter = "Dynamic Log Definition File (*.dlog)|*.dlog";
    options.folder = (std::filesystem::path(programFolder) / "Data Logging Files").string();
    const auto chosen = s_.dialogs.openFiles(options);
    if (chosen.empty())
        return;
    const std::string& path = chosen.front();
    if (setMousePointer)
        setMousePointer(11);
    const bool loaded = loadChosen(path);
    if (setMousePointer)
        setMousePointer(0);
    const std::string name = fileName(path);
    (void)s_.dialogs.messageBox(loaded ? "Log definition file " + name + " has loaded succussfully."
                                       : "An error has occurred while loading file " + name + ".",
        platform::Buttons::OK, platform::Icon::Information, kMenuTitle);
}

} // namespace zv
