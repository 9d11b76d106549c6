// What the service hands out by token: server sessions, lists, open images.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_TOKEN_TABLE_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_TOKEN_TABLE_H

#include "simulator/storage/serial.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <unordered_map>
#include <utility>

namespace soapwrapper::simulator
{

// 128 random bits in hexadecimal. Throws if there is no randomness to be had.
std::string new_token();

// Not guarded: its owner holds a lock. Each entry has a number besides, for people: unlike the token it opens
// nothing.
template <class Value>
class TokenTable
{
  public:
    std::string add(Value value)
    {
        std::string token = new_token();
        entries_.emplace(token, Entry{++last_number_, std::move(value)});
        return token;
    }

    // Null if the token was never issued or is given back.
    Value* find(const std::string& token)
    {
        const auto found = entries_.find(token);
        return found == entries_.end() ? nullptr : &found->second.value;
    }
    const Value* find(const std::string& token) const { return const_cast<TokenTable*>(this)->find(token); }

    // 0 if find() has none.
    Serial number_of(const std::string& token) const
    {
        const auto found = entries_.find(token);
        return found == entries_.end() ? 0 : found->second.number;
    }

    void erase(const std::string& token) { entries_.erase(token); }

    template <class Predicate>
    void erase_if(Predicate predicate)
    {
        for (auto entry = entries_.begin(); entry != entries_.end();) {
            entry = predicate(entry->second.value) ? entries_.erase(entry) : std::next(entry);
        }
    }
    template <class Predicate>
    bool any(Predicate predicate) const
    {
        return std::any_of(entries_.begin(), entries_.end(),
                           [&](const auto& entry) { return predicate(entry.second.value); });
    }
    // Calls visit(number, value) for each, in any order.
    template <class Visit>
    void for_each(Visit visit) const
    {
        for (const auto& each : entries_) visit(each.second.number, each.second.value);
    }

    std::size_t size() const { return entries_.size(); }

  private:
    struct Entry {
        Serial number;
        Value value;
    };

    std::unordered_map<std::string, Entry> entries_;
    Serial last_number_ = 0;
};

} // namespace soapwrapper::simulator

#endif
