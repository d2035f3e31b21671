#include "pack_configuration/pack_flows.h"

#include "core/globals.h"
#include "core/local_time.h"
#include "core/settings_table.h"
#include "device_files/file_parts.h"
#include "driver/cls_main.h"
#include "monitor/main_title.h"
#include "monitor/open_associated.h"
#include "pack_configuration/editable_file.h"
#include "pack_configuration/pack_format_error.h"
#include "pack_configuration/xml_file.h"
#include "platform/atomic_file.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace zv {

namespace {

constexpr int kHourglass = 11;
constexpr int kDefaultPointer = 0;
constexpr int kDataFlowWaitMs = 3000;
constexpr int kLoginWaitMs = 1000;
constexpr const char* kStopDataFlow = "0E000100";
constexpr const char* kStartDataFlow = "0E000000";
constexpr const char* kPathPackConfiguration = "Path_PackConfiguration";

std::string lowerCase(std::string text)
{
    for (auto& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string extensionOf(const std::string& path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    extension.erase(0, extension.find_first_not_of(' '));
    extension.erase(extension.find_last_not_of(' ') + 1);
    return lowerCase(extension);
}

std::string fileNameOf(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

// Every ".dat" of the path, in any case, becomes ".xml".
std::string xmlPathOf(const std::string& datPath)
{
    std::string result = datPath;
    const std::string lower = lowerCase(datPath);
    for (auto at = lower.find(".dat"); at != std::string::npos; at = lower.find(".dat", at + 4))
        result.replace(at, 4, ".xml");
    return result;
}

std::string lettersOnly(const std::string& text)
{
    std::string result;
    for (const char c : text)
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'))
            result += c;
    return result;
}

// A write went through and the device took it (a refused write still ends its transfer).
bool accepted(const FileReply& reply)
{
    return reply.ok && reply.status == 0;
}

std::string asText(const std::vector<std::uint8_t>& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

} // namespace

PackFileHeader applicationHeader()
{
    const AppVersion version = appVersion();
    return { "Zentavia", std::to_string(version.major) + "." + std::to_string(version.minor) };
}

PackConfigurationFlows::PackConfigurationFlows(PackFlowServices services, PackFlowHooks hooks)
    : s_(std::move(services))
    , hooks_(std::move(hooks))
{
}

clsCellWeft& PackConfigurationFlows::driver()
{
    return s_.main.CellWeft();
}

std::optional<std::string> PackConfigurationFlows::askOpen(const char* filter, const char* folderSetting)
{
    platform::FileDialogOptions options;
    options.filter = filter;
    options.folder = readSetting(s_.settings, folderSetting, s_.programFolder);
    const auto chosen = s_.dialogs.openFiles(options);
    if (chosen.empty() || chosen.front().empty())
        return std::nullopt;
    writeSetting(s_.settings, folderSetting, std::filesystem::path(chosen.front()).parent_path().string());
    return chosen.front();
}

std::optional<std::string> PackConfigurationFlows::askSave(const char* filter, const char* folderSetting)
{
    platform::FileDialogOptions options;
    options.filter = filter;
    options.title = applicationHeader().title;
    options.folder = readSetting(s_.settings, folderSetting, s_.programFolder);
    const auto chosen = s_.dialogs.saveFile(options);
    if (!chosen || chosen->empty())
        return std::nullopt;
    writeSetting(s_.settings, folderSetting, std::filesystem::path(*chosen).parent_path().string());
    return chosen;
}

void PackConfigurationFlows::box(const std::string& text, int icon, const std::string& title)
{
    (void)s_.dialogs.messageBox(text, platform::Buttons::OK, static_cast<platform::Icon>(icon), title);
}

void PackConfigurationFlows::failure(const std::string& text, const std::string& title)
{
    lastFailure = title.empty() ? text : title + ": " + text;
    box(text, static_cast<int>(platform::Icon::Critical), title);
}

void PackConfigurationFlows::notify(const std::string& title, const std::string& text)
{
    s_.dialogs.notify(title, text, platform::Icon::Information);
}

void PackConfigurationFlows::pointer(int shape)
{
    if (hooks_.SetMousePointer)
        hooks_.SetMousePointer(shape);
}

void PackConfigurationFlows::splash(const std::string& text)
{
    if (hooks_.showSplash)
        hooks_.showSplash(text);
}

void PackConfigurationFlows::disable()
{
    if (hooks_.disableAllCommands)
        hooks_.disableAllCommands();
}

void PackConfigurationFlows::enable()
{
    if (hooks_.enableAllCommands)
        hooks_.enableAllCommands();
}

void PackConfigurationFlows::progress(int done, int count, const std::string& text)
{
    if (count <= 0)
        return;
    const int percent = done * 100 / count;
    if (percent >= 100) {
        if (s_.main.hooks.startAndStopProgress)
            s_.main.hooks.startAndStopProgress();
    } else if (s_.main.hooks.updateProgress) {
        s_.main.hooks.updateProgress(percent, text);
    }
}

// ---- Reading pack files -------------------------------------------------------------------

bool PackConfigurationFlows::readPackFile(const std::string& path)
{
    const std::string extension = extensionOf(path);
    if (extension != ".dat" && extension != ".aux" && extension != ".tmap" && extension != ".sbd") {
        failure(
            "The file " + fileNameOf(path) + " has the wrong extension.\r\nPlease select a different file.",
            "Invalid File Extension");
        return false;
    }
    auto& list = driver().Directory.PackConfigurationFile;
    try {
        const std::string bytes = readWholeFile(path);
        if (extension == ".dat") {
            const auto content
                = readDat({ reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size() },
                    [this](int percent) { s_.main.ReadWriteFileStatus(percent); });
            list.Clear();
            int position = 0;
            for (const PackProperties& file : content.files)
                list.Append(file, std::to_string(++position));
            packPassword = content.password;
        } else {
            auto content
                = readEditablePCFile(bytes, driver().Conversion, driver().Directory.DirectoryElements);
            list.Clear();
            list.Append(std::move(content.file), "1");
            packPassword = {};
        }
        return true;
    } catch (const PackFormatError& error) {
        failure(invalidFileFormatText(path, error), kInvalidFileFormatTitle);
    } catch (const std::exception& error) {
        failure(invalidFileFormatText(path, PackFormatError(error.what())), kInvalidFileFormatTitle);
    }
    return false;
}

// ---- Writing to the device ----------------------------------------------------------------

bool PackConfigurationFlows::setDataFlow(bool start)
{
    return driver().WriteCommandFile(start ? kStartDataFlow : kStopDataFlow);
}

bool PackConfigurationFlows::writeElement(const PackProperties& file)
{
    if (file.FileChunk == 0)
        return false;
    const auto bytes = hexToBytes(file.FileData.toText(kInvariantLocale));
    FileRequest request;
    request.access = 1;
    request.file = file.FileNumber;
    if (file.FileSize <= file.FileMaxBytes) {
        request.count = file.FileSize / file.FileChunk;
        request.data = bytes;
        return accepted(driver().FileAccessRequest(request));
    }
    // Larger than one transfer: parts of whole records, each at its record offset.
    clsDirectoryElements entry;
    entry.FileSize = file.FileSize;
    entry.FileChunk = file.FileChunk;
    entry.FileMaxBytes = file.FileMaxBytes;
    for (const FilePart& part : writeParts(entry)) {
        const auto from = std::min(bytes.size(), static_cast<std::size_t>(part.offset) * file.FileChunk);
        const auto to = std::min(bytes.size(), from + static_cast<std::size_t>(part.count) * file.FileChunk);
        request.offset = part.offset;
        request.count = part.count;
        request.data.assign(bytes.begin() + static_cast<std::ptrdiff_t>(from),
            bytes.begin() + static_cast<std::ptrdiff_t>(to));
        if (!accepted(driver().FileAccessRequest(request)) || !driver().Files.waitUntilIdle())
            return false;
    }
    return true;
}

bool PackConfigurationFlows::WritePackConfiguration()
{
    disable();
    pointer(kHourglass);
    splash("Initializing Configuration...");
    const auto restore = [this] {
        enable();
        pointer(kDefaultPointer);
    };
    if (!setDataFlow(false)) {
        failure("Failed to stop data flow", "Error Stopping Data Flow");
        restore();
        return false;
    }
    s_.loop.wait(kDataFlowWaitMs);
    splash("Loading Pack Configuration...");
    auto& list = driver().Directory.PackConfigurationFile;
    const int count = list.Count();
    bool written = true;
    for (int i = 1; i <= count && written; ++i) {
        progress(i, count, "Writing Configuration ");
        written = writeElement(*list.Item(i));
    }
    if (!written) {
        if (s_.main.hooks.startAndStopProgress)
            s_.main.hooks.startAndStopProgress();
        failure("An error has occurred while downloading the pack configuration.\r\nOperation aborted",
            "Error downloading file");
        restore();
        if (hooks_.closeSplash)
            hooks_.closeSplash();
        return false;
    }
    if (!setDataFlow(true)) {
        failure("Failed to start data flow", "Error Starting Data Flow");
        restore();
        return false;
    }
    s_.loop.wait(kDataFlowWaitMs);
    restore();
    return true;
}

bool PackConfigurationFlows::LoadPackConfiguration(const std::string& path)
{
    splash("Reading File Contents...");
    pointer(kHourglass);
    if (!readPackFile(path)) {
        pointer(kDefaultPointer);
        enable();
        return false;
    }
    if (!WritePackConfiguration()) {
        failure(pack_texts::kLoadFailed, "");
        return false;
    }
    if (extensionOf(path) != ".dat")
        return true;
    if (packPassword.text.empty() || !IsPasswordSet(s_.globals, packPassword.bytes))
        return true;
    s_.loop.wait(kLoginWaitMs);
    if (hooks_.login && !hooks_.login(packPassword.bytes)) {
        failure(pack_texts::kLoginFailed, "");
        return false;
    }
    return true;
}

bool PackConfigurationFlows::loadFromFile(const std::string& path, bool relearn)
{
    quietFailure.clear();
    if (!LoadPackConfiguration(path)) {
        if (hooks_.closeSplash)
            hooks_.closeSplash();
        return false;
    }
    splash("Committing Changes To Flash...");
    if (hooks_.CommitChanges && !hooks_.CommitChanges()) {
        quietFailure = "The configuration was written but not committed to flash.";
        if (hooks_.closeSplash)
            hooks_.closeSplash();
        return false;
    }
    if (relearn)
        s_.loop.wait(500);
    splash("Initializing Device...");
    if (hooks_.CommandInitialize)
        (void)hooks_.CommandInitialize(relearn);
    splash("Initializing communications...");
    s_.loop.processEvents();
    s_.loop.wait(relearn ? 500 : 1000);
    const bool detected = !hooks_.detectTarget || hooks_.detectTarget();
    if (hooks_.closeSplash)
        hooks_.closeSplash();
    if (!detected)
        quietFailure = "The target was not detected again after the load.";
    return detected;
}

void PackConfigurationFlows::mnuLoadPackConfiguration_Click(bool relearn)
{
    if (hooks_.IsTheDeviceWired && !hooks_.IsTheDeviceWired())
        return;
    const auto path = askOpen(pack_texts::kLoadFilter, kPathPackConfiguration);
    if (!path)
        return;
    (void)loadFromFile(*path, relearn);
}

// ---- Reading from the device and saving ---------------------------------------------------

bool PackConfigurationFlows::ReadPackConfiguration()
{
    auto& d = driver();
    if (d.nodes.Count() == 0) {
        failure("Cannot save Pack Configuration because no nodes were detected.", "");
        return false;
    }
    auto& list = d.Directory.PackConfigurationFile;
    list.Clear();
    const auto& directory = d.Directory.DirectoryElements;
    const int count = directory.Count();
    for (int i = 1; i <= count; ++i) {
        progress(i, count, "Reading Configuration ");
        const clsDirectoryElements& entry = *directory.Item(i);
        if (!entry.FileClone())
            continue;
        const auto text = d.Transfer.readFile(i - 1);
        if (!text) {
            failure("An error has occurred while reading the device", "");
            if (s_.main.hooks.startAndStopProgress)
                s_.main.hooks.startAndStopProgress();
            return false;
        }
        PackProperties file;
        file.FileData = *text;
        file.FileSize = static_cast<std::uint16_t>(entry.FileSize);
        file.FileChunk = static_cast<std::uint16_t>(entry.FileChunk);
        file.FileMaxBytes = static_cast<std::uint16_t>(entry.FileMaxBytes);
        file.FileName = lettersOnly(entry.FileName);
        file.FileIndex = 0;
        file.FileNumber = static_cast<std::uint8_t>(i - 1);
        file.Cloned = true;
        list.Append(std::move(file));
    }
    return true;
}

bool PackConfigurationFlows::savePackConfiguration(const std::string& path)
{
    disable();
    bool saved = false;
    try {
        if (ReadPackConfiguration()) {
            const auto bytes = writeDat(applicationHeader(), driver().Directory.PackConfigurationFile,
                [this](int percent) { s_.main.ReadWriteFileStatus(percent); });
            writeFileReplacing(path, asText(bytes));
            saved = true;
        }
        notify("Save Pack Configuration",
            saved ? "Pack configuration has been saved." : "Save pack configuration failed.");
    } catch (const std::exception& error) {
        failure(std::string("An error has occurred.\r\nError: ") + error.what(),
            "Error Saving Pack Configuration");
    }
    enable();
    return saved;
}

void PackConfigurationFlows::mnuSavePackConfiguration_Click()
{
    if (hooks_.IsTheDeviceWired && !hooks_.IsTheDeviceWired())
        return;
    if (hooks_.pollingActive && hooks_.pollingActive()) {
        box("Cannot save configuration while polling is active.",
            static_cast<int>(platform::Icon::Exclamation), "Save Configuration");
        return;
    }
    disable();
    const auto path = askSave(pack_texts::kSaveFilter, kPathPackConfiguration);
    enable();
    if (path)
        (void)savePackConfiguration(*path);
}

// ---- Export DAT to XML --------------------------------------------------------------------

std::optional<std::string> PackConfigurationFlows::exportDatToXml(const std::string& path)
{
    if (extensionOf(path) != ".dat") {
        failure(
            "The file " + fileNameOf(path) + " has the wrong extension.\r\nPlease select a different file.",
            "Invalid File Extension");
        return std::nullopt;
    }
    if (!readPackFile(path))
        return std::nullopt;
    const std::string target = xmlPathOf(path);
    auto& list = driver().Directory.PackConfigurationFile;
    int result = kXmlRead;
    try {
        const XmlPackageInfo info { applicationHeader().version, fileNameOf(path),
            dateAndTime(s_.loop.now()) };
        writeFileReplacing(
            target, writePackXml(list, info, [this](int percent) { s_.main.ReadWriteFileStatus(percent); }));
        result = verifyPackXml(readWholeFile(target), list);
    } catch (const std::exception&) {
        result = kXmlNotLoaded;
    }
    if (result != kXmlRead) {
        failure("Export Failed!\r\nError Code: " + std::to_string(result), "Export DAT to XML");
        return std::nullopt;
    }
    box("Export Successful!\r\nFile exported to: " + target, static_cast<int>(platform::Icon::Information),
        "Export DAT to XML");
    return target;
}

void PackConfigurationFlows::mnuDatExport_Click()
{
    if (hooks_.IsTheDeviceWired && !hooks_.IsTheDeviceWired())
        return;
    const auto path = askOpen(pack_texts::kDatFilter, kPathPackConfiguration);
    if (path)
        (void)exportDatToXml(*path);
}

void PackConfigurationFlows::mnuExport_Click(
    platform::Desktop& desktop, const std::function<void(const std::string&)>& info)
{
    if (hooks_.IsTheDeviceWired && !hooks_.IsTheDeviceWired())
        return;
    const auto path = askOpen(pack_texts::kDataLogFilter, "Path_Export");
    if (path)
        (void)OpenAssociated(*path, desktop, s_.dialogs, info);
}

} // namespace zv
