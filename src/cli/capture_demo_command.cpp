// capture-demo: the capture of the attached device from which demo mode runs: the target's id,
// enciphered with the pack key, every raw directory record and every file the user may read.

#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "platform/ini_file.h"

#include <filesystem>
#include <ostream>

namespace zv::cli {

void runCaptureDemo(CliSession& session, const std::string& file, std::ostream& out)
{
    if (session.demo())
        throw CliError("capture-demo needs an attached pack; demo mode has none.");
    session.detect();
    std::error_code ignored;
    std::filesystem::remove(file, ignored);

    platform::IniFile capture;
    capture.setValue("Target", "ID", modCryptText::EncryptText(session.globals().gTargetID, kPackKey));
    int records = 0;
    int files = 0;
    auto& driver = session.driver();
    if (!driver.GetDir([&](const std::string& key, const std::string& hex) {
            capture.setValue("Data", key, hex);
            ++records;
        }))
        throw CliError("Reading the directory failed; nothing was captured.");
    if (!driver.GetAllValues([&](const std::string& key, const std::string& hex) {
            capture.setValue("Data", key, hex);
            ++files;
        }))
        throw CliError("Reading the device files failed; nothing was captured.");
    if (!capture.save(file))
        throw CliError("The capture cannot be written to " + file + ".");
    out << "Captured target " << session.globals().gTargetID << ": " << records << " directory records and "
        << files << " files in " << file << '\n';
}

} // namespace zv::cli
