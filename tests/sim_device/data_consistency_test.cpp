// The program folder in data/ against the pack's memory map, read with a small reader of this
// test's own: every configured parameter lies inside its file and matches the map, the names the
// application looks up exist, and the target table, log definitions, SBD map, alarm map, safety
// rules and firmware images fit the pack.

#include "device/firmware_image.h"
#include "device/memory_map.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

const fs::path dataDir = fs::path(ZENTAVIA_SOURCE_DIR) / "data";

std::vector<std::string> lines(const fs::path& path)
{
    std::ifstream in(path);
    std::vector<std::string> result;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        result.push_back(line);
    }
    return result;
}

std::vector<std::string> split(const std::string& line, char separator)
{
    std::vector<std::string> fields;
    std::string field;
    std::istringstream in(line);
    while (std::getline(in, field, separator))
        fields.push_back(field);
    if (!line.empty() && line.back() == separator)
        fields.push_back("");
    return fields;
}

using Section = std::map<std::string, std::string>;

std::map<std::string, Section> readIni(const fs::path& path)
{
    std::map<std::string, Section> ini;
    std::string section;
    for (const std::string& line : lines(path)) {
        if (line.empty())
            continue;
        if (line.front() == '[') {
            section = line.substr(1, line.find(']') - 1);
            continue;
        }
        auto eq = line.find('=');
        if (eq != std::string::npos)
            ini[section][line.substr(0, eq)] = line.substr(eq + 1);
    }
    return ini;
}

struct ConfigLine {
    std::string name;
    int readLevel, writeLevel, subType, file, index, tab, dataType, first, last;
    std::string number;
    std::vector<std::string> bits;
};

std::vector<ConfigLine> readConfig(const fs::path& path)
{
    std::vector<ConfigLine> result;
    for (const std::string& line : lines(path)) {
        if (line.empty() || line.front() == '#')
            continue;
        std::vector<std::string> c = split(line, '\t');
        EXPECT_EQ(c.size(), 33u) << path << ": " << line;
        if (c.size() != 33)
            continue;
        result.push_back({ c[0], std::stoi(c[1]), std::stoi(c[2]), std::stoi(c[8]), std::stoi(c[31]),
            std::stoi(c[32]), std::stoi(c[30]), std::stoi(c[5]), std::stoi(c[6]), std::stoi(c[7]), c[3],
            std::vector<std::string>(c.begin() + 13, c.begin() + 29) });
    }
    return result;
}

struct Target {
    std::uint16_t id;
    std::string name;
    Section keys;
    zvsim::MemoryMap map;
    std::vector<ConfigLine> gateway, cell;
};

std::vector<Target> targets()
{
    auto ini = readIni(dataDir / "Zentavia.ini");
    std::vector<Target> result;
    int count = std::stoi(ini["Setup"]["NumberOfTargets"]);
    for (int n = 1; n <= count; ++n) {
        Section keys = ini["T" + std::to_string(n)];
        auto id = static_cast<std::uint16_t>(std::stoul(keys["ID"], nullptr, 16));
        zvsim::TargetProfile profile = zvsim::targetProfile(id);
        fs::path folder = dataDir / "Configuration Files" / keys["Name"];
        result.push_back({ id, keys["Name"], keys, zvsim::buildMemoryMap(profile, profile.defaultCells),
            readConfig(folder / keys["MCFG"]), readConfig(folder / keys["CCFG"]) });
    }
    return result;
}

std::set<std::string> names(const std::vector<ConfigLine>& lines)
{
    std::set<std::string> result;
    for (const ConfigLine& line : lines)
        result.insert(line.name);
    return result;
}

TEST(DataConsistency, TargetTableNamesTheThreeTargets)
{
    auto ini = readIni(dataDir / "Zentavia.ini");
    EXPECT_EQ(ini["Setup"]["Communications"], "0");
    EXPECT_EQ(ini["Setup"]["Address"], "11");
    EXPECT_FALSE(ini["Setup"]["Protocol"].empty());
    std::vector<Target> all = targets();
    ASSERT_EQ(all.size(), 3u);
    std::map<std::string, std::pair<std::string, int>> expected { { "1001", { "ZK9460", 8 } },
        { "1002", { "ZK9460S12", 12 } }, { "1003", { "ZK9470", 16 } } };
    for (const Target& t : all) {
        auto [name, cells] = expected.at(t.keys.at("ID"));
        EXPECT_EQ(t.name, name);
        EXPECT_EQ(t.map.cells, cells);
        EXPECT_EQ(t.keys.at("AverageVoltages"), t.id == 0x1002 ? "1" : "0");
        EXPECT_EQ(t.keys.at("PT11"), "Advanced") << "the last pack tab";
        EXPECT_EQ(t.keys.count("PT12"), 0u);
        EXPECT_FALSE(t.keys.at("CT1").empty());
        EXPECT_FALSE(t.keys.at("URL").empty());
        EXPECT_TRUE(fs::exists(dataDir / "Data Logging Files" / t.keys.at("SLOG")));
        EXPECT_TRUE(fs::exists(dataDir / "Data Logging Files" / t.keys.at("DLOG")));
    }
}

TEST(DataConsistency, EveryParameterLiesInsideItsFileAndMatchesTheMap)
{
    for (const Target& t : targets()) {
        ASSERT_EQ(t.gateway.size(), t.map.gateway.size()) << t.name;
        ASSERT_EQ(t.cell.size(), t.map.cell.size()) << t.name;
        auto check = [&](const ConfigLine& line, const zvsim::ParamSpec& spec, int limitBytes,
                         int elementSize) {
            EXPECT_EQ(line.name, spec.name);
            EXPECT_EQ(line.file, spec.file) << line.name;
            EXPECT_EQ(line.index, spec.index) << line.name;
            EXPECT_EQ(line.subType, spec.subType) << line.name;
            EXPECT_LE((line.index + 1) * elementSize, limitBytes)
                << t.name << ": " << line.name << " outside its file";
            EXPECT_LT(line.tab, line.file == 4 || line.file == 6 || line.file == 12 ? 3 : 11) << line.name;
        };
        for (std::size_t i = 0; i < t.gateway.size(); ++i) {
            const ConfigLine& line = t.gateway[i];
            const zvsim::FileSpec* file = t.map.file(line.file);
            ASSERT_TRUE(file) << line.name;
            EXPECT_FALSE(file->perNode) << line.name;
            check(line, t.map.gateway[i], file->size, file->elementSize());
            if (std::stoul(line.number, nullptr, 16) > 0x23) {
                EXPECT_EQ(line.readLevel, file->readLevel) << line.name << ": levels come from the directory";
                EXPECT_EQ(line.writeLevel, file->writeLevel) << line.name;
            }
            if (line.dataType == 1) {
                EXPECT_TRUE(line.number == "0x80" || line.number == "0xEE") << line.name;
                EXPECT_EQ(line.first, 2 * line.index + 1) << line.name << ": block position follows the file";
                EXPECT_EQ(line.last, line.first + 1) << line.name;
            }
        }
        for (std::size_t i = 0; i < t.cell.size(); ++i) {
            const zvsim::FileSpec* file = t.map.file(t.cell[i].file);
            ASSERT_TRUE(file && file->perNode) << t.cell[i].name;
            check(t.cell[i], t.map.cell[i], t.map.sectionBytes(file->number), file->elementSize());
        }
    }
}

TEST(DataConsistency, NamesTheApplicationLooksUpExist)
{
    const char* gatewayNames[] = { "Pack Voltage", "Temperature", "Current", "Relative State of Charge",
        "Board Temperature", "Battery Status", "System Flags", "Internal Flags 2", "FET Status",
        "Safety Alert", "Safety Status", "Safety Alert1", "Safety Status1", "Permanent Disable Alert",
        "Permanent Disable Status", "Charge Alert", "Charge Status", "Safety Flags", "Status", "Access Level",
        "Algorithm Enable", "Firmware Version", "FW Build", "Temperature Sensor Count",
        "Expected Number Of Cells", "Actual Number Of Cells", "Application F File Version",
        "Application System Version", "Data CRC", "F Directory CRC", "F File Version", "Firmware CRC",
        "System CRC", "System Status", "System Version", "Chemistry ID", "Manufacture Date", "Epoch Hour",
        "SBData Map Begin", "Battery Mode-Obsolete", "Average Current", "State of Charge",
        "Sense Resistor Temperature", "Charge FET Temperature", "Discharge FET Temperature",
        "Precharge FET Temperature", "Number of CellWeft rebuilds", "Number of CellWeft Polls",
        "Number of CellWeft Poll Errors", "State", "Cell Flags", "Gateway Flags", "Fault Map", "FETs allowed",
        "actual FETs", "Sleep manager status", "Poll rate index", "LAN time stamp", "Temperature time stamp",
        "Current time stamp", "Time stamp", "Timer 0 Event", "Timer 0 Seconds", "Timer 1 Event",
        "Timer 1 Seconds", "Timer 2 Event", "Timer 2 Seconds" };
    for (const Target& t : targets()) {
        std::set<std::string> gateway = names(t.gateway);
        for (const char* name : gatewayNames)
            EXPECT_TRUE(gateway.count(name)) << t.name << " lacks " << name;
        ASSERT_GE(t.cell.size(), 6u);
        EXPECT_EQ(t.cell[0].name, "Voltage") << "cell item 1";
        EXPECT_EQ(t.cell[1].name, "Temperature") << "cell item 2";
        EXPECT_EQ(t.cell[5].name, "Cell Status") << "cell item 6";
        EXPECT_EQ(t.cell[5].subType, zvsim::BitField);
        std::map<std::string, int> order;
        for (std::size_t i = 0; i < t.gateway.size(); ++i)
            order.emplace(t.gateway[i].name, static_cast<int>(i));
        EXPECT_LT(order["Current"], order["Status"]) << "block 0x80 in its order";
        EXPECT_EQ(t.gateway[static_cast<std::size_t>(order["FET Status"])].bits[0], "D-FET");
        EXPECT_EQ(t.gateway[static_cast<std::size_t>(order["Safety Flags"])].bits[15], "Fuse Blown");
        EXPECT_EQ(t.gateway[static_cast<std::size_t>(order["Algorithm Enable"])].bits[3], "Wired");
        EXPECT_EQ(t.gateway[static_cast<std::size_t>(order["Internal Flags 2"])].bits[13],
            "CellWeft Poll Complete");
    }
}

TEST(DataConsistency, ClonesPutTheNamesSecondAndTheChemistryTenth)
{
    for (const Target& t : targets()) {
        std::vector<int> clones;
        for (const zvsim::FileSpec& file : t.map.files)
            if (file.clone)
                clones.push_back(file.number);
        ASSERT_GE(clones.size(), 10u);
        int second = clones[1];
        EXPECT_EQ(t.map.file(second)->size, 96);
        for (const char* name : { "Manufacturer Name", "Device Name", "Device Chemistry" })
            EXPECT_EQ(t.map.gatewayParam(name)->file, second) << name;
        const zvsim::ParamSpec* chemistry = t.map.gatewayParam("Chemistry ID");
        EXPECT_EQ(chemistry->file, clones[9]);
        EXPECT_EQ(chemistry->index, 0) << "the chemistry id at byte 0";
        EXPECT_EQ(t.map.files.back().name, "Error");
    }
}

std::vector<std::vector<std::string>> definitionLines(const fs::path& path)
{
    std::vector<std::vector<std::string>> result;
    for (std::string line : lines(path)) {
        if (line.empty() || line.front() == ';')
            continue;
        result.push_back(split(line, '\t'));
        EXPECT_EQ(result.back().size(), 4u) << path << ": " << line;
    }
    return result;
}

TEST(DataConsistency, LogDefinitionsAndTheMapPointIntoTheFiles)
{
    zvsim::MemoryMap map = zvsim::buildMemoryMap(zvsim::targetProfile(0x1002), 12);
    fs::path logs = dataDir / "Data Logging Files";
    for (const char* name : { "characterize_12cell.dlog", "characterize_12cell.slog", "SBData.map" }) {
        auto entries = definitionLines(logs / name);
        EXPECT_LE(static_cast<int>(entries.size()), map.file(30)->size / map.file(30)->chunk) << name;
        for (const auto& e : entries) {
            int file = std::stoi(e[1]), element = std::stoi(e[2]);
            EXPECT_TRUE(e[3] == "U" || e[3] == "S" || e[3] == "H" || e[3] == "STR") << e[3];
            if (file == 0) {
                EXPECT_EQ(element, 0) << "only the tick lives in file 0";
                continue;
            }
            const zvsim::FileSpec* spec = map.file(file);
            ASSERT_TRUE(spec) << e[0];
            EXPECT_LE((element + 1) * 2, spec->size) << name << ": " << e[0];
        }
    }
    auto shipped = zvsim::defaultSbdMap(map);
    auto mapLines = definitionLines(logs / "SBData.map");
    ASSERT_EQ(mapLines.size(), shipped.size());
    for (std::size_t i = 0; i < shipped.size(); ++i)
        EXPECT_EQ(std::stoi(mapLines[i][2]), shipped[i].element) << shipped[i].label;
}

TEST(DataConsistency, AlarmMapAndSafetyRulesFitThePack)
{
    int mapped = 0;
    for (const std::string& raw : lines(dataDir / "Configuration Files" / "Alarm.cfg")) {
        if (raw.empty() || raw.front() == '\'' || raw.rfind("//", 0) == 0)
            continue;
        auto fields = split(raw, ',');
        ASSERT_EQ(fields.size(), 2u) << raw;
        int from = std::stoi(fields[0]), to = std::stoi(fields[1]);
        EXPECT_TRUE(from >= 0 && from <= 15 && ((to >= 0 && to <= 15) || to == -2)) << raw;
        ++mapped;
    }
    EXPECT_GE(mapped, 8);
    std::set<int> codes;
    for (const std::string& raw : lines(dataDir / "Configuration Files" / "SafetyRule_Descriptor.cfg")) {
        if (raw.empty() || raw.front() == '#')
            continue;
        auto fields = split(raw, '\t');
        ASSERT_EQ(fields.size(), 5u) << raw;
        codes.insert(std::stoi(fields[0]));
        int type = std::stoi(fields[4]);
        EXPECT_TRUE(type >= 0 && type <= 3) << raw;
    }
    for (int code = 1; code <= 8; ++code)
        EXPECT_TRUE(codes.count(code)) << "the pack records event " << code;
}

TEST(DataConsistency, FirmwareImagesCarryGoodSectionsForTheLoaderFiles)
{
    struct Image {
        const char* path;
        int version;
    };
    for (Image image : { Image { "ZK9470/Firmware/FW_0002_0000_6000_0719.enc", 6000 },
             Image { "ZK9460S12/Firmware/FW_0001_0000_5000_0012.enc", 5000 } }) {
        auto text = lines(dataDir / "Configuration Files" / image.path);
        ASSERT_GE(text.size(), 2u);
        EXPECT_EQ(text[0], "3C556C6D617220426F6F746C6F61643E");
        std::string body;
        for (std::size_t i = 1; i < text.size(); ++i)
            body += text[i];
        std::vector<std::uint8_t> bytes;
        for (std::size_t i = 0; i + 1 < body.size(); i += 2)
            bytes.push_back(static_cast<std::uint8_t>(std::stoul(body.substr(i, 2), nullptr, 16)));
        auto word = [&](std::size_t at) { return bytes[at] | (bytes[at + 1] << 8); };
        int sections = word(0);
        ASSERT_EQ(sections, 2);
        zvsim::MemoryMap map = zvsim::buildMemoryMap(zvsim::targetProfile(0x1003), 16);
        for (int i = 0; i < sections; ++i) {
            int file = word(2 + 8 * static_cast<std::size_t>(i));
            int start = word(6 + 8 * static_cast<std::size_t>(i));
            int last = word(8 + 8 * static_cast<std::size_t>(i));
            ASSERT_TRUE(map.file(file) && map.file(file)->firmware) << file;
            EXPECT_EQ((last + 1) % 128, 0) << "whole blocks";
            std::vector<std::uint8_t> section(bytes.begin() + start, bytes.begin() + start + last + 1);
            auto verdict = zvsim::checkFirmwareSection(section);
            ASSERT_TRUE(verdict) << image.path;
            if (i == 0) {
                EXPECT_EQ(verdict->version, image.version);
            }
        }
    }
}

} // namespace
