// OpenAssociated on the desktop's opener: which code and text each failure maps to.

#include "log_rig.h"
#include "monitor/open_associated.h"
#include "platform/desktop.h"

#include <gmock/gmock.h>

namespace zv::test {
namespace {

class FakeDesktop : public platform::Desktop {
public:
    bool openExternal(const std::string& path) override
    {
        opened.push_back(path);
        return starts;
    }
    bool starts = true;
    std::vector<std::string> opened;
};

struct OpenCase {
    const char* name;
    const char* file; // under the rig's folder
    bool opener;
    int code; // 0: opened
};

TEST(OpenAssociated, MapsEachFailureOntoItsCode)
{
    LogRig rig;
    rig.file("log.csv", "DATA\r\n");
    const OpenCase cases[] = {
        { "opened", "log.csv", true, 0 },
        { "no program for it", "log.csv", false, 31 },
        { "no such file", "other.csv", true, 2 },
        { "no such folder", "gone/log.csv", true, 3 },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeDesktop desktop;
        desktop.starts = c.opener;
        std::string info;
        const std::string path = (rig.folder / c.file).string();
        if (c.code != 0)
            rig.sim.dialogs.answerMessage(platform::Answer::OK);
        const bool opened
            = OpenAssociated(path, desktop, rig.sim.dialogs, [&](const std::string& t) { info = t; });
        EXPECT_EQ(opened, c.code == 0);
        if (c.code != 0) {
            EXPECT_EQ(associatedOpenFailure(path), c.code);
            EXPECT_EQ(rig.sim.dialogs.lastShown().title, "File Error");
            EXPECT_EQ(rig.sim.dialogs.lastShown().text, associatedOpenText(c.code));
            EXPECT_EQ(info, associatedOpenText(c.code));
            EXPECT_EQ(desktop.opened.empty(), c.code != 31) << "the opener is asked only for a readable file";
        }
    }
    EXPECT_EQ(associatedOpenText(29), "The DDE transaction failed.");
    EXPECT_EQ(associatedOpenText(4), "");
}

} // namespace
} // namespace zv::test
