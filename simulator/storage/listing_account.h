// Which volumes hosts say that they are listing the changes of.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_LISTING_ACCOUNT_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_LISTING_ACCOUNT_H

#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{

// Not guarded.
class ListingAccount
{
  public:
    // Notes one more. Ahead of every start that is noted on a volume, `busy` others are refused with the
    // fault of a busy filer.
    void start(const std::string& session, const std::string& volume, int busy);

    // One of the session's ends, if it has any on the volume.
    void stop(const std::string& session, const std::string& volume);

    // All of the session's end.
    void end(const std::string& session);

    // On the volume, whoever's.
    std::size_t count(const std::string& volume) const;

  private:
    std::map<std::pair<std::string, std::string>, std::size_t> running_; // by session and volume
    std::map<std::string, int> refusals_;                                // by volume, since its last start
};

} // namespace soapwrapper::simulator

#endif
