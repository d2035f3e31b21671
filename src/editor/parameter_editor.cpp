#include "editor/parameter_editor.h"

#include "core/globals.h"
#include "driver/cellweft.h"
#include "params/number_text.h"

namespace zv {

ParameterEditor::ParameterEditor(clsCellWeft& driver, EditParameterContext context)
    : driver_(driver)
    , context_(std::move(context))
{
}

ParameterEditor::~ParameterEditor() = default;

frmEditParameter& ParameterEditor::form()
{
    if (!form_)
        form_ = std::make_unique<frmEditParameter>(context_);
    return *form_;
}

clsSMBusParameter* ParameterEditor::find(std::string_view name, int node) const
{
    const std::string key = trimBlanks(name);
    if (node == 0)
        return driver_.GatewayParameters.FindByName(key);
    const clsNode* cell = driver_.nodes.Item(node);
    return cell ? cell->NodeParameters.FindByName(key) : nullptr;
}

EditOutcome ParameterEditor::Edit(std::string_view name, int node)
{
    EditOutcome outcome;
    outcome.parameter = find(name, node);
    if (!outcome.parameter)
        return outcome;
    const auto* entry = driver_.Directory.DirectoryElements.fileEntry(outcome.parameter->FileNumber);
    const int fileChunk = entry ? static_cast<int>(entry->FileChunk) : 0;
    form().EditParameter(*outcome.parameter, driver_.Parameters.display, fileChunk);
    outcome.newValueStands = outcome.parameter->NewValue.hasContent();
    outcome.autoWrite = context_.globals.settings.AutoWrite;
    return outcome;
}

} // namespace zv
