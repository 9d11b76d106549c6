// What clients keep open, by token.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_OPEN_TABLE_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_OPEN_TABLE_H

#include "simulator/storage/token_table.h"

#include <cstddef>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{

// The fault of one who keeps too many open, if as many are.
void require_room_to_open(std::size_t used);
[[noreturn]] void refuse_handle(const char* what);

// What is open of one kind. It ends with the session, if it belongs to one.
template <class Value>
class OpenTable
{
  public:
    explicit OpenTable(const char* what) : what_(what) {}

    std::string open(Value value)
    {
        require_room_to_open(values_.size());
        return values_.add(std::move(value));
    }
    Value& at(const std::string& token)
    {
        Value* value = values_.find(token);
        if (!value) refuse_handle(what_);
        return *value;
    }
    void close(const std::string& token)
    {
        at(token);
        values_.erase(token);
    }
    template <class Predicate>
    void close_if(Predicate predicate)
    {
        values_.erase_if(predicate);
    }
    template <class Predicate>
    bool any(Predicate predicate) const
    {
        return values_.any(predicate);
    }
    template <class Visit>
    void for_each(Visit visit) const
    {
        values_.for_each(visit);
    }

  private:
    const char* what_;
    TokenTable<Value> values_;
};

} // namespace soapwrapper::simulator

#endif
