#include "link/hlk_reply.h"

#include "link/hlk_text.h"
#include "link/pec.h"

#include <array>
#include <utility>
#include <vector>

namespace zv::hlk {

namespace {

constexpr int kStuckBusPairs = 30;
constexpr std::uint8_t kHostAddress = 0x10;

bool contains(std::string_view text, std::string_view what)
{
    return text.find(what) != std::string_view::npos;
}

// The texts before each of the first `count` prompts.
std::vector<std::string_view> splitAtPrompts(std::string_view buffer, int count)
{
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (int i = 0; i < count; ++i) {
        const auto star = buffer.find('*', start);
        if (star == std::string_view::npos) {
            parts.push_back(buffer.substr(start));
            start = buffer.size();
            continue;
        }
        parts.push_back(buffer.substr(start, star - start));
        start = star + 1;
    }
    return parts;
}

Judgement judgeSegments(std::string_view buffer, int segments)
{
    Judgement j { Verdict::Accepted, 0 };
    const auto parts = splitAtPrompts(buffer, segments);
    for (int i = 0; i < segments; ++i) {
        const auto& part = parts[static_cast<std::size_t>(i)];
        const bool last = i == segments - 1;
        if (!contains(part, last ? "/MRC" : "/MTC"))
            j.verdict = Verdict::Failed;
        if (contains(part, "/SNA"))
            ++j.snaCount;
    }
    return j;
}

} // namespace

bool isStuckBus(std::string_view buffer)
{
    std::string run;
    for (int i = 0; i < kStuckBusPairs; ++i)
        run += "~FF";
    return contains(buffer, run);
}

std::vector<std::string> takeBroadcasts(std::string& buffer)
{
    std::vector<std::string> lines;
    for (;;) {
        const auto at = buffer.find("/SRC");
        if (at == std::string::npos)
            return lines;
        const auto prompt = buffer.find('*', at);
        if (prompt == std::string::npos)
            return lines;
        std::string line;
        for (std::size_t i = at; i < prompt; ++i)
            if (buffer[i] != '~' && buffer[i] != '\r' && buffer[i] != '\n')
                line += buffer[i];
        lines.push_back(std::move(line));
        buffer.erase(at, prompt + 1 - at);
    }
}

Judgement judgeReply(std::string_view buffer, std::string_view expected, int segments)
{
    if (isStuckBus(buffer))
        return { Verdict::StuckBus, 0 };
    if (segments == 2 || segments == 3)
        return judgeSegments(buffer, segments);
    if (contains(buffer, expected))
        return { Verdict::Accepted, 0 };
    if (contains(buffer, "/SRC"))
        return { Verdict::Unsolicited, 0 };
    return { Verdict::Failed, 1 };
}

std::optional<std::string> LineCollector::feed(char c)
{
    if (c == '~' || c == '\r')
        return std::nullopt;
    if (c != '\n') {
        line_ += c;
        return std::nullopt;
    }
    if (line_.size() < 4)
        return std::nullopt;
    return std::exchange(line_, {});
}

std::uint8_t SrcMessage::computedPec() const
{
    const std::array<std::uint8_t, 4> bytes { kHostAddress, sender, low, high };
    return zv::pec(bytes);
}

std::optional<SrcMessage> parseSrcLine(std::string_view line)
{
    const auto at = line.find("/SRC");
    if (at == std::string_view::npos)
        return std::nullopt;
    std::array<std::uint8_t, 4> b {};
    for (std::size_t i = 0; i < b.size(); ++i) {
        const auto v = hexPairAt(line, at + 4 + 2 * i);
        if (!v)
            return std::nullopt;
        b[i] = *v;
    }
    return SrcMessage { b[0], b[1], b[2], b[3] };
}

} // namespace zv::hlk
