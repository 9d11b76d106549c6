// What the service hands out by token: server sessions, lists, open images.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_TOKEN_TABLE_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_TOKEN_TABLE_H

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

// Not guarded: its owner holds a lock.
template <class Value>
class TokenTable
{
  public:
    std::string add(Value value)
    {
        std::string token = new_token();
        values_.emplace(token, std::move(value));
        return token;
    }

    // Null if the token was never issued or is given back.
    Value* find(const std::string& token)
    {
        const auto entry = values_.find(token);
        return entry == values_.end() ? nullptr : &entry->second;
    }
    const Value* find(const std::string& token) const { return const_cast<TokenTable*>(this)->find(token); }

    void erase(const std::string& token) { values_.erase(token); }

    template <class Predicate>
    void erase_if(Predicate predicate)
    {
        for (auto entry = values_.begin(); entry != values_.end();) {
            entry = predicate(entry->second) ? values_.erase(entry) : std::next(entry);
        }
    }
    template <class Predicate>
    bool any(Predicate predicate) const
    {
        return std::any_of(values_.begin(), values_.end(),
                           [&](const auto& entry) { return predicate(entry.second); });
    }

    std::size_t size() const { return values_.size(); }

  private:
    std::unordered_map<std::string, Value> values_;
};

} // namespace soapwrapper::simulator

#endif
