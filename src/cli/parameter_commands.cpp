// get: one parameter of the gateway or of a cell, read from the device.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "driver/file_transfer.h"
#include "monitor/list_values.h"
#include "outputs/pack_summary.h"
#include "params/number_text.h"

#include <ostream>

namespace zv::cli {

ParameterList& parameterList(clsCellWeft& driver, int node)
{
    if (node == 0)
        return driver.GatewayParameters;
    if (node < 0 || node > driver.nodes.Count())
        throw CliError("There is no cell " + std::to_string(node) + "; the pack has "
            + std::to_string(driver.nodes.Count()) + " cells.");
    return driver.nodes.Item(node)->NodeParameters;
}

namespace {

// The value column of the main window's lists; the manufacture date as the pack summary writes it.
std::string displayText(const clsSMBusParameter& parameter, const DisplaySettings& display)
{
    if (toLower(parameter.ParameterName) == "manufacture date")
        if (const auto word = parameter.value.asNumber(display.locale); word && *word > 0)
            return packedDateText(static_cast<unsigned>(*word));
    return storedValueText(parameter, display, tabValueMode(parameter));
}

} // namespace

void runGet(CliSession& session, const std::string& name, int node, bool raw, std::ostream& out)
{
    session.loadConfiguration();
    auto& driver = session.driver();
    auto* parameter = parameterList(driver, node).FindByName(name);
    if (!parameter)
        throw CliError("There is no parameter named \"" + name + "\"" + (node ? " in the cells." : "."));
    // Reading the whole file gives every cell of a per-cell file its own value.
    std::string text;
    if (!driver.GetFile(parameter->FileNumber, text))
        throw CliError("Reading \"" + parameter->ParameterName + "\" failed.");
    if (node > 0 && !isPerNodeFile(parameter->FileNumber))
        driver.Transfer.applyValue(*parameter, text);
    if (parameter->value.isText() && parameter->value.text() == kValueOutsideFile)
        throw CliError("\"" + parameter->ParameterName + "\" lies beyond the end of device file "
            + std::to_string(parameter->FileNumber) + " (" + std::to_string(text.size() / 2)
            + " bytes read); its value cannot be shown.");
    const DisplaySettings& display = driver.Parameters.display;
    std::string value = raw ? parameter->value.toText(display.locale) : displayText(*parameter, display);
    value.erase(value.find_last_not_of(' ') + 1); // a parameter without a unit
    out << parameter->ParameterName << ": " << value << '\n';
}

} // namespace zv::cli
