#include "probe/arguments/volume_argument.h"

#include "plugin/host/host_records.h"
#include "probe/arguments/command_line.h"
#include "probe/output/text.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr int kUnfilled = -1;

struct Kind {
    const char* name;
    int type;
    std::size_t texts;
};

constexpr Kind kKinds[] = {{"nfs", STS_VOLUME_NFS, 3},
                           {"cifs", STS_VOLUME_CIFS, 3},
                           {"scsi", STS_VOLUME_SCSI, 2},
                           {"device", STS_VOLUME_DEVICE, 1},
                           {"ndmp", STS_VOLUME_NDMP, 2}};

// At most so many texts; a colon within the last one is part of it.
std::vector<std::string> split(std::string_view text, std::size_t most)
{
    std::vector<std::string> texts(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ':' && texts.size() < most) {
            texts.emplace_back();
        } else {
            if (text[i] == '\\' && i + 1 < text.size()) ++i;
            texts.back() += text[i];
        }
    }
    return texts;
}

std::string escaped(const std::string& text)
{
    std::string out;
    for (const char c : text) {
        if (c == ':' || c == '\\') out += '\\';
        out += c;
    }
    return out;
}

std::string kind_name(int type)
{
    const auto* found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const Kind& k) { return k.type == type; });
    return found == std::end(kKinds) ? std::to_string(type) : found->name;
}

} // namespace

std::string parse_volume(const std::string& text, sts_volume_spec_v11_t& volume)
{
    const std::size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    const auto* kind =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const Kind& k) { return k.name == name; });
    if (kind == std::end(kKinds))
        return "a volume is nfs, cifs, scsi, device or ndmp, a colon, and its texts";
    if (colon == std::string::npos) return "a volume needs a text behind its kind";
    const std::vector<std::string> texts = split(std::string_view(text).substr(colon + 1), kind->texts);
    if (texts[0].empty()) return "the first text of a volume may not be empty";

    std::memset(&volume, 0, sizeof volume);
    volume.volumeType = kind->type;
    char* fields[] = {volume.first, volume.second, volume.third};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (texts[i].size() >= STS_VOLUME_TEXT_SIZE) {
            return "a text of a volume has at most " + std::to_string(STS_VOLUME_TEXT_SIZE - 1) + " bytes";
        }
        std::memcpy(fields[i], texts[i].c_str(), texts[i].size());
    }
    return {};
}

std::string volume_text(const sts_volume_spec_v11_t& volume)
{
    std::vector<std::string> texts = {clean_field(volume.first), clean_field(volume.second),
                                      clean_field(volume.third)};
    while (!texts.empty() && texts.back().empty()) texts.pop_back();
    if (texts.empty()) return {};
    std::string out = kind_name(volume.volumeType);
    for (const std::string& text : texts) out += ':' + escaped(text);
    return out;
}

sts_volume_spec_v11_t unfilled_volume()
{
    sts_volume_spec_v11_t volume = {};
    volume.volumeType = kUnfilled;
    return volume;
}

Option add_volume_option(const Command& command, sts_volume_spec_v11_t& volume,
                         const std::string& description)
{
    return command
        .add_text_option(
            "--volume", [&volume](const std::string& text) { return parse_volume(text, volume); },
            description)
        .type_name("KIND:FIRST[:SECOND[:THIRD]]");
}

} // namespace soapwrapper::probe
