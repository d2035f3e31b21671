// The driver against the in-process pack simulator on the virtual clock.

#include "device_files/file_status.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

using namespace zv;

namespace {

class DriverTest : public ::testing::Test {
protected:
    explicit DriverTest(zvsim::PackOptions options = {})
        : sim(options)
    {
    }

    void connect() { ASSERT_TRUE(sim.connect()); }

    std::vector<std::string> fileMessages;
    test::SimHarness sim;
};

// Identifying the target (state, id, level, scaling) is the detection tests' part.
TEST_F(DriverTest, ReadsTheDirectoryWithoutTheErrorEntry)
{
    connect();
    const auto& dir = sim.driver().Directory.DirectoryElements;
    EXPECT_EQ(dir.Count(), 40) << "files 0 to 39; the entry named Error is left out";
    EXPECT_EQ(dir.fileEntry(27)->FileName, "Command");
    for (const auto& entry : dir)
        EXPECT_NE(entry.FileName, "Error");
}

TEST_F(DriverTest, ReadsTheWholeModelAndSpreadsPerNodeFiles)
{
    connect();
    auto& d = sim.driver();
    EXPECT_EQ(d.nodes.Count(), 8);
    ASSERT_TRUE(d.GetAllValues());
    const auto* expected = d.GatewayParameters.FindByName("Expected Number Of Cells");
    ASSERT_TRUE(expected->value.isNumber());
    EXPECT_EQ(expected->value.number(), 8);

    std::string text;
    ASSERT_TRUE(d.GetFile(4, text));
    for (int n = 1; n <= d.nodes.Count(); ++n) {
        const auto* voltage = d.nodes.Item(n)->NodeParameters.FindByName("Voltage");
        ASSERT_TRUE(voltage->value.isNumber()) << "node " << n;
        EXPECT_GT(voltage->value.number(), 2500) << "node " << n;
        EXPECT_LT(voltage->value.number(), 4500) << "node " << n;
    }
}

TEST_F(DriverTest, FilesLargerThanOneTransferMoveInPartsOfWholeRecords)
{
    connect();
    auto& d = sim.driver();
    // 37: a limit of whole records; 8: records of 32 bytes under a limit of 48.
    for (const int file : { 37, 8 }) {
        SCOPED_TRACE("file " + std::to_string(file));
        const auto* entry = d.Directory.DirectoryElements.fileEntry(file);
        ASSERT_GT(entry->FileSize, entry->FileMaxBytes);
        std::vector<std::uint8_t>& device = sim.pack->model().files.bytes(file);
        std::string text;
        ASSERT_TRUE(d.GetFile(file, text));
        EXPECT_EQ(hexToBytes(text), device);

        std::vector<std::uint8_t> image(device.size());
        for (std::size_t i = 0; i < image.size(); ++i)
            image[i] = static_cast<std::uint8_t>(0x41 + i % 26);
        ASSERT_TRUE(d.PutFile(file, image));
        EXPECT_EQ(device, image) << "every byte lands at its own place";
    }
    EXPECT_EQ(d.GatewayParameters.FindByName("Device Chemistry")->value, DynamicValue("LION"))
        << "the third record of file 8 was read";
}

// The poll's GetFile sends the parts of a file back to back; the reads that wait for the target
// between parts pay one idle wait, that is one more status read, before each later part.
TEST_F(DriverTest, OnlyTheReadsThatAskForItWaitForTheTargetBetweenParts)
{
    connect();
    auto& d = sim.driver();
    const auto* entry = d.Directory.DirectoryElements.fileEntry(37);
    const auto parts
        = static_cast<std::int64_t>((entry->FileSize + entry->FileMaxBytes - 1) / entry->FileMaxBytes);
    ASSERT_GE(parts, 2);
    const auto statusReadsOf = [&](const std::function<bool()>& read) -> std::int64_t {
        sim.port.clearWritten();
        if (!read())
            return -1;
        const std::string& written = sim.port.written();
        std::int64_t count = 0;
        for (auto at = written.find("/*T~3D"); at != std::string::npos; at = written.find("/*T~3D", at + 1))
            ++count;
        return count;
    };
    const auto poll = statusReadsOf([&] {
        std::string text;
        return d.GetFile(37, text);
    });
    ASSERT_GE(poll, 2 * parts) << "idle before each request and the answer to it";
    EXPECT_EQ(statusReadsOf([&] {
        std::string text;
        return d.GetFile(37, text);
    }),
        poll)
        << "the count is the device's, not chance";
    const struct {
        const char* name;
        FileTransfer::PartWait wait;
    } waiting[] { { "parameter read", FileTransfer::PartWait::DongleIdle },
        { "read of every value", FileTransfer::PartWait::Idle } };
    for (const auto& c : waiting)
        EXPECT_EQ(
            statusReadsOf([&] { return d.Transfer.readFile(37, c.wait).has_value(); }), poll + parts - 1)
            << c.name;
}

TEST_F(DriverTest, WritesACelsiusTemperatureAsKelvinAndMarksTheCommit)
{
    connect();
    auto& d = sim.driver();
    auto* limit = d.GatewayParameters.FindByName("Over Temperature Limit");
    ASSERT_NE(limit, nullptr);
    limit->NewValue = DynamicValue(60.0);
    EXPECT_FALSE(d.Parameters.ParametersWritten);
    ASSERT_TRUE(d.WriteParameter("Over Temperature Limit", 0));
    EXPECT_TRUE(d.Parameters.ParametersWritten) << "the file needs the commit command";
    EXPECT_TRUE(limit->NewValue.isEmpty());
    ASSERT_TRUE(d.ReadParameter("Over Temperature Limit", 0));
    EXPECT_DOUBLE_EQ(limit->value.number(), 333.0)
        << "60 degrees Celsius go to the device as 3330 tenths of a kelvin";
    EXPECT_EQ(sim.readWriteLines.back(), "Read Parameter: Over Temperature Limit  333");
}

TEST_F(DriverTest, StatusOfAnEarlierRequestIsReportedButDoesNotStopTheNext)
{
    connect();
    auto& d = sim.driver();
    sim.main().hooks.fileAccessStatus = [this](const std::string& m, int) { fileMessages.push_back(m); };
    FileRequest missing;
    missing.file = 200;
    EXPECT_FALSE(d.FileAccessRequest(missing).ok) << "status 4 answering the request ends it";
    ASSERT_EQ(fileMessages.size(), 1u);
    EXPECT_EQ(fileMessages[0], "This file number doesn't exist");

    FileRequest state;
    state.file = 5;
    state.count = static_cast<int>(d.Directory.DirectoryElements.fileEntry(5)->FileLength());
    const auto reply = d.FileAccessRequest(state);
    EXPECT_TRUE(reply.ok) << "the same status left behind is only reported";
    EXPECT_EQ(fileMessages.size(), 2u);
}

TEST_F(DriverTest, SmbusErrorCodesInTheStatusGoOutAndTheTransferGoesOn)
{
    connect();
    auto& d = sim.driver();
    sim.main().hooks.fileAccessStatus = [this](const std::string& m, int) { fileMessages.push_back(m); };
    sim.pack->faults().forcedStatus = 0x85;
    FileRequest state;
    state.file = 5;
    state.count = 1;
    const auto reply = d.FileAccessRequest(state);
    EXPECT_TRUE(reply.ok);
    EXPECT_EQ(reply.text.size(), 4u);
    ASSERT_FALSE(fileMessages.empty());
    EXPECT_EQ(fileMessages[0], "SMBus error code 0x0085");
}

TEST_F(DriverTest, BusyDeviceIsWaitedForWithinABound)
{
    connect();
    auto& d = sim.driver();
    sim.pack->faults().busyPolls = 5;
    std::string text;
    EXPECT_TRUE(d.GetFile(5, text));

    sim.main().hooks.fileAccessStatus = [this](const std::string& m, int) { fileMessages.push_back(m); };
    sim.pack->faults().busyPolls = 1000000;
    const auto start = sim.loop.milliseconds();
    EXPECT_FALSE(d.GetFile(5, text));
    EXPECT_LT(sim.loop.milliseconds() - start, 60000) << "a device that stays busy is given up";
    ASSERT_FALSE(fileMessages.empty());
    EXPECT_EQ(fileMessages.back(), kBusyTooLongMessage);
}

TEST_F(DriverTest, RebuildWithMatchingCellCountsSendsNoCommand)
{
    connect();
    auto& d = sim.driver();
    auto* rebuilds = d.GatewayParameters.FindByName("Number of CellWeft rebuilds");
    std::string text;
    ASSERT_TRUE(d.GetFile(rebuilds->FileNumber, text));
    const auto before = rebuilds->value;
    ASSERT_TRUE(d.RebuildLAN(false));
    EXPECT_TRUE(d.Parameters.gCellsMatch);
    ASSERT_TRUE(d.GetFile(rebuilds->FileNumber, text));
    EXPECT_EQ(rebuilds->value, before);
}

TEST_F(DriverTest, RebuildSendsItsSixBytesAndThePackTakesThem)
{
    connect();
    auto& d = sim.driver();
    sim.pack->model().files.set("Expected Number Of Cells", 7);
    auto* rebuilds = d.GatewayParameters.FindByName("Number of CellWeft rebuilds");
    std::string text;
    ASSERT_TRUE(d.GetFile(rebuilds->FileNumber, text));
    const double before = rebuilds->value.number();
    sim.port.clearWritten();
    EXPECT_TRUE(d.RebuildLAN(false));
    EXPECT_NE(sim.port.written().find("/T~3E~06~04~00~00~00~00~00"), std::string::npos)
        << "command 4, its argument and two more bytes of zeros";
    EXPECT_TRUE(d.Parameters.gCellsMatch) << "the pack rebuilt its LAN with the seven cells expected";
    EXPECT_EQ(d.nodes.Count(), 7);
    ASSERT_TRUE(d.GetFile(rebuilds->FileNumber, text));
    EXPECT_EQ(rebuilds->value.number(), before + 1) << "the pack ran the rebuild";
}

TEST_F(DriverTest, AlarmBroadcastReachesTheStatusThroughTheAlarmMap)
{
    connect();
    auto& d = sim.driver();
    d.Parameters.AlarmMap.fill(-1);
    d.Parameters.AlarmMap[12] = 3;
    int received = -1;
    sim.main().hooks.broadcastAlarm = [&](int word) { received = word; };
    EXPECT_EQ(d.MapAlarmsToStatus(0x1000), 8);
    EXPECT_EQ(received, 8);
    EXPECT_EQ(d.GatewayParameters.FindByName("Status")->value.number(), 8);
}

TEST_F(DriverTest, DemoModeReadsFromTheCaptureWithoutTraffic)
{
    sim.globals.gDemo = true;
    CellWeftServices services { sim.port, sim.loop, sim.dialogs, sim.settings, sim.globals,
        test::programFolder() };
    services.demo = [](const std::string& key) { return key == "Dir0" ? std::string("AB") : std::string(); };
    clsMain demo(std::move(services), sim.dialogs);
    FileRequest dir;
    EXPECT_EQ(demo.CellWeft().FileAccessRequest(dir).text, "AB");
    dir.file = 9;
    EXPECT_FALSE(demo.CellWeft().FileAccessRequest(dir).ok) << "a file missing from the capture";
    dir.access = 1;
    EXPECT_TRUE(demo.CellWeft().FileAccessRequest(dir).ok) << "writes succeed and change nothing";
    EXPECT_TRUE(sim.port.written().empty());
}

} // namespace

// Configuration files written by hand, not from the simulator's map: the reader's own rules decide.
TEST_F(DriverTest, AHandWrittenCellFileSetsTheSectionLengthOfThePerNodeFiles)
{
    connect();
    auto& d = sim.driver();
    namespace fs = std::filesystem;
    const fs::path folder = fs::temp_directory_path() / ("zv_cells_" + std::to_string(::getpid()));
    fs::create_directories(folder);
    const auto cellLine = [](const std::string& name, int fileIndex) {
        std::string labels;
        for (int i = 0; i < 16; ++i)
            labels += "\t\"\"";
        return name + "\t0\t2\t0x600\t0\t0\t0\t0\t2\t1\t0\t65535\t\"mV\"" + labels + "\t0\t0\t6\t"
            + std::to_string(fileIndex) + "\r\n";
    };
    // Listed out of order; node 1 holds three parameters of file 6, so each node's section is
    // three words long.
    std::ofstream(folder / "Cell.cfg", std::ios::binary)
        << "# 7\r\n"
        << cellLine("Third", 2) << cellLine("First", 0) << cellLine("Second", 1);
    d.Config.NodeConfigFileName = (folder / "Cell.cfg").string();
    EXPECT_EQ(d.readConfig(2), 2) << "eight nodes: copies follow";
    fs::remove_all(folder);
    EXPECT_EQ(d.Transfer.sectionElements(6), 3);

    std::string text; // word w of the file holds 100 + w
    for (int word = 0; word < 3 * d.nodes.Count(); ++word) {
        char bytes[12];
        std::snprintf(bytes, sizeof bytes, "%02X00", (100 + word) & 0xFF);
        text += bytes;
    }
    d.Transfer.spreadValues(6, text);
    for (int node = 1; node <= d.nodes.Count(); ++node) {
        const auto& list = d.nodes.Item(node)->NodeParameters;
        EXPECT_EQ(list.FindByName("First")->value, DynamicValue(100.0 + 3 * (node - 1))) << "node " << node;
        EXPECT_EQ(list.FindByName("Third")->value, DynamicValue(102.0 + 3 * (node - 1))) << "node " << node;
    }
}

TEST_F(DriverTest, AStepAnsweredOnlyAtItsEleventhAttemptCountsAsFailed)
{
    connect();
    auto& d = sim.driver();
    for (const int refusals : { 9, 10 }) {
        SCOPED_TRACE(std::to_string(refusals) + " refused status reads");
        int left = refusals;
        int statusReads = 0;
        const auto forward = sim.port.onOutput;
        sim.port.onOutput = [&](const std::string& bytes) {
            if (bytes.starts_with("/*T~3D"))
                ++statusReads;
            if (left > 0 && bytes.starts_with("/*T~3D")) {
                --left;
                sim.loop.post(5, [&] { sim.port.deliver("/SNA\r\n*/SNA\r\n*"); });
                return;
            }
            forward(bytes);
        };
        std::string text;
        const bool read = d.GetFile(9, text);
        sim.port.onOutput = forward;
        // Ten tries may fail; the eleventh never rescues the step, so the request is made again
        // once the link has been rebuilt: more status reads than the three of a request.
        EXPECT_TRUE(read);
        if (refusals < 10)
            EXPECT_EQ(statusReads, refusals + 3);
        else
            EXPECT_GT(statusReads, refusals + 3);
    }
}
