#pragma once
// Judging a collected dongle reply, and the dongle's unsolicited lines.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv::hlk {

enum class Verdict {
    Accepted, // the reply holds what was expected
    StuckBus, // thirty "~FF" in a row: the bus is stuck high; a failure with no error raised
    Unsolicited, // an alarm broadcast came in place of the answer: discard it and wait again
    Failed, // anything else: the transaction failed
};

struct Judgement {
    Verdict verdict = Verdict::Failed;
    int snaCount = 0; // replies (or segments) that held "/SNA"
};

// Judges a reply that did not time out. segments is the number of "*" prompts (1, 2 or 3);
// with 2 or 3 the first segments must hold "/MTC" and the last "/MRC".
[[nodiscard]] Judgement judgeReply(std::string_view buffer, std::string_view expected, int segments);

[[nodiscard]] bool isStuckBus(std::string_view buffer);

// Takes every whole alarm broadcast ("/SRC" up to its prompt) out of a reply being collected and
// returns them as lines without tildes, CR and LF; what stays is the answer to the command.
[[nodiscard]] std::vector<std::string> takeBroadcasts(std::string& buffer);

// Collects the dongle's unsolicited traffic into lines: "~", CR and LF are dropped; an LF ends
// a line once at least four characters are buffered.
class LineCollector {
public:
    [[nodiscard]] std::optional<std::string> feed(char c);
    void clear() { line_.clear(); }
    [[nodiscard]] const std::string& pending() const { return line_; }

private:
    std::string line_;
};

// A "/SRC" line (tildes gone): the four bytes after the host address.
struct SrcMessage {
    std::uint8_t sender = 0;
    std::uint8_t low = 0;
    std::uint8_t high = 0;
    std::uint8_t pec = 0;
    [[nodiscard]] int word() const { return low + 256 * high; }
    // The PEC over host address 0x10 and the three bytes.
    [[nodiscard]] std::uint8_t computedPec() const;
};
[[nodiscard]] std::optional<SrcMessage> parseSrcLine(std::string_view line);

} // namespace zv::hlk
