#pragma once
// mnuSaveZentaviaSettings and mnuLoadZentaviaSettings: the plot setup and the display
// preferences to and from a settings file. A file of another version is refused and changes
// nothing.

#include "monitor/app_settings_file.h"

#include <functional>
#include <string>

namespace zv {

class Monitor;
class frmMain;

class AppSettingsFiles {
public:
    AppSettingsFiles(Monitor& monitor, std::function<void(int)> setMousePointer);

    void mnuSaveZentaviaSettings();
    void mnuLoadZentaviaSettings();

    // The file's content as the window stands.
    [[nodiscard]] AppSettingsFile current() const;
    // Writes through a temporary file beside the target; false when it could not be written.
    [[nodiscard]] bool save(const std::string& path);
    // Loads a chosen file with its boxes; true when it was good and applied.
    [[nodiscard]] bool load(const std::string& path);

private:
    [[nodiscard]] std::string folder() const;
    void apply(const AppSettingsFile& file);
    void pointer(int shape) const;

    Monitor& m_;
    std::function<void(int)> setMousePointer_;
};

// Sets the click handlers of the two entries; the files object must outlive the window's use.
void wireAppSettingsFiles(frmMain& form, AppSettingsFiles& files);

} // namespace zv
