#include "core/frm_modem_log.h"

#include <array>
#include <utility>

namespace zv {

namespace {

constexpr PlacementKeys kModemLogPlacement { "ModemLogTop", "ModemLogLeft", "ModemLogWidth",
    "ModemLogHeight" };

constexpr std::array<std::pair<char, const char*>, 12> kMnemonics { {
    { 0, "<NUL>" },
    { 1, "<SOH>" },
    { 2, "<STX>" },
    { 3, "<ETX>" },
    { 4, "<EOT>" },
    { 5, "<ENQ>" },
    { 6, "<ACK>" },
    { 7, "<BEL>" },
    { 10, "<LF>" },
    { 13, "<CR>" },
    { 23, "<ETB>" },
    { 27, "<ESC>" },
} };

const char* mnemonicOf(char c)
{
    for (const auto& [code, name] : kMnemonics) {
        if (code == c)
            return name;
    }
    return nullptr;
}

std::string_view trimmedBlanks(std::string_view s)
{
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ')
        s.remove_suffix(1);
    return s;
}

} // namespace

std::string withMnemonics(std::string_view text)
{
    std::string shown;
    shown.reserve(text.size());
    for (char c : text) {
        if (const char* name = mnemonicOf(c))
            shown += name;
        else
            shown += c;
    }
    return shown;
}

frmModemLog::frmModemLog(const LogWindowContext& context, const AppGlobals& globals)
    : LogWindow("frmModemLog", context, kModemLogPlacement, rtfEvent)
    , globals_(globals)
{
    setCaption("Communications Log");
    addControls({ &rtfEvent });
}

platform::Rgb frmModemLog::colorFor(const std::string& text, bool transmitted) const
{
    if (transmitted)
        return kModemSentColor;
    if (!globals_.usbTransport())
        return kModemReceivedColor;
    // On the adapter, the status read of the file protocol is green only when the device is idle.
    if (text.starts_with("0B 3D"))
        return trimmedBlanks(text) == "0B 3D 00 00" ? kModemAdapterReceivedColor : kModemReceivedColor;
    return kModemAdapterReceivedColor;
}

void frmModemLog::log_ModemEvent(const std::string& text, bool transmitted)
{
    if (!visible())
        return;
    const platform::Rgb color = colorFor(text, transmitted);
    std::string shown = text;
    if (globals_.usbTransport())
        shown = (transmitted ? "<< " : ">> ") + shown;

    rtfEvent.append("\n", color);
    lastTransmitted_ = transmitted;
    if (shown.empty())
        return;
    rtfEvent.append(withMnemonics(shown), color);
}

bool frmModemLog::handleCloseRequest()
{
    hide();
    return false;
}

} // namespace zv
