// Writes the program folder's target files from the pack's memory map: Zentavia.ini, the master
// and cell configuration files of each target, Alarm.cfg, SafetyRule_Descriptor.cfg, the log
// definitions, the SBD map and the firmware images for the loader.
// Usage: zvsim-mapgen <data folder>
//        zvsim-mapgen --print-map [target id] (the memory map as Markdown tables)

#include "device/firmware_image.h"
#include "device/memory_map.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace zvsim;

namespace {

std::string number(double value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

std::string configLine(const ParamSpec& p)
{
    std::vector<std::string> columns { p.name, std::to_string(p.readLevel), std::to_string(p.writeLevel),
        p.number, std::to_string(p.offsetMultiplier), std::to_string(p.dataType), std::to_string(p.vscale),
        std::to_string(p.ipscale), std::to_string(p.subType), number(p.scaling), number(p.lower),
        number(p.upper), "\"" + p.units + "\"" };
    for (int bit = 0; bit < 16; ++bit)
        columns.push_back(bit < static_cast<int>(p.bits.size()) ? p.bits[static_cast<std::size_t>(bit)] : "");
    for (int value : { p.loggingType, p.tab, p.file, p.index })
        columns.push_back(std::to_string(value));
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i)
        line += (i ? "\t" : "") + columns[i];
    return line;
}

void writeText(const fs::path& path, const std::string& text)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

void writeConfigFile(const fs::path& path, const std::vector<ParamSpec>& params, const std::string& title)
{
    std::string text = "# " + title
        + "\n# Columns: name, read level, write level, number, offset multiplier, data "
          "type, VScale, IPscale, sub-block type, scaling, lower, upper, units, 16 bit "
          "labels, logging type, tab, file, index\n# 1\n";
    for (const ParamSpec& p : params)
        text += configLine(p) + "\n";
    writeText(path, text);
}

std::string iniFile(const std::vector<TargetProfile>& targets)
{
    std::string text = "[Setup]\nCommunications=0\nUsbAdapter=\nProtocol=1\nAddress=11\nNumberOfTargets="
        + std::to_string(targets.size()) + "\n";
    int n = 1;
    for (const TargetProfile& t : targets) {
        char id[8];
        std::snprintf(id, sizeof id, "%04X", t.id);
        text += "\n[T" + std::to_string(n++) + "]\nID=" + id + "\nName=" + t.name + "\nMCFG=" + t.name
            + "_Master.cfg\nCCFG=" + t.name + "_Cell.cfg\nAverageVoltages=" + (t.averageVoltages ? "1" : "0")
            + "\nSLOG=characterize_12cell.slog\nDLOG=characterize_12cell.dlog\nURL=https://zentavia.example/"
              "targets/"
            + t.name + "\nREF=https://zentavia.example/targets/" + t.name
            + "/reference\nFS=" + std::to_string(t.id) + "\n";
        int tab = 1;
        for (const std::string& caption : cellTabCaptions())
            text += "CT" + std::to_string(tab++) + "=" + caption + "\n";
        tab = 1;
        for (const std::string& caption : packTabCaptions())
            text += "PT" + std::to_string(tab++) + "=" + caption + "\n";
    }
    return text;
}

std::string alarmConfig()
{
    std::string text = "' Alarm broadcast bits: source bit, destination bit of \"Status\"\n"
                       "// Bits 0 to 3 carry an error code and are not shown as alarms.\n";
    for (int bit = 4; bit < 16; ++bit)
        if (bit != 10 && bit != 13)
            text += std::to_string(bit) + "," + std::to_string(bit) + "\n";
    return text;
}

std::string safetyRules()
{
    return "# Safety events of the ring: code, name, unit, scale, type (1, 2 unsigned, 3 signed, 0 hex)\n"
           "1\tCell Over Voltage\tmV\t1\t1\n"
           "2\tCell Under Voltage\tmV\t1\t1\n"
           "3\tOver Current in Charge\tmA\t1\t3\n"
           "4\tOver Current in Discharge\tmA\t1\t3\n"
           "5\tOver Temperature in Charge\tk\t0.1\t2\n"
           "6\tOver Temperature in Discharge\tk\t0.1\t2\n"
           "7\tUnder Temperature in Charge\tk\t0.1\t2\n"
           "8\tUnder Temperature in Discharge\tk\t0.1\t2\n"
           "9\tShort Circuit in Discharge\tmA\t1\t3\n"
           "10\tOverload in Discharge\tmA\t1\t3\n"
           "11\tWatchdog\t\t1\t0\n"
           "12\tCellWeft Communication Fault\t\t1\t0\n";
}

std::string sampleFile(const std::vector<SampleEntry>& entries, const std::string& title)
{
    std::string text = "; " + title + "\n; label, file, element, type\n";
    for (const SampleEntry& e : entries)
        text += e.label + "\t" + std::to_string(e.file) + "\t" + std::to_string(e.element) + "\t" + e.type
            + "\n";
    return text;
}

SampleEntry entryOf(const MemoryMap& map, const std::string& label, const std::string& name, int node = 0)
{
    const ParamSpec* p = node == 0 ? map.gatewayParam(name) : map.cellParam(name);
    int element = p->index + (node > 0 ? (node - 1) * map.sectionBytes(p->file) / 2 : 0);
    std::string type = p->subType == BitField ? "H" : (p->subType == Signed ? "S" : "U");
    return { label, p->file, element, type };
}

std::vector<SampleEntry> dynamicDefinition(const MemoryMap& map)
{
    std::vector<SampleEntry> entries { { "Tick", 0, 0, "U" } };
    for (const char* name :
        { "Pack Voltage", "Current", "Relative State of Charge", "Temperature", "Battery Status" })
        entries.push_back(entryOf(map, name, name));
    for (int node = 1; node <= 12; ++node)
        entries.push_back(entryOf(map, "Cell " + std::to_string(node) + " Voltage", "Voltage", node));
    for (int node = 1; node <= 12; ++node)
        entries.push_back(entryOf(map, "Cell " + std::to_string(node) + " Temperature", "Temperature", node));
    return entries;
}

std::vector<SampleEntry> staticDefinition(const MemoryMap& map)
{
    std::vector<SampleEntry> entries { { "Tick", 0, 0, "U" } };
    for (const char* name : { "Firmware Version", "FW Build", "Cycle Count", "Full Charge Capacity",
             "Design Capacity", "Chemistry ID", "Epoch Hour", "Serial Number" })
        entries.push_back(entryOf(map, name, name));
    return entries;
}

std::string hexText(const std::vector<std::uint8_t>& bytes)
{
    std::string text;
    char pair[3];
    for (std::uint8_t b : bytes) {
        std::snprintf(pair, sizeof pair, "%02X", b);
        text += pair;
    }
    return text;
}

// A .enc image: the tag line, then the body (section table and sections) in lines of 64 digits.
std::string firmwareFile(int appVersion, int build, int dataVersion)
{
    std::vector<std::uint8_t> payload(300);
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<std::uint8_t>((i * 37 + static_cast<std::size_t>(appVersion)) & 0xFF);
    std::vector<std::vector<std::uint8_t>> sections { makeFirmwareSection(appVersion, build, payload),
        makeFirmwareSection(dataVersion, 0, std::vector<std::uint8_t>(100, 0x5A)) };
    const int files[] = { 2, 34 };
    for (auto& section : sections)
        section.resize((section.size() + 127) / 128 * 128, 0);
    std::vector<std::uint8_t> body;
    auto put = [&](int value) {
        body.push_back(static_cast<std::uint8_t>(value & 0xFF));
        body.push_back(static_cast<std::uint8_t>(value >> 8));
    };
    put(static_cast<int>(sections.size()));
    int start = 2 + 8 * static_cast<int>(sections.size());
    for (std::size_t i = 0; i < sections.size(); ++i) {
        put(files[i]);
        put(i == 0 ? appVersion : dataVersion);
        put(start);
        put(static_cast<int>(sections[i].size()) - 1);
        start += static_cast<int>(sections[i].size());
    }
    for (const auto& section : sections)
        body.insert(body.end(), section.begin(), section.end());
    std::string hex = hexText(body);
    std::string text = "3C556C6D617220426F6F746C6F61643E\r\n";
    for (std::size_t at = 0; at < hex.size(); at += 64)
        text += hex.substr(at, 64) + "\r\n";
    return text;
}

const char* persistenceName(Persistence p)
{
    switch (p) {
    case Persistence::Committed:
        return "commit";
    case Persistence::Direct:
        return "flash";
    default:
        return "live";
    }
}

void printMap(std::uint16_t id)
{
    TargetProfile target = targetProfile(id);
    MemoryMap map = buildMemoryMap(target, target.defaultCells);
    std::cout << "Target " << target.name << ", " << map.cells << " cells.\n\n"
              << "| File | Name | Read | Write | Format | Clone | Keeps | Chunk | Size | MaxBytes |\n"
              << "|---|---|---|---|---|---|---|---|---|---|\n";
    for (const FileSpec& f : map.files)
        std::cout << "| " << f.number << " | " << f.name << " | " << f.readLevel << " | "
                  << (f.writeLevel == 15 ? std::string("read-only") : std::to_string(f.writeLevel)) << " | "
                  << f.format << " | " << (f.clone ? "yes" : "") << " | " << persistenceName(f.persistence)
                  << " | " << f.chunk << " | " << f.size << (f.perNode ? " (per node)" : "") << " | "
                  << f.maxBytes << " |\n";
    auto params = [](const char* title, const std::vector<ParamSpec>& list) {
        std::cout << "\n"
                  << title
                  << "\n\n| File | Index | Name | Type | Scale | Units |\n|---|---|---|---|---|---|\n";
        for (const ParamSpec& p : list)
            std::cout << "| " << p.file << " | " << p.index << " | " << p.name << " | " << p.subType << " | "
                      << p.scaling << " | " << (p.subType == BitField ? "mask " : "") << p.units << " |\n";
    };
    params("Gateway parameters (index in elements of the file's format):", map.gateway);
    params("Cell parameters (index in node 1's section):", map.cell);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc >= 2 && std::string(argv[1]) == "--print-map") {
        printMap(argc >= 3 ? static_cast<std::uint16_t>(std::stoul(argv[2], nullptr, 16)) : 0x1001);
        return 0;
    }
    if (argc != 2) {
        std::cerr << "usage: zvsim-mapgen <data folder>\n";
        return 2;
    }
    fs::path data = argv[1];
    std::vector<TargetProfile> targets { targetProfile(0x1001), targetProfile(0x1002),
        targetProfile(0x1003) };
    writeText(data / "Zentavia.ini", iniFile(targets));
    fs::path configs = data / "Configuration Files";
    for (const TargetProfile& t : targets) {
        MemoryMap map = buildMemoryMap(t, t.defaultCells);
        writeConfigFile(
            configs / t.name / (t.name + "_Master.cfg"), map.gateway, t.name + " gateway parameters");
        writeConfigFile(configs / t.name / (t.name + "_Cell.cfg"), map.cell, t.name + " cell parameters");
    }
    writeText(configs / "Alarm.cfg", alarmConfig());
    writeText(configs / "SafetyRule_Descriptor.cfg", safetyRules());
    MemoryMap twelve = buildMemoryMap(targetProfile(0x1002), 12);
    fs::path logs = data / "Data Logging Files";
    writeText(logs / "characterize_12cell.dlog",
        sampleFile(dynamicDefinition(twelve), "Dynamic data of a 12-cell pack"));
    writeText(logs / "characterize_12cell.slog",
        sampleFile(staticDefinition(twelve), "Static data of a 12-cell pack"));
    writeText(
        logs / "SBData.map", sampleFile(defaultSbdMap(twelve), "SBD map: the words behind the map commands"));
    writeText(configs / "ZK9470" / "Firmware" / "FW_0002_0000_6000_0719.enc", firmwareFile(6000, 719, 101));
    writeText(configs / "ZK9460S12" / "Firmware" / "FW_0001_0000_5000_0012.enc", firmwareFile(5000, 12, 101));
    std::cout << "wrote the target files to " << data << "\n";
    return 0;
}
