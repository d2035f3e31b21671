#include "device/memory_map.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace zvsim {

namespace {

using Bits = std::vector<std::string>;

Bits bits16(std::initializer_list<std::string> named)
{
    Bits bits(named);
    bits.resize(16, "Unused");
    return bits;
}

std::string hexNumber(int value)
{
    char text[12];
    std::snprintf(text, sizeof text, "0x%02X", value);
    return text;
}

// Bit layout of the battery status word; it is also the word broadcast as an alarm.
Bits batteryStatusBits()
{
    return { "Error Code 0", "Error Code 1", "Error Code 2", "Error Code 3", "Fully Discharged",
        "Fully Charged", "Discharging", "Initialized", "Remaining Time Alarm", "Remaining Capacity Alarm",
        "Reserved", "Terminate Discharge Alarm", "Over Temperature Alarm", "Reserved",
        "Terminate Charge Alarm", "Over Charged Alarm" };
}

std::vector<FileSpec> fileTable(int cells)
{
    using P = Persistence;
    // number, name, read, write, format, clone, persistence, chunk, size, maxBytes
    auto f = [](int n, std::string name, int r, int w, int format, bool clone, P p, int chunk, int size,
                 int maxBytes) {
        FileSpec s;
        s.number = n;
        s.name = std::move(name);
        s.readLevel = r;
        s.writeLevel = w;
        s.format = format;
        s.clone = clone;
        s.persistence = p;
        s.chunk = chunk;
        s.size = size;
        s.maxBytes = maxBytes;
        return s;
    };
    std::vector<FileSpec> files {
        f(0, "Directory", 0, 15, 5, false, P::Volatile, 32, 0, 32),
        f(1, "Dynamic", 0, 15, 2, false, P::Volatile, 2, 44, 128),
        f(2, "AppImage", 3, 2, 5, false, P::Direct, 128, 8192, 128),
        f(3, "Login", 0, 0, 5, false, P::Volatile, 8, 8, 8),
        f(4, "CellDynamic", 0, 15, 2, false, P::Volatile, 2, 0, 96),
        f(5, "State", 0, 15, 2, false, P::Volatile, 2, 44, 128),
        f(6, "CellConfig", 1, 2, 2, true, P::Committed, 2, 0, 64),
        f(7, "History", 0, 15, 2, false, P::Direct, 2, 0, 128),
        f(8, "Identity", 0, 2, 5, true, P::Committed, 32, 96, 48), // a limit of one and a half records
        f(9, "Config", 0, 2, 2, true, P::Committed, 2, 16, 128),
        f(10, "Protection", 1, 2, 2, true, P::Committed, 2, 22, 128),
        f(11, "GatewayInfo", 0, 15, 2, false, P::Volatile, 2, 44, 128),
        f(12, "CellLearned", 1, 2, 2, true, P::Committed, 2, 0, 64),
        f(13, "Charge", 1, 2, 2, true, P::Committed, 2, 12, 128),
        f(14, "TempMap", 1, 3, 2, true, P::Committed, 2, 16, 128),
        f(15, "RaTable", 1, 3, 2, true, P::Committed, 2, 64, 32),
        f(16, "Passwords", 1, 1, 5, true, P::Direct, 8, 24, 24),
        f(17, "Reserved17", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(18, "Manufacture", 0, 15, 2, false, P::Direct, 2, 6, 128),
        f(19, "Reserved19", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(20, "Reserved20", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(21, "Sensors", 0, 15, 2, false, P::Volatile, 2, 10, 128),
        f(22, "Reserved22", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(23, "Reserved23", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(24, "Calibration", 2, 2, 2, false, P::Committed, 2, 86, 64),
        f(25, "Reserved25", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(26, "Reserved26", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(27, "Command", 0, 2, 2, false, P::Volatile, 2, 4, 4),
        f(28, "Reserved28", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(29, "LogSample", 0, 15, 2, false, P::Volatile, 2, 64, 128),
        f(30, "LogDef", 0, 1, 2, false, P::Volatile, 2, 64, 128),
        f(31, "CellCal", 2, 2, 2, false, P::Committed, 2, 128, 128),
        f(32, "Reserved32", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(33, "SafetyLog", 2, 15, 1, false, P::Direct, 1, 182, 128),
        f(34, "DataImage", 3, 2, 5, false, P::Direct, 128, 2048, 128),
        f(35, "Reserved35", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(36, "Reserved36", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(37, "Chemistry", 1, 2, 2, true, P::Committed, 2, 256, 128),
        f(38, "Reserved38", 3, 3, 2, false, P::Volatile, 2, 16, 128),
        f(39, "SBDataMap", 1, 2, 1, true, P::Committed, 2, 128, 128),
        f(40, "Error", 15, 15, 2, false, P::Volatile, 2, 0, 2),
    };
    files[0].size = static_cast<int>(files.size()) * files[0].chunk;
    files[7].size = (1 + 8 * cells) * 2; // lifetime hours, then 4 temperature and 4 voltage bands a cell
    files[2].firmware = true;
    files[34].firmware = true;
    for (int n : { 4, 6, 12 })
        files[static_cast<std::size_t>(n)].perNode = true;
    return files;
}

class ParamBuilder {
public:
    ParamBuilder(const std::vector<FileSpec>& files, std::vector<ParamSpec>& list)
        : files_(files)
        , list_(list)
    {
    }

    ParamSpec& add(int file, std::string name, int subType, double scaling, std::string units, int tab,
        double initial = 0)
    {
        const FileSpec& spec = files_[static_cast<std::size_t>(file)];
        ParamSpec p;
        p.name = std::move(name);
        p.file = file;
        p.index = nextIndex_[file]++;
        p.subType = subType;
        p.scaling = scaling;
        p.units = std::move(units);
        p.tab = tab;
        p.initial = initial;
        p.readLevel = spec.readLevel;
        p.writeLevel = spec.writeLevel;
        p.number = hexNumber(file * 256 + p.index);
        if (spec.writeLevel < 15)
            p.upper = subType == Signed ? 32767 : 65535;
        if (subType == Signed)
            p.lower = -32768;
        list_.push_back(std::move(p));
        return list_.back();
    }

    ParamSpec& bitField(int file, std::string name, Bits bits, int faultMask, int tab, double initial = 0)
    {
        ParamSpec& p = add(file, std::move(name), BitField, 1, std::to_string(faultMask), tab, initial);
        p.bits = std::move(bits);
        return p;
    }

    ParamSpec& text(int file, std::string name, std::string initial, int tab)
    {
        ParamSpec& p = add(file, std::move(name), Text, 1, "", tab);
        p.initialText = std::move(initial);
        return p;
    }

private:
    const std::vector<FileSpec>& files_;
    std::vector<ParamSpec>& list_;
    std::map<int, int> nextIndex_;
};

// Marks a parameter as one value of a block command (0x80, 0xEE) at byte positions first..last.
void inBlock(ParamSpec& p, int command, int first, int last)
{
    p.number = hexNumber(command);
    p.dataType = 1;
    p.vscale = first;
    p.ipscale = last;
    p.loggingType = 1;
}

enum PackTab {
    Dynamic,
    Status,
    Configuration,
    Protection,
    Charge,
    Identity,
    Calibration,
    Gateway,
    Chemistry,
    History,
    Advanced
};

void dynamicFile(ParamBuilder& b)
{
    const double t = 0.1;
    const char* blockNames[]
        = { "Current", "Average Current", "State of Charge", "Sense Resistor Temperature",
              "Charge FET Temperature", "Discharge FET Temperature", "Precharge FET Temperature" };
    for (int i = 0; i < 7; ++i) {
        bool current = i < 2;
        ParamSpec& p = b.add(1, blockNames[i], current ? Signed : Unsigned, i < 3 ? 1.0 : t,
            current ? "mA" : (i == 2 ? "%" : "k"), Dynamic, current ? 0 : (i == 2 ? 50 : 2981));
        inBlock(p, 0x80, 2 * i + 1, 2 * i + 2);
        p.offsetMultiplier = 1;
    }
    ParamSpec& status = b.bitField(1, "Status", batteryStatusBits(), 0xD800, Dynamic, 0x0080);
    inBlock(status, 0x80, 15, 16);
    b.add(1, "Pack Voltage", Unsigned, 1, "mV", Dynamic, 30000).vscale = 1;
    b.add(1, "Temperature", Unsigned, t, "k", Dynamic, 2981).offsetMultiplier = 1;
    b.add(1, "Relative State of Charge", Unsigned, 1, "%", Dynamic, 50).offsetMultiplier = 1;
    b.add(1, "Board Temperature", Unsigned, t, "k", Dynamic, 2981).offsetMultiplier = 1;
    b.bitField(1, "Battery Status", batteryStatusBits(), 0xD800, Dynamic, 0x0080);
    b.bitField(1, "System Flags",
        bits16({ "Charging", "Discharging", "Resting", "Balancing", "CellWeft Online", "Data Flow",
            "Alarm Active", "Sleep" }),
        0x0040, Dynamic);
    b.bitField(1, "FET Status", bits16({ "D-FET", "C-FET", "P-FET" }), 0, Dynamic, 0x0003);
    b.add(1, "Remaining Capacity", Unsigned, 1, "(mAh | 10mWh)", Dynamic, 1100).offsetMultiplier = 1;
    b.add(1, "Full Charge Capacity", Unsigned, 1, "(mAh | 10mWh)", Dynamic, 2200);
    b.add(1, "Max Cell Voltage", Unsigned, 1, "mV", Dynamic, 3700).vscale = 1;
    b.add(1, "Min Cell Voltage", Unsigned, 1, "mV", Dynamic, 3700).vscale = 1;
    b.add(1, "Cycle Count", Unsigned, 1, "", Dynamic, 17);
    b.add(1, "Average Time to Empty", Unsigned, 1, "min", Dynamic, 65535);
    b.add(1, "Average Time to Full", Unsigned, 1, "min", Dynamic, 65535);
}

// Every value of the dynamic file changes from one poll to the next: the application redraws
// exactly the rows whose multiplier is 1 after each sample.
void markPolled(std::vector<ParamSpec>& list)
{
    for (ParamSpec& p : list)
        if (p.file == 1)
            p.offsetMultiplier = 1;
}

Bits alertBits(std::initializer_list<std::string> named)
{
    return bits16(named);
}

void stateFile(ParamBuilder& b, const TargetProfile& target)
{
    b.add(5, "Access Level", Unsigned, 1, "", Status, 0);
    b.bitField(5, "Internal Flags 2",
        bits16({ "Ship Mode", "Safe Disconnect", "Data Flow Stopped", "Calibration Mode", "Relearn Pending",
            "Fuse Reset", "Unused", "Unused", "Unused", "Unused", "Unused", "Unused", "Unused",
            "CellWeft Poll Complete" }),
        0, Status);
    Bits safety = alertBits({ "COV(alert)Cell over voltage", "CUV(alert)Cell under voltage",
        "OCC(alert)Over current in charge", "OCD(alert)Over current in discharge",
        "OTC(alert)Over temperature in charge", "OTD(alert)Over temperature in discharge",
        "UTC(alert)Under temperature in charge", "UTD(alert)Under temperature in discharge",
        "SCD(alert)Short circuit in discharge", "AOLD(alert)Overload in discharge", "HWD(alert)Watchdog",
        "CWF(alert)CellWeft communication fault" });
    Bits safety1 = alertBits({ "PTO(alert)Precharge timeout", "CTO(alert)Charge timeout",
        "OC(alert)Over charge", "CHGV(alert)Charging voltage", "CHGC(alert)Charging current",
        "OTF(alert)FET over temperature", "OTS(alert)Sense resistor over temperature" });
    Bits failure = alertBits({ "SOV(alert)Safety over voltage", "SUV(alert)Safety under voltage",
        "SOT(alert)Safety over temperature", "SOCC(alert)Safety over current in charge",
        "SOCD(alert)Safety over current in discharge", "CFETF(alert)Charge FET failure",
        "DFETF(alert)Discharge FET failure", "FUSE(alert)Fuse blown", "CIM(alert)Cell imbalance" });
    Bits charge
        = alertBits({ "FC(alert)Fully charged", "TCA(alert)Terminate charge", "CHGIN(alert)Charge inhibit",
            "CHGSUSP(alert)Charge suspend", "PCHG(alert)Precharge", "MCHG(alert)Maintenance charge" });
    b.bitField(5, "Safety Alert", safety, 0x0FFF, Status);
    b.bitField(5, "Safety Status", safety, 0x0FFF, Status);
    b.bitField(5, "Safety Alert1", safety1, 0x007F, Status);
    b.bitField(5, "Safety Status1", safety1, 0x007F, Status);
    b.bitField(5, "Permanent Disable Alert", failure, 0x01FF, Status);
    b.bitField(5, "Permanent Disable Status", failure, 0x01FF, Status);
    b.bitField(5, "Charge Alert", charge, 0x0006, Status);
    b.bitField(5, "Charge Status", charge, 0x0006, Status);
    b.bitField(5, "Safety Flags",
        bits16({ "Unused", "Unused", "Unused", "Unused", "Unused", "Unused", "Unused", "Unused", "Unused",
            "Unused", "Unused", "Unused", "Unused", "Unused", "Unused", "Fuse Blown" }),
        0x8000, Status);
    b.add(5, "Firmware Version", Unsigned, 1, "", Status, target.firmwareVersion);
    b.add(5, "FW Build", Unsigned, 1, "", Status, target.firmwareBuild);
    b.add(5, "Application F File Version", Unsigned, 1, "", Status, target.firmwareVersion);
    b.add(5, "Application System Version", Unsigned, 1, "", Status, 300);
    b.add(5, "F File Version", Unsigned, 1, "", Status, 100);
    b.add(5, "System Version", Unsigned, 1, "", Status, 300);
    for (const char* crc : { "Data CRC", "F Directory CRC", "Firmware CRC", "System CRC", "System Status" })
        b.bitField(5, crc, {}, 0, Status);
}

void configurationFiles(ParamBuilder& b, const TargetProfile& target, int cells)
{
    b.bitField(9, "Algorithm Enable",
        bits16({ "Balancing", "Coulomb Counter", "Impedance Track", "Wired", "Auto Rebuild", "Configured",
            "Alarm Broadcast", "Reserved", "Reserved", "Reserved", "Reserved", "Reserved",
            "Calibration Mode 0", "Calibration Mode 1", "Calibration Mode 2", "Calibration Mode 3" }),
        0, Configuration, 0x0047);
    b.add(9, "SBData Map Begin", Unsigned, 1, "", Configuration, target.mapBegin).upper = 255;
    ParamSpec& mode = b.bitField(9, "Battery Mode-Obsolete",
        bits16({ "Internal Charge Controller", "Primary Battery Support", "Reserved", "Reserved", "Reserved",
            "Reserved", "Reserved", "Condition Flag", "Charge Controller Enabled", "Primary Battery",
            "Reserved", "Reserved", "Reserved", "Alarm Mode", "Charger Mode", "Capacity Mode" }),
        0, Configuration, 0x0000);
    mode.number = "0x03";
    mode.readLevel = 0;
    mode.writeLevel = 2;
    ParamSpec& expected = b.add(9, "Expected Number Of Cells", Unsigned, 1, "", Configuration, cells);
    expected.lower = 1;
    expected.upper = 16;
    ParamSpec& sensors = b.add(9, "Temperature Sensor Count", Unsigned, 1, "", Configuration, 5);
    sensors.lower = 1;
    sensors.upper = 5;
    b.add(9, "Design Capacity", Unsigned, 1, "(mAh | 10mWh)", Configuration, 2200);
    b.add(9, "Design Voltage", Unsigned, 1, "mV", Configuration, 3700 * cells);
    b.add(9, "Sleep Current", Unsigned, 1, "mA", Configuration, 10);

    const double t = 0.1;
    b.add(10, "Cell Over Voltage Limit", Unsigned, 1, "mV", Protection, 4250);
    b.add(10, "Cell Over Voltage Recovery", Unsigned, 1, "mV", Protection, 4150);
    b.add(10, "Cell Under Voltage Limit", Unsigned, 1, "mV", Protection, 2800);
    b.add(10, "Cell Under Voltage Recovery", Unsigned, 1, "mV", Protection, 3000);
    b.add(10, "Over Current Charge Limit", Unsigned, 1, "mA", Protection, 6000);
    b.add(10, "Over Current Discharge Limit", Unsigned, 1, "mA", Protection, 8000);
    b.add(10, "Over Temperature Limit", Unsigned, t, "k", Protection, 3331);
    b.add(10, "Over Temperature Recovery", Unsigned, t, "k", Protection, 3231);
    b.add(10, "Under Temperature Limit", Unsigned, t, "k", Protection, 2731);
    b.add(10, "Under Temperature Recovery", Unsigned, t, "k", Protection, 2781);
    b.add(10, "Cell Imbalance Limit", Unsigned, 1, "mV", Protection, 150);

    b.add(13, "Charge Termination Voltage", Unsigned, 1, "mV", Charge, 4200);
    b.add(13, "Taper Current", Unsigned, 1, "mA", Charge, 100);
    b.add(13, "Charging Current", Unsigned, 1, "mA", Charge, 2500);
    b.add(13, "Precharge Current", Unsigned, 1, "mA", Charge, 250);
    b.add(13, "Precharge Threshold", Unsigned, 1, "mV", Charge, 3000);
    b.add(13, "Balance Start Voltage", Unsigned, 1, "mV", Charge, 3900);

    for (int i = 1; i <= 8; ++i)
        b.add(14, "Thermistor Point " + std::to_string(i), Unsigned, 1, "", Advanced, 4000 - 400 * i);
    for (int i = 0; i < 4; ++i)
        b.add(15, "Ra Default " + std::to_string(i), Unsigned, 1, "mOhm", Chemistry, 30 + 5 * i);
    b.add(37, "Chemistry ID", Unsigned, 1, "", Chemistry, 100);
}

void identityFiles(ParamBuilder& b, const TargetProfile& target)
{
    b.text(8, "Manufacturer Name", "Norvale Systems", Identity);
    b.text(8, "Device Name", target.name, Identity);
    b.text(8, "Device Chemistry", "LION", Identity);
    b.add(18, "Manufacture Date", Unsigned, 1, "", Identity, 17 + (5 << 5) + ((2023 - 1980) << 9));
    b.add(18, "Serial Number", Unsigned, 1, "", Identity, 4711);
    b.add(18, "Hardware Version", Unsigned, 1, "", Identity, 3);
    b.add(7, "Epoch Hour", Unsigned, 1, "h", History, 1234);
}

void gatewayInfoFile(ParamBuilder& b, int cells)
{
    const char* names[] = { "Number of CellWeft rebuilds", "Number of CellWeft Polls",
        "Number of CellWeft Poll Errors", "State", "Cell Flags", "Gateway Flags", "Fault Map", "FETs allowed",
        "actual FETs", "Sleep manager status", "Poll rate index", "LAN time stamp", "Temperature time stamp",
        "Current time stamp", "Time stamp", "Timer 0 Event", "Timer 0 Seconds", "Timer 1 Event",
        "Timer 1 Seconds", "Timer 2 Event", "Timer 2 Seconds" };
    const int bitFields[] = { 4, 5, 6, 7, 8, 9 };
    for (int i = 0; i < 21; ++i) {
        bool bitField = std::find(std::begin(bitFields), std::end(bitFields), i) != std::end(bitFields);
        ParamSpec& p = bitField ? b.bitField(11, names[i], {}, 0, Gateway)
                                : b.add(11, names[i], Unsigned, 1, "", Gateway);
        inBlock(p, 0xEE, 2 * i + 1, 2 * i + 2);
    }
    b.add(11, "Actual Number Of Cells", Unsigned, 1, "", Gateway, cells);
}

void calibrationFile(ParamBuilder& b)
{
    b.add(24, "Current Offset", Signed, 1, "", Calibration, 0);
    b.add(24, "Current Gain", Unsigned, 1, "", Calibration, 32767);
    b.add(24, "Coulomb Offset", Signed, 1, "", Calibration, 0);
    b.add(24, "Coulomb Gain", Unsigned, 1, "", Calibration, 32767);
    b.add(24, "Coulomb Reading", Unsigned, 1, "", Calibration, 0);
    for (int n = 1; n <= 5; ++n)
        b.add(24, "Sensor " + std::to_string(n) + " Offset", Signed, 1, "", Calibration, 0);
    for (int n = 1; n <= 16; ++n) {
        b.add(24, "Cell " + std::to_string(n) + " Voltage Offset", Signed, 1, "mV", Calibration, 0);
        b.add(24, "Cell " + std::to_string(n) + " Voltage Gain", Unsigned, 1, "", Calibration, 32768);
    }
    b.bitField(24, "Calibration Status",
        bits16({ "Current Calibrated", "Temperature Calibrated", "Voltage Calibrated" }), 0, Calibration);
}

void cellFiles(ParamBuilder& b)
{
    enum CellTab { CellDynamic, CellConfig, CellLearned };
    b.add(4, "Voltage", Unsigned, 1, "mV", CellDynamic, 3700).vscale = 1;
    b.add(4, "Temperature", Unsigned, 0.1, "k", CellDynamic, 2981);
    b.add(4, "Balance Current", Signed, 1, "mA", CellDynamic, 0);
    b.add(4, "Cell State of Charge", Unsigned, 1, "%", CellDynamic, 50);
    b.add(4, "Balance Time", Unsigned, 1, "s", CellDynamic, 0);
    b.bitField(4, "Cell Status",
        bits16({ "Pump North", "Pump South", "Over Voltage", "Under Voltage", "Over Temperature",
            "Under Temperature", "Balancing", "Node Fault" }),
        0x00BC, CellDynamic);
    b.add(6, "Node Address", Unsigned, 1, "", CellConfig, 0);
    b.add(6, "Balance Threshold", Unsigned, 1, "mV", CellConfig, 20);
    b.bitField(6, "Node Options", bits16({ "Balance Enable", "Thermistor Fitted", "Pump Enable" }), 0,
        CellConfig, 0x0007);
    b.add(6, "Sensor Trim", Signed, 1, "", CellConfig, 0);
    for (int i = 0; i < 4; ++i)
        b.add(12, "Ra " + std::to_string(i), Unsigned, 1, "mOhm", CellLearned, 30 + 5 * i);
}

} // namespace

TargetProfile targetProfile(std::uint16_t id)
{
    TargetProfile t;
    t.id = id;
    switch (id) {
    case 0x1001:
        t = { id, "ZK9460", 8, false, 5000, 12, 0x50 };
        break;
    case 0x1002:
        t = { id, "ZK9460S12", 12, true, 5000, 12, 0x3C };
        break;
    case 0x1003:
        t = { id, "ZK9470", 16, false, 6000, 719, 0x3C };
        break;
    default:
        t.name = "Unknown";
        break;
    }
    return t;
}

const FileSpec* MemoryMap::file(int number) const
{
    if (number < 0 || number >= static_cast<int>(files.size()) - 1)
        return nullptr; // the last entry is the "Error" record, not a file
    return &files[static_cast<std::size_t>(number)];
}

const ParamSpec* MemoryMap::gatewayParam(const std::string& name) const
{
    auto it
        = std::find_if(gateway.begin(), gateway.end(), [&](const ParamSpec& p) { return p.name == name; });
    return it == gateway.end() ? nullptr : &*it;
}

const ParamSpec* MemoryMap::cellParam(const std::string& name) const
{
    auto it = std::find_if(cell.begin(), cell.end(), [&](const ParamSpec& p) { return p.name == name; });
    return it == cell.end() ? nullptr : &*it;
}

int MemoryMap::sectionBytes(int fileNumber) const
{
    const FileSpec* spec = file(fileNumber);
    if (!spec)
        return 0;
    int bytes = 0;
    for (const ParamSpec& p : cell)
        if (p.file == fileNumber)
            bytes = std::max(bytes, (p.index + 1) * spec->elementSize());
    return bytes;
}

MemoryMap buildMemoryMap(const TargetProfile& target, int cells)
{
    MemoryMap map;
    map.target = target;
    map.cells = std::clamp(cells, 1, 16);
    map.files = fileTable(map.cells);

    ParamBuilder gateway(map.files, map.gateway);
    dynamicFile(gateway);
    markPolled(map.gateway);
    stateFile(gateway, target);
    configurationFiles(gateway, target, map.cells);
    identityFiles(gateway, target);
    gatewayInfoFile(gateway, map.cells);
    calibrationFile(gateway);

    ParamBuilder cell(map.files, map.cell);
    cellFiles(cell);
    for (FileSpec& spec : map.files)
        if (spec.perNode)
            spec.size = map.sectionBytes(spec.number) * map.cells;
    int location = 0x4000;
    for (FileSpec& spec : map.files) {
        spec.location = location;
        location += spec.size;
    }
    return map;
}

std::vector<SampleEntry> defaultSbdMap(const MemoryMap& map)
{
    std::vector<SampleEntry> entries;
    for (const char* name :
        { "Temperature", "Pack Voltage", "Current", "Average Current", "Relative State of Charge",
            "Remaining Capacity", "Full Charge Capacity", "Battery Status", "Cycle Count" }) {
        const ParamSpec* p = map.gatewayParam(name);
        bool signedWord = p->subType == Signed;
        entries.push_back(
            { name, p->file, p->index, p->subType == BitField ? "H" : (signedWord ? "S" : "U") });
    }
    return entries;
}

const std::vector<std::string>& packTabCaptions()
{
    static const std::vector<std::string> captions { "Dynamic", "Status", "Configuration", "Protection",
        "Charge", "Identity", "Calibration", "Gateway", "Chemistry", "History", "Advanced" };
    return captions;
}

const std::vector<std::string>& cellTabCaptions()
{
    static const std::vector<std::string> captions { "Cell Dynamic", "Cell Config", "Learned" };
    return captions;
}

} // namespace zvsim
