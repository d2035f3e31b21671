#include "startup/demo_capture.h"

#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "core/globals.h"
#include "driver/cellweft.h"
#include "platform/ini_file.h"

#include <filesystem>
#include <memory>

namespace zv {

namespace {

constexpr int kHourglass = 11;
constexpr int kNormalPointer = 0;
constexpr const char* kDataSection = "Data";

void callIfSet(const std::function<void(bool)>& hook, bool all)
{
    if (hook)
        hook(all);
}

void setPointer(const DemoCaptureHooks& hooks, int pointer)
{
    if (hooks.setMousePointer)
        hooks.setMousePointer(pointer);
}

} // namespace

DemoCaptureResult captureDemo(clsCellWeft& driver, const std::string& targetId, const std::string& file)
{
    std::error_code error;
    std::filesystem::remove(file, error);
    platform::IniFile capture;
    capture.setValue("Target", "ID", modCryptText::EncryptText(targetId, kPackKey));
    DemoCaptureResult result;
    const auto store = [&capture](int& count) {
        return [&capture, &count](const std::string& key, const std::string& hexText) {
            capture.setValue(kDataSection, key, hexText);
            ++count;
        };
    };
    result.directoryRead = driver.GetDir(store(result.records));
    result.filesRead = result.directoryRead && driver.GetAllValues(store(result.files));
    result.saved = result.filesRead && capture.save(file);
    return result;
}

bool GenerateDemoINI(clsCellWeft& driver, const AppGlobals& globals, const DemoCaptureHooks& hooks)
{
    if (hooks.isTheDeviceWired && !hooks.isTheDeviceWired())
        return false;
    callIfSet(hooks.disableAllCommands, true);
    setPointer(hooks, kHourglass);
    const bool ok = captureDemo(driver, globals.gTargetID, globals.gDemoFile).ok();
    setPointer(hooks, kNormalPointer);
    callIfSet(hooks.enableAllCommands, true);
    return ok;
}

DemoFileSource demoFileSource(const std::string& demoFile)
{
    auto capture = std::make_shared<const platform::IniFile>(platform::IniFile::load(demoFile));
    return [capture](const std::string& key) { return capture->value(kDataSection, key); };
}

} // namespace zv
