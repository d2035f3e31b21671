#pragma once
// Reading a log definition file into the directory's LogFile list and downloading it to the
// device: the three file loaders and the menu's load of a chosen .dlog.

#include "logging/log_definition.h"

#include <functional>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
} // namespace zv::platform

namespace zv {

class clsCellWeft;

struct LogDefinitionServices {
    clsCellWeft& driver;
    platform::Dialogs& dialogs;
    platform::EventLoop& loop;
};

class LogDefinitionLoader {
public:
    explicit LogDefinitionLoader(LogDefinitionServices services);

    // True when the file was read and downloaded; every failure has shown its box.
    [[nodiscard]] bool LoadDynamicLogDefinition(const std::string& path);
    [[nodiscard]] bool LoadStaticLogDefinition(const std::string& path);
    [[nodiscard]] bool LoadMapDefinition(const std::string& path);

    // mnuLoadLoggingDefinitionFile: the open dialog in "Data Logging Files", the hourglass, no
    // limit, no wait, and the closing information box.
    void mnuLoadLoggingDefinitionFile(
        const std::string& programFolder, const std::function<void(int)>& setMousePointer);
    // The load of the menu for a file already chosen: true when read and downloaded.
    [[nodiscard]] bool loadChosen(const std::string& path);

    // FileLength of device file 30: the largest number of dynamic definitions.
    [[nodiscard]] int definitionLimit() const;

private:
    enum class Mode { File, Menu };
    [[nodiscard]] bool load(LogDefinitionKind kind, const std::string& path, Mode mode);
    [[nodiscard]] bool readLines(const std::string& path, std::string& text);

    LogDefinitionServices s_;
};

} // namespace zv
