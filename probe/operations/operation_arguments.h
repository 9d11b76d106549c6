// What the command line says of a long operation that is to be started.
#ifndef SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_ARGUMENTS_H
#define SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_ARGUMENTS_H

#include "plugin/host/async_records.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/operations/operation_run.h"

#include <cstdint>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// A snapshot, of a volume that a server knows.
struct SourceArguments : ServerArguments {
    std::string snapshot;
    sts_volume_spec_v11_t volume = {};
    OperationOptions operation;
};

// NAME, SNAP and `--volume`, and how to log in and to wait.
void add_source_arguments(const Command& command, SourceArguments& arguments);

struct TargetOptions {
    std::vector<std::string> targets;
};

void add_target_options(const Command& command, TargetOptions& options);

// Fills `target` from SERVER/LSU or LSU; of that the server stays as it is. A backslash takes the character
// behind it as it is. The result is what is wrong with `text`, if anything.
std::string parse_target(const std::string& text, sts_lsu_spec_v11_t& target);

// The array that an entry takes: never a null one. `server` is that of targets without one.
class TargetLsus
{
  public:
    // The texts have been looked at with the command line.
    TargetLsus(const TargetOptions& options, const std::string& server);

    const sts_lsu_spec_v11_t* data() const { return targets_.data(); }
    std::uint32_t count() const { return static_cast<std::uint32_t>(targets_.size()) - 1; }

  private:
    std::vector<sts_lsu_spec_v11_t> targets_; // one more than there are
};

struct ImagesetOptions {
    std::string imageset;
    std::int32_t pending = 0;
};

void add_imageset_options(const Command& command, ImagesetOptions& options);
sts_imageset_t imageset_of(const ImagesetOptions& options);

// Names of snapshots to roll back over.
void add_over_option(const Command& command, std::vector<std::string>& over);

// The rows that an entry takes: never a null array.
class RollbackRows
{
  public:
    explicit RollbackRows(const std::vector<std::string>& names);

    const char* data() const { return rows_[0].text; }
    std::uint32_t count() const { return static_cast<std::uint32_t>(rows_.size()) - 1; }

  private:
    struct Row {
        char text[STS_ROLLBACK_ROW_SIZE];
    };
    std::vector<Row> rows_; // one more than there are
};

} // namespace soapwrapper::probe

#endif
