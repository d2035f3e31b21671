#pragma once
// "LAN is not built!": told once, at the first activation of the main window after a load in which
// the expected number of cells differed from the actual number.

namespace zv::platform {
class Dialogs;
}

namespace zv {

struct AppGlobals;

class LanNotice {
public:
    // After each load: arms the notice when the cells did not match.
    void loaded(const AppGlobals& globals);
    // The main window was activated: shows the box if armed, once.
    void mainActivated(platform::Dialogs& dialogs);

private:
    bool armed_ = false;
};

} // namespace zv
