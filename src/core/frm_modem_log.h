#pragma once
// The communications log window: every exchange with the dongle or the adapter, oldest line
// first, sent text in black and received text in red (green on the adapter), in memory only.
// Its close box hides it so the text stays; while hidden it records nothing.

#include "core/globals.h"
#include "core/log_window.h"
#include "platform/ui/rich_text_box.h"

#include <string>
#include <string_view>

namespace zv {

inline constexpr platform::Rgb kModemSentColor = 0x000000;
inline constexpr platform::Rgb kModemReceivedColor = 0x0000FF; // red
inline constexpr platform::Rgb kModemAdapterReceivedColor = 0x008000; // green

// The text with each control character of the table replaced by its mnemonic ("<CR>", ...).
[[nodiscard]] std::string withMnemonics(std::string_view text);

class frmModemLog : public LogWindow {
public:
    frmModemLog(const LogWindowContext& context, const AppGlobals& globals);

    // Appends one exchange on a new line; does nothing while the window is hidden.
    void log_ModemEvent(const std::string& text, bool transmitted);
    [[nodiscard]] bool lastTransmitted() const { return lastTransmitted_; }

    platform::ui::RichTextBox rtfEvent { "rtfEvent" };

protected:
    [[nodiscard]] bool handleCloseRequest() override;

private:
    [[nodiscard]] platform::Rgb colorFor(const std::string& text, bool transmitted) const;

    const AppGlobals& globals_;
    bool lastTransmitted_ = false;
};

} // namespace zv
