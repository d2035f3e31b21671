#pragma once
// The scheduling priority of this process: high while the monitor polls, normal otherwise.

namespace zv::platform {

enum class ProcessPriority { Normal, High };

// Best effort: a system that refuses the change (no privilege to raise it) leaves the priority as
// it was; returns whether the change was made.
bool setProcessPriority(ProcessPriority priority);

} // namespace zv::platform
