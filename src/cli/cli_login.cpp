// --password: the login of the login window, for a sealed pack run without a window.

#include "access/login.h"
#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "driver/target_operations.h"

#include <memory>

namespace zv::cli {

int CliSession::unseal(int level)
{
    if (level != 0 && level != 1)
        return level;
    auto ops = std::make_shared<TargetOperations>(driver());
    CommandLock lock { [ops] { return ops->UnlockDevice(); }, [ops] { return ops->EnableUlmarCommandSet(); },
        [ops] { return ops->DisableUlmarCommandSet(); }, [ops] { return ops->LockDevice(); },
        [ops] { return ops->GetAccessLevel(); } };
    AccessServices access { *main_, globals_, s_.dialogs, std::move(lock) };
    globals_.gPasswordBytes = passwordBytes(*options_.password);
    if (!LoginWithPassword(access, globals_.gPasswordBytes))
        throw CliError("Error communicating to the device.");
    globals_.gPasswordText = *options_.password;
    const int granted = ReadUserLevel(access);
    if (granted != 2 && granted != 3)
        throw CliError("Invalid Password!");
    return granted;
}

} // namespace zv::cli
