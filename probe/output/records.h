// What the catalogue commands show: lists of entries, and the properties of one thing.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_RECORDS_H
#define SOAPWRAPPER_PROBE_OUTPUT_RECORDS_H

#include "probe/output/output.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{

// A text, which has been cleaned, a number, a truth, or nothing.
using Value = nlohmann::ordered_json;

// How people see a value. Scripts get what it is.
enum class Look {
    kText,
    kNumber, // aligned by its last digit
    kSize    // in bytes
};

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
        Look look = Look::kText;
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
    Table table(const Output& output) const;

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
    void add_size(const char* label, const char* key, std::int64_t bytes);
    // A number that may have a name, which people see behind it, and scripts as the member KEY_name. Null: it
    // has none.
    void add_named(const char* label, const char* key, std::int64_t number, const char* name);

    void show(Output& output) const;

  private:
    struct Property {
        const char* label;
        const char* key;
        Value value;
        Look look = Look::kText;
        const char* name = nullptr;
    };
    std::vector<Property> properties_;
};

// What a document says of a list's extent.
void tell_extent(Value& document, Extent extent);

// "2060005 (STS_EBUSY)", or the bare number if it has no name.
std::string with_name(std::int64_t number, const char* name);

} // namespace soapwrapper::probe

#endif
