#pragma once
// The pack's flash kept in a small text file across runs: the loader state, the firmware versions
// and the contents of every file that keeps its data.

#include "device/pack_model.h"

#include <string>

namespace zvsim {

[[nodiscard]] std::string stateText(const PackModel& model);
// Takes what it recognises from the text; false when it is not a state file.
[[nodiscard]] bool applyStateText(PackModel& model, const std::string& text);

[[nodiscard]] bool saveStateFile(const PackModel& model, const std::string& path);
// false when the file does not exist or cannot be read.
[[nodiscard]] bool loadStateFile(PackModel& model, const std::string& path);

} // namespace zvsim
