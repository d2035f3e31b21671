#include "frontends/link_faults.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

namespace zvsim {

namespace {

std::optional<double> parseNumber(std::string_view text)
{
    double value = 0.0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<int> parseInteger(std::string_view text)
{
    int value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end)
        return std::nullopt;
    return value;
}

// Applies one "name:value" item to the plan; returns an error text or an empty string.
std::string applyItem(std::string_view name, std::string_view valueText, FaultPlan& plan)
{
    const auto rateTarget = [&]() -> double* {
        if (name == "pec")
            return &plan.link.pecRate;
        if (name == "lost")
            return &plan.link.lostRate;
        if (name == "cut")
            return &plan.link.cutRate;
        if (name == "stuck")
            return &plan.link.stuckRate;
        if (name == "alarm")
            return &plan.link.alarmRate;
        if (name == "noack")
            return &plan.device.noAckRate;
        if (name == "restart")
            return &plan.device.restartRate;
        return nullptr;
    }();
    const std::string item = std::string(name) + ":" + std::string(valueText);
    if (rateTarget) {
        const auto rate = parseNumber(valueText);
        if (!rate || *rate < 0.0 || *rate > 1.0)
            return "fault '" + item + "': the rate must be a number from 0 to 1";
        *rateTarget = *rate;
        return {};
    }
    if (name == "busy") {
        const auto polls = parseInteger(valueText);
        if (!polls || *polls < 0)
            return "fault '" + item + "': busy needs a count of status polls (0 or more)";
        plan.device.busyPolls = *polls;
        return {};
    }
    if (name == "status") {
        const auto code = parseInteger(valueText);
        if (!code || *code < 0 || *code > 255)
            return "fault '" + item + "': status needs a code from 0 to 255";
        plan.device.forcedStatus = *code;
        return {};
    }
    if (name == "pull") {
        const auto seconds = parseNumber(valueText);
        if (!seconds || *seconds < 0.0 || *seconds > kMaxFaultSeconds)
            return "fault '" + item + "': pull needs the seconds after the start (0 to 31536000)";
        plan.link.pullAfterMs = static_cast<std::int64_t>(*seconds * 1000.0);
        return {};
    }
    return "unknown fault '" + std::string(name)
        + "' (known: pec, lost, cut, stuck, alarm, noack, restart, busy, status, pull)";
}

std::string formatRate(const char* name, double rate)
{
    char text[48];
    std::snprintf(text, sizeof text, "%s:%g", name, rate);
    return text;
}

} // namespace

FaultListResult parseFaultList(std::string_view text)
{
    FaultListResult result;
    while (!text.empty()) {
        const auto comma = text.find(',');
        const std::string_view item = text.substr(0, comma);
        text = comma == std::string_view::npos ? std::string_view {} : text.substr(comma + 1);
        if (item.empty())
            continue;
        const auto colon = item.find(':');
        if (colon == std::string_view::npos) {
            result.error = "fault '" + std::string(item) + "' has no value (write name:value)";
            return result;
        }
        result.error = applyItem(item.substr(0, colon), item.substr(colon + 1), result.plan);
        if (!result.error.empty())
            return result;
    }
    return result;
}

std::string describeFaults(const FaultPlan& plan)
{
    std::vector<std::string> items;
    const std::pair<const char*, double> rates[]
        = { { "pec", plan.link.pecRate }, { "lost", plan.link.lostRate }, { "cut", plan.link.cutRate },
              { "stuck", plan.link.stuckRate }, { "alarm", plan.link.alarmRate },
              { "noack", plan.device.noAckRate }, { "restart", plan.device.restartRate } };
    for (const auto& [name, rate] : rates)
        if (rate > 0.0)
            items.push_back(formatRate(name, rate));
    if (plan.device.busyPolls > 0)
        items.push_back("busy:" + std::to_string(plan.device.busyPolls));
    if (plan.device.forcedStatus >= 0)
        items.push_back("status:" + std::to_string(plan.device.forcedStatus));
    if (plan.link.pullAfterMs)
        items.push_back(formatRate("pull", static_cast<double>(*plan.link.pullAfterMs) / 1000.0));
    if (items.empty())
        return "none";
    std::string text;
    for (const auto& item : items)
        text += (text.empty() ? "" : ",") + item;
    return text;
}

bool FaultDice::roll(double rate)
{
    if (rate <= 0.0)
        return false;
    // 53 random bits as a share in [0, 1): the same on every standard library.
    const double share = static_cast<double>(engine_() >> 11) * 0x1.0p-53;
    return share < rate;
}

} // namespace zvsim
