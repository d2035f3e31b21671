#include "startup/session_end.h"

#include "platform/event_loop.h"

namespace zv {

namespace {

constexpr int kRetryMs = 1;

} // namespace

SessionEnd::SessionEnd(platform::EventLoop& loop)
    : loop_(loop)
    , deferred_(loop.createTimer())
    , budget_(loop.createTimer())
{
    deferred_->setInterval(kRetryMs);
    deferred_->onTick = [this] { tryAgain(); };
    budget_->setInterval(kExitBudgetMs);
    budget_->onTick = [this] {
        budget_->setEnabled(false);
        loop_.setEnding(true);
    };
}

SessionEnd::~SessionEnd() = default;

bool SessionEnd::atTop(std::function<void()> again)
{
    if (loop_.nesting() == 0)
        return true;
    again_ = std::move(again);
    loop_.setEnding(true);
    deferred_->setEnabled(true);
    return false;
}

void SessionEnd::tryAgain()
{
    if (loop_.nesting() > 0)
        return;
    deferred_->setEnabled(false);
    loop_.setEnding(false);
    if (auto again = std::move(again_))
        again();
}

bool SessionEnd::withinBudget(const std::function<bool()>& step)
{
    budget_->setEnabled(true);
    const bool result = step();
    budget_->setEnabled(false);
    loop_.setEnding(false);
    return result;
}

} // namespace zv
