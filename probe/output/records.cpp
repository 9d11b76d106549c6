#include "probe/output/records.h"

#include "probe/output/output.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

std::string cell(const Output& output, const Value& value, Look look)
{
    if (value.is_null()) return {};
    if (look == Look::kSize) return output.size(value.get<std::int64_t>());
    return value.is_string() ? value.get<std::string>() : value.dump();
}

} // namespace

void EntryList::add(const std::vector<Value>& values)
{
    Value entry = Value::object();
    for (std::size_t i = 0; i < columns_.size(); ++i) entry[columns_[i].key] = values.at(i);
    entries_.push_back(std::move(entry));
}

void EntryList::show(Output& output, Extent extent) const
{
    if (output.format() == Format::kJson) {
        output.document()[key_] = entries_;
        tell_extent(output.document(), extent);
    } else if (extent != Extent::kIncomplete || !entries_.empty()) {
        output.print(table(output));
    }
}

Table EntryList::table(const Output& output) const
{
    std::vector<std::string> headings;
    for (const Column& column : columns_) headings.emplace_back(column.heading);
    Table table(headings);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (columns_[i].look != Look::kText) table.align_right(i);
    }
    for (const Value& entry : entries_) {
        std::vector<std::string> cells;
        for (const Column& column : columns_) {
            cells.push_back(cell(output, entry.at(column.key), column.look));
        }
        table.add(std::move(cells));
    }
    return table;
}

void Properties::add(const char* label, const char* key, Value value)
{
    properties_.push_back({label, key, std::move(value)});
}

void Properties::add_size(const char* label, const char* key, std::int64_t bytes)
{
    properties_.push_back({label, key, bytes, Look::kSize});
}

void Properties::add_named(const char* label, const char* key, std::int64_t number, const char* name)
{
    properties_.push_back({label, key, number, Look::kNumber, name});
}

void Properties::show(Output& output) const
{
    Table table({});
    const bool bare = output.format() == Format::kSeparated;
    for (const auto& [label, key, value, look, name] : properties_) {
        output.document()[key] = value;
        if (name) output.document()[std::string(key) + "_name"] = name;
        table.add({bare ? key : label,
                   name && !bare ? with_name(value.get<std::int64_t>(), name) : cell(output, value, look)});
    }
    output.print(table);
}

void tell_extent(Value& document, Extent extent)
{
    document["complete"] = extent == Extent::kComplete;
    if (extent == Extent::kLimited) document["limited"] = true;
}

std::string with_name(std::int64_t number, const char* name)
{
    return std::to_string(number) + (name ? std::string(" (") + name + ')' : "");
}

} // namespace soapwrapper::probe
