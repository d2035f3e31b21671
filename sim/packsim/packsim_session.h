#pragma once
// One run of zentavia-packsim: the pack built from the options, with its device faults, and the
// front ends the options ask for, served from one loop.

#include "device/pack.h"
#include "frontends/hlk_dongle.h"
#include "frontends/pty_frontend.h"
#include "frontends/usb_socket_server.h"
#include "packsim/packsim_options.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zvsim {

class PackSimSession {
public:
    // nowUs: the clock in microseconds; the pack and its front ends' devices see milliseconds.
    PackSimSession(const PackSimOptions& options, std::function<std::int64_t()> nowUs);

    // Opens the front ends; an error text, empty on success.
    [[nodiscard]] std::string start();

    // Where the front ends answer, one line each.
    [[nodiscard]] std::string whereItAnswers() const;

    // One round of the loop; false when poll() failed.
    [[nodiscard]] bool serveOnce(int maxWaitMs);

    // True when a front end has closed because the pack was pulled.
    [[nodiscard]] bool pulled() const;

    void setTrace(const std::function<TraceSink(const char* channel)>& makeSink);

    [[nodiscard]] Pack& pack() { return *pack_; }
    [[nodiscard]] const std::string& devicePath() const { return pty_.devicePath(); }

private:
    PackSimOptions options_;
    std::function<std::int64_t()> nowUs_;
    std::unique_ptr<Pack> pack_;
    HlkDongle dongle_;
    PtyFrontEnd pty_;
    UsbAdapter usb_;
    UsbSocketServer usbServer_;
    std::vector<Servable*> servables_;
};

} // namespace zvsim
