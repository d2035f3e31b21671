// The command-line tool's directory cache: a pack seen before costs one directory record, a
// changed or damaged cache falls back to the full read, --no-cache always reads afresh.

#include "cli_fixture.h"

#include <gmock/gmock.h>

#include <fstream>
#include <functional>

using namespace zv;
using namespace zv::test;
using ::testing::HasSubstr;

namespace {

class DirectoryCacheTest : public CliTest {
protected:
    // Requests of a directory record (file 0) the last run sent.
    std::size_t directoryReads() const
    {
        const std::string& written = sim.port.written();
        std::size_t count = 0;
        for (auto at = written.find("~3C~06~00~00~"); at != std::string::npos;
             at = written.find("~3C~06~00~00~", at + 1))
            ++count;
        return count;
    }

    CliRun runCounted(const std::vector<std::string>& arguments)
    {
        sim.port.clearWritten();
        return run(arguments);
    }

    std::vector<std::filesystem::path> cacheFiles() const
    {
        std::vector<std::filesystem::path> files;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(cacheHome / "zentavia", error))
            files.push_back(entry.path());
        return files;
    }

    // Rewrites line `index` of the one cache file.
    void editCache(std::size_t index, const std::string& text)
    {
        const auto path = cacheFiles().at(0);
        std::vector<std::string> lines;
        std::ifstream in(path);
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        in.close();
        lines.at(index) = text;
        std::ofstream out(path, std::ios::trunc);
        for (const auto& line : lines)
            out << line << '\n';
    }
};

TEST_F(DirectoryCacheTest, APackSeenBeforeCostsOneDirectoryRecord)
{
    sim.pack->model().dataFlow = false; // the cells keep the value set here
    sim.pack->model().files.set("Voltage", 3333, 3);
    const auto first = runCounted({ "get", "Voltage", "--node", "3" });
    ASSERT_EQ(first.status, 0) << first.err;
    const auto full = directoryReads();
    EXPECT_GT(full, 40u) << "the first run reads every record";
    const auto files = cacheFiles();
    ASSERT_EQ(files.size(), 1u);
    EXPECT_THAT(files[0].filename().string(), HasSubstr("directory-1001-"));

    struct Case {
        const char* name;
        std::vector<std::string> arguments;
        std::function<void()> before;
        std::size_t reads;
    };
    const std::vector<Case> cases {
        { "known pack", { "get", "Voltage", "--node", "3" }, [] {}, 1 },
        { "--no-cache", { "get", "Voltage", "--node", "3", "--no-cache" }, [] {}, full },
        // The directory's own record differs from the stored one: the device changed.
        { "changed directory", { "get", "Voltage", "--node", "3" },
            [&] { editCache(2, "00000000000000000000000000000000000000000000000000"); }, full + 1 },
        { "damaged file", { "get", "Voltage", "--node", "3" }, [&] { editCache(0, "not a cache"); },
            full + 1 },
        // A command that does not load the configuration takes the cache as well.
        { "read-file", { "read-file", "1" }, [] {}, 1 },
    };
    for (const auto& c : cases) {
        c.before();
        const auto result = runCounted(c.arguments);
        ASSERT_EQ(result.status, 0) << c.name << ": " << result.err;
        if (c.arguments[0] == "get") {
            EXPECT_EQ(result.out, "Voltage: 3333 mV\n") << c.name;
        }
        EXPECT_EQ(directoryReads(), c.reads) << c.name;
    }
    EXPECT_EQ(cacheFiles().size(), 1u) << "the fresh reads replaced the bad file in place";
}

} // namespace
