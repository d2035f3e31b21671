// zentavia-cli firmware and sysinfo: the firmware loader's flow without a window.

#include "cli/cli_dialogs.h"
#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "driver/cls_main.h"
#include "firmware_loader/calibration_carry.h"
#include "firmware_loader/firmware_loader.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <ostream>

namespace zv::cli {

namespace {

using platform::Answer;
using platform::Buttons;

// The boxes of the loader on stderr: questions take --yes (else no), the save dialog of the
// preserved calibration takes --preserve-cal.
class LoaderDialogs : public CliDialogs {
public:
    LoaderDialogs(std::ostream& err, bool yes, std::string calibrationFile)
        : CliDialogs(err)
        , yes_(yes)
        , calibrationFile_(std::move(calibrationFile))
    {
    }
    Answer messageBox(
        const std::string& text, Buttons buttons, platform::Icon icon, const std::string& title) override
    {
        const Answer answer = CliDialogs::messageBox(text, buttons, icon, title);
        if (buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel)
            return yes_ ? Answer::Yes : Answer::No;
        return answer;
    }
    std::optional<std::string> saveFile(const platform::FileDialogOptions&) override
    {
        if (calibrationFile_.empty())
            return std::nullopt;
        return calibrationFile_;
    }

private:
    bool yes_;
    std::string calibrationFile_;
};

// The download's progress: a bar redrawn in place on a terminal, else one line a new status.
class Progress {
public:
    explicit Progress(std::ostream& err)
        : err_(err)
        , terminal_(&err == &std::cerr && ::isatty(STDERR_FILENO) != 0)
    {
    }
    ~Progress() { finish(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void percent(int value)
    {
        percent_ = value;
        draw();
    }
    void status(const std::string& text)
    {
        if (text == status_)
            return;
        status_ = text;
        if (terminal_)
            draw();
        else
            err_ << text << '\n';
    }
    void line(const std::string& text)
    {
        finish();
        err_ << text << '\n';
    }
    void finish()
    {
        if (terminal_ && drawn_) {
            err_ << '\n';
            drawn_ = false;
        }
        err_.flush();
    }

private:
    void draw()
    {
        if (!terminal_)
            return;
        constexpr int kWidth = 30;
        const int filled = std::clamp(percent_, 0, 100) * kWidth / 100;
        err_ << "\r[" << std::string(static_cast<std::size_t>(filled), '#')
             << std::string(static_cast<std::size_t>(kWidth - filled), '.') << "] " << std::setw(3)
             << percent_ << "% " << std::left << std::setw(60) << status_.substr(0, 60) << std::right;
        err_.flush();
        drawn_ = true;
    }

    std::ostream& err_;
    bool terminal_;
    bool drawn_ = false;
    int percent_ = 0;
    std::string status_;
};

std::string stateText(int state)
{
    if (state < 0)
        return "unreadable" + titleSuffix(state);
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(state) & 0xFFFFu);
    return text + titleSuffix(state);
}

void printInformation(std::ostream& out, const std::string& heading, const SystemInformation& info)
{
    out << heading << '\n';
    out << "  " << std::left << std::setw(30) << "Hardware state:" << stateText(info.hardwareState) << '\n';
    for (std::size_t i = 0; i < info.fields.size() && i < kSystemInfoFields.size(); ++i)
        out << "  " << std::setw(30) << (std::string(kSystemInfoFields[i].parameter) + ":")
            << info.fields[i].second << '\n';
    out << "  " << std::setw(30) << "Verification:" << verificationMessage(info.verification).text << " ("
        << info.verification << ")" << std::right << '\n';
    out.flush();
}

LoaderView progressView(Progress& progress)
{
    LoaderView view;
    view.status = [&progress](const std::string& text) { progress.status(text); };
    view.progress = [&progress](int percent) { progress.percent(percent); };
    view.info = [&progress](const std::string& text, platform::Icon icon) {
        if (icon != platform::Icon::None)
            progress.line(text);
    };
    return view;
}

LoaderServices loaderServices(CliSession& session, platform::Dialogs& dialogs)
{
    return LoaderServices { session.main(), session.mutableGlobals(), session.loop(), dialogs,
        session.programFolder() };
}

void connectTarget(FirmwareLoader& loader)
{
    if (!loader.ConnectToTarget())
        throw CliError("The target could not be connected.");
}

} // namespace

void runSysinfo(CliSession& session, std::ostream& out)
{
    LoaderDialogs dialogs(session.diagnostics(), false, {});
    Progress progress(session.diagnostics());
    FirmwareLoader loader(loaderServices(session, dialogs), progressView(progress));
    connectTarget(loader);
    const SystemInformation info = loader.GetSystemInformation();
    progress.finish();
    printInformation(out,
        session.globals().gTargetName + " Information (target " + session.globals().gTargetID + ")", info);
    if (info.verification != kVerifiedOk)
        throw CliError(verificationMessage(info.verification).text, kExitNotVerified);
}

void runFirmware(CliSession& session, const FirmwareRequest& request, std::ostream& out, std::ostream& err)
{
    if (!request.preserveCal.empty() && !request.yes)
        throw CliError(
            "--preserve-cal needs --yes: it answers the question that confirms the conversion.", kExitUsage);
    LoaderDialogs dialogs(err, request.yes, request.preserveCal);
    Progress progress(err);
    FirmwareLoader loader(loaderServices(session, dialogs), progressView(progress));
    connectTarget(loader);
    const AppGlobals& g = session.globals();
    progress.finish();
    printInformation(out, "Before: " + g.gTargetName + " Information (target " + g.gTargetID + ")",
        loader.GetSystemInformation());

    switch (loader.LoadImage(request.image)) {
    case LoadOutcome::Loaded:
        break;
    case LoadOutcome::Unreadable:
        throw CliError("The file " + request.image + " cannot be read.", kExitImageRefused);
    default:
        throw CliError("The image " + request.image + " was refused.", kExitImageRefused);
    }
    const auto& sections = loader.sections();
    out << "Image: " << request.image << ", " << sections.size() << " section(s), versions";
    for (const auto& section : sections)
        out << ' ' << section.version;
    out << '\n';
    out.flush();

    CalibrationCarry carry(
        { session.main(), session.mutableGlobals(), session.loop(), dialogs, session.programFolder() });
    std::function<std::optional<bool>()> preserve;
    if (!request.preserveCal.empty()) {
        if (g.gTargetID != "1001")
            throw CliError("--preserve-cal is for target 1001 only.", kExitUsage);
        (void)dialogs.messageBox(
            kConfirmPreserveText, Buttons::YesNo, platform::Icon::Question, "Confirm Selection");
        preserve = [&] { return carry.Preserve(loader, {}); };
    }
    const DownloadOutcome outcome = loader.downloadWithVerification(preserve);
    progress.finish();
    if (outcome == DownloadOutcome::DownloadFailed)
        throw CliError(kDownloadFailedText, kExitDownloadFailed);
    if (outcome == DownloadOutcome::Aborted)
        throw CliError("The download was not made: the calibration could not be saved.");
    printInformation(out, "After: " + g.gTargetName + " Information (target " + g.gTargetID + ")",
        loader.lastInformation());
    if (outcome == DownloadOutcome::NotVerified)
        throw CliError(verificationMessage(loader.lastVerification()).text, kExitNotVerified);
}

} // namespace zv::cli
