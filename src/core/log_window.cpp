#include "core/log_window.h"

namespace zv {

LogWindow::LogWindow(std::string name, const LogWindowContext& context, const PlacementKeys& keys,
    platform::ui::Control& textControl)
    : Window(std::move(name))
    , context_(context)
    , keys_(keys)
    , textControl_(textControl)
{
}

void LogWindow::handleLoad()
{
    const auto screen = context_.screen ? context_.screen() : platform::ui::ScreenSize {};
    setBounds(readPlacement(context_.store, keys_, screen, context_.programFolder));
    handleResize();
}

void LogWindow::handleResize()
{
    textControl_.setBounds(logTextArea(bounds()));
}

void LogWindow::handleUnload()
{
    storePlacement(context_.store, keys_, bounds());
}

} // namespace zv
