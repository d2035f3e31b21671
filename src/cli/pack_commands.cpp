// save-config, load-config, export-xml, save-dataset, load-dataset, set and commit: the pack
// configuration flows of the main window's file menu, and the single-parameter write, headless.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "commands/command_words.h"
#include "driver/target_operations.h"
#include "pack_configuration/pack_flows.h"

#include <iostream>
#include <memory>
#include <ostream>

#include <unistd.h>

namespace zv::cli {

namespace {

// The command lock of the transport in use.
CommandLock sessionLock(clsCellWeft& driver)
{
    auto target = std::make_shared<TargetOperations>(driver);
    return { [target] { return target->UnlockDevice(); },
        [target] { return target->EnableUlmarCommandSet(); },
        [target] { return target->DisableUlmarCommandSet(); }, [target] { return target->LockDevice(); },
        [target] { return target->GetAccessLevel(); } };
}

bool commit(clsCellWeft& driver)
{
    return driver.WriteCommandFile(command_words::kCommit);
}

// The flows over the session, with the hooks a headless run has: no windows, the progress on
// stderr while it is a terminal.
class PackRun {
public:
    explicit PackRun(CliSession& session)
        : session_(session)
    {
        session.loadConfiguration();
        auto& main = session.main();
        if (::isatty(STDERR_FILENO)) {
            main.hooks.updateProgress = [](int percent, const std::string& text) {
                std::cerr << '\r' << text << percent << "%   " << std::flush;
            };
            main.hooks.startAndStopProgress = [] { std::cerr << "\r\033[K" << std::flush; };
        }
        PackFlowHooks hooks;
        hooks.login = [this](const PasswordBytes& bytes) {
            auto& s = session_;
            AccessServices access { s.main(), s.mutableGlobals(), s.services().dialogs,
                sessionLock(s.driver()) };
            return LoginWithPassword(access, bytes);
        };
        hooks.CommitChanges = [this] { return commit(session_.driver()); };
        hooks.CommandInitialize = [this](bool relearn) {
            auto& d = session_.driver();
            const bool ok
                = d.WriteCommandFile(relearn ? command_words::kInitializeRelearn : command_words::kInitialize,
                    command_words::initializeWaitMs(session_.globals().gTargetID));
            (void)d.SMBus_ReInit();
            return ok;
        };
        hooks.detectTarget = [this] {
            session_.redetect();
            return true;
        };
        hooks.Parameters_ReadAll = [this] { return session_.driver().GetAllValues(); };
        const auto& s = session.services();
        flows_
            = std::make_unique<PackConfigurationFlows>(PackFlowServices { main, session.mutableGlobals(),
                                                           s.settings, s.dialogs, s.loop, s.programFolder },
                std::move(hooks));
    }
    ~PackRun()
    {
        auto& hooks = session_.main().hooks;
        hooks.updateProgress = nullptr;
        hooks.startAndStopProgress = nullptr;
    }
    PackRun(const PackRun&) = delete;
    PackRun& operator=(const PackRun&) = delete;

    PackConfigurationFlows& flows() { return *flows_; }

    [[noreturn]] void fail(const std::string& what) const
    {
        // The boxes of the flow went to stderr already.
        const std::string& reason = flows_->quietFailure;
        throw CliError(reason.empty() ? what : what + " " + reason);
    }

private:
    CliSession& session_;
    std::unique_ptr<PackConfigurationFlows> flows_;
};

} // namespace

void runSaveConfig(CliSession& session, const std::string& file, std::ostream& out)
{
    PackRun run(session);
    if (!run.flows().savePackConfiguration(file))
        run.fail("The pack configuration was not saved.");
    const auto& list = session.driver().Directory.PackConfigurationFile;
    out << "Saved " << list.Count() << " files of the pack configuration to " << file << '\n';
    for (const auto& element : list)
        out << "  file " << int(element.FileNumber) << " " << element.FileName << ": " << element.FileSize
            << " bytes\n";
}

void runLoadConfig(CliSession& session, const std::string& file, bool relearn, std::ostream& out)
{
    PackRun run(session);
    if (!run.flows().loadFromFile(file, relearn))
        run.fail("The pack configuration was not loaded.");
    const auto& list = session.driver().Directory.PackConfigurationFile;
    out << "Loaded " << list.Count() << (list.Count() == 1 ? " file" : " files") << " from " << file
        << ", committed, initialized" << (relearn ? " with relearn" : "") << "; target "
        << session.globals().gTargetName << " detected again with " << session.driver().nodes.Count()
        << " cells.\n";
}

void runExportXml(CliSession& session, const std::string& file, std::ostream& out)
{
    PackRun run(session);
    const auto target = run.flows().exportDatToXml(file);
    if (!target)
        run.fail("The export failed.");
    out << "Exported " << session.driver().Directory.PackConfigurationFile.Count() << " files to " << *target
        << "; the read-back matches.\n";
}

void runSaveDataSet(CliSession& session, const std::string& file, std::ostream& out)
{
    PackRun run(session);
    if (!run.flows().SaveDataSet(file))
        run.fail("The data-set was not saved.");
    out << "Saved the data-set to " << file << '\n';
}

void runLoadDataSet(CliSession& session, const std::string& file, std::ostream& out)
{
    PackRun run(session);
    if (!run.flows().loadDataSetToDevice(file))
        run.fail("The data-set was not loaded.");
    out << "Loaded the data-set " << file << " and committed it.\n";
}

void runSet(
    CliSession& session, const std::string& name, const std::string& value, int node, std::ostream& out)
{
    session.loadConfiguration();
    auto& driver = session.driver();
    auto* parameter = parameterList(driver, node).FindByName(name);
    if (!parameter)
        throw CliError("There is no parameter named \"" + name + "\"" + (node ? " in the cells." : "."));
    parameter->NewValue = value;
    // A cell's place in a file of one section a cell lies behind the sections of the cells before it.
    const bool perNode = node > 0 && isPerNodeFile(parameter->FileNumber);
    bool written = false;
    if (perNode) {
        FileRequest request;
        request.access = 1;
        request.file = parameter->FileNumber;
        request.offset
            = parameter->FileIndex + (node - 1) * driver.Transfer.sectionElements(parameter->FileNumber);
        request.data = hexToBytes(driver.Parameters.rawText(*parameter));
        written = !request.data.empty() && driver.FileAccessRequest(request).ok;
        if (written) {
            parameter->NewValue = DynamicValue();
            driver.Parameters.ParametersWritten = true;
        }
    } else {
        written = driver.Parameters.WriteParameter(*parameter);
    }
    if (!written)
        throw CliError("Writing \"" + parameter->ParameterName + "\" failed.");
    std::string text;
    if (!driver.GetFile(parameter->FileNumber, text))
        throw CliError("Reading \"" + parameter->ParameterName + "\" back failed.");
    if (node > 0 && !perNode)
        driver.Transfer.applyValue(*parameter, text);
    std::string shown = parameter->ToString(0, driver.Parameters.display);
    shown.erase(shown.find_last_not_of(' ') + 1);
    out << parameter->ParameterName << ": " << shown << " (written; commit to keep it)\n";
}

void runCommit(CliSession& session, std::ostream& out)
{
    session.loadConfiguration();
    if (!commit(session.driver()))
        throw CliError("The commit failed.");
    out << "Committed RAM to flash.\n";
}

} // namespace zv::cli
