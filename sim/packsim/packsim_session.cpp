#include "packsim/packsim_session.h"

namespace zvsim {

namespace {

std::unique_ptr<Pack> packWithFaults(const PackSimOptions& options)
{
    auto pack = makePack(options.pack);
    pack->faults() = options.faults.device;
    return pack;
}

HlkOptions dongleOptions(const PackSimOptions& options, std::int64_t startMs)
{
    HlkOptions result;
    result.faults = options.faults.link;
    result.seed = options.pack.seed;
    result.startMs = startMs;
    result.anyBaud = options.anyBaud;
    return result;
}

} // namespace

PackSimSession::PackSimSession(const PackSimOptions& options, std::function<std::int64_t()> nowUs)
    : options_(options)
    , nowUs_(std::move(nowUs))
    , pack_(packWithFaults(options))
    , dongle_(*pack_, dongleOptions(options, nowUs_() / 1000))
    , pty_(dongle_, options.wirePacing)
    // The adapter decides its faults with a die of its own, so that the two front ends differ.
    , usb_(*pack_, { options.faults.link, options.pack.seed + 1u, nowUs_() / 1000 })
    , usbServer_(usb_, options.wirePacing)
{
}

std::string PackSimSession::start()
{
    if (options_.pty) {
        if (auto error = pty_.open(); !error.empty())
            return error;
        if (!options_.link.empty())
            if (auto error = pty_.makeLink(options_.link); !error.empty())
                return error;
        servables_.push_back(&pty_);
    }
    if (!options_.usbSocket.empty()) {
        if (auto error = usbServer_.listen(options_.usbSocket); !error.empty())
            return error;
        servables_.push_back(&usbServer_);
    }
    return {};
}

std::string PackSimSession::whereItAnswers() const
{
    std::string text;
    if (options_.pty)
        text += "  HLK dongle on " + pty_.devicePath()
            + (options_.link.empty() ? "" : " linked as " + options_.link) + "\n";
    if (!options_.usbSocket.empty())
        text += "  USB adapter on " + options_.usbSocket + "\n";
    return text;
}

bool PackSimSession::serveOnce(int maxWaitMs)
{
    return zvsim::serveOnce(servables_, nowUs_, maxWaitMs);
}

bool PackSimSession::pulled() const
{
    return (options_.pty && !pty_.isOpen()) || (!options_.usbSocket.empty() && !usbServer_.isOpen());
}

void PackSimSession::setTrace(const std::function<TraceSink(const char* channel)>& makeSink)
{
    dongle_.setTrace(makeSink("pty"));
    usbServer_.setTrace(makeSink("usb"));
}

} // namespace zvsim
