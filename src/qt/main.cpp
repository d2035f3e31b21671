// Zentavia: the desktop program.

#include "qt/application.h"

#include <QApplication>

#include <string>
#include <vector>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName("Zentavia");
    QApplication::setOrganizationName("Norvale Systems");
    QApplication::setApplicationVersion(ZENTAVIA_VERSION);
    QApplication::setQuitOnLastWindowClosed(false);

    const std::vector<std::string> arguments(argv + 1, argv + argc);
    zv::qt::Application zentavia(arguments);
    if (!zentavia.start())
        return 0;
    return QApplication::exec();
}
