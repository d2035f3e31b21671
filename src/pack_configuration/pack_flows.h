#pragma once
// The flows that move a pack configuration or a data set between disk and device: load from
// .dat/.tmap/.aux/.sbd (with commit, initialize and a new detection), save to .dat, export a
// .dat to .xml, and the data-set load, import and save. The menu entries of the main window and
// the commands of zentavia-cli call these.

#include "access/login.h"
#include "pack_configuration/dat_file.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zv::platform {
class Desktop;
class Dialogs;
class EventLoop;
class SettingsStore;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class clsMain;
class clsCellWeft;
class clsSMBusParameter;
struct PackProperties;
struct DataSetRecord;

struct PackFlowServices {
    clsMain& main;
    AppGlobals& globals;
    platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    platform::EventLoop& loop;
    std::string programFolder;
};

// What the flows need of the main window, the commands and the start-up; an unset hook is
// skipped (and a check that is unset passes).
struct PackFlowHooks {
    std::function<bool()> IsTheDeviceWired;
    std::function<bool()> pollingActive;
    std::function<void()> disableAllCommands;
    std::function<void()> enableAllCommands;
    std::function<void(int)> SetMousePointer; // 11 hourglass, 0 default
    std::function<void(const std::string&)> showSplash; // shows the splash with this status
    std::function<void()> closeSplash;
    // The login with the pack's password; true when the target took it.
    std::function<bool(const PasswordBytes&)> login;
    std::function<bool()> CommitChanges;
    std::function<bool(bool relearn)> CommandInitialize;
    // The target detection, then LoadMainForm, GetAllValues, LoadTabs and UpdateDynamicData.
    std::function<bool()> detectTarget;
    std::function<bool()> Parameters_ReadAll;
    std::function<void(const clsSMBusParameter&)> UpdateTabs;
    // Redraws the lists after the temperature preference changed.
    std::function<void()> redraw;
    // Loads a chemistry file into the device; unset while there is no chemistry download.
    std::function<void(const std::string& path)> loadChemistry;
};

// The texts of the flows, where tests and the command line compare them.
namespace pack_texts {
inline constexpr const char* kLoadFilter
    = "Pack Configuration Files (*.dat;*.tmap;*.aux;*.sbd;)|*.dat;*.tmap;*.aux;*.sbd|";
inline constexpr const char* kSaveFilter = "Pack Configuration Files (*.dat)|*.dat|";
inline constexpr const char* kDatFilter = "DAT Files (*.dat;)|*.dat|";
inline constexpr const char* kDataSetFilter = "Zentavia CSV (*.ppcsv)|*.ppcsv|";
inline constexpr const char* kDataLogFilter = "Data Log Files (*.csv)|*.csv|";
inline constexpr const char* kAuxFilter = "Auxiliary Chemistry Files (*.aux)|*.aux|";
inline constexpr const char* kLoadFailed = "An error has occurred while loading the pack configuration.\r\n"
                                           "It is recommended that you reload the configuration file.\r\n"
                                           "If this problem persists, please restart Zentavia and try again.";
inline constexpr const char* kLoginFailed
    = "An error has occurred during login.\r\n"
      "It is recommended that you reload the configuration file.\r\n"
      "If this problem persists, please restart Zentavia and try again.";
} // namespace pack_texts

class PackConfigurationFlows {
public:
    PackConfigurationFlows(PackFlowServices services, PackFlowHooks hooks);

    // The menu entries: each asks for its file, then runs the flow below.
    void mnuLoadPackConfiguration_Click(bool relearn);
    void mnuSavePackConfiguration_Click();
    void mnuDatExport_Click();
    void mnuPPloadPackConfigurationToDevice_Click();
    void mnuPPsavePackConfiguration_Click();
    void mnuPPImportPackConfiguration_Click();
    // A data log opened in the system's program for .csv; a refusal shows "File Error".
    void mnuExport_Click(platform::Desktop& desktop, const std::function<void(const std::string&)>& info);

    // Load from file: LoadPackConfiguration, then commit, initialize and a new detection.
    [[nodiscard]] bool loadFromFile(const std::string& path, bool relearn);
    // Reads the file into the pack list, writes it, and logs in with the pack's password.
    [[nodiscard]] bool LoadPackConfiguration(const std::string& path);
    // Writes every element of the pack list with the data flow stopped.
    [[nodiscard]] bool WritePackConfiguration();
    // Reads every file of the pack configuration into the pack list.
    [[nodiscard]] bool ReadPackConfiguration();
    // ReadPackConfiguration, then the .dat; the notification tells the outcome.
    [[nodiscard]] bool savePackConfiguration(const std::string& path);
    // The .xml beside the .dat and its verifying read; the path of the .xml, or none.
    [[nodiscard]] std::optional<std::string> exportDatToXml(const std::string& path);

    // Reads .dat (ReadFile) or .tmap/.aux/.sbd (ReadEditablePCFile) into the pack list; a
    // failure shows the "Invalid file format" box.
    [[nodiscard]] bool readPackFile(const std::string& path);
    // Writes one element, in parts where it is larger than one transfer.
    [[nodiscard]] bool writeElement(const PackProperties& file);

    // Data sets.
    [[nodiscard]] bool PP_LoadTabParametersFromFile(const std::string& path);
    [[nodiscard]] bool loadDataSetToDevice(const std::string& path);
    [[nodiscard]] bool ImportDataSet(const std::string& path);
    [[nodiscard]] bool SaveDataSet(const std::string& path);
    // The lines of the data-set of the model's values.
    [[nodiscard]] std::vector<std::string> dataSetLines();

    // The password of the last .dat read; kept for the session.
    PackPassword packPassword;
    // The title and text of the last failure box.
    std::string lastFailure;
    // A failure that no box told (a commit or a detection that did not succeed), for the command line.
    std::string quietFailure;

    [[nodiscard]] PackFlowHooks& hooks() { return hooks_; }

private:
    [[nodiscard]] clsCellWeft& driver();
    [[nodiscard]] std::optional<std::string> askOpen(const char* filter, const char* folderSetting);
    [[nodiscard]] std::optional<std::string> askSave(const char* filter, const char* folderSetting);
    void box(const std::string& text, int icon, const std::string& title);
    void failure(const std::string& text, const std::string& title);
    void notify(const std::string& title, const std::string& text);
    void pointer(int shape);
    void splash(const std::string& text);
    void disable();
    void enable();
    void progress(int done, int count, const std::string& text);
    [[nodiscard]] bool setDataFlow(bool start);
    [[nodiscard]] bool writeDataSetFile(int file, const std::vector<DataSetRecord>& records);
    void chemistryStep();
    // Asks for the kelvin preference a data-set import needs; false when the user declines.
    [[nodiscard]] bool kelvinPreference();

    PackFlowServices s_;
    PackFlowHooks hooks_;
};

// The title and "major.minor" version that pack files carry.
[[nodiscard]] PackFileHeader applicationHeader();

} // namespace zv
