#pragma once
// File dialog filters in the "Text (*.txt)|*.txt|All Files (*.*)|*.*" form, as Qt writes them.

#include <QString>

#include <string>

namespace zv::qt {

// Each description/pattern pair becomes "Description (patterns)", pairs joined by ";;";
// "*.*" becomes "*" and ';' between patterns a blank. An empty filter gives an empty text.
[[nodiscard]] QString toQtFilter(const std::string& filter);

} // namespace zv::qt
