#include "device/state_file.h"

#include <fstream>
#include <sstream>

namespace zvsim {

namespace {
const char* const Header = "zvsim-flash 1";
}

std::string stateText(const PackModel& model)
{
    std::ostringstream out;
    out << Header << "\n";
    out << "S " << static_cast<int>(model.state) << "\n";
    out << "V " << model.firmware.application << " " << model.firmware.build << " " << model.firmware.data
        << "\n";
    out << model.files.flashText();
    return out.str();
}

bool applyStateText(PackModel& model, const std::string& text)
{
    std::istringstream in(text);
    std::string line;
    if (!std::getline(in, line) || line != Header)
        return false;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string tag;
        fields >> tag;
        int state = 0;
        if (tag == "S" && fields >> state && state >= 0 && state <= 2)
            model.state = static_cast<PackState>(state);
        else if (tag == "V")
            fields >> model.firmware.application >> model.firmware.build >> model.firmware.data;
    }
    model.files.loadFlashText(text);
    model.publishState();
    return true;
}

bool saveStateFile(const PackModel& model, const std::string& path)
{
    std::ofstream out(path, std::ios::trunc);
    out << stateText(model);
    return static_cast<bool>(out);
}

bool loadStateFile(PackModel& model, const std::string& path)
{
    std::ifstream in(path);
    if (!in)
        return false;
    std::stringstream text;
    text << in.rdbuf();
    return applyStateText(model, text.str());
}

} // namespace zvsim
