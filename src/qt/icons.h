#pragma once
// The application's images by key (the lamps of the status panes and the others that the lists
// and panels name), drawn as SVG in src/qt/icons and built into the program as resources.

#include <QIcon>

#include <string>

namespace zv::qt {

// The image of a key; a null icon for a key that has none.
[[nodiscard]] QIcon iconByKey(const std::string& key);

} // namespace zv::qt
