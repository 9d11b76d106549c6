// The kinds of long operations, and how long a scenario lets them take.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_OPERATION_SETTINGS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_OPERATION_SETTINGS_H

#include <array>
#include <cstddef>
#include <iterator>

namespace soapwrapper::simulator
{

// Numbered like the resultSnapType of a wait's answer; a copy of an image never has one.
enum class OperationKind {
    kRollback,
    kValidate,
    kCreate,
    kCopy,
    kPrepare,
    kPostProcess,
    kDiff,
    kProvision,
    kImport,
    kCopyImage
};

// The names in a scenario, by kind.
inline constexpr const char* kOperationKindNames[] = {"rollback", "validate",    "create", "copy",
                                                      "prepare",  "postProcess", "diff",   "provision",
                                                      "import",   "copyImage"};
inline constexpr std::size_t kOperationKinds = std::size(kOperationKindNames);

struct SecondsByKind {
    SecondsByKind() { of.fill(2); }

    std::array<int, kOperationKinds> of;
};

struct OperationSettings {
    // What a client is told to wait before it asks again.
    int retry_interval = 1;
    SecondsByKind seconds;
};

} // namespace soapwrapper::simulator

#endif
