#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_event_loop.h"
#include "platform_qt/qt_app.h"

#include <QDir>
#include <QTimer>

#include <gtest/gtest.h>

using zv::platform::externalUrl;

TEST(QtEventLoopPump, ProcessEventsRunsWhatIsPendingAndWaitUntilChecksFirst)
{
    (void)zv::test::qtApp();
    zv::platform::QtEventLoop loop;
    int ran = 0;
    QTimer::singleShot(0, [&] { ++ran; });
    loop.processEvents();
    EXPECT_EQ(ran, 1);

    QTimer::singleShot(0, [&] { ++ran; });
    EXPECT_TRUE(loop.waitUntil([] { return true; }, 1000));
    EXPECT_EQ(ran, 1); // already done: nothing ran
    EXPECT_TRUE(loop.waitUntil([&] { return ran == 2; }, 1000));
}

TEST(QtDesktopUrls, AddressesStayAndPathsBecomeLocalFiles)
{
    EXPECT_EQ(externalUrl("https://example.org/help?x=1").toString(), "https://example.org/help?x=1");
    EXPECT_EQ(externalUrl("mailto:support@example.org").scheme(), "mailto");

    const QUrl absolute = externalUrl("/tmp/Data Logging Files/run 1.csv");
    EXPECT_TRUE(absolute.isLocalFile());
    EXPECT_EQ(absolute.toLocalFile(), "/tmp/Data Logging Files/run 1.csv");

    const QUrl relative = externalUrl("logs/run.csv");
    EXPECT_TRUE(relative.isLocalFile());
    EXPECT_EQ(relative.toLocalFile(), QDir::current().absoluteFilePath("logs/run.csv"));
}

TEST(QtDesktopUrls, AMissingFileIsNotHandedToTheDesktop)
{
    zv::platform::QtDesktop desktop;
    EXPECT_FALSE(desktop.openExternal("/nonexistent/zentavia/run.csv"));
}
