#include "connection/port_combo_box.h"

#include <algorithm>

namespace zv {

void PortComboBox::addPort(std::string text, int port)
{
    ports_.push_back(port);
    addItem(std::move(text));
}

void PortComboBox::clearPorts()
{
    ports_.clear();
    clear();
}

int PortComboBox::portAt(int row) const
{
    return row >= 0 && row < static_cast<int>(ports_.size()) ? ports_[static_cast<std::size_t>(row)] : 0;
}

bool PortComboBox::selectPort(int port)
{
    const auto it = std::find(ports_.begin(), ports_.end(), port);
    if (it == ports_.end())
        return false;
    setListIndex(static_cast<int>(it - ports_.begin()));
    return true;
}

} // namespace zv
