// get: one parameter of the gateway or of a cell, read from the device.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "driver/file_transfer.h"

#include <ostream>

namespace zv::cli {

namespace {

ParameterList& parameterList(clsCellWeft& driver, int node)
{
    if (node == 0)
        return driver.GatewayParameters;
    if (node < 0 || node > driver.nodes.Count())
        throw CliError("There is no cell " + std::to_string(node) + "; the pack has "
            + std::to_string(driver.nodes.Count()) + " cells.");
    return driver.nodes.Item(node)->NodeParameters;
}

} // namespace

void runGet(CliSession& session, const std::string& name, int node, std::ostream& out)
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
    std::string value = parameter->ToString(0, driver.Parameters.display);
    value.erase(value.find_last_not_of(' ') + 1); // a parameter without a unit
    out << parameter->ParameterName << ": " << value << '\n';
}

} // namespace zv::cli
