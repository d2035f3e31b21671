#pragma once
// A small pack for the front-end tests: it records every transaction, answers reads from a
// queue of replies and checks the PEC of what the host writes the way the real pack does.

#include "device/pec.h"
#include "device/smbus_target.h"

#include <deque>
#include <string>
#include <vector>

namespace zvsim::testing {

class FakeTarget : public SmbusTarget {
public:
    std::uint8_t address7() const override { return 0x0B; }

    bool masterWrite(std::span<const std::uint8_t> bytes) override
    {
        writes.emplace_back(bytes.begin(), bytes.end());
        return acknowledge;
    }

    bool masterWriteCommand(std::uint8_t command) override
    {
        commands.push_back(command);
        return acknowledge;
    }

    std::optional<std::vector<std::uint8_t>> masterRead(int count) override
    {
        readCounts.push_back(count);
        if (!acknowledge || replies.empty())
            return std::nullopt;
        auto reply = replies.front();
        replies.pop_front();
        return reply;
    }

    std::optional<std::vector<std::uint8_t>> takeAlarmBroadcast() override
    {
        if (broadcasts.empty())
            return std::nullopt;
        auto broadcast = broadcasts.front();
        broadcasts.pop_front();
        return broadcast;
    }

    void advanceTo(std::int64_t ms) override { clockMs = ms; }

    // A word reply with the PEC a pack at 0x0B gives for a read of command.
    void queueWord(std::uint8_t command, std::uint16_t word)
    {
        const auto low = static_cast<std::uint8_t>(word & 0xFF);
        const auto high = static_cast<std::uint8_t>(word >> 8);
        replies.push_back({ low, high, smbusPec({ 0x16, command, 0x17, low, high }) });
    }

    // True when the last write carried the right PEC over the write address and its bytes.
    bool lastWriteHasGoodPec() const
    {
        if (writes.empty() || writes.back().size() < 2)
            return false;
        std::vector<std::uint8_t> covered { 0x16 };
        covered.insert(covered.end(), writes.back().begin(), writes.back().end() - 1);
        return smbusPec(covered) == writes.back().back();
    }

    bool acknowledge = true;
    std::int64_t clockMs = -1;
    std::vector<std::vector<std::uint8_t>> writes;
    std::vector<std::uint8_t> commands;
    std::vector<int> readCounts;
    std::deque<std::vector<std::uint8_t>> replies;
    std::deque<std::vector<std::uint8_t>> broadcasts;
};

} // namespace zvsim::testing
