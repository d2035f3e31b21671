#pragma once
// A combo box of ports: each row holds a visible text and the port number behind it.

#include "platform/ui/choice_controls.h"

#include <string>
#include <vector>

namespace zv {

class PortComboBox : public platform::ui::ComboBox {
public:
    using ComboBox::ComboBox;

    void addPort(std::string text, int port);
    void clearPorts();
    [[nodiscard]] int portAt(int row) const;
    // The port number of the selected row, 0 when none is selected.
    [[nodiscard]] int selectedPort() const { return portAt(listIndex()); }
    // Selects the first row of that port; false (selection unchanged) when no row has it.
    bool selectPort(int port);

private:
    std::vector<int> ports_;
};

} // namespace zv
