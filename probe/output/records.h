// What the catalogue commands show: lists of entries, and the properties of one thing.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_RECORDS_H
#define SOAPWRAPPER_PROBE_OUTPUT_RECORDS_H

#include "probe/output/output.h"

#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{

// A text, which has been cleaned, a number, a truth, or nothing.
using Value = nlohmann::ordered_json;

// How far a list was read.
enum class Extent {
    kComplete,  // to its end
    kLimited,   // as far as the user wanted, and there is more
    kIncomplete // as far as it went
};

// A list of entries that have the same columns.
class EntryList
{
  public:
    struct Column {
        const char* heading; // of the aligned table
        const char* key;     // in JSON
    };

    // `key` is where the list stands in the JSON document.
    EntryList(std::string key, std::vector<Column> columns)
        : key_(std::move(key)), columns_(std::move(columns)), entries_(Value::array())
    {
    }

    // As many values as there are columns.
    void add(const std::vector<Value>& values);

    // An incomplete list without an entry shows nothing that could be taken for an empty one.
    void show(Output& output, Extent extent) const;

  private:
    const std::string key_;
    const std::vector<Column> columns_;
    Value entries_;
};

// Labelled values: one to a line, or one member each of the JSON document.
class Properties
{
  public:
    // `label` is for people, `key` for scripts.
    void add(const char* label, const char* key, Value value);

    void show(Output& output) const;

  private:
    struct Property {
        const char* label;
        const char* key;
        Value value;
    };
    std::vector<Property> properties_;
};

// What a document says of a list's extent.
void tell_extent(Value& document, Extent extent);

} // namespace soapwrapper::probe

#endif
