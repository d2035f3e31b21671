#include "monitor/link_activity.h"

#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "platform/event_loop.h"

namespace zv {

namespace {

const char* pictureKey(LinkActivityPicture picture)
{
    switch (picture) {
    case LinkActivityPicture::netRX:
        return "netRX";
    case LinkActivityPicture::netTX:
        return "netTX";
    case LinkActivityPicture::netBoth:
        return "netBoth";
    case LinkActivityPicture::netNone:
        break;
    }
    return "netNone";
}

} // namespace

LinkActivity::LinkActivity(frmMain& form, clsMain& main, platform::EventLoop& loop)
    : form_(form)
    , main_(main)
    , tmrCommStatus_(loop.createTimer())
{
    tmrCommStatus_->setInterval(kCommStatusMs);
    tmrCommStatus_->onTick = [this] { tmrCommStatus_Timer(); };
    MainHooks& hooks = main_.hooks;
    hooks.hlkPanel = [this](LinkActivityPicture picture, const std::string& text) {
        form_.sbStatusBar.setPanelPicture(kHlkPanel, pictureKey(picture));
        form_.sbStatusBar.setPanelText(kHlkPanel, text);
    };
    hooks.restartCommStatusTimer = [this] {
        tmrCommStatus_->setEnabled(false);
        tmrCommStatus_->setEnabled(true);
    };
    hooks.updateProgress = [this](int percent, const std::string& text) { UpdateProgress(percent, text); };
    hooks.startAndStopProgress = [this] { StartAndStopProgress(); };
}

LinkActivity::~LinkActivity()
{
    MainHooks& hooks = main_.hooks;
    hooks.hlkPanel = nullptr;
    hooks.restartCommStatusTimer = nullptr;
    hooks.updateProgress = nullptr;
    hooks.startAndStopProgress = nullptr;
}

void LinkActivity::UpdateProgress(int percent, const std::string& text)
{
    form_.picProgress.setValue(percent);
    form_.picProgress.setCaption(text + std::to_string(form_.picProgress.value()) + " %");
    form_.picProgress.setVisible(true);
}

void LinkActivity::StartAndStopProgress()
{
    form_.picProgress.setVisible(false);
    form_.picProgress.setValue(0);
    form_.picProgress.setCaption({});
}

void LinkActivity::tmrCommStatus_Timer()
{
    tmrCommStatus_->setEnabled(false);
    main_.ClearRXTXFlags();
    if (form_.sbStatusBar.panelText(kHlkPanel) == "Lost Comms")
        return;
    form_.sbStatusBar.setPanelPicture(kHlkPanel, "netNone");
    form_.sbStatusBar.setPanelText(kHlkPanel, "Idle");
}

} // namespace zv
