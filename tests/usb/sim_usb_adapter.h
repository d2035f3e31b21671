#pragma once
// An adapter in the test process: the line protocol of LineUsbAdapter handed straight to the
// simulator's USB front end at the virtual time. A test can make transfers fail or answer them
// itself, and sees every request line.

#include "frontends/usb_adapter.h"
#include "platform/event_loop.h"
#include "usb/line_usb_adapter.h"

#include <functional>
#include <string>
#include <vector>

namespace zv::test {

struct SimUsbScript {
    bool present = true; // false: the line cannot be opened, Connect gives 6
    int failTransfers = 0; // this many transfers answer "3" (time-out) before the pack sees them
    // Answers a request instead of the pack when it returns text.
    std::function<std::optional<std::string>(const std::string&)> answer;
    std::vector<std::string> requests; // every request line, kept when the adapter is released
};

class SimUsbAdapter : public LineUsbAdapter {
public:
    SimUsbAdapter(zvsim::UsbAdapter& sim, const platform::EventLoop& clock, SimUsbScript& script)
        : sim_(sim)
        , clock_(clock)
        , script_(script)
    {
    }

protected:
    bool openLine() override { return open_ = script_.present; }
    void closeLine() override { open_ = false; }
    [[nodiscard]] bool lineOpen() const override { return open_; }
    std::optional<std::string> exchange(const std::string& request) override
    {
        script_.requests.push_back(request);
        if (script_.answer)
            if (auto answer = script_.answer(request))
                return answer;
        const bool transfer = request.starts_with("WRITE") || request.starts_with("READ");
        if (transfer && script_.failTransfers > 0) {
            --script_.failTransfers;
            return "3";
        }
        return sim_.handle(request, clock_.milliseconds());
    }

private:
    zvsim::UsbAdapter& sim_;
    const platform::EventLoop& clock_;
    SimUsbScript& script_;
    bool open_ = false;
};

} // namespace zv::test
