#include "probe/output/records.h"

#include "probe/output/output.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

std::string cell(const Value& value)
{
    if (value.is_null()) return {};
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
        return;
    }
    if (extent == Extent::kIncomplete && entries_.empty()) return;
    std::vector<std::string> headings;
    for (const Column& column : columns_) headings.emplace_back(column.heading);
    Table table(headings);
    for (const Value& entry : entries_) {
        std::vector<std::string> cells;
        for (const Column& column : columns_) cells.push_back(cell(entry.at(column.key)));
        table.add(std::move(cells));
    }
    output.print(table);
}

void Properties::add(const char* label, const char* key, Value value)
{
    properties_.push_back({label, key, std::move(value)});
}

void Properties::show(Output& output) const
{
    Table table({});
    for (const Property& property : properties_) {
        output.document()[property.key] = property.value;
        table.add(
            {output.format() == Format::kSeparated ? property.key : property.label, cell(property.value)});
    }
    output.print(table);
}

void tell_extent(Value& document, Extent extent)
{
    document["complete"] = extent == Extent::kComplete;
    if (extent == Extent::kLimited) document["limited"] = true;
}

} // namespace soapwrapper::probe
