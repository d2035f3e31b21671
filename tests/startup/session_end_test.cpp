// The end of the program: an exit asked from inside an exchange with the device waits for the
// top of the event loop (the exchange gives up at once), and the exit order gets a budget, so
// the program answers within seconds whether the pack answers, is silent or has been pulled.

#include "access/login.h"
#include "startup/program_exit.h"
#include "startup/session_end.h"
#include "startup_fixture.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

enum class Pack { Answers, Silent, Pulled };

struct ExitRun {
    std::vector<std::string> order;
    std::int64_t exchangeGaveUpAfterMs = -1; // from the exit request
    std::int64_t closeMs = -1;
    bool commandSetOpenAfter = true;
    std::string writtenDuringClose;
};

// A device exchange is under way (a poll tick's read of file 5) when the user asks to leave.
ExitRun exitDuringAnExchange(Pack pack)
{
    test::StartupFixture f;
    EXPECT_TRUE(f.sim.connect());
    SessionEnd session(f.sim.loop);
    AccessServices access { f.sim.main(), f.sim.globals, f.sim.dialogs, busCommandLock(f.sim.driver().Bus) };
    ExitRun run;
    std::int64_t askedAt = 0;
    const auto close = [&] {
        run.order.push_back("close");
        f.sim.port.clearWritten();
        const auto start = f.sim.loop.milliseconds();
        ExitServices exit { f.sim.globals, f.sim.loop, f.sim.dialogs, &f.sim.driver() };
        exit.closeCommandLock = [&access] { CloseCommandLock(access); };
        exit.session = &session;
        EXPECT_TRUE(CloseMainWindow(exit));
        run.closeMs = f.sim.loop.milliseconds() - start;
        run.writtenDuringClose = f.sim.port.written();
        run.order.push_back("end");
    };
    if (pack == Pack::Silent)
        f.sim.pack->powerCycle(600000);
    if (pack == Pack::Pulled)
        f.sim.port.pull();
    // The click arrives with the first events that the exchange lets run.
    f.sim.loop.post(0, [&] {
        askedAt = f.sim.loop.milliseconds();
        if (!session.atTop(close))
            run.order.push_back("deferred");
    });
    std::string text;
    (void)f.sim.driver().GetFile(5, text);
    run.order.push_back("exchange returned");
    run.exchangeGaveUpAfterMs = f.sim.loop.milliseconds() - askedAt;
    f.sim.loop.advance(10);
    run.commandSetOpenAfter = f.sim.pack->commandSetOpen();
    return run;
}

TEST(SessionEnd, ExitFromInsideAnExchangeRunsAtTheTopWithinItsBudget)
{
    const std::vector<std::string> order { "deferred", "exchange returned", "close", "end" };
    for (const Pack pack : { Pack::Answers, Pack::Silent, Pack::Pulled }) {
        const ExitRun run = exitDuringAnExchange(pack);
        const int what = static_cast<int>(pack);
        EXPECT_EQ(run.order, order) << what << ": the driver is not used below the exit";
        EXPECT_LT(run.exchangeGaveUpAfterMs, 50) << what;
        EXPECT_LE(run.closeMs, kExitBudgetMs + 1000) << what;
        if (pack == Pack::Answers) {
            EXPECT_FALSE(run.commandSetOpenAfter) << "the exit order still talks to a pack that answers";
            EXPECT_NE(run.writtenDuringClose.find("\x12\x12\x12"), std::string::npos) << "dongle reset";
        }
        if (pack == Pack::Pulled) {
            EXPECT_EQ(run.writtenDuringClose, "") << "nothing is sent to a port that went away";
        }
    }
}

TEST(SessionEnd, AtTheTopTheExitRunsAtOnceAndTheBudgetEndsOnlyItsOwnWaits)
{
    test::SimHarness sim;
    SessionEnd session(sim.loop);
    bool again = false;
    EXPECT_TRUE(session.atTop([&] { again = true; }));
    sim.loop.advance(10);
    EXPECT_FALSE(again) << "nothing was deferred";

    const bool result = session.withinBudget([&] {
        sim.loop.wait(kExitBudgetMs + 5000);
        return true;
    });
    EXPECT_TRUE(result);
    EXPECT_EQ(sim.loop.milliseconds(), 10 + kExitBudgetMs);
    EXPECT_FALSE(sim.loop.ending()) << "later waits wait again";
    sim.loop.wait(100);
    EXPECT_EQ(sim.loop.milliseconds(), 110 + kExitBudgetMs);
}

} // namespace
