#pragma once
// Opens files and addresses with the desktop's associated program (xdg-open on Linux).
// Needs a QGuiApplication.

#include "platform/desktop.h"

#include <QUrl>

#include <string>

namespace zv::platform {

class QtDesktop : public Desktop {
public:
    bool openExternal(const std::string& pathOrUrl) override;
};

// An address with a scheme ("https://...", "mailto:...", "file:///...") as it is; anything else is
// a local file, made absolute.
[[nodiscard]] QUrl externalUrl(const std::string& pathOrUrl);

} // namespace zv::platform
