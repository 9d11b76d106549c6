#include "probe/operations/operation_arguments.h"

#include "plugin/host/async_records.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/volume_argument.h"
#include "probe/operations/operation_run.h"
#include "probe/output/problem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

struct TargetTexts {
    std::optional<std::string> server;
    std::string lsu;
};

TargetTexts split_target(const std::string& text)
{
    TargetTexts texts;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '/' && !texts.server) {
            texts.server = std::exchange(texts.lsu, {});
        } else {
            if (text[i] == '\\' && i + 1 < text.size()) ++i;
            texts.lsu += text[i];
        }
    }
    return texts;
}

std::string at_most(std::size_t room)
{
    return "has at most " + std::to_string(room - 1) + " bytes";
}

} // namespace

void add_source_arguments(const Command& command, SourceArguments& arguments)
{
    add_server_arguments(command, arguments);
    add_text_argument(command, "SNAP", arguments.snapshot, STS_SNAP_NAME_SIZE, "Name of the snapshot");
    add_volume_option(command, arguments.volume, "Volume that the snapshot is of").required();
    add_operation_options(command, arguments.operation);
}

void add_target_options(const Command& command, TargetOptions& options)
{
    command
        .add_option("--target", options.targets,
                    "LSU for the snapshot to go to, at NAME if no server is named; may be repeated. A slash "
                    "of a name is written \\/")
        .type_name("[SERVER/]LSU")
        .one_at_a_time()
        .check([](const std::string& text) {
            sts_lsu_spec_v11_t target = {};
            return parse_target(text, target);
        });
}

std::string parse_target(const std::string& text, sts_lsu_spec_v11_t& target)
{
    const TargetTexts texts = split_target(text);
    if (texts.lsu.empty()) return "a target needs the name of an LSU";
    if (texts.lsu.size() >= sizeof target.lsu) return "the LSU of a target " + at_most(sizeof target.lsu);
    if (texts.server && texts.server->empty()) {
        return "a target has a server ahead of its slash; a slash of the LSU's name is written \\/";
    }
    if (texts.server && texts.server->size() >= sizeof target.server) {
        return "the server of a target " + at_most(sizeof target.server);
    }
    if (texts.server) put(target.server, *texts.server);
    put(target.lsu, texts.lsu);
    return {};
}

TargetLsus::TargetLsus(const TargetOptions& options, const std::string& server)
    : targets_(options.targets.size() + 1)
{
    if (server.size() >= STS_SERVER_NAME_SIZE)
        throw usage_problem("the server " + at_most(STS_SERVER_NAME_SIZE));
    for (std::size_t i = 0; i < options.targets.size(); ++i) {
        put(targets_[i].server, server);
        parse_target(options.targets[i], targets_[i]);
    }
}

void add_imageset_options(const Command& command, ImagesetOptions& options)
{
    const Option imageset = command.add_option("--imageset", options.imageset, "Name of the image set");
    imageset.type_name("TEXT");
    limit_length(imageset, STS_ASYNC_NAME_SIZE);
    command.add_option("--pending", options.pending, "Pending flag, which the service reads as it likes")
        .type_name("N")
        .capture_default_str();
}

sts_imageset_t imageset_of(const ImagesetOptions& options)
{
    sts_imageset_t imageset = {};
    put(imageset.name, options.imageset);
    return imageset;
}

void add_over_option(const Command& command, std::vector<std::string>& over)
{
    const Option option =
        command.add_option("--over", over, "Name of a snapshot to roll back over; may be repeated");
    option.type_name("SNAP").one_at_a_time();
    limit_length(option, STS_ROLLBACK_ROW_SIZE);
}

RollbackRows::RollbackRows(const std::vector<std::string>& names) : rows_(names.size() + 1)
{
    for (std::size_t i = 0; i < names.size(); ++i) put(rows_[i].text, names[i]);
}

} // namespace soapwrapper::probe
