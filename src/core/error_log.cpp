#include "core/error_log.h"

#include "core/local_time.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace zv {

std::string errorLogLine(const ErrorLogRecord& record, std::chrono::system_clock::time_point when)
{
    std::string line;
    for (const std::string& field : { shortDate(when), timeOfDay(when), record.source, record.module,
             record.procedure, record.number, record.description, record.action }) {
        if (!line.empty())
            line += '\t';
        line += field;
    }
    return line;
}

void appendErrorLog(const std::string& path, const std::string& line)
{
    std::ofstream out(path, std::ios::app | std::ios::binary);
    if (!out)
        throw std::system_error(errno ? errno : EACCES, std::generic_category(), "cannot open " + path);
    out << line << '\n';
    out.close();
    if (!out)
        throw std::system_error(errno ? errno : EIO, std::generic_category(), "cannot write " + path);
}

} // namespace zv
