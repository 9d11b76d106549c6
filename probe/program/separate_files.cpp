#include "probe/program/separate_files.h"

#include "probe/output/problem.h"
#include "probe/program/common_options.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace soapwrapper::probe
{
namespace
{

namespace fs = std::filesystem;

struct NamedFile {
    const char* option;
    std::optional<std::string> path;
};

// Of a file that would be replaced, or made; none: it is a pipe, a device, or can't be looked at.
std::optional<fs::path> replaceable(const NamedFile& file)
{
    if (!file.path || file.path->empty()) return std::nullopt;
    std::error_code error;
    const fs::file_status status = fs::status(*file.path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) return std::nullopt;
    // The call behind it leaves what isn't there relative.
    const fs::path absolute = fs::absolute(*file.path, error);
    if (error) return std::nullopt;
    const fs::path place = fs::weakly_canonical(absolute, error);
    return error ? std::nullopt : std::optional(place);
}

void require_two(const NamedFile& one, const NamedFile& other)
{
    const std::optional<fs::path> place = replaceable(one);
    if (!place || place != replaceable(other)) return;
    throw usage_problem(std::string(one.option) + " and " + other.option + " need two files", *other.path);
}

} // namespace

void require_separate_files(const CommonOptions& options)
{
    // "-" is no file, but standard error.
    const NamedFile trace{"--trace", options.trace == "-" ? std::nullopt : options.trace};
    const NamedFile record{"--record", options.record};
    const NamedFile config{"--config", options.config};
    const NamedFile credential{"--credential-file", options.credential_file};
    require_two(trace, record);
    for (const NamedFile& written : {trace, record}) {
        require_two(config, written);
        require_two(credential, written);
    }
}

} // namespace soapwrapper::probe
