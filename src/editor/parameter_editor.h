#pragma once
// The main window's way into the parameter editor: open the dialog for a parameter found by name
// in the gateway or in a cell, and learn what the user left behind.

#include "editor/frm_edit_parameter.h"

#include <memory>
#include <string_view>

namespace zv {

class clsCellWeft;

// What one edit left.
struct EditOutcome {
    clsSMBusParameter* parameter = nullptr; // nullptr: no parameter of that name, nothing shown
    bool newValueStands = false; // a NewValue waits in the parameter
    bool autoWrite = false; // "Auto write value on Ok" was on when the dialog closed

    // The pending changes are to be written (and committed) at once.
    [[nodiscard]] bool writeNow() const { return newValueStands && autoWrite; }
};

class ParameterEditor {
public:
    ParameterEditor(clsCellWeft& driver, EditParameterContext context);
    ~ParameterEditor();

    // Shows the edit dialog for the parameter of that name (blanks around it ignored): node 0 the
    // gateway, n the parameters of cell n. Returns when the dialog has closed.
    EditOutcome Edit(std::string_view name, int node);

    // The dialog, made on first use.
    [[nodiscard]] frmEditParameter& form();

private:
    [[nodiscard]] clsSMBusParameter* find(std::string_view name, int node) const;

    clsCellWeft& driver_;
    EditParameterContext context_;
    std::unique_ptr<frmEditParameter> form_;
};

} // namespace zv
